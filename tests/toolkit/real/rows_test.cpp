// Gradients and rows as pixels.
#include <gtest/gtest.h>

#include "settings/toolkit/draw_list.h"
#include "settings/toolkit/drop_list.h"
#include "settings/toolkit/gradient.h"
#include "support/faults.h"
#include "support/temp_folder.h"
#include "toolkit/real/gauge.h"
#include "toolkit/real/icon_files.h"

namespace {

constexpr platform::Colour kWhite = 0xFFFFFF, kGreen = 0x00C000;
constexpr DrawFrame kFrame = {0xFFFAEE, 0xDDAC84, 4, 0xFEF4EB, 0xFEF4EB, 0xFCDBC1, 0xFCDBC1};

int Channel(platform::Colour colour, int shift) {
    return static_cast<int>(colour >> shift & 0xFF);
}

bool IsInk(platform::Colour colour) {
    return colour != kWhite;
}

XIcon GreenIcon() {
    const TempFolder folder;
    XIcon icon;
    icon.Load(folder.Write(u"green.ico", IconFile({16, 32}, kGreen)).c_str());
    EXPECT_NE(icon.Handle(), nullptr);
    return icon;
}

platform::DrawItemRecord Record(platform::DeviceContext dc, const platform::Rect& rect,
                                std::uint32_t itemState = 0) {
    platform::DrawItemRecord record = {};
    record.dc = dc;
    record.rect = rect;
    record.itemState = itemState;
    return record;
}

}  // namespace

TEST(RealGradient, columns_have_the_colours_of_whole_steps_and_stay_inside) {
    const Canvas canvas(40, 20);
    DrawGradient(canvas.DC(), {5, 4, 35, 14}, 0x00FF00, 0xFF0064, 0x00FF00, 0xFF0064);
    EXPECT_EQ(canvas.BoundsOf(IsInk), (platform::Rect{5, 4, 35, 14}));
    for (int x = 0; x < 30; ++x) {
        const int red = 0x64 * x / 30, green = 0xFF - 0xFF * x / 30, blue = 0xFF * x / 30;
        const auto expected = static_cast<platform::Colour>(blue << 16 | green << 8 | red);
        for (const int y : {4, 13}) EXPECT_EQ(canvas.At(5 + x, y), expected) << x;
    }
}

TEST(RealGradient, rows_change_from_top_to_bottom_and_within_themselves) {
    const Canvas canvas(40, 20);
    DrawGradient(canvas.DC(), {5, 4, 35, 14}, 0x0000FF, 0x00FF00, 0xFF0000, 0xFFFF00);
    EXPECT_EQ(canvas.BoundsOf(IsInk), (platform::Rect{5, 4, 35, 14}));
    EXPECT_EQ(canvas.At(5, 4), 0x0000FFU);
    for (int y = 4; y < 14; ++y) {
        EXPECT_NEAR(Channel(canvas.At(5, y), 16), 0xFF * (y - 4) / 10, 1) << y;
        EXPECT_NEAR(Channel(canvas.At(34, y), 8), 0xFF, 0xFF / 20) << y;
        EXPECT_NEAR(Channel(canvas.At(20, y), 8), 0xFF / 2, 3) << y;
    }
}

TEST(RealGradient, one_column_has_only_the_left_colour) {
    const Canvas canvas(10, 10);
    DrawGradient(canvas.DC(), {3, 2, 4, 8}, 0x112233, 0x998877, 0x112233, 0x998877);
    EXPECT_EQ(canvas.BoundsOf([](platform::Colour c) { return c == 0x112233; }),
              (platform::Rect{3, 2, 4, 8}));
    EXPECT_EQ(canvas.BoundsOf(IsInk), (platform::Rect{3, 2, 4, 8}));
}

TEST(RealRow, the_frame_is_an_outline_a_soft_line_and_a_gradient_with_round_corners) {
    const Canvas canvas(120, 40);
    XDrawList list;
    list.AddBackground(0xABCDEF);
    list.AddFrame(kFrame);
    list.Draw(canvas.DC(), {10, 5, 110, 30});
    EXPECT_EQ(canvas.BoundsOf(IsInk), (platform::Rect{10, 5, 110, 30}));
    EXPECT_EQ(canvas.At(60, 5), 0xABCDEFU);
    EXPECT_EQ(canvas.At(60, 6), kFrame.outline);
    EXPECT_EQ(canvas.At(60, 28), kFrame.outline);
    EXPECT_EQ(canvas.At(11, 17), kFrame.outline);
    EXPECT_EQ(canvas.At(108, 17), kFrame.outline);
    EXPECT_EQ(canvas.At(60, 7), kFrame.fill);
    EXPECT_EQ(canvas.At(12, 17), kFrame.fill);
    EXPECT_EQ(canvas.At(60, 8), kFrame.topLeft);
    EXPECT_LT(Channel(canvas.At(60, 26), 0), Channel(canvas.At(60, 9), 0)) << "darker below";
    EXPECT_EQ(canvas.At(11, 6), 0xABCDEFU) << "a corner is round";
    EXPECT_EQ(canvas.At(108, 28), 0xABCDEFU);
}

TEST(RealRow, icon_and_text_stand_in_the_middle_at_every_resolution) {
    const XIcon icon = GreenIcon();
    for (const std::int32_t dpi : {96, 120, 144, 192}) {
        const auto scaled = [dpi](std::int32_t pixels) { return pixels * dpi / 96; };
        const std::int32_t size = scaled(16), height = scaled(25);
        const Canvas canvas(400, 80);
        XDrawList list;
        list.AddBackground(kWhite);
        list.AddIcon(icon, scaled(4), size);
        list.AddText(u"HHHH", scaled(13), {.face = {}, .pixels = scaled(11)});
        list.Draw(canvas.DC(), {20, 10, 380, 10 + height});
        const platform::Rect drawn = canvas.BoundsOf([](platform::Colour c) { return c == kGreen; });
        const std::int32_t top = 10 + (height - size) / 2, left = 20 + scaled(4);
        EXPECT_EQ(drawn, (platform::Rect{left, top, left + size, top + size})) << dpi;
        const platform::Rect text =
            canvas.BoundsOf([](platform::Colour c) { return Channel(c, 0) < 0x60 && Channel(c, 8) < 0x60; });
        EXPECT_GE(text.left, left + size + scaled(13)) << dpi;
        EXPECT_LE(text.left, left + size + scaled(13) + scaled(3)) << dpi;
        EXPECT_NEAR((text.top + text.bottom) / 2, 10 + height / 2, scaled(2)) << dpi;
        EXPECT_NEAR(text.bottom - text.top, scaled(8), scaled(2)) << dpi;
    }
}

TEST(RealRow, a_text_that_is_too_wide_ends_in_dots_inside_the_row) {
    const auto widthOf = [](const XString& text) {
        const Canvas canvas(300, 40);
        XDrawList list;
        list.AddText(text, 0, {});
        list.Draw(canvas.DC(), {0, 0, 100, 30});
        const platform::Rect bounds = canvas.BoundsOf(IsInk);
        EXPECT_GT(bounds.right, 0);
        return bounds.right;
    };
    EXPECT_LT(widthOf(u"short"), 60);
    XString wide;
    for (int i = 0; i < 50; ++i) wide.Append(u"W");
    EXPECT_GT(widthOf(wide), 60);
    EXPECT_LE(widthOf(wide), 97);
    // The dots are low: nothing of the last pixels before the end is above the middle.
    const Canvas canvas(300, 40);
    XDrawList list;
    list.AddText(wide, 0, {});
    list.Draw(canvas.DC(), {0, 0, 100, 30});
    const std::int32_t end = canvas.BoundsOf(IsInk).right;
    for (std::int32_t x = end - 4; x < end; ++x) {
        for (std::int32_t y = 0; y < 15; ++y) EXPECT_EQ(canvas.At(x, y), kWhite) << x << " " << y;
    }
}

TEST(RealRow, a_disabled_combo_box_has_grey_text) {
    XDropList list;
    list.SetNoScale(true);
    list.AddItem(u"HHHH", nullptr);
    const platform::Colour usual = *list.Item(0)->drawing.TextColour();
    const auto darkest = [&](bool isEnabled) {
        Faulty<platform::IsWindowEnabled> enabled;
        enabled.Replace([=](platform::Window) { return isEnabled; });
        const Canvas canvas(200, 30);
        list.DrawItem(Record(canvas.DC(), {0, 0, 200, 25}));
        int lowest = 0xFF;
        for (int y = 0; y < 25; ++y) {
            for (int x = 0; x < 200; ++x) lowest = std::min(lowest, Channel(canvas.At(x, y), 8));
        }
        return lowest;
    };
    EXPECT_LT(darkest(true), 0x60);
    EXPECT_EQ(darkest(false), 0xC0);
    EXPECT_EQ(*list.Item(0)->drawing.TextColour(), usual);
    EXPECT_LT(darkest(true), 0x60);
}

TEST(RealRow, the_frame_shows_only_on_selected_rows) {
    XDropList list;
    list.SetNoScale(true);
    list.SetBackColour(kWhite);
    list.AddItem(u"a row", nullptr);
    for (const std::uint32_t state : {0U, 1U, 0x1000U, 0x1001U}) {
        const Canvas canvas(200, 30, 0);
        list.DrawItem(Record(canvas.DC(), {0, 0, 200, 25}, state));
        EXPECT_EQ(canvas.At(100, 1) == kFrame.outline, (state & 1) != 0) << state;
        EXPECT_EQ(canvas.At(100, 0), kWhite) << state;
        EXPECT_EQ(canvas.At(100, 26), 0U) << "nothing below the row";
    }
}

TEST(RealRow, drawing_leaves_no_object_behind) {
    const XIcon icon = GreenIcon();
    const Canvas canvas(200, 30);
    ExpectNothingLeft([&] {
        XDropList list;
        list.SetNoScale(true);
        list.AddItem(u"a row", &icon);
        list.DrawItem(Record(canvas.DC(), {0, 0, 200, 25}, 1));
        DrawGradient(canvas.DC(), {0, 0, 20, 20}, 1, 2, 3, 4);
    });
    EXPECT_EQ(icon.GetWidth(), 16) << "the caller's icon stays";
}
