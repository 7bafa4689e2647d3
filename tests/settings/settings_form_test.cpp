// The form of encoders, by what a user does to it.
#include "settings/settings_form.h"

#include "foundation/registry.h"
#include "platform/registry.h"
#include "settings/form_stage.h"

namespace {

// How a list asks an encoder what it writes.
const std::string kAsked = "ENC_Create\nENC_Get Extension\nENC_Destroy\n";

class SettingsForm : public FormStage {
  protected:
    SettingsForm() {
        // Nothing is left of the test before.
        for (const char16_t* encoder : {u"One", u"Two", u"Lost", u""}) StoreSettings(encoder, u"");
    }

    void Show(const char16_t* startName = u"One", const char16_t* startText = u"start") {
        FormStage::Show<clSettingsFrm>(startName, startText);
    }
    static std::u16string Stored(const char16_t* encoder) { return StoredSettings(encoder).Text(); }
    void ClickOK() { dialog.Click(ScriptedDialog::kOK); }

    const PlacedModule one = home.Place(u"encoder/One", "scripted_encoder", "extension|.one\npanel|one's\n");
    const PlacedModule two = home.Place(u"encoder/Two", "scripted_encoder", "extension|.two\npanel|two's\n");
};

}  // namespace

TEST_F(SettingsForm, Comes_up_with_its_template_the_list_and_the_panel_of_the_name) {
    Names seen;
    std::int32_t selected = -1;
    dialog.user = [&] {
        EXPECT_EQ(result, 1u);
        EXPECT_EQ(one.TakeJournal(), kAsked + "ENC_Create\n" + Shown("ENC", "start"));
        EXPECT_EQ(two.TakeJournal(), kAsked);
        seen = dialog.rows;
        selected = dialog.selected;
    };
    Show();
    EXPECT_EQ(dialog.shown, 1);
    EXPECT_EQ(dialog.templateNumber, 101);
    EXPECT_EQ(dialog.module, home.Self());
    EXPECT_EQ(seen, Listed(u"encoder"));
    ASSERT_GE(selected, 0);
    EXPECT_EQ(seen[static_cast<std::size_t>(selected)], u"One");
}

TEST_F(SettingsForm, Leaves_the_text_and_the_name_of_OK) {
    dialog.user = [this] { ClickOK(); };
    Show();
    ExpectLeft(u"One", u"one's", 1);
    EXPECT_EQ(dialog.ended, 1);
    EXPECT_EQ(one.TakeJournal(),
              kAsked + "ENC_Create\n" + Shown("ENC", "start") + Removed("ENC") + "ENC_Destroy\n");
    EXPECT_EQ(Stored(u"One"), u"") << "that is the caller's to do";
}

TEST_F(SettingsForm, Leaves_nothing_after_Cancel_and_the_close_box) {
    dialog.user = [this] { dialog.Click(ScriptedDialog::kCancel); };
    Show();
    ExpectLeft(u"", u"", 1);
    EXPECT_EQ(dialog.ended, 0);
    dialog.user = [this] { dialog.Close(); };
    Show();
    ExpectLeft(u"", u"", 1);
    EXPECT_EQ(dialog.ended, 1);
}

TEST_F(SettingsForm, Keeps_the_text_of_the_encoder_that_is_left_and_shows_that_which_the_next_has) {
    StoreSettings(u"Two", u"kept");
    dialog.user = [this] {
        two.TakeJournal();
        Pick(u"Two");
        EXPECT_EQ(Stored(u"One"), u"one's");
        EXPECT_EQ(two.TakeJournal(), "ENC_Create\n" + Shown("ENC", "kept"));
        ClickOK();
    };
    Show();
    ExpectLeft(u"Two", u"two's", 1);
    EXPECT_EQ(Stored(u"Two"), u"kept") << "that is the caller's to do";
}

TEST_F(SettingsForm, Keeps_them_though_it_is_cancelled_later) {
    dialog.user = [this] {
        Pick(u"Two");
        Pick(u"One");
        dialog.Click(ScriptedDialog::kCancel);
    };
    Show();
    ExpectLeft(u"", u"", 1);
    EXPECT_EQ(Stored(u"One"), u"one's");
    EXPECT_EQ(Stored(u"Two"), u"two's");
    EXPECT_EQ(one.TakeJournal(), kAsked + "ENC_Create\n" + Shown("ENC", "start") + Removed("ENC") +
                                     "ENC_Destroy\nENC_Create\n" + Shown("ENC", "one's") + Removed("ENC") +
                                     "ENC_Destroy\n");
}

TEST_F(SettingsForm, Ends_the_old_encoder_then_stores_then_loads_the_new_one) {
    std::string oldJournal, newJournal;
    std::uint32_t type = 0, bytes = 0;
    Faulty<platform::RegSetValueExW> writes;
    dialog.user = [&] {
        writes.Replace([&](platform::Handle key, const char16_t* value, std::uint32_t kind, const void* data,
                           std::uint32_t size) {
            EXPECT_EQ(std::u16string(value), u"qMC_CLI");
            type = kind;
            bytes = size;
            oldJournal = one.TakeJournal();
            newJournal = two.TakeJournal();
            return writes.Native(key, value, kind, data, size);
        });
        Pick(u"Two");
    };
    Show();
    EXPECT_TRUE(oldJournal.ends_with(Removed("ENC") + "ENC_Destroy\n")) << oldJournal;
    EXPECT_EQ(newJournal, kAsked);
    EXPECT_EQ(type, platform::kRegString);
    EXPECT_EQ(bytes, sizeof u"one's");
}

// Where files know case the module stands there in both spellings, and each row is the same encoder.
TEST_F(SettingsForm, Does_nothing_when_the_same_encoder_is_picked_again_whatever_the_list_says) {
    const PlacedModule spelled =
        home.Place(u"encoder/oNE", "scripted_encoder", "extension|.one\npanel|one's\n");
    bool wasShown = false;
    dialog.user = [&] {
        wasShown = true;
        spelled.TakeJournal();
        Pick(u"One");
        for (const std::uintptr_t code : {ScriptedDialog::kGotFocus, ScriptedDialog::kLostFocus})
            dialog.Notify(code);
        EXPECT_EQ(spelled.TakeJournal(), "");
        ClickOK();
    };
    Show(u"oNE");
    EXPECT_TRUE(wasShown);
    ExpectLeft(u"oNE", u"one's", 1);
}

TEST_F(SettingsForm, Follows_the_selection_at_any_notification) {
    dialog.user = [this] {
        dialog.selected = RowOf(u"Two");
        dialog.Notify(ScriptedDialog::kLostFocus);
        ClickOK();
    };
    Show();
    ExpectLeft(u"Two", u"two's", 1);
}

TEST_F(SettingsForm, Shows_the_panel_of_an_encoder_on_no_row_beside_the_first_row_as_selected) {
    const PlacedModule hidden =
        home.Place(u"encoder/Hidden", "scripted_encoder", "extension|.IGNORE\npanel|hidden's\n");
    dialog.user = [&] {
        EXPECT_EQ(RowOf(u"Hidden"), -1);
        EXPECT_EQ(dialog.rows.size(), 2u);
        EXPECT_EQ(dialog.selected, 0);
        EXPECT_EQ(hidden.TakeJournal(), kAsked + "ENC_Create\n" + Shown("ENC", "start"));
        ClickOK();
    };
    Show(u"Hidden");
    ExpectLeft(u"Hidden", u"hidden's", 1);
}

TEST_F(SettingsForm, Lists_an_encoder_whose_extension_only_holds_what_hides_others) {
    for (const char* extension : {".IGNORED", "x.IGNORE", ".ignore"}) {
        const PlacedModule other =
            home.Place(u"encoder/Other", "scripted_encoder", std::string("extension|") + extension + "\n");
        dialog.user = [&] { EXPECT_GE(RowOf(u"Other"), 0) << extension; };
        Show();
    }
}

TEST_F(SettingsForm, Asks_for_the_icon_beside_each_module_it_lists) {
    home.Place(u"encoder/Hidden", "scripted_encoder", "extension|.IGNORE\n");
    Show();
    Names expected;
    for (const std::u16string& row : dialog.rows)
        expected.push_back(home.Folder() / (u"encoder/" + row + u".ico"));
    EXPECT_EQ(dialog.icons, expected);
}

TEST_F(SettingsForm, Closes_at_once_with_nothing_when_its_first_encoder_does_not_load) {
    home.Place(u"encoder/Unwilling", "scripted_encoder", "extension|.u\ncreate|0\n");
    bool wasShown = false;
    dialog.user = [&] { wasShown = true; };
    for (const char16_t* unknown : {u"Nobody", u"Unwilling", u""}) {
        Show(unknown, u"start");
        ExpectLeft(u"", u"", 0);
        EXPECT_EQ(dialog.ended, 0);
    }
    EXPECT_FALSE(wasShown);
}

TEST_F(SettingsForm, Stays_without_a_panel_when_an_encoder_that_is_picked_does_not_load) {
    const PlacedModule lost = home.Place(u"encoder/Lost", "scripted_encoder", "extension|.lost\n");
    StoreSettings(u"Lost", u"had this");
    dialog.user = [&] {
        lost.SetScript("create|0\n");
        Pick(u"Lost");
        EXPECT_FALSE(dialog.ended.has_value());
        EXPECT_EQ(lost.TakeJournal(), kAsked + "ENC_Create\n");
        EXPECT_EQ(Stored(u"One"), u"one's");
        ClickOK();
    };
    Show();
    ExpectLeft(u"Lost", u"", 1);
    EXPECT_EQ(Stored(u"Lost"), u"had this");
}

TEST_F(SettingsForm, Goes_on_from_an_encoder_that_did_not_load_whose_text_is_then_empty) {
    const PlacedModule lost = home.Place(u"encoder/Lost", "scripted_encoder", "extension|.lost\n");
    StoreSettings(u"Lost", u"had this");
    dialog.user = [&] {
        lost.SetScript("create|0\n");
        Pick(u"Lost");
        Pick(u"Two");
        EXPECT_EQ(Stored(u"Lost"), u"");
        ClickOK();
    };
    Show();
    ExpectLeft(u"Two", u"two's", 1);
}

TEST_F(SettingsForm, Takes_a_null_text_for_an_empty_one) {
    one.SetScript("extension|.one\npanel\n");
    StoreSettings(u"One", u"kept");
    dialog.user = [this] {
        Pick(u"Two");
        EXPECT_EQ(Stored(u"One"), u"");
        Pick(u"One");
        ClickOK();
    };
    Show();
    ExpectLeft(u"One", u"", 1);
}

TEST_F(SettingsForm, Carries_a_text_of_any_length) {
    const std::string narrow(100'000, 'x');
    const std::u16string wide(100'000, u'x');
    one.SetScript("extension|.one\npanel|" + narrow + "\n");
    dialog.user = [&] {
        Pick(u"Two");
        EXPECT_EQ(Stored(u"One"), wide);
        one.TakeJournal();
        Pick(u"One");
        EXPECT_EQ(one.TakeJournal(), "ENC_Create\n" + Shown("ENC", narrow));
        ClickOK();
    };
    Show(u"One", wide.c_str());
    ExpectLeft(u"One", wide, 1);
}

TEST_F(SettingsForm, Leaves_both_texts_and_the_result_alone_where_no_dialog_comes_up) {
    dialog.exists = false;
    Show();
    ExpectLeft(u"One", u"start", 77);
    EXPECT_EQ(one.TakeJournal(), "");
    EXPECT_EQ(gWindowTable.Count(), 0);
}

TEST_F(SettingsForm, Answers_nothing_before_its_birth) {
    Show();
    EXPECT_EQ(dialog.earlyAnswer, 0);
}
