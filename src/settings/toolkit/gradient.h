// Gradients: a rectangle between four colours, a line between two.
#pragma once

#include <cstdint>

#include "platform/drawing.h"

// Fills a rectangle. When the upper colours equal those below, column by column from left to right;
// otherwise row by row from top to bottom. A step's colour is that of its beginning: the far colours
// themselves are just outside, and one row or column has the near colour alone.
void DrawGradient(platform::DeviceContext dc, const platform::Rect& rect, platform::Colour topLeft,
                  platform::Colour topRight, platform::Colour bottomLeft, platform::Colour bottomRight);

// One row of pixels, from `firstX` to `lastX` inclusive.
void DrawGradientLine(platform::DeviceContext dc, std::int32_t firstX, std::int32_t lastX, std::int32_t y,
                      platform::Colour left, platform::Colour right);
