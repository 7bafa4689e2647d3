// There is no window layer here: no picture code either.
#include "platform/picture.h"

namespace platform {

namespace {

template <class Result, class... Arguments>
Result None(Arguments...) {
    return Result();
}

}  // namespace

constinit Operation<MemoryBlock(std::uint32_t, std::size_t)> GlobalAlloc{
    &None<MemoryBlock, std::uint32_t, std::size_t>};
constinit Operation<void*(MemoryBlock)> GlobalLock{&None<void*, MemoryBlock>};
constinit Operation<bool(MemoryBlock)> GlobalUnlock{&None<bool, MemoryBlock>};
constinit Operation<bool(MemoryBlock)> GlobalFree{&None<bool, MemoryBlock>};
constinit Operation<Stream(MemoryBlock)> CreateStreamOnHGlobal{&None<Stream, MemoryBlock>};
constinit Operation<void(Stream)> ReleaseStream{&None<void, Stream>};
constinit Operation<Picture(Stream, std::uint32_t)> OleLoadPicture{&None<Picture, Stream, std::uint32_t>};
constinit Operation<void(Picture)> ReleasePicture{&None<void, Picture>};
constinit Operation<bool(Picture, Size*)> GetPictureSize{&None<bool, Picture, Size*>};
constinit Operation<bool(Picture, DeviceContext, const Rect*, std::int32_t, std::int32_t, std::int32_t,
                         std::int32_t)>
    RenderPicture{&None<bool, Picture, DeviceContext, const Rect*, std::int32_t, std::int32_t, std::int32_t,
                        std::int32_t>};

}  // namespace platform
