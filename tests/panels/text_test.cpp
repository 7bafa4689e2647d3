// From a settings text into each module's panel and back, against what the module itself takes. No window is needed.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>

#include "panels/panel_table.h"

namespace {

class PanelText : public testing::TestWithParam<ModuleWithPanel> {
  protected:
    std::span<const clPanelRow> Rows() const { return owner->PanelRows(); }

    std::u16string Through(const std::u16string& text) {
        owner->Panel().Show(nullptr, 0, 0, text.c_str());
        return owner->Panel().Remove();
    }

    const std::unique_ptr<clPanelOwner> owner = GetParam().make();
};

std::u16string Text(double number) {
    char text[64];
    const auto end = std::to_chars(std::begin(text), std::end(text), number, std::chars_format::fixed).ptr;
    return {std::begin(text), end};
}

// Every value that a rule accepts where they can be counted; ends, middles and fractions otherwise.
std::vector<std::u16string> ValuesOf(const clPanelRow& row) {
    const clSettingRule& rule = *row.rule;
    std::vector<std::u16string> values(rule.words.begin(), rule.words.end());
    if (!values.empty()) return values;
    const double width = rule.most - rule.least;
    const double step = rule.isWhole ? std::max(1.0, std::floor(width / 600)) : width / 128;
    if (!rule.isWhole || width < 1e5)
        for (double value = rule.least; value < rule.most; value += step) values.push_back(Text(value));
    values.insert(values.end(), {Text(rule.least), Text(rule.most)});
    for (const clPanelChoice& choice : row.choices)
        if (*choice.value != 0) values.emplace_back(choice.value);
    return values;
}

// What a module that reads `text` by this rule gets, and whether it is given at all.
std::pair<bool, double> Meaning(const clPanelRow& row, const std::u16string& text) {
    const clSettingRule& rule = *row.rule;
    clSettings settings(text.c_str());
    const bool countsAsGiven = settings.IsGiven(rule.name) &&
                               (row.initial != 0 || (!row.choices.empty() && *row.choices[0].value == 0));
    if (!rule.words.empty()) return {countsAsGiven, static_cast<double>(settings.Choice(rule))};
    return {countsAsGiven,
            rule.isWhole ? static_cast<double>(settings.Integer(rule)) : settings.Decimal(rule)};
}

}  // namespace

TEST_P(PanelText, Of_a_panel_where_nothing_is_changed_is_empty) {
    EXPECT_EQ(Through(u""), u"");
    EXPECT_TRUE(GetParam().takes(u""));
}

TEST_P(PanelText, Comes_back_with_the_same_meaning_for_every_value_that_the_module_takes) {
    for (const clPanelRow& row : Rows()) {
        if (!row.rule) continue;
        int taken = 0;
        for (const std::u16string& value : ValuesOf(row)) {
            const std::u16string text = std::u16string(u"-") + row.rule->name + u"=" + value;
            if (!GetParam().takes(text.c_str())) continue;
            ++taken;
            const std::u16string back = Through(text);
            EXPECT_EQ(Meaning(row, back), Meaning(row, text)) << testing::PrintToString(text);
            EXPECT_LE(back.size(), text.size());
            EXPECT_EQ(Through(back), back);
            EXPECT_TRUE(GetParam().takes(back.c_str())) << testing::PrintToString(back);
        }
        EXPECT_GT(taken, 1) << testing::PrintToString(std::u16string(row.label));
    }
}

// Every row at three of its values, in all combinations.
TEST_P(PanelText, Is_taken_by_the_module_whatever_is_chosen) {
    std::vector<std::vector<std::u16string>> values;
    std::size_t combinations = 1;
    for (const clPanelRow& row : Rows()) {
        std::vector<std::u16string> its;
        if (row.control == PanelControl::preset)
            its = {u""};
        else if (row.rule && row.rule->words.empty() && row.control == PanelControl::number &&
                 row.choices.empty())
            its = {Text(row.rule->least), Text(row.rule->standard), Text(row.rule->most)};
        else
            for (const clPanelChoice& choice : row.choices) its.emplace_back(choice.value);
        combinations *= its.size();
        values.push_back(its);
    }
    const std::size_t stride = combinations > 300 ? combinations / 300 | 1 : 1;
    clPanelSheet sheet(Rows());
    for (std::size_t combination = 0; combination < combinations; combination += stride) {
        std::size_t rest = combination;
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (Rows()[i].control != PanelControl::preset) {
                ASSERT_TRUE(sheet.Set(i, values[i][rest % values[i].size()]));
            }
            rest /= values[i].size();
        }
        const std::u16string text = sheet.Text();
        EXPECT_TRUE(GetParam().takes(text.c_str())) << testing::PrintToString(text);
        EXPECT_EQ(Through(text), text);
    }
}

TEST_P(PanelText, Of_a_preset_is_one_that_comes_back_as_that_preset) {
    for (std::size_t row = 0; row < Rows().size(); ++row) {
        if (Rows()[row].control != PanelControl::preset) continue;
        for (std::size_t choice = 0; choice < Rows()[row].choices.size(); ++choice) {
            clPanelSheet sheet(Rows());
            sheet.Choose(row, choice);
            EXPECT_EQ(sheet.Text(), Rows()[row].choices[choice].value);
            EXPECT_EQ(sheet.Choice(row), choice);
            EXPECT_TRUE(GetParam().takes(sheet.Text().c_str()));
        }
    }
}

TEST_P(PanelText, That_can_not_be_understood_is_passed_over) {
    const std::u16string strange[] = {u"-no-such-setting=1",
                                      u"-",
                                      u"=",
                                      u"-=",
                                      u"-=1",
                                      u"nonsense",
                                      u"   ",
                                      u"\t\r\n",
                                      std::u16string(100000, u'-'),
                                      std::u16string(50000, u'=') + std::u16string(50000, u' '),
                                      u"-\xD800=\xDC00"};
    for (const std::u16string& text : strange) EXPECT_EQ(Through(text), u"") << testing::PrintToString(text);
    for (const clPanelRow& row : Rows()) {
        if (!row.rule) continue;
        for (const char16_t* value :
             {u"", u"1e400", u"nan", u"-inf", u"99999999999999999999", u"--1", u"x"}) {
            const std::u16string text = std::u16string(u"-") + row.rule->name + u"=" + value;
            EXPECT_EQ(Through(text), u"") << testing::PrintToString(text);
        }
    }
}

TEST_P(PanelText, Keeps_what_is_understood_beside_what_is_not) {
    for (const clPanelRow& row : Rows()) {
        if (!row.rule || row.control == PanelControl::preset) continue;
        const std::u16string good = std::u16string(u"-") + row.rule->name + u"=" + ValuesOf(row).back();
        EXPECT_EQ(Through(u"nonsense -x=1  " + good + u" -y " + good), Through(good));
    }
}

TEST_P(PanelText, Is_null_where_no_panel_stands) {
    EXPECT_EQ(owner->Panel().Remove(), nullptr);
    Through(u"");
    EXPECT_EQ(owner->Panel().Remove(), nullptr);
}

// The number of a window that isn't.
TEST_P(PanelText, Stays_where_the_system_gives_no_window) {
    owner->Panel().Show(reinterpret_cast<platform::Window>(std::uintptr_t{0x7EEEEEE0}), 0, 0, u"nonsense");
    EXPECT_EQ(owner->Panel().Window(), nullptr);
    EXPECT_EQ(std::u16string(owner->Panel().Remove()), u"");
}

TEST_P(PanelText, Belongs_to_a_table_that_fits_a_panel) {
    EXPECT_LE(Rows().size(), static_cast<std::size_t>(kPanelMostRows));
    std::set<char16_t> mnemonics;
    for (const clPanelRow& row : Rows()) {
        const std::u16string_view label = row.label;
        const std::size_t mark = label.find(u'&');
        ASSERT_LT(mark + 1, label.size());
        EXPECT_TRUE(mnemonics.insert(label[mark + 1] | 0x20).second)
            << testing::PrintToString(std::u16string(label));
        EXPECT_LT(row.onlyWith, static_cast<std::int32_t>(Rows().size()));
        if (!row.rule) continue;
        for (const char16_t* word : row.rule->words) {
            const auto choice =
                std::ranges::find(row.choices, std::u16string_view(word), &clPanelChoice::value);
            EXPECT_TRUE(choice != row.choices.end()) << testing::PrintToString(std::u16string(word));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Modules, PanelText, testing::ValuesIn(AllPanels()),
                         [](const auto& each) { return each.param.name; });
