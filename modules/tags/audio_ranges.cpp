// By container: what is no tag is audio. For FLAC that is the stream's description, its seek table and all
// from the first frame on; for MPEG what lies between the tags at both ends; for WAVE and AIFF the contents of
// every chunk that is none of ours.
//
// A tag whose size is damaged may claim audio as its own, and to write it anew would lose that. So audio has to
// begin where the tags in front end, and the tag at the end has to be filled by its items.
#include "modules/tags/audio_ranges.h"

#include <algorithm>
#include <cstring>

#include "modules/support/little_endian.h"

namespace {

using Ranges = std::vector<clByteRange>;

constexpr std::uint32_t kMostParts = 65536;

std::uint32_t GetBig32(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

bool Is(const std::uint8_t* bytes, const char* letters) {
    return std::memcmp(bytes, letters, std::strlen(letters)) == 0;
}

// Behind the ID3v2 tags that the file begins with, as they say.
std::uint64_t EndOfId3v2(clFileReader& file) {
    std::uint64_t at = 0;
    std::uint8_t head[10];
    while (file.Fetch(at, head, sizeof head) && Is(head, "ID3")) {
        std::uint64_t size = 0;
        for (int i = 6; i < 10; ++i) size = size << 7 | (head[i] & 0x7F);
        at += sizeof head + size + ((head[5] & 0x10) ? sizeof head : 0);
    }
    return at;
}

std::uint64_t BeginOfId3v1(clFileReader& file) {
    constexpr std::uint64_t kBytes = 128;
    std::uint8_t head[3];
    const std::uint64_t at = file.Size() - std::min(file.Size(), kBytes);
    return file.Size() >= kBytes && file.Fetch(at, head, sizeof head) && Is(head, "TAG") ? at : file.Size();
}

bool IsFrame(const std::uint8_t* head) {
    const bool isSync = head[0] == 0xFF && (head[1] & 0xE0) == 0xE0;
    return isSync && (head[1] & 0x18) != 0x08 && (head[1] & 0x06) != 0 && (head[2] & 0xF0) != 0xF0 &&
           (head[2] & 0x0C) != 0x0C;
}

// True where an MPEG frame begins, or the file ends, behind nothing or a run of zeros.
bool BeginsFrames(clFileReader& file, std::uint64_t at, std::uint64_t end) {
    constexpr std::uint32_t kMostZeros = 1 << 16;
    std::uint8_t head[4];
    for (std::uint32_t zeros = 0; zeros < kMostZeros && end - at >= sizeof head; ++zeros, ++at) {
        if (!file.Fetch(at, head, sizeof head)) return false;
        if (head[0] != 0) return IsFrame(head);
    }
    return end - at < sizeof head;
}

// Items from `at` to `end`: 4 bytes of size, 4 of flags, a key and a NUL, the value.
bool AreApeItems(clFileReader& file, std::uint32_t count, std::uint64_t at, std::uint64_t end) {
    constexpr std::uint32_t kLongestKey = 256;
    for (; count > 0 && end - at > 8; --count) {
        std::uint8_t item[8 + kLongestKey] = {};
        const auto held = static_cast<std::uint32_t>(std::min<std::uint64_t>(sizeof item, end - at));
        if (!file.Fetch(at, item, held)) return false;
        const auto* key = static_cast<const std::uint8_t*>(std::memchr(item + 8, 0, held - 8));
        const std::uint32_t size = Get32(item);
        if (!key || size > end - at) return false;
        at += static_cast<std::uint64_t>(key + 1 - item) + size;
        if (at > end) return false;
    }
    return count == 0 && at == end;
}

// Moves `end` in front of the APE tag that ends there, if one does. False for one that is damaged.
bool PassApe(clFileReader& file, std::uint64_t& end) {
    std::uint8_t footer[32], header[8];
    if (end < sizeof footer || !file.Fetch(end - sizeof footer, footer, sizeof footer)) return true;
    if (!Is(footer, "APETAGEX")) return true;
    const std::uint32_t size = Get32(footer + 12);
    if (size < sizeof footer || size > end) return false;
    const std::uint64_t items = end - size;
    if (!AreApeItems(file, Get32(footer + 16), items, end - sizeof footer)) return false;
    end = items;
    if ((footer[23] & 0x80) == 0) return true;
    end -= std::min<std::uint64_t>(end, sizeof footer);
    return file.Fetch(end, header, sizeof header) && Is(header, "APETAGEX");
}

bool FindMpeg(clFileReader& file, Ranges& ranges) {
    const std::uint64_t begin = EndOfId3v2(file);
    std::uint64_t end = BeginOfId3v1(file);
    if (!PassApe(file, end) || begin > end) return false;
    if (begin > 0 && !BeginsFrames(file, begin, end)) return false;
    if (begin < end) ranges.push_back({begin, end - begin});
    return true;
}

bool FindFlac(clFileReader& file, Ranges& ranges) {
    constexpr std::uint8_t kPadding = 1, kComment = 4, kPicture = 6, kLast = 0x80;
    std::uint64_t at = EndOfId3v2(file);
    std::uint8_t head[4] = {};
    if (!file.Fetch(at, head, sizeof head) || !Is(head, "fLaC")) return false;
    at += sizeof head;
    for (std::uint32_t blocks = 0; (head[0] & kLast) == 0 || blocks == 0; ++blocks) {
        if (blocks == kMostParts || !file.Fetch(at, head, sizeof head)) return false;
        at += sizeof head;
        const std::uint32_t length = GetBig32(head) & 0xFFFFFF;
        if (length > file.Size() - at) return false;
        const std::uint8_t type = head[0] & 0x7F;
        if (type != kPadding && type != kComment && type != kPicture) ranges.push_back({at, length});
        at += length;
    }
    const std::uint64_t end = std::max(at, BeginOfId3v1(file));
    if (end - at >= 2 && (!file.Fetch(at, head, 2) || head[0] != 0xFF || (head[1] & 0xFC) != 0xF8))
        return false;
    if (at < end) ranges.push_back({at, end - at});
    return true;
}

bool IsTagChunk(clFileReader& file, const std::uint8_t* head, std::uint64_t at, std::uint32_t size) {
    std::uint8_t type[4];
    if (Is(head, "ID3 ") || Is(head, "id3 ")) return true;
    return Is(head, "LIST") && size >= sizeof type && file.Fetch(at, type, sizeof type) && Is(type, "INFO");
}

bool FindChunks(bool isAiff, clFileReader& file, Ranges& ranges) {
    std::uint8_t head[12];
    if (!file.Fetch(0, head, sizeof head) || !Is(head, isAiff ? "FORM" : "RIFF")) return false;
    if (isAiff ? !Is(head + 8, "AIFF") && !Is(head + 8, "AIFC") : !Is(head + 8, "WAVE")) return false;
    std::uint64_t at = sizeof head;
    for (std::uint32_t chunks = 0; at < file.Size() && file.Size() - at >= 8; ++chunks) {
        if (chunks == kMostParts || !file.Fetch(at, head, 8)) return false;
        at += 8;
        const std::uint32_t size = isAiff ? GetBig32(head + 4) : Get32(head + 4);
        if (size > file.Size() - at) return false;
        if (!IsTagChunk(file, head, at, size)) ranges.push_back({at, size});
        at += size + (size & 1);
    }
    return true;
}

// The bytes of a file's stretches behind one another.
class clRangeCursor {
  public:
    static constexpr std::uint32_t kBytes = 1 << 16;

    clRangeCursor(clAudioRanges& ranges, clFileReader& file) : mRanges(ranges), mFile(file), mBytes(kBytes) {}

    // Fills the bytes as far as there are any; false when reading failed.
    bool Fill() {
        mFilled = 0;
        while (mFilled < kBytes && (mRange.length > 0 || mRanges.Next(mRange))) {
            const auto count =
                static_cast<std::uint32_t>(std::min<std::uint64_t>(mRange.length, kBytes - mFilled));
            if (!Get(count)) return false;
            mFilled += count;
            mRange.position += count;
            mRange.length -= count;
        }
        return mFile.Error() == 0;
    }
    bool operator==(const clRangeCursor& other) const {
        return mFilled == other.mFilled && std::memcmp(mBytes.data(), other.mBytes.data(), mFilled) == 0;
    }
    bool IsAtEnd() const { return mFilled < kBytes; }

  private:
    bool Get(std::uint32_t count) {
        std::uint8_t* to = mBytes.data() + mFilled;
        if (count <= clFileReader::kWindowBytes) return mFile.Fetch(mRange.position, to, count);
        std::uint32_t got = 0;
        return mFile.Read(mRange.position, to, count, &got) && got == count;
    }

    clAudioRanges& mRanges;
    clFileReader& mFile;
    std::vector<std::uint8_t> mBytes;
    std::uint32_t mFilled = 0;
    clByteRange mRange{0, 0};
};

}  // namespace

std::unique_ptr<clAudioRanges> FindAudio(TagContainer container, clFileReader& file) {
    Ranges ranges;
    bool isFound = false;
    if (container == TagContainer::oggVorbis || container == TagContainer::oggOpus)
        return FindOggAudio(container, file);
    if (container == TagContainer::flac) isFound = FindFlac(file, ranges);
    if (container == TagContainer::mpeg) isFound = FindMpeg(file, ranges);
    if (container == TagContainer::wave) isFound = FindChunks(false, file, ranges);
    if (container == TagContainer::aiff) isFound = FindChunks(true, file, ranges);
    if (!isFound || file.Error() != 0) return nullptr;
    return std::make_unique<clRangeList>(std::move(ranges));
}

bool IsSameAudio(clAudioRanges& first, clFileReader& firstFile, clAudioRanges& second,
                 clFileReader& secondFile) {
    clRangeCursor one(first, firstFile), other(second, secondFile);
    do {
        if (!one.Fill() || !other.Fill() || !(one == other)) return false;
    } while (!one.IsAtEnd());
    return true;
}
