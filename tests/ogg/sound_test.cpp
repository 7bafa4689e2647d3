// What goes in comes out: as long, in the same order, and from any place on.
#include "ogg/ogg_codecs.h"

#include <algorithm>
#include <cmath>

#include "modules/support/channel_order.h"

namespace {

class OggSound : public OggTest {};

// A tone in one channel only.
std::vector<float> OneChannel(std::uint32_t frames, std::uint32_t channels, std::uint32_t loud) {
    std::vector<float> sound(std::size_t{frames} * channels);
    for (std::uint32_t i = 0; i < frames; ++i)
        sound[std::size_t{i} * channels + loud] = static_cast<float>(0.5 * std::sin(0.0131 * i));
    return sound;
}

std::vector<double> Energies(const std::vector<float>& sound, std::size_t channels) {
    std::vector<double> energies(channels);
    for (std::size_t i = 0; i < sound.size(); ++i) energies[i % channels] += double{sound[i]} * sound[i];
    return energies;
}

TEST_P(OggSound, Is_as_long_as_it_was_with_any_number_of_channels) {
    for (std::uint32_t channels = 1; channels <= 8; ++channels)
        for (const std::uint32_t frames : {0u, 1u, 63u, 64u, 575u, 959u, 961u, 4096u, 4097u, 20011u}) {
            const Decoding decoding = ogg.Decode(ogg.Encode(frames, 1, channels));
            EXPECT_EQ(decoding.errors, u"");
            EXPECT_EQ(decoding.audio.size(), std::size_t{frames} * channels * 4) << channels << " channels";
        }
}

TEST_P(OggSound, Comes_out_of_the_loudspeaker_that_it_was_for) {
    constexpr std::uint32_t kFrames = 30000;
    for (std::uint32_t channels = 1; channels <= 8; ++channels)
        for (std::uint32_t loud = 0; loud < channels; ++loud) {
            const std::vector<float> sound = OneChannel(kFrames, channels, loud);
            const char16_t* settings = channels > 1 ? ogg.codec.fine : u"";
            const Decoding decoding =
                ogg.Decode(ogg.Encode(sound, FloatFormat(ogg.codec.rate, channels), settings));
            const QvFormatExtensible format = decoding.Format();
            EXPECT_EQ(ValueOf(format.Format.nChannels), channels);
            EXPECT_EQ(ValueOf(format.dwChannelMask), channels > 2 ? UsualMask(channels) : 0);
            const double whole = Energies(sound, channels)[loud];
            const std::vector<double> energies = Energies(Floats(decoding.audio), channels);
            for (std::uint32_t i = 0; i < channels; ++i) {
                // Vorbis codes the lowest frequencies of 5.1 coarsely: there the tone comes out half as
                // strong again.
                const double least = i == loud ? 0.8 : 0, most = i == loud ? 1.7 : 0.02;
                EXPECT_GE(energies[i] / whole, least) << channels << " channels, " << loud << " in " << i;
                EXPECT_LE(energies[i] / whole, most) << channels << " channels, " << loud << " in " << i;
            }
        }
}

TEST_P(OggSound, Is_32_bit_float_at_its_rate) {
    const Decoding decoding = ogg.Decode(ogg.Encode(20000));
    const QvFormat format = decoding.Format().Format;
    EXPECT_EQ(ValueOf(format.wFormatTag), QV_FORMAT_FLOAT);
    EXPECT_EQ(ValueOf(format.wBitsPerSample), 32);
    EXPECT_EQ(ValueOf(format.nSamplesPerSec), ogg.codec.rate);
    for (const std::uint32_t block : decoding.blocks) EXPECT_LE(block, 5760u * 8);
}

TEST_P(OggSound, Louder_than_full_scale_is_not_clipped) {
    std::vector<float> sound(40000);
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<float>(1.5 * std::sin(0.02 * static_cast<double>(i / 2)));
    const std::vector<float> decoded =
        Floats(ogg.Decode(ogg.Encode(sound, FloatFormat(ogg.codec.rate, 2), ogg.codec.fine)).audio);
    EXPECT_GT(*std::ranges::max_element(decoded), 1.4f);
}

TEST_P(OggSound, Of_what_is_no_number_does_no_harm) {
    std::vector<float> sound = MakeSound(50000, 2);
    for (std::size_t i = 1000; i < sound.size(); i += 777) sound[i] = i % 2 == 0 ? NAN : INFINITY;
    for (std::size_t i = 30000; i < 40000; ++i) sound[i] = 1e30f;
    EXPECT_EQ(ogg.Decode(ogg.Encode(sound, FloatFormat(ogg.codec.rate, 2))).audio.size(), 50000u * 8);
}

TEST_P(OggSound, From_every_frame_of_a_short_file_is_that_of_the_whole) {
    const std::vector<float> all = Floats(ogg.Decode(ogg.Encode(7001)).audio);
    ASSERT_EQ(all.size(), 7001u * 2);
    ASSERT_TRUE(ogg.Open());
    for (std::uint32_t frame = 0; frame < 7001; frame += frame < 6900 && frame > 200 ? 13 : 1) {
        const std::vector<float> rest = ogg.DecodeFrom(frame, 7001);
        ASSERT_EQ(rest.size(), (7001 - frame) * 2) << frame;
        ASSERT_TRUE(std::equal(rest.begin(), rest.end(), all.begin() + frame * 2)) << frame;
    }
}

TEST_P(OggSound, From_anywhere_in_a_long_file_is_that_of_the_whole) {
    constexpr std::uint32_t kFrames = 500003;
    const std::vector<float> all = Floats(ogg.Decode(ogg.Encode(kFrames)).audio);
    ASSERT_EQ(all.size(), kFrames * 2);
    ASSERT_TRUE(ogg.Open());
    for (std::uint32_t i = 0; i < 100; ++i) {
        const std::uint32_t frame = i * 7919 * 31 % kFrames;
        const std::vector<float> some = ogg.DecodeFrom(frame, 3000);
        ASSERT_GE(some.size(), std::min(3000u, kFrames - frame) * 2);
        ASSERT_TRUE(std::equal(some.begin(), some.end(), all.begin() + frame * 2)) << frame;
    }
    EXPECT_EQ(ogg.modules.Log().TakeErrors(), u"");
}

OGG_TESTS(OggSound);

}  // namespace
