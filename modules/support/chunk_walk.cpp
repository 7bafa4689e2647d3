#include "modules/support/chunk_walk.h"

#include <algorithm>

#include "foundation/joined.h"
#include "modules/support/little_endian.h"

namespace {

constexpr std::uint32_t kHeaderBytes = 8;
constexpr std::uint32_t kFirstChunk = 12;
constexpr std::uint32_t kSizeElsewhere = 0xFFFFFFFF;
// What SoX writes when it can't go back: this, rounded down to whole frames.
constexpr std::uint64_t kSizeOfOneStreamer = 0x7FFFF000;
constexpr std::uint64_t kLargestFrame = 0xFFFF;
constexpr std::uint32_t kSizes64Bytes = 24;  // three sizes; then the count and rows of a table
constexpr std::uint32_t kRowBytes = 12;

}  // namespace

XString clChunkWalk::Begin() {
    std::uint8_t head[kFirstChunk];
    if (!mFile.Fetch(0, head, sizeof head))
        return mFile.Error() != 0 ? XString() : XString(u"it is no WAVE file");
    const std::uint32_t id = Get32(head);
    if (id == ChunkId("RIFX")) return u"WAVE files of the big-endian kind (RIFX) are not read";
    mIs64 = id == ChunkId("RF64") || id == ChunkId("BW64");
    if ((id != ChunkId("RIFF") && !mIs64) || Get32(head + 8) != ChunkId("WAVE")) return u"it is no WAVE file";
    mWholeSize = Get32(head + 4);
    mNext = kFirstChunk;
    return mIs64 ? ReadSizes64() : XString();
}

// Looks at the first chunk and leaves it to the walk. Without it an open size is what it is in a plain file.
XString clChunkWalk::ReadSizes64() {
    std::uint8_t bytes[kHeaderBytes + kSizes64Bytes + 4];
    if (!mFile.Fetch(kFirstChunk, bytes, sizeof bytes) || Get32(bytes) != ChunkId("ds64")) return XString();
    const std::uint64_t size = Get32(bytes + 4);
    if (size < kSizes64Bytes || size > mFile.Size() - kFirstChunk - kHeaderBytes)
        return u"its ds64 chunk is cut short";
    mHasSizes64 = true;
    mWholeSize = Get64(bytes + kHeaderBytes);
    mDataSize64 = Get64(bytes + kHeaderBytes + 8);
    if (size < kSizes64Bytes + 4) return XString();
    const std::uint64_t rows = std::min<std::uint64_t>(
        {Get32(bytes + kHeaderBytes + kSizes64Bytes), (size - kSizes64Bytes - 4) / kRowBytes, mLarge.size()});
    std::uint8_t row[kRowBytes];
    std::uint64_t at = kFirstChunk + sizeof bytes;
    for (; mLargeCount < rows && mFile.Fetch(at, row, sizeof row); at += kRowBytes)
        mLarge[mLargeCount++] = {Get32(row), Get64(row + 4)};
    return XString();
}

// True when whoever wrote the file never came back to fill in its sizes, judged by the whole ending before
// `position`.
bool clChunkWalk::WasStreamed(std::uint64_t position) const {
    return mWholeSize == kSizeElsewhere || mWholeSize <= position - kHeaderBytes;
}

std::uint64_t clChunkWalk::SizeOf(std::uint32_t id, std::uint32_t size, bool& isOpen) const {
    isOpen = false;
    if (mHasSizes64 && size == kSizeElsewhere) {
        const auto* end = mLarge.data() + mLargeCount;
        const auto* found =
            std::find_if(mLarge.data(), end, [id](const LargeChunk& row) { return row.id == id; });
        if (id == ChunkId("data")) return mDataSize64;
        if (found != end) return found->size;
    }
    isOpen = size == kSizeElsewhere;
    return size;
}

bool clChunkWalk::Next(clChunk& chunk) {
    std::uint8_t head[kHeaderBytes];
    if (WasCutOff() || mNext > mFile.Size() || !mFile.Fetch(mNext, head, sizeof head)) return false;
    ++mWalked;
    chunk.id = Get32(head);
    chunk.position = mNext + kHeaderBytes;
    chunk.claimed = SizeOf(chunk.id, Get32(head + 4), chunk.isOpen);
    const std::uint64_t rest = mFile.Size() - chunk.position;
    if (chunk.id == ChunkId("data")) {
        if (chunk.claimed == 0) chunk.isOpen = rest > 0 && WasStreamed(chunk.position);
        const bool fromPipe =
            chunk.claimed <= kSizeOfOneStreamer && chunk.claimed > kSizeOfOneStreamer - kLargestFrame;
        if (fromPipe && rest < chunk.claimed) chunk.isOpen = true;
    }
    if (chunk.isOpen) chunk.claimed = rest;
    chunk.available = std::min(chunk.claimed, rest);
    mNext = chunk.position + chunk.available + (chunk.available & 1);
    return true;
}
