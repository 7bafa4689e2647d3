// clChunkWalk: the chunks of a RIFF file, one header after the other.
//
// A chunk is a name of four letters, a 32-bit size and so many bytes, padded to an even count. RF64 and BW64
// files are the same with sizes of 64 bits for those chunks that need them, which stand in a ds64 chunk at
// the front. Contents are skipped unread. The size of the whole that the file begins with binds nobody: it is
// often wrong.
#pragma once

#include <array>
#include <cstdint>

#include "foundation/wide_string.h"
#include "modules/support/file_reader.h"

// A chunk's name as the number it reads as.
consteval std::uint32_t ChunkId(const char (&name)[5]) {
    std::uint32_t id = 0;
    for (int i = 3; i >= 0; --i) id = id << 8 | static_cast<std::uint8_t>(name[i]);
    return id;
}

struct clChunk {
    std::uint32_t id = 0;
    std::uint64_t position = 0;   // of its first byte behind the header
    std::uint64_t claimed = 0;    // bytes, as the headers have it
    std::uint64_t available = 0;  // of these in the file
    bool isOpen = false;          // its size was never filled in
};

class clChunkWalk {
  public:
    // More are taken for an attack: the walk costs a read each when they lie apart.
    static constexpr std::uint32_t kMostChunks = 65536;

    explicit clChunkWalk(clFileReader& file) : mFile(file) {}

    // Reads the file's first bytes. Empty when chunks follow; otherwise why not.
    XString Begin();
    // The next chunk. False at the end of the file and of the chunks to be walked, and when reading failed.
    bool Next(clChunk& chunk);

    bool Is64() const { return mIs64; }
    bool WasCutOff() const { return mWalked >= kMostChunks; }

  private:
    struct LargeChunk {
        std::uint32_t id;
        std::uint64_t size;
    };

    XString ReadSizes64();
    std::uint64_t SizeOf(std::uint32_t id, std::uint32_t size, bool& isOpen) const;
    bool WasStreamed(std::uint64_t position) const;

    clFileReader& mFile;
    std::uint64_t mNext = 0;
    std::uint32_t mWalked = 0;
    bool mIs64 = false;
    std::uint64_t mWholeSize = 0;  // as claimed, from byte 8 on
    bool mHasSizes64 = false;
    std::uint64_t mDataSize64 = 0;
    std::array<LargeChunk, 16> mLarge{};  // others of 4 GiB and more: hardly ever one
    std::uint32_t mLargeCount = 0;
};
