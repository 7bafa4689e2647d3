// XBitmap: the owner of a bitmap, and of the context it is selected into.
//
// A failure is an empty object: null handles, and sizes of 0.
#pragma once

#include <cstdint>

#include "platform/drawing.h"
#include "platform/picture.h"

class XBitmap {
  public:
    XBitmap() = default;
    XBitmap(const XBitmap&) = delete;
    XBitmap& operator=(const XBitmap&) = delete;
    ~XBitmap() { Delete(); }

    // A new bitmap fit for `dc`, null being the screen, in place of the old one. A width or height of 0 or
    // below leaves none.
    void Create(platform::DeviceContext dc, std::int32_t width, std::int32_t height);
    // Makes a context like `dc` and selects the bitmap into it, for drawing. An earlier selection ends.
    void Select(platform::DeviceContext dc);
    void Unselect();
    void Recreate(platform::DeviceContext dc, std::int32_t width, std::int32_t height);  // Create and Select
    void Delete();  // undoes the selection first

    // Reads a picture in the encodings that the platform knows, at the screen's resolution. The old bitmap is
    // gone on failure too; the new one is not selected.
    bool LoadFromMemory(const void* bytes, std::uint32_t size);

    // Copies from the selected bitmap to `target`. A width of -1 or -2 and a height of -1 are the bitmap's
    // own. Does nothing without selection, target or bitmap.
    void Draw(platform::DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
              std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
              std::uint32_t rasterOperation) const;

    platform::Bitmap Handle() const { return mBitmap; }
    platform::DeviceContext Context() const { return mDC; }  // null when not selected
    std::int32_t GetWidth() const { return PixelSize().width; }
    std::int32_t GetHeight() const { return PixelSize().height; }

  private:
    platform::Size PixelSize() const;
    bool TakePicture(platform::Picture picture);

    platform::Bitmap mBitmap = nullptr;
    platform::Bitmap mOldBitmap = nullptr;
    platform::DeviceContext mDC = nullptr;
    bool mOwnsDC = false;
};
