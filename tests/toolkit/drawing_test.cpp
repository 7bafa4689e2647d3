// What rows and gradients draw, call by call.
#include <gtest/gtest.h>

#include <algorithm>

#include "settings/toolkit/draw_list.h"
#include "settings/toolkit/drop_list.h"
#include "settings/toolkit/gradient.h"
#include "toolkit/combo_stage.h"
#include "toolkit/drawing_stage.h"

namespace {

using Journal = std::vector<std::string>;

const auto kDC = DrawingStage::kDC;
constexpr platform::Rect kRow = {10, 20, 110, 45};

std::string Line(std::intptr_t x, std::intptr_t y, std::intptr_t endX, std::intptr_t endY,
                 std::intptr_t colour) {
    return Said("line", {x, y, endX, endY, colour});
}

bool Drew(const Journal& journal, const std::string& what) {
    for (const std::string& line : journal) {
        if (line.starts_with(what + " ")) return true;
    }
    return false;
}

}  // namespace

TEST(Gradient, columns_go_from_left_to_right_when_top_and_bottom_are_equal) {
    DrawingStage stage;
    DrawGradient(kDC, {5, 7, 9, 12}, 0x00FF00, 0xFF0064, 0x00FF00, 0xFF0064);
    EXPECT_EQ(stage.journal, (Journal{Line(5, 7, 5, 12, 0x00FF00), Line(6, 7, 6, 12, 0x3FC019),
                                      Line(7, 7, 7, 12, 0x7F8032), Line(8, 7, 8, 12, 0xBF404B)}));
}

TEST(Gradient, rows_go_from_top_to_bottom_otherwise) {
    DrawingStage stage;
    DrawGradient(kDC, {5, 7, 9, 9}, 0x000010, 0x000010, 0x000020, 0x000020);
    EXPECT_EQ(stage.journal, (Journal{Line(5, 7, 9, 7, 0x10), Line(5, 8, 9, 8, 0x18)}));
}

TEST(Gradient, four_different_corners_are_rows_of_the_platforms_own) {
    DrawingStage stage;
    DrawGradient(kDC, {5, 7, 9, 9}, 0x030201, 0x060504, 0x030205, 0x060508);
    EXPECT_EQ(stage.journal, (Journal{"vertex 5 7 256 512 768", "vertex 9 8 1024 1280 1536",
                                      "vertex 5 8 768 512 768", "vertex 9 9 1536 1280 1536"}));
}

TEST(Gradient, one_column_has_only_its_left_colour_and_none_draws_nothing) {
    DrawingStage stage;
    DrawGradient(kDC, {5, 7, 6, 9}, 0x11, 0x99, 0x11, 0x99);
    EXPECT_EQ(stage.Taken(), Journal{Line(5, 7, 5, 9, 0x11)});
    for (const platform::Rect& rect : {platform::Rect{5, 7, 5, 9}, {6, 7, 5, 9}}) {
        DrawGradient(kDC, rect, 0x11, 0x99, 0x11, 0x99);
        EXPECT_TRUE(stage.journal.empty());
    }
    DrawGradient(kDC, {5, 7, 9, 7}, 0x11, 0x11, 0x99, 0x99);
    EXPECT_TRUE(stage.journal.empty());
}

TEST(Gradient, a_line_of_one_colour_is_a_pens) {
    DrawingStage stage;
    DrawGradientLine(kDC, 3, 8, 5, 0x77, 0x77);
    DrawGradientLine(kDC, 3, 8, 5, 0x77, 0x78);
    EXPECT_EQ(stage.journal,
              (Journal{Line(3, 5, 9, 5, 0x77), "vertex 3 5 30464 0 0", "vertex 9 6 30720 0 0"}));
}

TEST(DrawList, an_element_is_drawn_when_the_masked_state_is_its_value) {
    struct Row {
        DrawWhen when;
        std::uint32_t state;
        bool drawn;
    };
    constexpr Row kRows[] = {
        {{0, 0}, 0, true},       {{0, 0}, 0xFFFFFFFF, true}, {{4, 4}, 4, true},    {{4, 4}, 8, false},
        {{4, 4}, 4 | 64, true},  {{12, 8}, 8, true},         {{12, 8}, 12, false}, {{0, 1}, 1, false},
        {{4 | 256, 4}, 4, true}, {{4 | 256, 4}, 260, false},
    };
    for (const Row& row : kRows) {
        DrawingStage stage;
        XDrawList list;
        list.AddBackground(0x123456, row.when);
        list.SetState(row.state);
        list.Draw(kDC, kRow);
        EXPECT_EQ(stage.journal.size(), row.drawn ? 1U : 0U) << row.when.mask << " " << row.state;
    }
}

TEST(DrawList, elements_are_drawn_in_order_from_left_to_right_in_the_middle) {
    DrawingStage stage;
    Faulty<platform::DuplicateIcon> duplicate;
    Faulty<platform::DestroyIcon> destroy;
    duplicate.Replace([](platform::Icon icon) { return icon; });
    XDrawList list;
    list.AddBackground(0x123456);
    list.AddIcon(XIcon(Fake<platform::Icon>(77)), 4, 16);
    list.AddText(u"a text", 13, {.face = u"Some Face", .pixels = 14, .bold = true});
    list.Draw(kDC, kRow);
    EXPECT_EQ(stage.journal, (Journal{Said("fill", {10, 20, 110, 45, 0x123456}), "icon 14 24 77 16 16",
                                      "font 14 1", Said("text colour", {0xC0008}), "text 43 20 107 45"}));
    EXPECT_EQ(stage.texts, std::vector<std::u16string>{u"a text"});
    EXPECT_EQ(stage.faces, std::vector<std::u16string>{u"Some Face"});
}

TEST(DrawList, a_font_without_a_face_is_Tahoma) {
    DrawingStage stage;
    XDrawList list;
    list.AddText(u"a text", 0, {});
    list.Draw(kDC, kRow);
    EXPECT_EQ(stage.faces, std::vector<std::u16string>{u"Tahoma"});
}

TEST(DrawList, a_row_without_room_draws_no_text_and_a_low_one_a_smaller_icon) {
    DrawingStage stage;
    Faulty<platform::DuplicateIcon> duplicate;
    Faulty<platform::DestroyIcon> destroy;
    duplicate.Replace([](platform::Icon icon) { return icon; });
    XDrawList list;
    list.AddIcon(XIcon(Fake<platform::Icon>(77)), 4, 16);
    list.AddText(u"a text", 13, {});
    list.Draw(kDC, {0, 0, 36, 11});
    EXPECT_EQ(stage.journal, Journal{"icon 4 0 77 11 11"});
}

TEST(DropListDrawing, a_row_is_background_frame_when_selected_icon_and_text) {
    DrawingStage drawing;
    ComboStage stage(false);
    Faulty<platform::DuplicateIcon> duplicate;
    Faulty<platform::DestroyIcon> destroy;
    duplicate.Replace([](platform::Icon icon) { return icon; });
    XDropList list;
    list.SetNoScale(true);
    list.Attach(ComboStage::kCombo);
    const XIcon icon(Fake<platform::Icon>(77));
    list.AddItem(u"a row", &icon);
    platform::DrawItemRecord record = {};
    record.dc = kDC;
    record.rect = kRow;
    list.DrawItem(record);
    EXPECT_EQ(drawing.journal.front(), Said("fill", {10, 20, 110, 45, 0xC0005})) << "the platform's colour";
    EXPECT_FALSE(Drew(drawing.journal, "round"));
    EXPECT_TRUE(Drew(drawing.journal, "icon"));
    EXPECT_TRUE(Drew(drawing.journal, "text"));
    drawing.Taken();
    record.itemState = 1;
    list.DrawItem(record);
    EXPECT_TRUE(Drew(drawing.journal, "round"));
    EXPECT_TRUE(Drew(drawing.journal, "line")) << "the gradient";
}

TEST(DropListDrawing, the_state_word_says_selected_focused_and_in_the_list) {
    struct Row {
        std::uint32_t itemState, word;
    };
    constexpr Row kRows[] = {
        {0, 8 | 128 | 256}, {1, 4 | 128 | 256}, {0x10, 8 | 64 | 256},    {0x11, 4 | 64 | 256},
        {0x1000, 8 | 128},  {0x1011, 4 | 64},   {0xEFEE, 8 | 128 | 256},  // what else the platform says changes nothing
    };
    DrawingStage drawing;
    ComboStage stage(false);
    XDropList list;
    list.SetNoScale(true);
    list.Attach(ComboStage::kCombo);
    list.AddItem(u"a row", nullptr);
    for (const Row& row : kRows) {
        platform::DrawItemRecord record = {};
        record.itemState = row.itemState;
        list.DrawItem(record);
        EXPECT_EQ(list.Item(0)->drawing.State(), row.word) << std::hex << row.itemState;
    }
}

TEST(DropListDrawing, no_row_or_one_behind_the_last_is_background) {
    DrawingStage drawing;
    ComboStage stage(false);
    XDropList list;
    list.SetNoScale(true);
    list.Attach(ComboStage::kCombo);
    list.AddItem(u"a row", nullptr);
    platform::DrawItemRecord record = {};
    record.dc = kDC;
    record.rect = kRow;
    for (const std::uint32_t item : {platform::kNoItem, 1U, 0x80000000U}) {
        record.itemId = item;
        list.DrawItem(record);
        EXPECT_EQ(drawing.Taken(), Journal{Said("fill", {10, 20, 110, 45, 0xC0005})});
    }
    list.SetBackColour(0x445566);
    list.DrawItem(record);
    EXPECT_EQ(drawing.Taken(), Journal{Said("fill", {10, 20, 110, 45, 0x445566})});
}

TEST(DropListDrawing, a_disabled_combo_box_has_its_text_in_grey_and_keeps_the_colour) {
    DrawingStage drawing;
    ComboStage stage(false);
    XDropList list;
    list.SetNoScale(true);
    list.Attach(ComboStage::kCombo);
    list.AddItem(u"a row", nullptr);
    *list.Item(0)->drawing.TextColour() = 0x0000FF;
    platform::DrawItemRecord record = {};
    record.rect = kRow;
    stage.isEnabled = false;
    list.DrawItem(record);
    const Journal disabled = drawing.Taken();
    EXPECT_NE(std::find(disabled.begin(), disabled.end(), Said("text colour", {0xC0C0C0})), disabled.end());
    EXPECT_EQ(*list.Item(0)->drawing.TextColour(), 0x0000FFU);
    stage.isEnabled = true;
    list.DrawItem(record);
    const Journal enabled = drawing.Taken();
    EXPECT_NE(std::find(enabled.begin(), enabled.end(), Said("text colour", {0x0000FF})), enabled.end());
}

TEST(DropListDrawing, the_list_claims_its_own_rows_among_its_parents_messages) {
    struct Row {
        std::uint32_t message;
        platform::WordParameter controlId;
        bool hasRecord, claimed;
    };
    constexpr Row kRows[] = {
        {platform::kMessageDrawItem, ComboStage::kControlId, true, true},
        {platform::kMessageDrawItem, ComboStage::kControlId + 1, true, false},
        {platform::kMessageDrawItem, ComboStage::kControlId, false, false},
        {platform::kMessageCommand, ComboStage::kControlId, true, false},
    };
    DrawingStage drawing;
    ComboStage stage(false);
    XDropList list;
    list.SetNoScale(true);
    platform::DrawItemRecord record = {};
    const auto show = [&](const Row& row) {
        std::int32_t handled = 0;
        const auto value = row.hasRecord ? reinterpret_cast<platform::LongParameter>(&record) : 0;
        EXPECT_EQ(list.OnParentMessage(row.message, row.controlId, value, &handled), handled);
        return handled != 0;
    };
    EXPECT_FALSE(show(kRows[0])) << "nothing is attached";
    list.Attach(ComboStage::kCombo);
    for (const Row& row : kRows) EXPECT_EQ(show(row), row.claimed) << row.message << " " << row.controlId;
}
