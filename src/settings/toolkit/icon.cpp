#include "settings/toolkit/icon.h"

#include "foundation/paths.h"

namespace {

constexpr std::int32_t kIconPixels = 16;

bool IsProgram(const XString& path) {
    const XString extension = paths::GetExtension(path).ToUpper();
    return extension == u".EXE" || extension == u".DLL";
}

}  // namespace

XIcon::XIcon(platform::Icon icon) {
    if (icon) mIcon = platform::DuplicateIcon(icon);
}

XIcon& XIcon::operator=(const XIcon& other) {
    if (this == &other) return *this;
    Destroy();
    if (other.mIcon) mIcon = platform::DuplicateIcon(other.mIcon);
    return *this;
}

void XIcon::Load(const XString& path) {
    Destroy();
    mIcon = IsProgram(path) ? platform::ExtractIconW(nullptr, path.Text(), 0)
                            : platform::LoadIconFile(path.Text(), kIconPixels, kIconPixels);
}

void XIcon::Destroy() {
    if (mIcon) platform::DestroyIcon(mIcon);
    mIcon = nullptr;
}

platform::Size XIcon::PixelSize() const {
    platform::IconParts parts;
    if (!mIcon || !platform::GetIconInfo(mIcon, &parts)) return {};
    platform::Size size;
    if (parts.colour) platform::GetBitmapSize(parts.colour, &size);
    if (parts.colour) platform::DeleteObject(parts.colour);
    if (parts.mask) platform::DeleteObject(parts.mask);
    return size;
}
