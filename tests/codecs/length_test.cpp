// What goes in comes out: every frame, and for lossless codecs every bit.
#include <cstring>
#include <random>

#include "codecs/codec_table.h"

namespace {

class Length : public CodecTest {};

TEST_P(Length, is_exact_to_the_frame_for_300_odd_lengths) {
    std::mt19937 random(300);
    for (std::uint32_t i = 0; i < 300; ++i) {
        const std::uint32_t frames = i < 40 ? i : static_cast<std::uint32_t>(random() % 20000 * 2 + 1);
        const Decoding decoding = modules.Decode(Encode(frames, i));
        ASSERT_TRUE(decoding.opened) << frames;
        ASSERT_TRUE(decoding.finished) << frames;
        ASSERT_EQ(decoding.errors, u"") << frames;
        ASSERT_EQ(decoding.audio.size() / FrameBytesOf(decoding), frames);
        ASSERT_EQ(ValueOf(decoding.record.lengthMs), std::uint64_t{frames} * 1000 / GetParam().rate);
        ASSERT_TRUE(!GetParam().isLossless || decoding.audio == MakeAudio(frames, i)) << frames;
    }
}

TEST_P(Length, of_a_second_of_sound_keeps_the_sound) {
    const Decoding decoding = modules.Decode(Encode(GetParam().rate));
    const std::string original = MakeAudio(GetParam().rate, 1);
    const std::vector<double> decoded = Samples(decoding);
    ASSERT_EQ(decoded.size(), original.size() / 2);
    double signal = 0, error = 0;
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        std::int16_t sample = 0;
        std::memcpy(&sample, &original[2 * i], sizeof sample);
        signal += sample / 32768.0 * (sample / 32768.0);
        error += (decoded[i] - sample / 32768.0) * (decoded[i] - sample / 32768.0);
    }
    // A frame off, or swapped channels, would leave an error as large as the signal.
    EXPECT_LT(error, GetParam().isLossless ? 1e-12 : signal / 20);
}

TEST_P(Length, does_not_depend_on_how_the_input_is_cut) {
    const std::u16string whole = folder / (u"whole" + std::u16string(GetParam().file));
    const std::u16string cut = folder / (u"cut" + std::u16string(GetParam().file));
    const std::string audio = MakeAudio(30001, 7);
    const QvFormatExtensible format = StereoFormat(GetParam().rate);
    ASSERT_TRUE(modules.Encode(whole, format, audio, {1000000}, GetParam().settings));
    ASSERT_TRUE(modules.Encode(cut, format, audio, {1, 2, 3, 4, 5, 777, 12345, 61}, GetParam().settings));
    EXPECT_EQ(modules.Decode(whole).audio, modules.Decode(cut).audio);
}

TEST_P(Length, blocks_before_the_end_are_never_empty) {
    const Decoding decoding = modules.Decode(Encode(100000));
    ASSERT_GT(decoding.blocks.size(), 1u);
    for (std::size_t i = 0; i + 1 < decoding.blocks.size(); ++i) EXPECT_GT(decoding.blocks[i], 0u) << i;
    for (const std::uint32_t block : decoding.blocks) EXPECT_EQ(block % FrameBytesOf(decoding), 0u);
}

INSTANTIATE_TEST_SUITE_P(Codecs, Length, ::testing::ValuesIn(AllCodecs()), NameOf);

}  // namespace
