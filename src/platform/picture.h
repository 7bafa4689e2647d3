// Encoded pictures, as the system's own picture code reads them.
//
// On POSIX there is none: memory blocks are refused, and with them the rest.
#pragma once

#include <cstdint>

#include "platform/drawing.h"
#include "platform/operation.h"

namespace platform {

struct MemoryBlockObject;
using MemoryBlock = MemoryBlockObject*;
struct StreamObject;
using Stream = StreamObject*;
struct PictureObject;
using Picture = PictureObject*;

inline constexpr std::uint32_t kMemoryMovable = 0x02;
inline constexpr std::uint32_t kMemoryNoDiscard = 0x20;  // without effect today

extern Operation<MemoryBlock(std::uint32_t flags, std::size_t size)> GlobalAlloc;
extern Operation<void*(MemoryBlock block)> GlobalLock;
extern Operation<bool(MemoryBlock block)> GlobalUnlock;
extern Operation<bool(MemoryBlock block)> GlobalFree;

// A stream over a block, which stays its maker's; null on failure.
extern Operation<Stream(MemoryBlock block)> CreateStreamOnHGlobal;
extern Operation<void(Stream stream)> ReleaseStream;
// The picture that the stream's bytes are; null when they are none.
extern Operation<Picture(Stream stream, std::uint32_t size)> OleLoadPicture;
extern Operation<void(Picture picture)> ReleasePicture;
// In hundredths of a millimetre.
extern Operation<bool(Picture picture, Size* size)> GetPictureSize;
// Draws a part of the picture, in its own measure and from its bottom up, into a rectangle of the context.
extern Operation<bool(Picture picture, DeviceContext dc, const Rect* target, std::int32_t sourceX,
                      std::int32_t sourceY, std::int32_t sourceWidth, std::int32_t sourceHeight)>
    RenderPicture;

}  // namespace platform
