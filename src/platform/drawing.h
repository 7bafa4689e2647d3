// Drawing: contexts, bitmaps, brushes, pens, fonts and icons of the system's own kind.
//
// Windows has them. POSIX has none: there every object is null and every call refuses. Whoever made an object
// deletes it, not while it is selected into a context. Colours are blue, green, red from the high byte down.
#pragma once

#include <cstdint>

#include "platform/operation.h"
#include "platform/window.h"

namespace platform {

// A bitmap, brush, pen or font.
struct DrawingObject;
using Bitmap = DrawingObject*;
using Brush = DrawingObject*;
using Pen = DrawingObject*;
using Font = DrawingObject*;
using Colour = std::uint32_t;

struct Size {
    std::int32_t width = 0, height = 0;
};

// What an icon is made of; both bitmaps are the caller's to delete.
struct IconParts {
    Bitmap mask = nullptr;
    Bitmap colour = nullptr;
};

// One corner of a gradient. Channels are 16 bits wide.
struct GradientVertex {
    std::int32_t x, y;
    std::uint16_t red, green, blue, alpha;
};

// Of a context, for GetDeviceCaps.
inline constexpr std::int32_t kPixelsPerInchX = 88;
inline constexpr std::int32_t kPixelsPerInchY = 90;

inline constexpr std::int32_t kSystemColourWindow = 5;
inline constexpr std::int32_t kSystemColourWindowText = 8;

inline constexpr std::uint32_t kRasterCopy = 0x00CC0020;

// How text is laid into its rectangle.
inline constexpr std::uint32_t kTextLeft = 0;
inline constexpr std::uint32_t kTextMiddle = 4;
inline constexpr std::uint32_t kTextSingleLine = 0x20;
inline constexpr std::uint32_t kTextNoPrefix = 0x800;
inline constexpr std::uint32_t kTextEllipsis = 0x8000;

extern Operation<DeviceContext(Window window)> GetDC;  // the screen's for null
extern Operation<bool(Window window, DeviceContext dc)> ReleaseDC;
extern Operation<std::int32_t(DeviceContext dc, std::int32_t what)> GetDeviceCaps;
extern Operation<DeviceContext(DeviceContext like)> CreateCompatibleDC;
extern Operation<bool(DeviceContext dc)> DeleteDC;
extern Operation<std::int32_t(DeviceContext dc)> SaveDC;
extern Operation<bool(DeviceContext dc, std::int32_t saved)> RestoreDC;
extern Operation<bool(DeviceContext dc, const Rect* rect)> IntersectClipRect;

extern Operation<Bitmap(DeviceContext like, std::int32_t width, std::int32_t height)> CreateCompatibleBitmap;
extern Operation<DrawingObject*(DeviceContext dc, DrawingObject* object)>
    SelectObject;  // what it held before
extern Operation<bool(DrawingObject* object)> DeleteObject;
extern Operation<bool(Bitmap bitmap, Size* size)> GetBitmapSize;  // by GetObjectW
extern Operation<bool(DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
                      std::int32_t height, DeviceContext source, std::int32_t sourceX, std::int32_t sourceY,
                      std::uint32_t rasterOperation)>
    BitBlt;

extern Operation<Colour(std::int32_t index)> GetSysColor;
extern Operation<Brush(Colour colour)> CreateSolidBrush;  // by CreateBrushIndirect
extern Operation<Pen(Colour colour)> CreateSolidPen;      // one pixel wide, by CreatePen
extern Operation<bool(DeviceContext dc, const Rect* rect, Brush brush)> FillRect;
extern Operation<bool(DeviceContext dc, const Rect* rect, std::int32_t cornerWidth,
                      std::int32_t cornerHeight)>
    RoundRect;  // outlined with the pen, filled with the brush
// Everything outside the rounded rectangle is left alone until RestoreDC.
extern Operation<bool(DeviceContext dc, const Rect* rect, std::int32_t cornerWidth,
                      std::int32_t cornerHeight)>
    ClipToRoundRect;
extern Operation<bool(DeviceContext dc, std::int32_t x, std::int32_t y)> MoveToEx;
extern Operation<bool(DeviceContext dc, std::int32_t x, std::int32_t y)> LineTo;  // its end is not drawn
// One rectangle between two corners, changing from left to right.
extern Operation<bool(DeviceContext dc, const GradientVertex (*corners)[2])> GradientFill;
extern Operation<Colour(DeviceContext dc, std::int32_t x, std::int32_t y)> GetPixel;

// A font of this face, so many pixels high.
extern Operation<Font(const char16_t* face, std::int32_t pixels, bool bold)> CreateFontIndirectW;
extern Operation<bool(DeviceContext dc, Colour colour)> SetTextColor;
extern Operation<bool(DeviceContext dc)> SetTransparentText;  // by SetBkMode
extern Operation<bool(DeviceContext dc, const char16_t* text, std::int32_t length, Size* size)>
    GetTextExtentPoint32W;
extern Operation<bool(DeviceContext dc, const char16_t* text, std::int32_t length, const Rect* rect,
                      std::uint32_t layout)>
    DrawTextW;

extern Operation<Icon(Icon icon)> DuplicateIcon;
extern Operation<bool(Icon icon)> DestroyIcon;
extern Operation<Icon(ModuleHandle module, const char16_t* file, std::uint32_t index)> ExtractIconW;
// From an icon file, in the size asked for.
extern Operation<Icon(const char16_t* file, std::int32_t width, std::int32_t height)>
    LoadIconFile;  // by LoadImageW
extern Operation<bool(Icon icon, IconParts* parts)> GetIconInfo;
extern Operation<bool(DeviceContext dc, std::int32_t x, std::int32_t y, Icon icon, std::int32_t width,
                      std::int32_t height)>
    DrawIconEx;

// number * numerator / denominator, rounded to the nearest; -1 for a denominator of 0.
extern Operation<std::int32_t(std::int32_t number, std::int32_t numerator, std::int32_t denominator)> MulDiv;

}  // namespace platform
