// Pictures from memory: the platform's picture code reads a stream, so the bytes are copied into a block that
// a stream can lie on, and what it read is rendered into a bitmap once.
#include <cstring>
#include <memory>
#include <type_traits>

#include "settings/toolkit/bitmap.h"
#include "settings/toolkit/drawing_scope.h"

namespace {

constexpr std::uint32_t kSmallestPicture = 8;   // bytes; less holds no picture's mark
constexpr std::int32_t kMeasurePerInch = 2540;  // hundredths of a millimetre

template <auto& release>
struct Release {
    template <class Object>
    void operator()(Object* object) const {
        release(object);
    }
};
template <class Handle, auto& release>
using Owned = std::unique_ptr<std::remove_pointer_t<Handle>, Release<release>>;
using OwnedBlock = Owned<platform::MemoryBlock, platform::GlobalFree>;
using OwnedStream = Owned<platform::Stream, platform::ReleaseStream>;
using OwnedPicture = Owned<platform::Picture, platform::ReleasePicture>;

OwnedBlock BlockOf(const void* bytes, std::uint32_t size) {
    OwnedBlock block(platform::GlobalAlloc(platform::kMemoryMovable | platform::kMemoryNoDiscard, size));
    void* room = block ? platform::GlobalLock(block.get()) : nullptr;
    if (!room) return nullptr;
    std::memcpy(room, bytes, size);
    platform::GlobalUnlock(block.get());
    return block;
}

platform::Size InPixels(const platform::Size& measure, platform::DeviceContext dc) {
    const auto pixels = [dc](std::int32_t length, std::int32_t perInch) {
        return platform::MulDiv(length, platform::GetDeviceCaps(dc, perInch), kMeasurePerInch);
    };
    return {pixels(measure.width, platform::kPixelsPerInchX),
            pixels(measure.height, platform::kPixelsPerInchY)};
}

}  // namespace

bool XBitmap::LoadFromMemory(const void* bytes, std::uint32_t size) {
    Delete();
    if (!bytes || size < kSmallestPicture) return false;
    const OwnedBlock block = BlockOf(bytes, size);
    if (!block) return false;
    const OwnedStream stream(platform::CreateStreamOnHGlobal(block.get()));
    if (!stream) return false;
    const OwnedPicture picture(platform::OleLoadPicture(stream.get(), size));
    return picture && TakePicture(picture.get());
}

// Pictures stand on their heads in their own measure: the source begins at its upper end and runs downwards.
bool XBitmap::TakePicture(platform::Picture picture) {
    platform::Size measure;
    if (!platform::GetPictureSize(picture, &measure)) return false;
    const ScreenContext screen;
    const platform::Size pixels = InPixels(measure, screen);
    Recreate(screen, pixels.width, pixels.height);
    const platform::Rect whole = {0, 0, pixels.width, pixels.height};
    const bool done = mDC && platform::RenderPicture(picture, mDC, &whole, 0, measure.height, measure.width,
                                                     -measure.height);
    Unselect();
    if (!done) Delete();
    return done;
}
