// The panel without its window, over a table of the tests' own.
#include <gtest/gtest.h>

#include "modules/support/panel_sheet.h"

namespace {

constexpr clSettingRule kQuality{
    .name = u"quality", .isWhole = false, .least = -1, .most = 10, .standard = 5};
constexpr clSettingRule kBitrate{.name = u"bitrate", .least = 32, .most = 500};
constexpr clSettingRule kRate{.name = u"rate", .least = 1, .most = 200000};
constexpr const char16_t* kWords[] = {u"no", u"yes"};
constexpr clSettingRule kVerify{.name = u"verify", .words = kWords};

constexpr clPanelChoice kPresets[] = {{u"", u"Usual"}, {u"-bitrate=320", u"Large"}};
constexpr clPanelChoice kModes[] = {{u"q", u"Quality"}, {u"b", u"Bit rate"}};
constexpr clPanelChoice kRates[] = {{u"", u"As it is"}, {u"44100", u"44100"}};
constexpr clPanelChoice kVerifies[] = {{u"no", u""}, {u"yes", u""}};

enum : std::size_t { kPreset, kModeRow, kQualityRow, kBitrateRow, kRateRow, kVerifyRow };
constexpr clPanelRow kRows[] = {
    {.label = u"&Preset", .control = PanelControl::preset, .choices = kPresets},
    {.label = u"&Mode", .choices = kModes},
    {.label = u"&Quality",
     .control = PanelControl::number,
     .rule = &kQuality,
     .step = 0.1,
     .onlyWith = kModeRow,
     .ofChoices = 1},
    {.label = u"&Bit rate",
     .control = PanelControl::number,
     .rule = &kBitrate,
     .initial = 128,
     .onlyWith = kModeRow,
     .ofChoices = 2},
    {.label = u"&Rate", .control = PanelControl::number, .rule = &kRate, .choices = kRates},
    {.label = u"&Verify", .control = PanelControl::check, .rule = &kVerify, .choices = kVerifies},
};

std::u16string After(std::u16string_view text) {
    clPanelSheet sheet(kRows);
    sheet.Read(text);
    return sheet.Text();
}

}  // namespace

TEST(PanelSheet, Texts_come_out_in_their_shortest_form) {
    constexpr struct {
        const char16_t* in;
        const char16_t* out;
    } kTexts[] = {
        {u"", u""},
        {u"-quality=5", u""},
        {u"-quality=5.00", u""},
        {u"-quality=5.50", u"-quality=5.5"},
        {u"-quality=-0", u"-quality=0"},
        {u"  -verify=yes   -quality=7 ", u"-quality=7 -verify=yes"},
        {u"-bitrate=0128", u"-bitrate=128"},
        {u"-rate=48000", u"-rate=48000"},
        {u"-rate=", u""},
        {u"-verify=no", u""},
    };
    for (const auto& row : kTexts) EXPECT_EQ(After(row.in), row.out) << testing::PrintToString(row.in);
}

TEST(PanelSheet, Of_settings_that_exclude_each_other_the_first_counts) {
    EXPECT_EQ(After(u"-quality=3 -bitrate=128"), u"-quality=3");
    EXPECT_EQ(After(u"-bitrate=128 -quality=3"), u"-bitrate=128");
    EXPECT_EQ(After(u"-bitrate=12800 -quality=3"), u"-quality=3");
    EXPECT_EQ(After(u"-quality=3 -quality=4"), u"-quality=3");
}

TEST(PanelSheet, The_least_number_survives_the_road) {
    const std::u16string least = u"-quality=0." + std::u16string(323, u'0') + u"5";
    EXPECT_EQ(After(least), least);
}

TEST(PanelSheet, A_switch_decides_what_is_written_and_what_is_active) {
    clPanelSheet sheet(kRows);
    EXPECT_TRUE(sheet.IsActive(kQualityRow));
    EXPECT_FALSE(sheet.IsActive(kBitrateRow));
    ASSERT_TRUE(sheet.Set(kQualityRow, u"7"));
    sheet.Choose(kModeRow, 1);
    EXPECT_FALSE(sheet.IsActive(kQualityRow));
    EXPECT_TRUE(sheet.IsActive(kBitrateRow));
    EXPECT_EQ(sheet.Text(), u"-bitrate=128");
    sheet.Choose(kModeRow, 0);
    EXPECT_EQ(sheet.Text(), u"-quality=7");
}

TEST(PanelSheet, A_preset_sets_all_and_follows_all) {
    clPanelSheet sheet(kRows);
    EXPECT_EQ(sheet.Choice(kPreset), 0u);
    ASSERT_TRUE(sheet.Set(kVerifyRow, u"yes"));
    EXPECT_EQ(sheet.Choice(kPreset), std::size(kPresets));
    sheet.Choose(kPreset, std::size(kPresets));
    EXPECT_EQ(sheet.Text(), u"-verify=yes");
    sheet.Choose(kPreset, 1);
    EXPECT_EQ(sheet.Text(), u"-bitrate=320");
    EXPECT_EQ(sheet.Choice(kModeRow), 1u);
    EXPECT_EQ(sheet.Choice(kPreset), 1u);
}

TEST(PanelSheet, What_is_typed_is_taken_as_far_as_it_makes_sense) {
    constexpr struct {
        std::size_t row;
        const char16_t* typed;
        const char16_t* value;
    } kTyped[] = {
        {kQualityRow, u"7", u"7"},      {kQualityRow, u" 7,25 ", u"7.25"},
        {kQualityRow, u"11", u"10"},    {kQualityRow, u"-99", u"-1"},
        {kQualityRow, u"", u"5"},       {kQualityRow, u"x", u"5"},
        {kQualityRow, u"1 2", u"5"},    {kQualityRow, u"-", u"5"},
        {kBitrateRow, u"1", u"32"},     {kBitrateRow, u"100.4", u"100"},
        {kBitrateRow, u"9999", u"500"}, {kRateRow, u"As it is", u""},
        {kRateRow, u"44100", u"44100"}, {kRateRow, u"", u""},
        {kRateRow, u"0", u"1"},         {kRateRow, u"99999999999999999999", u"200000"},
    };
    for (const auto& row : kTyped) {
        clPanelSheet sheet(kRows);
        sheet.Type(row.row, row.typed);
        EXPECT_EQ(sheet.Value(row.row), row.value) << testing::PrintToString(row.typed);
    }
}

TEST(PanelSheet, Steps_end_at_the_ends_and_leave_no_dust) {
    clPanelSheet sheet(kRows);
    sheet.Step(kQualityRow, 3);
    EXPECT_EQ(sheet.Value(kQualityRow), u"5.3");
    sheet.Step(kQualityRow, 1000);
    EXPECT_EQ(sheet.Value(kQualityRow), u"10");
    sheet.Step(kQualityRow, -1000);
    EXPECT_EQ(sheet.Value(kQualityRow), u"-1");
    sheet.Step(kRateRow, 1);
    EXPECT_EQ(sheet.Value(kRateRow), u"1");
}

TEST(PanelSheet, What_a_row_can_not_be_is_refused) {
    clPanelSheet sheet(kRows);
    EXPECT_FALSE(sheet.Set(kModeRow, u"x"));
    EXPECT_FALSE(sheet.Set(kVerifyRow, u"maybe"));
    EXPECT_FALSE(sheet.Set(kQualityRow, u""));
    EXPECT_FALSE(sheet.Set(kQualityRow, u"11"));
    sheet.Choose(kModeRow, 7);
    EXPECT_EQ(sheet.Text(), u"");
}
