// A rectangle in one colour.
#pragma once

#include "platform/drawing.h"

inline void FillWith(platform::DeviceContext dc, const platform::Rect& rect, platform::Colour colour) {
    const platform::Brush brush = platform::CreateSolidBrush(colour);
    if (!brush) return;
    platform::FillRect(dc, &rect, brush);
    platform::DeleteObject(brush);
}
