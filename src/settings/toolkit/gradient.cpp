// A step's colour is the near colour plus the way to the far one, in whole numbers and channel by channel.
// Steps along the larger change are lines of one pen; only rows that change in themselves need the platform's
// own gradient.
#include "settings/toolkit/gradient.h"

#include <algorithm>

#include "settings/toolkit/drawing_scope.h"

namespace {

constexpr int kChannelBits = 8;

std::int32_t Channel(platform::Colour colour, int shift) {
    return static_cast<std::int32_t>(colour >> shift & 0xFF);
}

platform::Colour ColourAt(platform::Colour near, platform::Colour far, std::int32_t step,
                          std::int32_t steps) {
    platform::Colour colour = 0;
    for (int shift = 0; shift < 3 * kChannelBits; shift += kChannelBits) {
        const std::int64_t from = Channel(near, shift), to = Channel(far, shift);
        const std::int64_t channel = from + (to - from) * step / steps;
        colour |= static_cast<platform::Colour>(channel) << shift;
    }
    return colour;
}

// The end is not drawn.
void DrawLine(platform::DeviceContext dc, std::int32_t x, std::int32_t y, std::int32_t endX,
              std::int32_t endY, platform::Colour colour) {
    const DrawingTool pen(dc, platform::CreateSolidPen(colour));
    platform::MoveToEx(dc, x, y);
    platform::LineTo(dc, endX, endY);
}

// Vertices take 16 bits a channel; a colour's stand in the high byte.
platform::GradientVertex Vertex(std::int32_t x, std::int32_t y, platform::Colour colour) {
    const auto channel = [colour](int shift) {
        return static_cast<std::uint16_t>(Channel(colour, shift) << kChannelBits);
    };
    return {x, y, channel(0), channel(8), channel(16), 0};
}

}  // namespace

void DrawGradient(platform::DeviceContext dc, const platform::Rect& rect, platform::Colour topLeft,
                  platform::Colour topRight, platform::Colour bottomLeft, platform::Colour bottomRight) {
    if (topLeft == bottomLeft && topRight == bottomRight) {
        const std::int32_t width = std::max(rect.right - rect.left, 1);
        for (std::int32_t x = rect.left; x < rect.right; ++x) {
            const platform::Colour colour = ColourAt(topLeft, topRight, x - rect.left, width);
            DrawLine(dc, x, rect.top, x, rect.bottom, colour);
        }
        return;
    }
    const std::int32_t height = std::max(rect.bottom - rect.top, 1);
    for (std::int32_t y = rect.top; y < rect.bottom; ++y) {
        const std::int32_t step = y - rect.top;
        DrawGradientLine(dc, rect.left, rect.right - 1, y, ColourAt(topLeft, bottomLeft, step, height),
                         ColourAt(topRight, bottomRight, step, height));
    }
}

void DrawGradientLine(platform::DeviceContext dc, std::int32_t firstX, std::int32_t lastX, std::int32_t y,
                      platform::Colour left, platform::Colour right) {
    if (left == right) {
        DrawLine(dc, firstX, y, lastX + 1, y, left);
        return;
    }
    const platform::GradientVertex corners[2] = {Vertex(firstX, y, left), Vertex(lastX + 1, y + 1, right)};
    platform::GradientFill(dc, &corners);
}
