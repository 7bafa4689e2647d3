// A picture in memory to draw on, and how many drawing objects the process has.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "settings/toolkit/bitmap.h"
#include "settings/toolkit/fill.h"

class Canvas {
  public:
    Canvas(std::int32_t width, std::int32_t height, platform::Colour colour = 0xFFFFFF)
        : mSize{width, height} {
        mBitmap.Recreate(nullptr, width, height);
        EXPECT_NE(mBitmap.Context(), nullptr);
        FillWith(mBitmap.Context(), {0, 0, width, height}, colour);
    }

    platform::DeviceContext DC() const { return mBitmap.Context(); }
    platform::Colour At(std::int32_t x, std::int32_t y) const { return platform::GetPixel(DC(), x, y); }

    // The smallest rectangle that holds all pixels of which `asked` is true; empty at 0, 0 without any.
    template <class Asked>
    platform::Rect BoundsOf(Asked asked) const {
        platform::Rect bounds = {mSize.width, mSize.height, 0, 0};
        for (std::int32_t y = 0; y < mSize.height; ++y) {
            for (std::int32_t x = 0; x < mSize.width; ++x) {
                if (!asked(At(x, y))) continue;
                bounds = {std::min(bounds.left, x), std::min(bounds.top, y), std::max(bounds.right, x + 1),
                          std::max(bounds.bottom, y + 1)};
            }
        }
        return bounds.right == 0 ? platform::Rect() : bounds;
    }

  private:
    XBitmap mBitmap;
    platform::Size mSize;
};

// Found by its arguments.
namespace platform {
inline bool operator==(const Rect& one, const Rect& other) {
    return one.left == other.left && one.top == other.top && one.right == other.right &&
           one.bottom == other.bottom;
}
}  // namespace platform

// The highest number among 64 fresh drawing objects: numbers are used again, so it rises with what was left.
inline std::uintptr_t DrawingGauge() {
    std::vector<platform::Brush> brushes;
    std::uintptr_t highest = 0;
    for (int i = 0; i < 64; ++i) {
        brushes.push_back(platform::CreateSolidBrush(static_cast<platform::Colour>(i)));
        highest = std::max(highest, reinterpret_cast<std::uintptr_t>(brushes.back()) & 0xFFFF);
    }
    for (const platform::Brush brush : brushes) platform::DeleteObject(brush);
    return highest;
}
