// What Opus has and Vorbis has not: one rate for all, gain, and a memory that reaches back.
#include <algorithm>
#include <cmath>

#include "ogg/ogg_codecs.h"

using namespace ogg_file;

namespace {

class Opus : public testing::Test {
  protected:
    // Fields of the header packet.
    static constexpr std::size_t kGain = 16;

    OggModules ogg{kOpus};
};

}  // namespace

TEST_F(Opus, Every_rate_becomes_48000_Hz_and_whole_frames_are_rounded_up) {
    for (const std::uint32_t rate :
         {100u, 4000u, 8000u, 11025u, 12000u, 16000u, 22050u, 24000u, 32000u, 44100u, 47999u, 48000u, 48001u,
          88200u, 96000u, 176400u, 192000u, 384000u, 768000u})
        for (const std::uint64_t frames : {0ull, 1ull, 2ull, 99ull, 959ull, 4096ull, 4097ull, 10007ull}) {
            const Decoding decoding = ogg.Decode(
                ogg.Encode(MakeSound(static_cast<std::uint32_t>(frames), 2), FloatFormat(rate, 2)));
            EXPECT_EQ(decoding.errors, u"");
            EXPECT_EQ(ValueOf(decoding.Format().Format.nSamplesPerSec), 48000u);
            EXPECT_EQ(decoding.audio.size() / 8, (frames * 48000 + rate - 1) / rate)
                << frames << " at " << rate;
        }
}

TEST_F(Opus, A_tone_of_another_rate_keeps_its_pitch_and_place) {
    for (const std::uint32_t rate : {8000u, 44100u, 96000u}) {
        std::vector<float> tone(rate);
        for (std::uint32_t i = 0; i < rate; ++i)
            tone[i] = static_cast<float>(0.5 * std::sin(6.283185307 * 440 * i / rate));
        const std::vector<float> decoded =
            Floats(ogg.Decode(ogg.Encode(tone, FloatFormat(rate, 1), u"-bitrate=128")).audio);
        ASSERT_EQ(decoded.size(), 48000u);
        double error = 0, whole = 0;
        for (std::size_t i = 0; i < decoded.size(); ++i) {
            const double expected = 0.5 * std::sin(6.283185307 * 440 * static_cast<double>(i) / 48000);
            error += (decoded[i] - expected) * (decoded[i] - expected);
            whole += expected * expected;
        }
        EXPECT_LT(error / whole, 0.01) << rate;  // a frame off would be 0.003, ten of them 0.3
    }
}

TEST_F(Opus, Rates_that_can_not_be_converted_are_refused) {
    EXPECT_EQ(ogg.Refusal(FloatFormat(99, 2), u""), u"a sample rate of 99 Hz can't be converted for Opus");
    EXPECT_EQ(ogg.Refusal(FloatFormat(768001, 2), u""),
              u"a sample rate of 768001 Hz can't be converted for Opus");
}

TEST_F(Opus, The_gain_of_the_header_is_applied) {
    std::vector<Page> pages = Pages(ogg.Encode(48000));
    const std::vector<float> plain = Floats(ogg.Decode(Bytes(pages)).audio);
    pages[0].body[kGain] = 0;
    pages[0].body[kGain + 1] = -6;  // in decibels; the byte before holds the 256ths
    const std::string quieter = Bytes(pages);
    const std::vector<float> quiet = Floats(ogg.Decode(quieter).audio);
    ASSERT_EQ(quiet.size(), plain.size());
    for (std::size_t i = 0; i < plain.size(); ++i)
        ASSERT_NEAR(quiet[i], plain[i] * std::pow(10, -6 / 20.0), 1e-4);
    EXPECT_EQ(ogg.Row(quieter, u"Output gain"), u"-6 dB");
}

TEST_F(Opus, Rows_tell_of_the_file) {
    const std::string file = ogg.Encode(MakeSound(96000, 2), FloatFormat(96000, 2));
    EXPECT_EQ(ogg.Row(file, u"Container"), u"Ogg");
    EXPECT_EQ(ogg.Row(file, u"Codec"), u"Opus");
    EXPECT_EQ(ogg.Row(file, u"Sample rate"), u"48000 Hz");
    EXPECT_EQ(ogg.Row(file, u"Input sample rate"), u"96000 Hz");
    EXPECT_EQ(ogg.Row(file, u"Pre-skip"), u"312 frames");
    EXPECT_EQ(ogg.Row(file, u"Output gain"), u"");
    EXPECT_NE(ogg.Row(file, u"Encoder").find(u"opus"), std::u16string::npos);
}

// Speech at low bit rates goes through a part of the codec that reckons in whole numbers, whose rounding
// never quite forgets where it began.
TEST_F(Opus, From_anywhere_the_sound_is_that_of_the_whole_in_every_mode) {
    constexpr std::uint32_t kFrames = 400003;
    constexpr double kRounding = 0.01;
    const struct {
        const char16_t* settings;
        double tolerance;
    } rows[] = {
        {u"-bitrate=6", kRounding},
        {u"-bitrate=12 -signal=speech", kRounding},
        {u"-bitrate=24 -signal=speech", kRounding},
        {u"-bitrate=32 -complexity=0", kRounding},
        {u"-bitrate=48 -signal=music", 0},
        {u"-bitrate=96 -mode=cvbr", 0},
        {u"-bitrate=160 -mode=cbr", 0},
        {u"-bitrate=510", 0},
    };
    for (const auto& row : rows) {
        const std::vector<float> all = Floats(ogg.Decode(ogg.Encode(kFrames, 1, 2, row.settings)).audio);
        ASSERT_EQ(all.size(), kFrames * 2);
        ASSERT_TRUE(ogg.Open());
        double worst = 0;
        for (std::uint32_t i = 0; i < 30; ++i) {
            const std::uint32_t frame = i * 7919 * 37 % kFrames;
            const std::vector<float> some = ogg.DecodeFrom(frame, 3000);
            ASSERT_GE(some.size(), std::min(3000u, kFrames - frame) * 2);
            for (std::size_t k = 0; k < some.size(); ++k)
                worst = std::max(worst, std::abs(double{some[k]} - all[frame * 2 + k]));
        }
        EXPECT_LE(worst, row.tolerance) << Narrow(row.settings);
    }
}

TEST_F(Opus, Settings_do_what_they_say) {
    const auto kbits = [&](const char16_t* settings) {
        return static_cast<double>(ogg.Encode(480000, 1, 2, settings).size()) * 8 / 10000;
    };
    EXPECT_NEAR(kbits(u"-bitrate=64 -mode=cbr"), 65, 2);
    EXPECT_NEAR(kbits(u"-bitrate=160 -mode=cvbr"), 160, 16);
    EXPECT_NEAR(kbits(u"-bitrate=160"), 160, 40);
    EXPECT_LT(kbits(u"-bitrate=12"), 20);
    EXPECT_GT(kbits(u"-bitrate=510"), 400);
    EXPECT_NE(ogg.Encode(48000, 1, 2, u"-complexity=0"), ogg.Encode(48000, 1, 2, u"-complexity=10"));
    EXPECT_NE(ogg.Encode(48000, 1, 2, u"-bitrate=24 -signal=speech"),
              ogg.Encode(48000, 1, 2, u"-bitrate=24 -signal=music"));
}

TEST_F(Opus, Settings_that_make_no_sense_are_refused_in_words) {
    const struct {
        const char16_t* settings;
        std::uint32_t channels;
        const char16_t* told;
    } rows[] = {
        {u"-bitrate=5", 2, u"the setting -bitrate is \"5\", but must be a whole number from 6 to 512"},
        {u"-bitrate=513", 2, u"the setting -bitrate is \"513\", but must be a whole number from 6 to 512"},
        {u"-bitrate=301", 1, u"the setting -bitrate is \"301\", but must be a whole number from 6 to 300"},
        {u"-mode=abr", 2, u"the setting -mode is \"abr\", but must be one of vbr cvbr cbr"},
        {u"-complexity=11", 2, u"the setting -complexity is \"11\", but must be a whole number from 0 to 10"},
        {u"-signal=noise", 2, u"the setting -signal is \"noise\", but must be one of auto music speech"},
        {u"-quality=5", 2, u"the setting -quality is not known"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ogg.Refusal(FloatFormat(48000, row.channels), row.settings), row.told);
}
