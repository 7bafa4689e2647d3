// AIFF, CAF and Wave64 are walks over chunks of an identity and a size, which differ in the width and order of
// the numbers and in what the size counts; one walk serves the three. AU has one fixed header.
#include "modules/sndfile/claimed_audio.h"

#include <cstring>
#include <limits>

#include "modules/support/little_endian.h"

namespace {

constexpr std::uint32_t kMostChunks = 65536;

std::uint64_t BigEndian(const std::uint8_t* bytes, unsigned count) {
    std::uint64_t number = 0;
    for (unsigned i = 0; i < count; ++i) number = number << 8 | bytes[i];
    return number;
}

struct ChunkLayout {
    char fileId[4];
    std::uint32_t firstChunk;  // position
    std::uint32_t idBytes;     // a chunk begins with its identity,
    std::uint32_t sizeBytes;   // then comes its size,
    bool isBigEndian;
    bool sizeCountsHeader;    // which counts identity and size themselves or not,
    std::uint32_t alignment;  // and the next chunk begins at a multiple of this
    char audioId[4];          // what the identity of the audio begins with
};

constexpr ChunkLayout kLayouts[] = {
    {{'F', 'O', 'R', 'M'}, 12, 4, 4, true, false, 2, {'S', 'S', 'N', 'D'}},
    {{'c', 'a', 'f', 'f'}, 8, 4, 8, true, false, 1, {'d', 'a', 't', 'a'}},
    {{'r', 'i', 'f', 'f'}, 40, 16, 8, false, true, 8, {'d', 'a', 't', 'a'}},
};

// Of the chunk that describes the samples of an AIFF file: the number behind that of the channels.
std::optional<std::uint64_t> ReadFrameCount(clFileReader& file, std::uint64_t at) {
    std::uint8_t count[4];
    if (!file.Fetch(at + 2, count, sizeof count)) return std::nullopt;
    return BigEndian(count, sizeof count);
}

std::optional<clClaimedAudio> FindAudioChunk(clFileReader& file, const ChunkLayout& layout) {
    const std::uint32_t headerBytes = layout.idBytes + layout.sizeBytes;
    std::uint64_t at = layout.firstChunk;
    clClaimedAudio claimed;
    for (std::uint32_t i = 0; i < kMostChunks; ++i) {
        std::uint8_t header[24];
        if (!file.Fetch(at, header, headerBytes)) break;
        const std::uint8_t* number = header + layout.idBytes;
        std::uint64_t size = layout.isBigEndian ? BigEndian(number, layout.sizeBytes) : Get64(number);
        const bool isOpen = size >= std::uint64_t{1} << 62 ||
                            (layout.sizeBytes == 4 && size == std::numeric_limits<std::uint32_t>::max());
        if (isOpen || (layout.sizeCountsHeader && size < headerBytes)) return std::nullopt;
        if (!layout.sizeCountsHeader) size += headerBytes;
        if (std::memcmp(header, layout.audioId, sizeof layout.audioId) == 0) claimed.end = at + size;
        if (std::memcmp(header, "COMM", 4) == 0) claimed.frames = ReadFrameCount(file, at + headerBytes);
        at += (size + layout.alignment - 1) / layout.alignment * layout.alignment;
        if (at >= file.Size()) break;
    }
    return claimed;
}

std::optional<clClaimedAudio> ReadSunHeader(clFileReader& file) {
    std::uint8_t header[12];
    if (!file.Fetch(0, header, sizeof header)) return std::nullopt;
    const std::uint64_t size = BigEndian(header + 8, 4);
    if (size == std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    return clClaimedAudio{BigEndian(header + 4, 4) + size, std::nullopt};
}

}  // namespace

std::optional<clClaimedAudio> ReadClaimedAudio(clFileReader& file) {
    char id[4];
    if (!file.Fetch(0, id, sizeof id)) return std::nullopt;
    if (std::memcmp(id, ".snd", sizeof id) == 0) return ReadSunHeader(file);
    for (const ChunkLayout& layout : kLayouts)
        if (std::memcmp(id, layout.fileId, sizeof id) == 0) return FindAudioChunk(file, layout);
    return std::nullopt;
}
