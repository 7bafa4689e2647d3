// Real panels: that everything is there, nothing lies over anything else, and no text is cut off, in the fonts of a
// dialog at 96, 120, 144 and 192 dots per inch.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "panels/panel_stage.h"
#include "panels/panel_table.h"
#include "panels/panel_user.h"

using namespace platform;

namespace {

// What a control's own parts take from its text, in pixels at 96 dots per inch.
constexpr std::int32_t kComboParts = 25, kBoxParts = 18, kEditParts = 6;
constexpr std::int32_t kPoints[] = {8, 10, 12, 16};  // as 8 points are at 96, 120, 144 and 192

std::int32_t Width(Window control, std::u16string_view text) {
    const DeviceContext dc = GetDC(control);
    const auto font = reinterpret_cast<Font>(SendMessageW(control, kMessageGetFont, 0, 0));
    EXPECT_NE(font, nullptr);
    DrawingObject* const before = SelectObject(dc, font);
    Size size;
    EXPECT_TRUE(GetTextExtentPoint32W(dc, text.data(), static_cast<std::int32_t>(text.size()), &size));
    SelectObject(dc, before);
    ReleaseDC(control, dc);
    return size.width;
}

std::u16string WithoutMark(std::u16string_view label) {
    std::u16string text(label);
    std::erase(text, u'&');
    return text;
}

Rect PlaceOf(Window window) {
    Rect place;
    EXPECT_TRUE(GetWindowRect(window, &place));
    return place;
}

bool Overlap(const Rect& one, const Rect& other) {
    return one.left < other.right && other.left < one.right && one.top < other.bottom &&
           other.top < one.bottom;
}

// Arrows stand within the edge of their number.
bool AreOneNumber(Window one, Window other) {
    const auto id = [](Window control) { return GetWindowLongPtrW(control, kSlotControlId); };
    return std::abs(id(one) - id(other)) == kPanelArrows - kPanelControl;
}

bool Holds(const Rect& outer, const Rect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

std::vector<Window> ChildrenOf(Window window) {
    std::vector<Window> children;
    for (Window child = GetWindow(window, kRelatedChild); child; child = GetWindow(child, kRelatedNext))
        children.push_back(child);
    return children;
}

class PanelLayout : public testing::TestWithParam<ModuleWithPanel> {
  protected:
    const std::unique_ptr<clPanelOwner> owner = GetParam().make();
    const std::span<const clPanelRow> rows = owner->PanelRows();
    PanelUser user{owner->Panel()};

    void ExpectRoom(std::size_t row, clPanelControlId part, std::u16string_view text, std::int32_t parts) {
        const Window control = user.Control(row, part);
        ASSERT_NE(control, nullptr);
        const Rect place = PlaceOf(control);
        EXPECT_LE(Width(control, text) + parts, place.right - place.left)
            << testing::PrintToString(std::u16string(text));
    }

    void ExpectRoomForAll(std::size_t row, std::int32_t points) {
        const clPanelRow& its = rows[row];
        const auto scaled = [&](std::int32_t pixels) { return MulDiv(pixels, points, 8); };
        if (its.control == PanelControl::check)
            ExpectRoom(row, kPanelControl, WithoutMark(its.label), scaled(kBoxParts));
        else
            ExpectRoom(row, kPanelLabel, WithoutMark(its.label), 0);
        if (*its.unit != 0) ExpectRoom(row, kPanelUnit, its.unit, 0);
        if (its.control == PanelControl::check) return;
        for (const clPanelChoice& choice : its.choices)
            ExpectRoom(row, kPanelControl, choice.shown, scaled(kComboParts));
        if (its.choices.empty()) ExpectRoom(row, kPanelControl, u"-100.25", scaled(kEditParts));
    }
};

}  // namespace

TEST_P(PanelLayout, Has_room_for_every_text_and_nothing_lies_over_anything) {
    for (const std::int32_t points : kPoints) {
        SCOPED_TRACE(points);
        PanelStage stage(points);
        owner->Panel().Show(stage.Parent(), 20, 30, u"");
        const Window panel = owner->Panel().Window();
        ASSERT_NE(panel, nullptr);
        const std::vector<Window> controls = ChildrenOf(panel);
        EXPECT_GE(controls.size(), std::max<std::size_t>(rows.size(), 1));
        for (std::size_t i = 0; i < controls.size(); ++i) {
            EXPECT_TRUE(Holds(PlaceOf(panel), PlaceOf(controls[i]))) << i;
            for (std::size_t j = 0; j < i; ++j) {
                if (AreOneNumber(controls[i], controls[j])) continue;
                EXPECT_FALSE(Overlap(PlaceOf(controls[i]), PlaceOf(controls[j]))) << i << " and " << j;
            }
        }
        for (std::size_t row = 0; row < rows.size(); ++row) ExpectRoomForAll(row, points);
    }
}

TEST_P(PanelLayout, Stands_at_its_place_clear_of_the_buttons_of_a_form) {
    for (const std::int32_t points : kPoints) {
        SCOPED_TRACE(points);
        PanelStage stage(points);
        Rect offset = {17, 30, 0, 0};
        ASSERT_TRUE(MapDialogRect(stage.Parent(), &offset));
        owner->Panel().Show(stage.Parent(), offset.left, offset.top, u"");
        const Rect place = PlaceOf(owner->Panel().Window());
        Rect inside;
        ASSERT_TRUE(GetClientRect(stage.Parent(), &inside));
        EXPECT_LE(offset.left + place.right - place.left, inside.right);
        for (const Window button : {GetDlgItem(stage.Parent(), 1), GetDlgItem(stage.Parent(), 2)})
            EXPECT_FALSE(Overlap(place, PlaceOf(button)));
        owner->Panel().Remove();
    }
}

TEST_P(PanelLayout, Grows_with_the_font_of_its_parent) {
    std::int32_t width = 0;
    for (const std::int32_t points : kPoints) {
        PanelStage stage(points);
        owner->Panel().Show(stage.Parent(), 0, 0, u"");
        const Rect place = PlaceOf(owner->Panel().Window());
        EXPECT_GT(place.right - place.left, width);
        width = place.right - place.left;
        Rect units = {0, 0, kPanelWidth, 1};
        MapDialogRect(stage.Parent(), &units);
        EXPECT_NEAR(units.right, width, 2);
    }
}

INSTANTIATE_TEST_SUITE_P(Modules, PanelLayout, testing::ValuesIn(AllPanels()),
                         [](const auto& each) { return each.param.name; });
