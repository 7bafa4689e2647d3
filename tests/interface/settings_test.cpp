// A host that shows an encoder's or effect's settings: on a form of the
// library's and on a window of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "foundation/registry.h"
#include "interface/host.h"
#include "interface/module_doubles.h"
#include "modules/module_home.h"
#include "platform/names.h"
#include "platform/registry.h"
#include "settings/scripted_dialog.h"

namespace {

constexpr std::uint64_t kForm = 4711;  // the host's own window

std::u16string KeyOf(const std::u16string& encoder) {
    return u"Software\\Brindleway\\Quavermill\\qMCCodec\\" + encoder;
}

std::u16string Stored(const std::u16string& encoder) {
    return XRegistry::ReadString(u"qMC_CLI", KeyOf(encoder).c_str()).Text();
}

void Store(const std::u16string& encoder, const std::u16string& text) {
    XRegistry::WriteString(text.c_str(), u"qMC_CLI", KeyOf(encoder).c_str());
}

class Settings : public testing::Test {
  protected:
    Settings() {
        host->moduleHandle = home.Self();
        for (const char16_t* encoder : {u"xyz", u"other", u"nobody", u""}) Store(encoder, u"");
        dialog.user = [this] { dialog.Click(ScriptedDialog::kOK); };
    }

    std::int32_t Show(const char16_t* encoder, const char16_t* settings) {
        return QACShowSettings(host.handle, In(encoder), In(settings), Out(name.data()), Out(text.data()));
    }
    std::int32_t ShowEffect(const char16_t* effectName, const char16_t* settings) {
        return QACShowDSPSettings(host.handle, In(effectName), In(settings), Out(name.data()),
                                  Out(text.data()));
    }
    std::int32_t ShowOnForm(const char16_t* encoder, const char16_t* settings, std::uint64_t form = kForm) {
        return QACShowSettingsOnForm(host.handle, In(encoder), In(settings), form, 12, 34);
    }
    std::int32_t Remove(std::uint64_t form = kForm) {
        return QACRemoveSettings(host.handle, form, Out(text.data()));
    }
    std::u16string Name() const { return name.data(); }
    std::u16string Text() const { return text.data(); }
    std::u16string Errors() {
        timers.Tick();
        return host.Errors();
    }

    ManualTimers timers;
    const ModuleHome home;
    ScriptedDialog dialog;
    Host host;
    const PlacedModule xyz =
        home.Place(u"encoder/xyz", "scripted_encoder", "extension|.xyz\npanel|from the panel\n");
    const PlacedModule other =
        home.Place(u"encoder/other", "scripted_encoder", "extension|.other\npanel|other's\n");
    const PlacedModule effect = home.Place(u"DSPs/xyz", "scripted_effect", "panel|from the panel\n");
    std::vector<char16_t> name = std::vector<char16_t>(200'000, u'#');
    std::vector<char16_t> text = std::vector<char16_t>(200'000, u'#');
};

const std::string kPanel = "ENC_Create\nENC_ShowConfigBit 4711 at 12,34 ";

}  // namespace

TEST_F(Settings, On_the_librarys_form_come_out_and_are_stored) {
    Store(u"xyz", u"stored");
    EXPECT_EQ(Show(u"xyz", u"given"), 1);
    EXPECT_EQ(Name(), u"xyz");
    EXPECT_EQ(Text(), u"from the panel");
    EXPECT_NE(xyz.TakeJournal().find("'given'"), std::string::npos) << "what is stored plays no part";
    EXPECT_EQ(Stored(u"xyz"), u"from the panel");
    EXPECT_EQ(Errors(), u"");
}

TEST_F(Settings, Begin_with_what_is_stored_when_none_are_given) {
    Store(u"xyz", u"stored");
    for (const char16_t* nothing : {u"", static_cast<const char16_t*>(nullptr)}) {
        Store(u"xyz", u"stored");
        EXPECT_EQ(Show(u"xyz", nothing), 1);
        EXPECT_NE(xyz.TakeJournal().find("'stored'"), std::string::npos);
    }
}

TEST_F(Settings, Begin_empty_when_none_are_stored_either) {
    EXPECT_EQ(Show(u"xyz", u""), 1);
    EXPECT_NE(xyz.TakeJournal().find(" at 34,90 ''\n"), std::string::npos);
}

TEST_F(Settings, Of_another_encoder_that_was_picked_come_out_under_its_name) {
    Store(u"other", u"other's stored");
    dialog.user = [this] {
        const auto row = std::find(dialog.rows.begin(), dialog.rows.end(), u"other");
        dialog.Pick(static_cast<std::int32_t>(row - dialog.rows.begin()));
        dialog.Click(ScriptedDialog::kOK);
    };
    EXPECT_EQ(Show(u"xyz", u"given"), 1);
    EXPECT_EQ(Name(), u"other");
    EXPECT_EQ(Text(), u"other's");
    EXPECT_NE(other.TakeJournal().find("'other's stored'"), std::string::npos);
    EXPECT_EQ(Stored(u"xyz"), u"from the panel");
    EXPECT_EQ(Stored(u"other"), u"other's");
}

TEST_F(Settings, Stay_as_they_are_stored_after_Cancel_and_the_close_box) {
    const std::function<void()> ways[] = {[this] { dialog.Click(ScriptedDialog::kCancel); },
                                          [this] { dialog.Close(); }};
    for (const auto& way : ways) {
        Store(u"xyz", u"stored");
        Store(u"", u"nobody's");
        dialog.user = way;
        EXPECT_EQ(Show(u"xyz", u"given"), 1);
        EXPECT_EQ(Name(), u"");
        EXPECT_EQ(Text(), u"");
        EXPECT_EQ(Stored(u"xyz"), u"stored");
        EXPECT_EQ(Stored(u""), u"") << "the empty text is stored under the empty name";
    }
}

TEST_F(Settings, Of_an_encoder_that_does_not_load_are_empty_and_so_is_its_name) {
    Store(u"nobody", u"stored");
    EXPECT_EQ(Show(u"nobody", u"given"), 0);
    EXPECT_EQ(Name(), u"");
    EXPECT_EQ(Text(), u"");
    EXPECT_EQ(Stored(u"nobody"), u"stored");
    EXPECT_EQ(Errors(), u"");
}

TEST_F(Settings, Come_back_as_they_were_and_are_stored_where_no_form_comes_up) {
    dialog.exists = false;
    EXPECT_EQ(Show(u"xyz", u"given"), 0);
    EXPECT_EQ(Name(), u"xyz");
    EXPECT_EQ(Text(), u"given");
    EXPECT_EQ(Stored(u"xyz"), u"given");
    EXPECT_EQ(Show(u"xyz", u""), 0);
    EXPECT_EQ(Text(), u"given") << "so they are read without a form";
    EXPECT_EQ(ShowEffect(u"xyz", u"its own"), 0);
    EXPECT_EQ(Name(), u"xyz");
    EXPECT_EQ(Text(), u"its own");
    EXPECT_EQ(xyz.TakeJournal() + effect.TakeJournal(), "");
}

TEST_F(Settings, Come_out_though_they_can_not_be_read_or_stored) {
    Faulty<platform::RegCreateKeyExW> keys;
    keys.FailAlways(5u);
    EXPECT_EQ(Show(u"xyz", u""), 1);
    EXPECT_EQ(Text(), u"from the panel");
    EXPECT_NE(xyz.TakeJournal().find(" at 34,90 ''\n"), std::string::npos);
    EXPECT_EQ(ShowOnForm(u"xyz", u"given"), 1);
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(Text(), u"from the panel");
    EXPECT_EQ(Errors(), u"");
}

TEST_F(Settings, May_come_out_where_they_went_in) {
    std::copy_n(u"xyz", 4, name.begin());
    std::copy_n(u"given", 6, text.begin());
    EXPECT_EQ(
        QACShowSettings(host.handle, In(name.data()), In(text.data()), Out(name.data()), Out(text.data())),
        1);
    EXPECT_EQ(Name(), u"xyz");
    EXPECT_EQ(Text(), u"from the panel");
}

TEST_F(Settings, Of_any_length_pass_on_every_way) {
    const std::u16string wide(100'000, u'x');
    xyz.SetScript("extension|.xyz\npanel|" + std::string(100'000, 'x') + "\n");
    EXPECT_EQ(Show(u"xyz", wide.c_str()), 1);
    EXPECT_EQ(Text(), wide);
    EXPECT_EQ(Stored(u"xyz"), wide);
    text.assign(text.size(), u'#');
    Store(u"xyz", u"");
    EXPECT_EQ(ShowOnForm(u"xyz", wide.c_str()), 1);
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(Text(), wide);
    EXPECT_EQ(Stored(u"xyz"), wide);
}

TEST_F(Settings, On_the_hosts_form_stand_until_they_are_removed) {
    EXPECT_EQ(ShowOnForm(u"xyz", u"given"), 1);
    EXPECT_EQ(xyz.TakeJournal(), kPanel + "'given'\n");
    EXPECT_EQ(Stored(u"xyz"), u"") << "not before they are removed";
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(Text(), u"from the panel");
    EXPECT_EQ(Stored(u"xyz"), u"from the panel");
    EXPECT_EQ(xyz.TakeJournal(), "ENC_RemoveConfigBit 4711\n") << "the instance stays";
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(xyz.TakeJournal(), "ENC_RemoveConfigBit 4711\n") << "and is asked again";
    host.Destroy();
    EXPECT_EQ(xyz.TakeJournal(), "ENC_Destroy\n");
}

TEST_F(Settings, On_the_hosts_form_begin_with_what_is_stored_when_none_are_given) {
    Store(u"xyz", u"stored");
    EXPECT_EQ(ShowOnForm(u"xyz", u""), 1);
    EXPECT_EQ(xyz.TakeJournal(), kPanel + "'stored'\n");
    EXPECT_EQ(ShowOnForm(u"xyz", u"given"), 1);
    EXPECT_EQ(xyz.TakeJournal(), "ENC_Destroy\n" + kPanel + "'given'\n")
        << "the second takes the first one's place without removing its panel";
}

TEST_F(Settings, On_the_hosts_form_of_an_encoder_that_does_not_load_are_not_shown) {
    EXPECT_EQ(ShowOnForm(u"xyz", u"given"), 1);
    xyz.TakeJournal();
    EXPECT_EQ(ShowOnForm(u"nobody", u"given"), 0);
    EXPECT_EQ(xyz.TakeJournal(), "ENC_Destroy\n");
    EXPECT_EQ(Errors(), u"");
    EXPECT_EQ(dialog.shown, 0);
    Store(u"nobody", u"stored");
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(Text(), u"");
    EXPECT_EQ(Stored(u"nobody"), u"") << "under the name of the last call";
}

TEST_F(Settings, Removed_without_a_panel_are_empty_and_stored_so_under_the_last_name) {
    EXPECT_EQ(Show(u"xyz", u"given"), 1);
    EXPECT_EQ(Stored(u"xyz"), u"from the panel");
    EXPECT_EQ(Remove(0), 1);
    EXPECT_EQ(Text(), u"");
    EXPECT_EQ(Stored(u"xyz"), u"");
}

TEST_F(Settings, Removed_before_any_settings_call_are_stored_under_the_bare_key) {
    std::vector<std::u16string> keys;
    Faulty<platform::RegCreateKeyExW> opened;
    opened.Replace([&](const char16_t* path, std::uint32_t access, platform::Handle* key) {
        keys.emplace_back(path);
        return opened.Native(path, access, key);
    });
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(Text(), u"");
    EXPECT_EQ(keys, std::vector<std::u16string>{KeyOf(u"")});
    Store(u"", u"there");
    EXPECT_EQ(Stored(u""), u"there");
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(Stored(u""), u"");
}

TEST_F(Settings, Of_a_module_that_has_no_text_are_empty) {
    xyz.SetScript("extension|.xyz\npanel\n");
    EXPECT_EQ(ShowOnForm(u"xyz", u"given"), 1);
    Store(u"xyz", u"stored");
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(Text(), u"");
    EXPECT_EQ(Stored(u"xyz"), u"");
}

TEST_F(Settings, On_the_hosts_form_without_a_form_take_the_way_of_the_librarys_and_write_nowhere) {
    EXPECT_EQ(ShowOnForm(u"xyz", u"given", 0), 1);
    EXPECT_EQ(dialog.shown, 1);
    EXPECT_EQ(Stored(u"xyz"), u"from the panel");
    EXPECT_EQ(name[0], u'#');
    EXPECT_EQ(text[0], u'#');
}

TEST_F(Settings, Of_an_effect_come_out_and_nothing_is_stored) {
    Faulty<platform::RegCreateKeyExW> keys;
    EXPECT_EQ(ShowEffect(u"xyz", u"given"), 1);
    EXPECT_EQ(Name(), u"xyz");
    EXPECT_EQ(Text(), u"from the panel");
    EXPECT_NE(effect.TakeJournal().find("'given'"), std::string::npos);
    dialog.user = [this] { dialog.Click(ScriptedDialog::kCancel); };
    EXPECT_EQ(ShowEffect(u"xyz", u""), 1);
    EXPECT_EQ(Name(), u"");
    EXPECT_EQ(Text(), u"");
    EXPECT_NE(effect.TakeJournal().find(" at 34,90 ''\n"), std::string::npos);
    EXPECT_EQ(ShowEffect(u"nobody", u"given"), 0);
    EXPECT_EQ(ShowEffect(nullptr, nullptr), 0);
    EXPECT_EQ(Text(), u"");
    EXPECT_EQ(keys.Calls(), 0);
}

TEST_F(Settings, Are_not_looked_for_by_the_calls_that_take_them) {
    Store(u"xyz", u"stored");
    EncoderDouble encoder;
    const QvFormatExtensible format = PlainRecord(1, 2, 44100, 16);
    Faulty<platform::RegCreateKeyExW> keys;
    ASSERT_EQ(QAEOpenFile(host.handle, In(u"out"), In(u"xyz"), In(u""), &format), QV_DONE);
    EXPECT_EQ(encoder.session.settings[0], 0);
    QACConvertAudio(host.handle, In(u"in"), In(u"out"), In(u"xyz"), In(u""));
    EXPECT_EQ(keys.Calls(), 0);
}

TEST_F(Settings, Of_a_null_handle_are_nothing) {
    EXPECT_EQ(QACShowSettings(nullptr, In(u"xyz"), In(u""), Out(name.data()), Out(text.data())), 0);
    EXPECT_EQ(QACShowSettingsOnForm(nullptr, In(u"xyz"), In(u""), kForm, 1, 2), 0);
    EXPECT_EQ(QACRemoveSettings(nullptr, kForm, Out(text.data())), 0);
    EXPECT_EQ(QACShowDSPSettings(nullptr, In(u"xyz"), In(u""), Out(name.data()), Out(text.data())), 0);
    EXPECT_EQ(name[0], u'#');
    EXPECT_EQ(text[0], u'#');
    EXPECT_EQ(dialog.shown, 0);
}

TEST_F(Settings, Go_nowhere_where_the_host_has_no_buffers) {
    EXPECT_EQ(QACShowSettings(host.handle, In(u"xyz"), In(u"given"), nullptr, nullptr), 1);
    EXPECT_EQ(QACShowDSPSettings(host.handle, In(u"xyz"), In(u"given"), nullptr, nullptr), 1);
    EXPECT_EQ(ShowOnForm(u"xyz", u"given"), 1);
    EXPECT_EQ(QACRemoveSettings(host.handle, kForm, nullptr), 1);
    EXPECT_EQ(Stored(u"xyz"), u"from the panel");
}

TEST_F(Settings, Are_traced_when_they_are_shown_and_not_when_they_are_removed) {
    Trace trace(host);
    EXPECT_EQ(ShowOnForm(u"nobody", u""), 0);
    const std::u16string shown = trace.OwnLines();
    EXPECT_TRUE(shown.starts_with(Enter("clConverter::ShowSettings"))) << XString(shown.c_str()).ToNarrow();
    EXPECT_TRUE(shown.ends_with(Leave("clConverter::ShowSettings"))) << XString(shown.c_str()).ToNarrow();
    EXPECT_EQ(Remove(), 1);
    EXPECT_EQ(trace.OwnLines(), shown);
    EXPECT_EQ(ShowEffect(u"nobody", u""), 0);
    const std::u16string effects = trace.OwnLines().substr(shown.size());
    EXPECT_TRUE(effects.starts_with(Enter("clConverter::ShowDSPSettings")));
    EXPECT_TRUE(effects.ends_with(Leave("clConverter::ShowDSPSettings")));
}

TEST_F(Settings, Report_what_their_module_says_while_they_are_shown) {
    xyz.SetScript("extension|.xyz\nsay|ENC_ShowConfigBit|error|no such level\n");
    dialog.user = [this] {
        EXPECT_EQ(Errors(), u"no such level\r\n");
        dialog.Click(ScriptedDialog::kOK);
    };
    EXPECT_EQ(Show(u"xyz", u"level=99"), 1);
    EXPECT_EQ(Text(), u"level=99");
}
