// Ogg: pages of packets. The comment is the second packet of the stream and may grow by pages, which then
// numbers all later pages anew. So of the pages with headers the packets count, all but the comment, and of
// every later page all but its number and its check sum: granule positions, flags and the cutting into packets
// included.
#include <deque>

#include "modules/support/ogg_page.h"
#include "modules/tags/audio_ranges.h"

namespace {

constexpr std::uint32_t kNumberAt = 18, kBehindCheckSum = 26;
constexpr std::uint32_t kComment = 1;  // packet

class clOggAudio : public clAudioRanges {
  public:
    clOggAudio(clFileReader& file, std::uint32_t headers) : mPages(file), mHeaders(headers) {}

    // Walks over the headers. False when they are not there, or damaged: a comment that seems to go on into
    // the header behind it would take that along.
    bool Begin() {
        clOggPage page;
        while (mPacket < mHeaders) {
            if (!mPages.Next(page) || page.skipped > 0 || (mPacket > 0 && page.serial != mSerial))
                return false;
            mSerial = page.serial;
            TakeHeaders(page);
        }
        mHasEnded = page.ends;
        return true;
    }

    bool Next(clByteRange& range) override {
        for (clOggPage page; mQueue.empty() && !mIsAtEnd;) {
            mIsAtEnd = !mPages.Next(page);
            Add(page.position - page.skipped, page.skipped);  // what is no page stays as it is
            if (!mIsAtEnd) TakePage(page);
        }
        if (mQueue.empty()) return false;
        range = mQueue.front();
        mQueue.pop_front();
        return true;
    }

    // Pages of another stream among those of the first would be numbered as if they were its.
    bool IsSound() const override { return mIsAlone; }

  private:
    void Add(std::uint64_t position, std::uint64_t length) {
        if (length > 0) mQueue.push_back({position, length});
    }

    void TakeHeaders(const clOggPage& page) {
        std::uint64_t at = page.position + clOggPage::kHeadBytes + page.lacing.size();
        for (const std::uint8_t length : page.lacing) {
            if (mPacket != kComment) Add(at, length);
            at += length;
            if (length < 255) ++mPacket;
        }
    }

    void TakePage(const clOggPage& page) {
        Add(page.position, kNumberAt);
        Add(page.position + kBehindCheckSum, page.End() - page.position - kBehindCheckSum);
        if (!mHasEnded && page.serial != mSerial) mIsAlone = false;
        mHasEnded |= page.ends;
    }

    clOggPages mPages;
    const std::uint32_t mHeaders;
    std::uint32_t mPacket = 0;  // being read, of the headers
    std::uint32_t mSerial = 0;
    std::deque<clByteRange> mQueue;
    bool mHasEnded = false, mIsAlone = true, mIsAtEnd = false;
};

}  // namespace

std::unique_ptr<clAudioRanges> FindOggAudio(TagContainer container, clFileReader& file) {
    auto audio = std::make_unique<clOggAudio>(file, container == TagContainer::oggVorbis ? 3 : 2);
    if (!audio->Begin()) return nullptr;
    return audio;
}
