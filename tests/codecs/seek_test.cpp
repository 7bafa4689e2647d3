// A seek to any frame gives what decoding from the beginning gives there.
#include <cmath>
#include <random>

#include "codecs/codec_table.h"

namespace {

constexpr std::uint32_t kFrames = 150001;

class Seek : public CodecTest {
  protected:
    Seek() : whole(modules.Decode(Encode(kFrames))) {
        clOpenFileRec record;
        EXPECT_TRUE(modules.Open(folder / GetParam().file, QV_OPEN_DECODING, record));
    }

    // The samples of the next blocks, up to about a tenth of a second of them.
    std::vector<double> SomeFrom(std::int64_t frame) {
        Decoding part = whole;
        part.audio.clear();
        modules.Decoder().SetPosition(frame);
        while (part.audio.size() < 5000 * FrameBytesOf(whole) && modules.DecodeBlock(part.audio)) {
        }
        return Samples(part);
    }

    void ExpectLike(std::uint32_t frame) {
        const std::vector<double> all = Samples(whole);
        const std::vector<double> some = SomeFrom(frame);
        ASSERT_GE(some.size(), std::min<std::size_t>(5000, kFrames - frame) * 2) << frame;
        ASSERT_LE(some.size(), (std::size_t{kFrames} - frame) * 2) << frame;
        for (std::size_t i = 0; i < some.size(); ++i)
            ASSERT_NEAR(some[i], all[std::size_t{frame} * 2 + i], GetParam().seekTolerance)
                << "frame " << frame << " and " << i / 2;
    }

    const Decoding whole;
};

TEST_P(Seek, lands_on_the_very_frame) {
    std::mt19937 random(5);
    for (int i = 0; i < 60; ++i) ExpectLike(static_cast<std::uint32_t>(random() % kFrames));
}

TEST_P(Seek, goes_to_the_borders) {
    for (const std::uint32_t frame : {0u, 1u, kFrames / 2, kFrames - 1, 0u}) ExpectLike(frame);
}

TEST_P(Seek, outside_the_file_is_clamped) {
    EXPECT_EQ(SomeFrom(-5).size(), SomeFrom(0).size());
    EXPECT_TRUE(SomeFrom(kFrames).empty());
    EXPECT_TRUE(SomeFrom(INT64_MAX).empty());
    EXPECT_FALSE(SomeFrom(INT64_MIN).empty());
    EXPECT_EQ(modules.Log().TakeErrors(), u"");
}

TEST_P(Seek, after_the_end_brings_audio_again) {
    std::string rest;
    while (modules.DecodeBlock(rest)) {
    }
    ExpectLike(1000);
}

INSTANTIATE_TEST_SUITE_P(Codecs, Seek, ::testing::ValuesIn(AllCodecs()), NameOf);

}  // namespace
