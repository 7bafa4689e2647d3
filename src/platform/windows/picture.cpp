// The system's own picture code.
#include "platform/picture.h"

#include "platform/windows/native_window.h"

#include <olectl.h>

namespace platform {

static_assert(kMemoryMovable == GMEM_MOVEABLE && kMemoryNoDiscard == GMEM_NODISCARD);

namespace {

IPicture* Native(Picture picture) {
    return reinterpret_cast<IPicture*>(picture);
}

}  // namespace

constinit Operation<MemoryBlock(std::uint32_t, std::size_t)> GlobalAlloc{
    [](std::uint32_t flags, std::size_t size) -> MemoryBlock {
        return static_cast<MemoryBlock>(::GlobalAlloc(flags, size));
    }};

constinit Operation<void*(MemoryBlock)> GlobalLock{
    [](MemoryBlock block) -> void* { return ::GlobalLock(block); }};

constinit Operation<bool(MemoryBlock)> GlobalUnlock{
    [](MemoryBlock block) -> bool { return ::GlobalUnlock(block) != 0; }};

constinit Operation<bool(MemoryBlock)> GlobalFree{
    [](MemoryBlock block) -> bool { return ::GlobalFree(block) == nullptr; }};

constinit Operation<Stream(MemoryBlock)> CreateStreamOnHGlobal{[](MemoryBlock block) -> Stream {
    IStream* stream = nullptr;
    return ::CreateStreamOnHGlobal(block, FALSE, &stream) == S_OK ? reinterpret_cast<Stream>(stream)
                                                                  : nullptr;
}};

constinit Operation<void(Stream)> ReleaseStream{
    [](Stream stream) -> void { reinterpret_cast<IStream*>(stream)->Release(); }};

constinit Operation<Picture(Stream, std::uint32_t)> OleLoadPicture{
    [](Stream stream, std::uint32_t size) -> Picture {
        void* picture = nullptr;
        const HRESULT result = ::OleLoadPicture(reinterpret_cast<IStream*>(stream), static_cast<LONG>(size),
                                                FALSE, IID_IPicture, &picture);
        return result == S_OK ? reinterpret_cast<Picture>(static_cast<IPicture*>(picture)) : nullptr;
    }};

constinit Operation<void(Picture)> ReleasePicture{
    [](Picture picture) -> void { Native(picture)->Release(); }};

constinit Operation<bool(Picture, Size*)> GetPictureSize{[](Picture picture, Size* size) -> bool {
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    if (Native(picture)->get_Width(&width) != S_OK || Native(picture)->get_Height(&height) != S_OK)
        return false;
    *size = {width, height};
    return true;
}};

constinit Operation<bool(Picture, DeviceContext, const Rect*, std::int32_t, std::int32_t, std::int32_t,
                         std::int32_t)>
    RenderPicture{[](Picture picture, DeviceContext dc, const Rect* target, std::int32_t sourceX,
                     std::int32_t sourceY, std::int32_t sourceWidth, std::int32_t sourceHeight) -> bool {
        return Native(picture)->Render(Native(dc), target->left, target->top, target->right - target->left,
                                       target->bottom - target->top, sourceX, sourceY, sourceWidth,
                                       sourceHeight, nullptr) == S_OK;
    }};

}  // namespace platform
