#include "settings/toolkit/bitmap.h"

#include "settings/toolkit/drawing_scope.h"

void XBitmap::Create(platform::DeviceContext dc, std::int32_t width, std::int32_t height) {
    Delete();
    if (width <= 0 || height <= 0) return;
    if (dc)
        mBitmap = platform::CreateCompatibleBitmap(dc, width, height);
    else
        mBitmap = platform::CreateCompatibleBitmap(ScreenContext(), width, height);
}

void XBitmap::Select(platform::DeviceContext dc) {
    Unselect();
    if (!mBitmap) return;
    mDC = platform::CreateCompatibleDC(dc);
    mOwnsDC = mDC != nullptr;
    if (!mDC) return;
    mOldBitmap = platform::SelectObject(mDC, mBitmap);
    if (!mOldBitmap) Unselect();
}

void XBitmap::Unselect() {
    if (mOldBitmap) platform::SelectObject(mDC, mOldBitmap);
    if (mOwnsDC) platform::DeleteDC(mDC);
    mOldBitmap = nullptr;
    mDC = nullptr;
    mOwnsDC = false;
}

void XBitmap::Recreate(platform::DeviceContext dc, std::int32_t width, std::int32_t height) {
    Create(dc, width, height);
    Select(dc);
}

void XBitmap::Delete() {
    Unselect();
    if (mBitmap) platform::DeleteObject(mBitmap);
    mBitmap = nullptr;
}

void XBitmap::Draw(platform::DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
                   std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                   std::uint32_t rasterOperation) const {
    if (!mDC || !target || !mBitmap) return;
    const platform::Size own = PixelSize();
    if (width == -1 || width == -2) width = own.width;
    if (height == -1) height = own.height;
    platform::BitBlt(target, x, y, width, height, mDC, sourceX, sourceY, rasterOperation);
}

platform::Size XBitmap::PixelSize() const {
    platform::Size size;
    if (mBitmap) platform::GetBitmapSize(mBitmap, &size);
    return size;
}
