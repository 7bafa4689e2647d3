// Beyond 4 GiB. The file is never written: one and the same page of sound is handed out again and again, each
// time with the number and the position that it needs.
#include <algorithm>
#include <cstring>

#include "ogg/ogg_codecs.h"
#include "platform/file.h"
#include "support/faults.h"

using namespace ogg_file;

namespace {

constexpr std::uint64_t kLeastBytes = 5ull << 30;

class LargeFile {
  public:
    // Of a file of steady sound: its headers, and a page of packets from its middle, each of `packetFrames`.
    LargeFile(const std::vector<Page>& pages, std::uint32_t packetFrames, std::int64_t preSkip)
        : mPreSkip(preSkip) {
        const std::size_t first = FirstAudioPage(pages);
        mHeaders = Bytes({pages.begin(), pages.begin() + static_cast<std::ptrdiff_t>(first)});
        const std::vector<std::string> all = Packets(pages);
        std::vector<std::string> some;
        std::size_t lacing = 0;
        for (std::size_t i = all.size() / 4; (lacing += all[i].size() / 255 + 1) <= 255; ++i)
            some.push_back(all[i]);
        mPage = PageOf(some, pages[0].serial, static_cast<std::uint32_t>(first));
        mPageFrames = some.size() * packetFrames;
        mPageBytes = mPage.Bytes().size();
        mPages = kLeastBytes / mPageBytes + 1;
    }

    std::uint64_t Size() const { return mHeaders.size() + mPages * mPageBytes; }
    std::uint64_t PageFrames() const { return mPageFrames; }
    std::uint64_t Granule(std::uint64_t pages) const { return pages * mPageFrames; }
    std::uint64_t Pages() const { return mPages; }

    std::uint32_t Read(std::uint64_t position, char* to, std::uint32_t count) {
        std::uint32_t done = 0;
        while (done < count && position < Size()) {
            const std::string_view piece = From(position).substr(0, count - done);
            std::memcpy(to + done, piece.data(), piece.size());
            done += static_cast<std::uint32_t>(piece.size());
            position += piece.size();
        }
        return done;
    }

  private:
    std::string_view From(std::uint64_t position) {
        if (position < mHeaders.size()) return std::string_view(mHeaders).substr(position);
        const std::uint64_t index = (position - mHeaders.size()) / mPageBytes;
        if (index != mMadeIndex) {
            Page page = mPage;
            page.number += static_cast<std::uint32_t>(index);
            page.granule = static_cast<std::int64_t>(Granule(index + 1)) + mPreSkip;
            page.flags = index + 1 == mPages ? kEnds : 0;
            mMade = page.Bytes();
            mMadeIndex = index;
        }
        return std::string_view(mMade).substr((position - mHeaders.size()) % mPageBytes);
    }

    const std::int64_t mPreSkip;
    std::string mHeaders;
    Page mPage;
    std::uint64_t mPageFrames = 0;
    std::uint64_t mPageBytes = 0;
    std::uint64_t mPages = 0;
    std::uint64_t mMadeIndex = ~0ull;
    std::string mMade;
};

class OggLargeFile : public OggTest {
  protected:
    // Sound in which every packet is like the others, as long as its codec's longest.
    std::vector<Page> Steady() {
        std::vector<float> sound(400000);
        for (std::size_t i = 0; i < sound.size(); ++i)
            sound[i] =
                static_cast<float>(0.3 * static_cast<double>(i * i * 2654435761u % 65536) / 65536 - 0.15);
        return Pages(ogg.Encode(sound, FloatFormat(ogg.codec.rate, 2), ogg.codec.fine));
    }

    static std::vector<float> Some(clAudioStream& stream, std::uint64_t frame) {
        std::vector<float> some;
        EXPECT_TRUE(stream.Seek(frame));
        while (some.size() < 20000) {
            const std::span<const std::uint8_t> block = stream.Read();
            if (block.empty()) break;
            const std::vector<float> samples =
                Floats({reinterpret_cast<const char*>(block.data()), block.size()});
            some.insert(some.end(), samples.begin(), samples.end());
        }
        return some;
    }
};

TEST_P(OggLargeFile, Beyond_4_GiB_has_its_length_and_is_sought_and_read_to_its_end) {
    const bool isVorbis = &ogg.codec == &kVorbis;
    LargeFile large(Steady(), isVorbis ? 1024 : 960, isVorbis ? 0 : 312);
    ASSERT_GT(large.Size(), kLeastBytes);
    // Of the first packet of Vorbis nothing is heard but its overlap with the second.
    const std::uint64_t frames = large.Granule(large.Pages());
    const std::u16string path = ogg.folder / ogg.codec.file;

    std::uint64_t position = 0;
    Faulty<platform::GetFileSizeEx> sizes;
    sizes.Replace([&](platform::Handle, std::int64_t* size) {
        *size = static_cast<std::int64_t>(large.Size());
        return true;
    });
    Faulty<platform::SetFilePointerEx> seeks;
    seeks.Replace([&](platform::Handle, std::int64_t to) {
        position = static_cast<std::uint64_t>(to);
        return true;
    });
    Faulty<platform::ReadFile> reads;
    reads.Replace([&](platform::Handle, void* to, std::uint32_t count, std::uint32_t* got) {
        *got = large.Read(position, static_cast<char*>(to), count);
        position += *got;
        return true;
    });

    LogFiles log;
    const QvLog record = log.Record();
    const std::unique_ptr<clAudioStream> stream = ogg.codec.makeStream(clModuleLog(&record));
    ASSERT_TRUE(stream->Open(path.c_str()));
    EXPECT_EQ(stream->FileSize(), large.Size());
    ASSERT_TRUE(stream->Facts().frames);
    EXPECT_NEAR(static_cast<double>(*stream->Facts().frames), static_cast<double>(frames), 1024);

    const std::uint64_t late = large.Granule(large.Pages() - 20) + 777, early = large.Granule(100) + 777;
    const std::vector<float> there = Some(*stream, late), here = Some(*stream, early);
    ASSERT_GE(there.size(), 20000u);
    EXPECT_TRUE(there == here);

    ASSERT_TRUE(stream->Seek(late));
    std::uint64_t rest = 0;
    for (std::span<const std::uint8_t> block = stream->Read(); !block.empty(); block = stream->Read())
        rest += block.size() / 8;
    EXPECT_EQ(rest, *stream->Facts().frames - late);
    EXPECT_EQ(log.TakeErrors(), u"");
}

OGG_TESTS(OggLargeFile);

}  // namespace
