// The form of effects: what it does otherwise than that of encoders.
#include "settings/dsp_form.h"

#include "platform/names.h"
#include "platform/registry.h"
#include "settings/form_stage.h"

namespace {

class DSPForm : public FormStage {
  protected:
    void Show(const char16_t* startName = u"One", const char16_t* startText = u"start") {
        FormStage::Show<clDSPFrm>(startName, startText);
    }
    void ClickOK() { dialog.Click(ScriptedDialog::kOK); }

    const PlacedModule one = home.Place(u"DSPs/One", "scripted_effect", "panel|one's\n");
    const PlacedModule two = home.Place(u"DSPs/Two", "scripted_effect", "panel|two's\n");
};

}  // namespace

TEST_F(DSPForm, Comes_up_with_its_own_template_and_the_text_of_the_caller) {
    dialog.user = [this] {
        EXPECT_EQ(result, 1u);
        EXPECT_EQ(one.TakeJournal(), "DSP_Create\n" + Shown("DSP", "start"));
        EXPECT_EQ(two.TakeJournal(), "") << "listed unseen";
        EXPECT_EQ(dialog.rows, (Names{u"One", u"Two"}));
        EXPECT_EQ(dialog.selected, 0);
        ClickOK();
    };
    Show();
    EXPECT_EQ(dialog.templateNumber, 102);
    EXPECT_EQ(dialog.module, home.Self());
    ExpectLeft(u"One", u"one's", 1);
    EXPECT_EQ(one.TakeJournal(), Removed("DSP") + "DSP_Destroy\n");
}

TEST_F(DSPForm, Leaves_nothing_after_Cancel_and_the_close_box) {
    dialog.user = [this] { dialog.Click(ScriptedDialog::kCancel); };
    Show();
    ExpectLeft(u"", u"", 1);
    EXPECT_EQ(dialog.ended, 0);
    dialog.user = [this] { dialog.Close(); };
    Show();
    ExpectLeft(u"", u"", 1);
    EXPECT_EQ(dialog.ended, 1);
}

TEST_F(DSPForm, Begins_anew_with_an_effect_that_is_picked_also_with_the_first_one_again) {
    dialog.user = [this] {
        Pick(u"Two");
        EXPECT_EQ(two.TakeJournal(), "DSP_Create\n" + Shown("DSP", ""));
        Pick(u"One");
        EXPECT_EQ(one.TakeJournal(), "DSP_Create\n" + Shown("DSP", "start") + Removed("DSP") +
                                         "DSP_Destroy\nDSP_Create\n" + Shown("DSP", ""));
        ClickOK();
    };
    Show();
    ExpectLeft(u"One", u"one's", 1);
}

TEST_F(DSPForm, Touches_nothing_that_is_stored) {
    Faulty<platform::RegCreateKeyExW> keys;
    dialog.user = [this] {
        Pick(u"Two");
        Pick(u"One");
        ClickOK();
    };
    Show();
    EXPECT_EQ(keys.Calls(), 0);
}

TEST_F(DSPForm, Lists_a_file_that_does_not_load_and_stays_without_a_panel_when_it_is_picked) {
    home.Place(u"DSPs/Broken", "text_file");
    dialog.user = [this] {
        EXPECT_EQ(dialog.rows, (Names{u"Broken", u"One", u"Two"}));
        Pick(u"Broken");
        EXPECT_FALSE(dialog.ended.has_value());
        ClickOK();
    };
    Show();
    ExpectLeft(u"Broken", u"", 1);
    dialog.user = [this] {
        Pick(u"Broken");
        Pick(u"Two");
        ClickOK();
    };
    Show();
    ExpectLeft(u"Two", u"two's", 1);
}

TEST_F(DSPForm, Closes_at_once_with_nothing_when_its_first_effect_does_not_load) {
    home.Place(u"DSPs/Broken", "text_file");
    for (const char16_t* unknown : {u"Nobody", u"Broken", u""}) {
        Show(unknown);
        ExpectLeft(u"", u"", 0);
        EXPECT_EQ(dialog.ended, 0);
    }
}

TEST_F(DSPForm, Does_nothing_when_the_same_effect_is_picked_again) {
    const PlacedModule spelled = home.Place(u"DSPs/oNE", "scripted_effect", "panel|one's\n");
    dialog.user = [&] {
        spelled.TakeJournal();
        Pick(u"One");
        dialog.Notify(ScriptedDialog::kGotFocus);
        EXPECT_EQ(spelled.TakeJournal(), "");
        ClickOK();
    };
    Show(u"oNE");
    ExpectLeft(u"oNE", u"one's", 1);
}

TEST_F(DSPForm, Sorts_its_rows_unit_by_unit_so_that_names_apart_in_case_keep_that_order) {
    for (const char16_t* effect : {u"DSPs/abc", u"DSPs/B", u"DSPs/b2", u"DSPs/A"})
        home.Place(effect, "scripted_effect");
    Names expected = {u"A", u"B", u"One", u"Two", u"abc", u"b2"};
    if (platform::kPathSeparator == u'/') {
        home.Place(u"DSPs/ABC", "scripted_effect");
        expected.insert(expected.begin() + 1, u"ABC");
    }
    Names seen;
    dialog.user = [&] { seen = dialog.rows; };
    Show();
    EXPECT_EQ(seen, expected);
}

TEST_F(DSPForm, Takes_a_null_text_for_an_empty_one_and_one_of_any_length_as_it_is) {
    one.SetScript("panel\n");
    dialog.user = [this] { ClickOK(); };
    Show();
    ExpectLeft(u"One", u"", 1);
    one.SetScript("panel|" + std::string(100'000, 'x') + "\n");
    Show();
    ExpectLeft(u"One", std::u16string(100'000, u'x'), 1);
}

TEST_F(DSPForm, Leaves_both_texts_and_the_result_alone_where_no_dialog_comes_up) {
    dialog.exists = false;
    Show();
    ExpectLeft(u"One", u"start", 77);
}
