// XIcon: the owner of one icon handle. A failure is an empty object: null, and sizes of 0.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"
#include "platform/drawing.h"

class XIcon {
  public:
    XIcon() = default;
    XIcon(const XIcon& other) : XIcon(other.mIcon) {}
    explicit XIcon(platform::Icon icon);  // keeps a duplicate; the caller's stays the caller's
    XIcon& operator=(const XIcon& other);
    ~XIcon() { Destroy(); }

    // From an icon file in 16 by 16 pixels, or the first one of an ".exe" or ".dll" in the platform's usual
    // size. The icon held before is destroyed, on failure too.
    void Load(const XString& path);
    void Destroy();

    platform::Icon Handle() const { return mIcon; }
    std::int32_t GetWidth() const { return PixelSize().width; }
    std::int32_t GetHeight() const { return PixelSize().height; }

  private:
    platform::Size PixelSize() const;

    platform::Icon mIcon = nullptr;
};
