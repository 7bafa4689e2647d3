// XDrawFont: what font a text is drawn in.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"
#include "platform/drawing.h"

struct XDrawFont {
    static constexpr const char16_t* kFallbackFace = u"Tahoma";
    static constexpr std::int32_t kUsualPixels = 11;  // 8 points at 96 pixels to the inch

    XString face;                        // empty for the fallback
    std::int32_t pixels = kUsualPixels;  // the height of its letters' square
    bool bold = false;

    // A new font; the caller deletes it. Null when there is none.
    platform::Font Create() const;
};
