// Panels as windows, changed as a user changes them.
#include <gtest/gtest.h>

#include <algorithm>

#include "panels/panel_stage.h"
#include "panels/panel_table.h"
#include "panels/panel_user.h"
#include "support/handle_gauge.h"

namespace {

class PanelWindow : public testing::TestWithParam<ModuleWithPanel> {
  protected:
    std::span<const clPanelRow> Rows() const { return owner->PanelRows(); }

    void Show(const char16_t* text) {
        panel.Show(stage.Parent(), 20, 40, text);
        ASSERT_NE(panel.Window(), nullptr);
    }

    PanelStage stage;
    const std::unique_ptr<clPanelOwner> owner = GetParam().make();
    clPanel& panel = owner->Panel();
    PanelUser user{panel};
};

bool IsChosenFrom(const clPanelRow& row) {
    return row.control == PanelControl::list;
}

bool IsTyped(const clPanelRow& row) {
    return row.control == PanelControl::number && row.choices.empty();
}

}  // namespace

TEST_P(PanelWindow, Left_alone_gives_the_text_it_got) {
    for (const char16_t* text : {u"", u"nonsense"}) {
        Show(text);
        EXPECT_EQ(std::u16string(panel.Remove()), u"");
        EXPECT_EQ(panel.Window(), nullptr);
    }
}

TEST_P(PanelWindow, Shows_what_the_text_says_and_gives_it_back) {
    for (std::size_t row = 0; row < Rows().size(); ++row) {
        if (!Rows()[row].rule) continue;
        for (const clPanelChoice& choice : Rows()[row].choices) {
            const std::u16string text = std::u16string(u"-") + Rows()[row].rule->name + u"=" + choice.value;
            Show(text.c_str());
            if (Rows()[row].control == PanelControl::check)
                EXPECT_EQ(user.IsTicked(row), &choice != Rows()[row].choices.data());
            else
                EXPECT_EQ(user.Shown(row), choice.shown);
            const std::u16string shown = panel.Remove();
            owner->Panel().Show(nullptr, 0, 0, text.c_str());
            EXPECT_EQ(shown, panel.Remove());
        }
    }
}

TEST_P(PanelWindow, Takes_every_choice_from_a_list) {
    for (std::size_t row = 0; row < Rows().size(); ++row) {
        if (!IsChosenFrom(Rows()[row]) || Rows()[row].onlyWith >= 0) continue;
        for (std::size_t choice = 0; choice < Rows()[row].choices.size(); ++choice) {
            Show(u"");
            user.Pick(row, choice);
            clPanelSheet sheet(Rows());
            sheet.Choose(row, choice);
            EXPECT_EQ(std::u16string(panel.Remove()), sheet.Text());
        }
    }
}

TEST_P(PanelWindow, Takes_what_is_typed_and_shows_it_in_range_once_left) {
    for (std::size_t row = 0; row < Rows().size(); ++row) {
        if (!IsTyped(Rows()[row])) continue;
        Show(u"");
        for (const char16_t* typed : {u"99999", u"x", u""}) user.Type(row, typed);
        clPanelSheet sheet(Rows());
        sheet.Type(row, u"99999");
        EXPECT_EQ(user.Shown(row), u"");
        user.Leave(row);
        EXPECT_EQ(user.Shown(row), sheet.Value(row));
        EXPECT_EQ(std::u16string(panel.Remove()), sheet.Text());
    }
}

TEST_P(PanelWindow, Steps_a_number_by_its_arrows) {
    for (std::size_t row = 0; row < Rows().size(); ++row) {
        if (!IsTyped(Rows()[row])) continue;
        Show(u"");
        user.PressArrow(row, -1);
        clPanelSheet sheet(Rows());
        sheet.Step(row, -1);
        EXPECT_EQ(user.Shown(row), sheet.Value(row));
        EXPECT_EQ(std::u16string(panel.Remove()), sheet.Text());
    }
}

TEST_P(PanelWindow, Greys_what_does_not_count) {
    for (std::size_t row = 0; row < Rows().size(); ++row) {
        if (Rows()[row].onlyWith < 0) continue;
        const auto above = static_cast<std::size_t>(Rows()[row].onlyWith);
        Show(u"");
        for (std::size_t choice = 0; choice < Rows()[above].choices.size(); ++choice) {
            user.Pick(above, choice);
            EXPECT_EQ(user.IsEnabled(row), (Rows()[row].ofChoices >> choice & 1) != 0);
        }
        panel.Remove();
    }
}

TEST_P(PanelWindow, Outlives_its_parent_and_keeps_what_stood_in_it) {
    Show(u"");
    std::u16string expected;
    if (!Rows().empty() && IsChosenFrom(Rows()[0])) {
        user.Pick(0, 1);
        clPanelSheet sheet(Rows());
        sheet.Choose(0, 1);
        expected = sheet.Text();
    }
    stage.DestroyParent();
    EXPECT_EQ(panel.Window(), nullptr);
    EXPECT_EQ(std::u16string(panel.Remove()), expected);
    EXPECT_EQ(panel.Remove(), nullptr);
}

TEST_P(PanelWindow, Shown_again_replaces_what_stood) {
    Show(u"");
    const auto fresh = stage.FreshWindow();
    for (int i = 0; i < 5; ++i) Show(u"");
    EXPECT_LE(stage.FreshWindow(), fresh);
    EXPECT_EQ(std::u16string(panel.Remove()), u"");
}

TEST_P(PanelWindow, Of_two_instances_stand_side_by_side) {
    const auto other = GetParam().make();
    Show(u"");
    other->Panel().Show(stage.Parent(), 20, 200, u"");
    EXPECT_NE(other->Panel().Window(), panel.Window());
    if (!Rows().empty() && IsChosenFrom(Rows()[0])) user.Pick(0, 1);
    EXPECT_EQ(std::u16string(other->Panel().Remove()), u"");
    EXPECT_NE(panel.Window(), nullptr);
    panel.Remove();
}

TEST_P(PanelWindow, Goes_with_its_instance) {
    const auto fresh = stage.FreshWindow();
    {
        const auto other = GetParam().make();
        other->Panel().Show(stage.Parent(), 20, 40, u"");
        EXPECT_NE(other->Panel().Window(), nullptr);
    }
    EXPECT_LE(stage.FreshWindow(), fresh);
}

INSTANTIATE_TEST_SUITE_P(Modules, PanelWindow, testing::ValuesIn(AllPanels()),
                         [](const auto& each) { return each.param.name; });

TEST(PanelWindows, Leave_nothing_behind_however_often_they_are_shown) {
    PanelStage stage;
    std::vector<std::unique_ptr<clPanelOwner>> owners;
    for (const ModuleWithPanel& module : AllPanels()) owners.push_back(module.make());
    const auto show = [&](std::size_t times) {
        for (std::size_t i = 0; i < times; ++i) {
            clPanel& panel = owners[i % owners.size()]->Panel();
            panel.Show(stage.Parent(), 20, 40, u"");
            ASSERT_NE(panel.Window(), nullptr);
            panel.Remove();
        }
    };
    show(owners.size());
    const auto window = stage.FreshWindow(), drawing = stage.FreshDrawing();
    const HandleGauge before;
    show(500);
    EXPECT_EQ(HandleGauge(), before);
    EXPECT_LE(stage.FreshWindow(), window);
    EXPECT_LE(stage.FreshDrawing(), drawing);
}

#ifdef QV_HAS_MP3
namespace {

std::size_t RowNamed(std::span<const clPanelRow> rows, std::u16string_view label) {
    return static_cast<std::size_t>(std::ranges::find(rows, label, &clPanelRow::label) - rows.begin());
}

}  // namespace

TEST(Mp3Panel, A_preset_sets_all_rows_and_a_row_that_differs_leaves_it) {
    const auto found = std::ranges::find(AllPanels(), std::string_view("MP3"), &ModuleWithPanel::name);
    const auto owner = found->make();
    const auto rows = owner->PanelRows();
    const std::size_t preset = RowNamed(rows, u"&Preset:"), mode = RowNamed(rows, u"&Mode:"),
                      bitrate = RowNamed(rows, u"&Bit rate:"), algorithm = RowNamed(rows, u"&Algorithm:");
    PanelStage stage;
    PanelUser user(owner->Panel());
    owner->Panel().Show(stage.Parent(), 0, 0, u"-bitrate=320");
    EXPECT_EQ(user.Shown(preset), u"Constant 320 kbit/s");
    EXPECT_TRUE(user.IsEnabled(bitrate));
    user.Pick(preset, 4);
    EXPECT_EQ(user.Shown(bitrate), u"128");
    user.Type(algorithm, u"0");
    EXPECT_EQ(user.Shown(preset), u"As set below");
    user.Pick(preset, rows[preset].choices.size());
    EXPECT_EQ(user.Shown(mode), u"Constant");
    EXPECT_EQ(std::u16string(owner->Panel().Remove()), u"-bitrate=128 -algorithm=0");
}
#endif
