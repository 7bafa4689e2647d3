// Ogg: pages of packets. The comment is the second packet of the stream and may grow by pages, which then
// numbers all later pages anew. So of the pages with headers the packets count, all but the comment, and of
// every later page all but its number and its checksum: granule positions, flags and the cutting into packets
// included.
#include <algorithm>
#include <cstring>
#include <deque>

#include "modules/support/little_endian.h"
#include "modules/tags/audio_ranges.h"

namespace {

constexpr std::uint32_t kHead = 27;
constexpr std::uint32_t kSerial = 14, kNumber = 18, kSegments = 26;
constexpr std::uint8_t kEndOfStream = 4;
constexpr std::uint32_t kComment = 1;  // packet

class clOggAudio : public clAudioRanges {
  public:
    clOggAudio(clFileReader& file, std::uint32_t headers) : mFile(file), mHeaders(headers) {}

    // Walks over the headers. False when they are not there.
    bool Begin() {
        while (mPacket < mHeaders) {
            if (!ReadPage()) return false;
            TakeHeaders();
        }
        return true;
    }

    bool Next(clByteRange& range) override {
        while (mQueue.empty()) {
            if (mAt >= mFile.Size()) return false;
            if (ReadPage())
                TakePage();
            else
                TakeRest();
        }
        range = mQueue.front();
        mQueue.pop_front();
        return true;
    }

  private:
    // The page at mAt; false when there is none, or one of another stream among those of ours.
    bool ReadPage() {
        if (!mFile.Fetch(mAt, mPage, kHead) || std::memcmp(mPage, "OggS", 4) != 0) return false;
        if (!mFile.Fetch(mAt + kHead, mPage + kHead, mPage[kSegments])) return false;
        mBody = mAt + kHead + mPage[kSegments];
        mBodyLength = 0;
        for (std::uint32_t i = 0; i < mPage[kSegments]; ++i) mBodyLength += mPage[kHead + i];
        return mBodyLength <= mFile.Size() - mBody;
    }

    void Add(std::uint64_t position, std::uint64_t length) {
        if (length > 0) mQueue.push_back({position, length});
    }

    void TakeHeaders() {
        std::uint64_t at = mBody;
        for (std::uint32_t i = 0; i < mPage[kSegments]; ++i) {
            const std::uint8_t length = mPage[kHead + i];
            if (mPacket != kComment) Add(at, length);
            at += length;
            if (length < 255) ++mPacket;
        }
        mAt = mBody + mBodyLength;
    }

    void TakePage() {
        Add(mAt, kNumber);
        Add(mAt + kSegments, kHead - kSegments + mPage[kSegments] + mBodyLength);
        mAt = mBody + mBodyLength;
    }

    // What is no page stays as it is, and so does all behind it.
    void TakeRest() {
        Add(mAt, mFile.Size() - mAt);
        mAt = mFile.Size();
    }

    clFileReader& mFile;
    const std::uint32_t mHeaders;
    std::uint64_t mAt = 0;
    std::uint32_t mPacket = 0;  // being read, of the headers
    std::uint8_t mPage[kHead + 255] = {};
    std::uint64_t mBody = 0;
    std::uint64_t mBodyLength = 0;
    std::deque<clByteRange> mQueue;
};

// True when one stream has the file to itself up to its end: pages of another among its own would be numbered
// as if they were its.
bool IsAlone(clFileReader& file) {
    std::uint8_t first[kHead], head[kHead + 255];
    if (!file.Fetch(0, first, kHead)) return false;
    for (std::uint64_t at = 0; file.Fetch(at, head, kHead) && std::memcmp(head, "OggS", 4) == 0;) {
        if (Get32(head + kSerial) != Get32(first + kSerial)) return false;
        if (head[5] & kEndOfStream) return true;
        if (!file.Fetch(at + kHead, head + kHead, head[kSegments])) return true;
        at += kHead + head[kSegments];
        for (std::uint32_t i = 0; i < head[kSegments]; ++i) at += head[kHead + i];
    }
    return file.Error() == 0;
}

}  // namespace

std::unique_ptr<clAudioRanges> FindOggAudio(TagContainer container, clFileReader& file) {
    const std::uint32_t headers = container == TagContainer::oggVorbis ? 3 : 2;
    auto audio = std::make_unique<clOggAudio>(file, headers);
    if (!audio->Begin() || !IsAlone(file)) return nullptr;
    return audio;
}
