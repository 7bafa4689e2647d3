// The system's own drawing objects.
#include "platform/drawing.h"

#include "platform/windows/native_window.h"

namespace platform {

static_assert(kPixelsPerInchX == LOGPIXELSX && kPixelsPerInchY == LOGPIXELSY &&
              kSystemColourWindow == COLOR_WINDOW && kSystemColourWindowText == COLOR_WINDOWTEXT &&
              kRasterCopy == SRCCOPY);
static_assert(kTextMiddle == DT_VCENTER && kTextSingleLine == DT_SINGLELINE && kTextNoPrefix == DT_NOPREFIX &&
              kTextEllipsis == DT_END_ELLIPSIS);

namespace {

DrawingObject* Drawing(HGDIOBJ object) {
    return static_cast<DrawingObject*>(object);
}

}  // namespace

constinit Operation<DeviceContext(Window)> GetDC{
    [](Window window) -> DeviceContext { return FromNative(::GetDC(Native(window))); }};

constinit Operation<bool(Window, DeviceContext)> ReleaseDC{
    [](Window window, DeviceContext dc) -> bool { return ::ReleaseDC(Native(window), Native(dc)) != 0; }};

constinit Operation<std::int32_t(DeviceContext, std::int32_t)> GetDeviceCaps{
    [](DeviceContext dc, std::int32_t what) -> std::int32_t { return ::GetDeviceCaps(Native(dc), what); }};

constinit Operation<DeviceContext(DeviceContext)> CreateCompatibleDC{
    [](DeviceContext like) -> DeviceContext { return FromNative(::CreateCompatibleDC(Native(like))); }};

constinit Operation<bool(DeviceContext)> DeleteDC{
    [](DeviceContext dc) -> bool { return ::DeleteDC(Native(dc)) != 0; }};

constinit Operation<std::int32_t(DeviceContext)> SaveDC{
    [](DeviceContext dc) -> std::int32_t { return ::SaveDC(Native(dc)); }};

constinit Operation<bool(DeviceContext, std::int32_t)> RestoreDC{
    [](DeviceContext dc, std::int32_t saved) -> bool { return ::RestoreDC(Native(dc), saved) != 0; }};

constinit Operation<bool(DeviceContext, const Rect*)> IntersectClipRect{
    [](DeviceContext dc, const Rect* rect) -> bool {
        return ::IntersectClipRect(Native(dc), rect->left, rect->top, rect->right, rect->bottom) != ERROR;
    }};

constinit Operation<Bitmap(DeviceContext, std::int32_t, std::int32_t)> CreateCompatibleBitmap{
    [](DeviceContext like, std::int32_t width, std::int32_t height) -> Bitmap {
        return Drawing(::CreateCompatibleBitmap(Native(like), width, height));
    }};

constinit Operation<DrawingObject*(DeviceContext, DrawingObject*)> SelectObject{
    [](DeviceContext dc, DrawingObject* object) -> DrawingObject* {
        return Drawing(::SelectObject(Native(dc), object));
    }};

constinit Operation<bool(DrawingObject*)> DeleteObject{
    [](DrawingObject* object) -> bool { return ::DeleteObject(object) != 0; }};

constinit Operation<bool(Bitmap, Size*)> GetBitmapSize{[](Bitmap bitmap, Size* size) -> bool {
    BITMAP record = {};
    if (::GetObjectW(bitmap, sizeof record, &record) == 0) return false;
    *size = {record.bmWidth, record.bmHeight};
    return true;
}};

constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t, std::int32_t, std::int32_t, DeviceContext,
                         std::int32_t, std::int32_t, std::uint32_t)>
    BitBlt{[](DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
              DeviceContext source, std::int32_t sourceX, std::int32_t sourceY,
              std::uint32_t rasterOperation) -> bool {
        return ::BitBlt(Native(target), x, y, width, height, Native(source), sourceX, sourceY,
                        rasterOperation) != 0;
    }};

constinit Operation<Colour(std::int32_t)> GetSysColor{
    [](std::int32_t index) -> Colour { return ::GetSysColor(index); }};

constinit Operation<Brush(Colour)> CreateSolidBrush{[](Colour colour) -> Brush {
    const LOGBRUSH brush = {BS_SOLID, colour, 0};
    return Drawing(::CreateBrushIndirect(&brush));
}};

constinit Operation<Pen(Colour)> CreateSolidPen{
    [](Colour colour) -> Pen { return Drawing(::CreatePen(PS_SOLID, 1, colour)); }};

constinit Operation<bool(DeviceContext, const Rect*, Brush)> FillRect{
    [](DeviceContext dc, const Rect* rect, Brush brush) -> bool {
        return ::FillRect(Native(dc), Native(rect), static_cast<HBRUSH>(static_cast<void*>(brush))) != 0;
    }};

constinit Operation<bool(DeviceContext, const Rect*, std::int32_t, std::int32_t)> RoundRect{
    [](DeviceContext dc, const Rect* rect, std::int32_t cornerWidth, std::int32_t cornerHeight) -> bool {
        return ::RoundRect(Native(dc), rect->left, rect->top, rect->right, rect->bottom, cornerWidth,
                           cornerHeight) != 0;
    }};

constinit Operation<bool(DeviceContext, const Rect*, std::int32_t, std::int32_t)> ClipToRoundRect{
    [](DeviceContext dc, const Rect* rect, std::int32_t cornerWidth, std::int32_t cornerHeight) -> bool {
        const HRGN region = ::CreateRoundRectRgn(rect->left, rect->top, rect->right + 1, rect->bottom + 1,
                                                 cornerWidth, cornerHeight);
        const bool done = region && ::ExtSelectClipRgn(Native(dc), region, RGN_AND) != ERROR;
        if (region) ::DeleteObject(region);
        return done;
    }};

constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t)> MoveToEx{
    [](DeviceContext dc, std::int32_t x, std::int32_t y) -> bool {
        return ::MoveToEx(Native(dc), x, y, nullptr) != 0;
    }};

constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t)> LineTo{
    [](DeviceContext dc, std::int32_t x, std::int32_t y) -> bool { return ::LineTo(Native(dc), x, y) != 0; }};

constinit Operation<bool(DeviceContext, const GradientVertex (*)[2])> GradientFill{
    [](DeviceContext dc, const GradientVertex (*corners)[2]) -> bool {
        TRIVERTEX vertices[2];
        for (int i = 0; i < 2; ++i) {
            const GradientVertex& corner = (*corners)[i];
            vertices[i] = {corner.x, corner.y, corner.red, corner.green, corner.blue, corner.alpha};
        }
        GRADIENT_RECT whole = {0, 1};
        return ::GradientFill(Native(dc), vertices, 2, &whole, 1, GRADIENT_FILL_RECT_H) != 0;
    }};

constinit Operation<Colour(DeviceContext, std::int32_t, std::int32_t)> GetPixel{
    [](DeviceContext dc, std::int32_t x, std::int32_t y) -> Colour { return ::GetPixel(Native(dc), x, y); }};

constinit Operation<Font(const char16_t*, std::int32_t, bool)> CreateFontIndirectW{
    [](const char16_t* face, std::int32_t pixels, bool bold) -> Font {
        LOGFONTW font = {};
        font.lfHeight = -pixels;
        font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
        font.lfCharSet = DEFAULT_CHARSET;
        ::lstrcpynW(font.lfFaceName, Native(face), LF_FACESIZE);
        return Drawing(::CreateFontIndirectW(&font));
    }};

constinit Operation<bool(DeviceContext, Colour)> SetTextColor{[](DeviceContext dc, Colour colour) -> bool {
    return ::SetTextColor(Native(dc), colour) != CLR_INVALID;
}};

constinit Operation<bool(DeviceContext)> SetTransparentText{
    [](DeviceContext dc) -> bool { return ::SetBkMode(Native(dc), TRANSPARENT) != 0; }};

constinit Operation<bool(DeviceContext, const char16_t*, std::int32_t, Size*)> GetTextExtentPoint32W{
    [](DeviceContext dc, const char16_t* text, std::int32_t length, Size* size) -> bool {
        SIZE extent = {};
        if (!::GetTextExtentPoint32W(Native(dc), Native(text), length, &extent)) return false;
        *size = {extent.cx, extent.cy};
        return true;
    }};

constinit Operation<bool(DeviceContext, const char16_t*, std::int32_t, const Rect*, std::uint32_t)> DrawTextW{
    [](DeviceContext dc, const char16_t* text, std::int32_t length, const Rect* rect,
       std::uint32_t layout) -> bool {
        RECT area = *Native(rect);
        return ::DrawTextW(Native(dc), Native(text), length, &area, layout) != 0;
    }};

constinit Operation<Icon(Icon)> DuplicateIcon{
    [](Icon icon) -> Icon { return FromNative(::CopyIcon(Native(icon))); }};

constinit Operation<bool(Icon)> DestroyIcon{
    [](Icon icon) -> bool { return ::DestroyIcon(Native(icon)) != 0; }};

constinit Operation<Icon(ModuleHandle, const char16_t*, std::uint32_t)> ExtractIconW{
    [](ModuleHandle module, const char16_t* file, std::uint32_t index) -> Icon {
        using Entry = HICON(WINAPI*)(HINSTANCE, LPCWSTR, UINT);
        static const auto entry = LateEntry<Entry>(L"shell32.dll", "ExtractIconW");
        const HICON icon = entry ? entry(static_cast<HINSTANCE>(module), Native(file), index) : nullptr;
        const HICON notAnIconFile = reinterpret_cast<HICON>(1);
        return icon == notAnIconFile ? nullptr : FromNative(icon);
    }};

constinit Operation<Icon(const char16_t*, std::int32_t, std::int32_t)> LoadIconFile{
    [](const char16_t* file, std::int32_t width, std::int32_t height) -> Icon {
        return FromNative(static_cast<HICON>(
            ::LoadImageW(nullptr, Native(file), IMAGE_ICON, width, height, LR_LOADFROMFILE)));
    }};

constinit Operation<bool(Icon, IconParts*)> GetIconInfo{[](Icon icon, IconParts* parts) -> bool {
    ICONINFO info = {};
    if (!::GetIconInfo(Native(icon), &info)) return false;
    *parts = {Drawing(info.hbmMask), Drawing(info.hbmColor)};
    return true;
}};

constinit Operation<bool(DeviceContext, std::int32_t, std::int32_t, Icon, std::int32_t, std::int32_t)>
    DrawIconEx{[](DeviceContext dc, std::int32_t x, std::int32_t y, Icon icon, std::int32_t width,
                  std::int32_t height) -> bool {
        return ::DrawIconEx(Native(dc), x, y, Native(icon), width, height, 0, nullptr, DI_NORMAL) != 0;
    }};

constinit Operation<std::int32_t(std::int32_t, std::int32_t, std::int32_t)> MulDiv{
    [](std::int32_t number, std::int32_t numerator, std::int32_t denominator) -> std::int32_t {
        return ::MulDiv(number, numerator, denominator);
    }};

}  // namespace platform
