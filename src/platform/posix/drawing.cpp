// There is no window layer here: nothing to draw with.
#include "platform/drawing.h"

#include <cstdlib>

namespace platform {

namespace {

template <class Result, class... Arguments>
Result None(Arguments...) {
    return Result();
}

std::int32_t Scaled(std::int32_t number, std::int32_t numerator, std::int32_t denominator) {
    if (denominator == 0) return -1;
    const std::int64_t product = std::int64_t{number} * numerator,
                       half = std::abs(std::int64_t{denominator}) / 2;
    const std::int64_t quotient = (product < 0 ? product - half : product + half) / denominator;
    const bool fits = quotient == static_cast<std::int32_t>(quotient);
    return fits ? static_cast<std::int32_t>(quotient) : -1;
}

}  // namespace

constinit Operation<DeviceContext(Window)> GetDC{&None<DeviceContext, Window>};
constinit Operation<bool(Window, DeviceContext)> ReleaseDC{&None<bool, Window, DeviceContext>};
constinit Operation<std::int32_t(DeviceContext, std::int32_t)> GetDeviceCaps{
    &None<std::int32_t, DeviceContext, std::int32_t>};
constinit Operation<DeviceContext(DeviceContext)> CreateCompatibleDC{&None<DeviceContext, DeviceContext>};
constinit Operation<bool(DeviceContext)> DeleteDC{&None<bool, DeviceContext>};
constinit Operation<std::int32_t(DeviceContext)> SaveDC{&None<std::int32_t, DeviceContext>};
constinit Operation<bool(DeviceContext, std::int32_t)> RestoreDC{&None<bool, DeviceContext, std::int32_t>};
constinit Operation<bool(DeviceContext, const Rect*)> IntersectClipRect{
    &None<bool, DeviceContext, const Rect*>};
constinit Operation<Bitmap(DeviceContext, std::int32_t, std::int32_t)> CreateCompatibleBitmap{
    &None<Bitmap, DeviceContext, std::int32_t, std::int32_t>};
constinit Operation<DrawingObject*(DeviceContext, DrawingObject*)> SelectObject{
    &None<DrawingObject*, DeviceContext, DrawingObject*>};
constinit Operation<bool(DrawingObject*)> DeleteObject{&None<bool, DrawingObject*>};
constinit Operation<bool(Bitmap, Size*)> GetBitmapSize{&None<bool, Bitmap, Size*>};
constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t, std::int32_t, std::int32_t, DeviceContext,
                         std::int32_t, std::int32_t, std::uint32_t)>
    BitBlt{&None<bool, DeviceContext, std::int32_t, std::int32_t, std::int32_t, std::int32_t, DeviceContext,
                 std::int32_t, std::int32_t, std::uint32_t>};
constinit Operation<Colour(std::int32_t)> GetSysColor{&None<Colour, std::int32_t>};
constinit Operation<Brush(Colour)> CreateSolidBrush{&None<Brush, Colour>};
constinit Operation<Pen(Colour)> CreateSolidPen{&None<Pen, Colour>};
constinit Operation<bool(DeviceContext, const Rect*, Brush)> FillRect{
    &None<bool, DeviceContext, const Rect*, Brush>};
constinit Operation<bool(DeviceContext, const Rect*, std::int32_t, std::int32_t)> RoundRect{
    &None<bool, DeviceContext, const Rect*, std::int32_t, std::int32_t>};
constinit Operation<bool(DeviceContext, const Rect*, std::int32_t, std::int32_t)> ClipToRoundRect{
    &None<bool, DeviceContext, const Rect*, std::int32_t, std::int32_t>};
constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t)> MoveToEx{
    &None<bool, DeviceContext, std::int32_t, std::int32_t>};
constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t)> LineTo{
    &None<bool, DeviceContext, std::int32_t, std::int32_t>};
constinit Operation<bool(DeviceContext, const GradientVertex (*)[2])> GradientFill{
    &None<bool, DeviceContext, const GradientVertex (*)[2]>};
constinit Operation<Colour(DeviceContext, std::int32_t, std::int32_t)> GetPixel{
    &None<Colour, DeviceContext, std::int32_t, std::int32_t>};
constinit Operation<Font(const char16_t*, std::int32_t, bool)> CreateFontIndirectW{
    &None<Font, const char16_t*, std::int32_t, bool>};
constinit Operation<bool(DeviceContext, Colour)> SetTextColor{&None<bool, DeviceContext, Colour>};
constinit Operation<bool(DeviceContext)> SetTransparentText{&None<bool, DeviceContext>};
constinit Operation<bool(DeviceContext, const char16_t*, std::int32_t, Size*)> GetTextExtentPoint32W{
    &None<bool, DeviceContext, const char16_t*, std::int32_t, Size*>};
constinit Operation<bool(DeviceContext, const char16_t*, std::int32_t, const Rect*, std::uint32_t)> DrawTextW{
    &None<bool, DeviceContext, const char16_t*, std::int32_t, const Rect*, std::uint32_t>};
constinit Operation<Icon(Icon)> DuplicateIcon{&None<Icon, Icon>};
constinit Operation<bool(Icon)> DestroyIcon{&None<bool, Icon>};
constinit Operation<Icon(ModuleHandle, const char16_t*, std::uint32_t)> ExtractIconW{
    &None<Icon, ModuleHandle, const char16_t*, std::uint32_t>};
constinit Operation<Icon(const char16_t*, std::int32_t, std::int32_t)> LoadIconFile{
    &None<Icon, const char16_t*, std::int32_t, std::int32_t>};
constinit Operation<bool(Icon, IconParts*)> GetIconInfo{&None<bool, Icon, IconParts*>};
constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t, Icon, std::int32_t, std::int32_t)>
    DrawIconEx{&None<bool, DeviceContext, std::int32_t, std::int32_t, Icon, std::int32_t, std::int32_t>};
constinit Operation<std::int32_t(std::int32_t, std::int32_t, std::int32_t)> MulDiv{&Scaled};

}  // namespace platform
