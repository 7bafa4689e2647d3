#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "effects/effect_run.h"

namespace {

class Volume : public testing::Test {
  protected:
    EffectModule mVolume{u"Volume"};
};

struct Gain {
    const char16_t* settings;
    FactorOf factor;
};
constexpr Gain kGains[] = {
    {u"-gain=-6", [](std::size_t, std::size_t) { return 0.50118723362727228500; }},
    {u"-gain=3.5", [](std::size_t, std::size_t) { return 1.49623565609443341188; }},
    {u"-gain=-20", [](std::size_t, std::size_t) { return 0.1; }},
    {u"-gain=-100", [](std::size_t, std::size_t) { return 1e-5; }},
};

TEST_F(Volume, multiplies_every_sample_of_every_depth) {
    for (const Depth& depth : kDepths) {
        for (const Gain& gain : kGains) {
            const QvFormatExtensible format = SampleFormat(depth.bits, depth.isFloat, 3);
            const std::string audio = Noise(format, 5000);
            const EffectRun run = mVolume.Run(gain.settings, format, audio);
            EXPECT_TRUE(run.good);
            EXPECT_EQ(std::memcmp(&run.format, &format, sizeof format), 0);
            EXPECT_TRUE(run.audio == Twin(format, audio, gain.factor))
                << depth.bits << (depth.isFloat ? " float " : " ") << testing::PrintToString(gain.settings);
        }
    }
}

TEST_F(Volume, of_0_dB_changes_no_bit) {
    for (const Depth& depth : kDepths) {
        const QvFormatExtensible format = SampleFormat(depth.bits, depth.isFloat);
        const std::string audio = Noise(SampleFormat(8, false), 24000);  // float that is no number, too
        for (const char16_t* settings : {u"", u"  ", u"-gain=0", u" -gain=-0.0 "})
            EXPECT_TRUE(mVolume.Run(settings, format, audio).audio == audio) << depth.bits;
    }
}

TEST_F(Volume, rounds_to_the_bits_that_are_valid) {
    const QvFormatExtensible format = SampleFormat(24, false, 2, 1000, 20);
    const std::string audio = Noise(format, 3000);
    const EffectRun run = mVolume.Run(u"-gain=-6", format, audio);
    EXPECT_TRUE(run.audio == Twin(format, audio, kGains[0].factor));
    for (std::size_t i = 0; i < run.audio.size(); i += 3) ASSERT_EQ(run.audio[i] & 0xF, 0);
}

TEST_F(Volume, holds_what_is_too_loud_at_full_scale) {
    const struct {
        Depth depth;
        std::string in, out;
    } rows[] = {
        {{8, false}, "\x7F\x80\x81", std::string("\x00\x80\xFF", 3)},
        {{16, false}, std::string("\xFF\xFF\x00\x00\x01\x00", 6), std::string("\x00\x80\x00\x00\xFF\x7F", 6)},
        {{24, false}, std::string("\x00\xFF\xFF\x00\x01\x00", 6), std::string("\x00\x00\x80\xFF\xFF\x7F", 6)},
        {{32, false},
         std::string("\x00\x00\x80\xFF\x00\x00\x80\x00", 8),
         std::string("\x00\x00\x00\x80\xFF\xFF\xFF\x7F", 8)},
    };
    for (const auto& row : rows) {
        const EffectRun run = mVolume.Run(u"-gain=100", SampleFormat(row.depth.bits, false, 1), row.in);
        EXPECT_EQ(run.audio, row.out) << row.depth.bits;
    }
}

TEST_F(Volume, leaves_float_beyond_full_scale_and_keeps_it_finite) {
    const float in[] = {0.5f, -3e38f, std::numeric_limits<float>::infinity()};
    const EffectRun run = mVolume.Run(u"-gain=20", SampleFormat(32, true, 1),
                                      std::string(reinterpret_cast<const char*>(in), sizeof in));
    float out[3];
    ASSERT_EQ(run.audio.size(), sizeof out);
    std::memcpy(out, run.audio.data(), sizeof out);
    EXPECT_EQ(out[0], 5.0f);
    EXPECT_EQ(out[1], std::numeric_limits<float>::lowest());
    EXPECT_EQ(out[2], std::numeric_limits<float>::infinity());
}

TEST_F(Volume, does_not_care_how_the_audio_is_cut) {
    const QvFormatExtensible format = SampleFormat(16, false);
    const std::string audio = Noise(format, 2000);
    const std::string whole = mVolume.Run(u"-gain=-1", format, audio, {2000}).audio;
    EXPECT_EQ(whole.size(), audio.size());
    for (const std::vector<std::size_t>& pieces :
         {std::vector<std::size_t>{1}, {7}, {1999, 1}, {0, 1, 0, 500}})
        EXPECT_TRUE(mVolume.Run(u"-gain=-1", format, audio, pieces).audio == whole);
}

TEST_F(Volume, refuses_settings_and_formats_in_words) {
    const QvFormatExtensible format = SampleFormat(16, false);
    const struct {
        const char16_t* settings;
        QvFormatExtensible format;
        std::u16string error;
    } rows[] = {
        {u"-gain=101", format,
         u"Volume: the setting -gain is \"101\", but must be a number from -100 to 100\r\n"},
        {u"-gain=nan", format,
         u"Volume: the setting -gain is \"nan\", but must be a number from -100 to 100\r\n"},
        {u"-gain=", format, u"Volume: the setting -gain is \"\", but must be a number from -100 to 100\r\n"},
        {u"-louder=1", format, u"Volume: the setting -louder is not known\r\n"},
        {u"6 dB", format, u"Volume: the setting \"6\" does not have the form -name=value\r\n"},
        {u"", SampleFormat(12, false), u"Volume: samples of type 1 with 12 bits can't be changed\r\n"},
        {u"", SampleFormat(16, true), u"Volume: samples of type 3 with 16 bits can't be changed\r\n"},
        {u"", SampleFormat(16, false, 0), u"Volume: 0 channels can't be changed\r\n"},
        {u"", SampleFormat(16, false, 2, 0), u"Volume: a sample rate of 0 can't be changed\r\n"},
    };
    for (const auto& row : rows) {
        const EffectRun run = mVolume.Run(row.settings, row.format, std::string(16, '\1'));
        EXPECT_FALSE(run.began);
        EXPECT_EQ(run.errors, row.error);
        EXPECT_FALSE(mVolume.End());
    }
}

TEST_F(Volume, refuses_a_block_that_ends_within_a_frame_and_the_run_with_it) {
    ASSERT_TRUE(mVolume.Begin(u"", SampleFormat(16, false)));
    std::string audio;
    bool finished = false;
    EXPECT_FALSE(mVolume.Pass("123", false, audio, &finished));
    EXPECT_FALSE(mVolume.Pass("1234", true, audio, &finished));
    EXPECT_FALSE(mVolume.End());
    EXPECT_EQ(mVolume.Log().TakeErrors(), u"Volume: a block ends within a frame\r\n");
    EXPECT_TRUE(mVolume.Run(u"", SampleFormat(16, false), "1234").good);  // the next run is a new one
}

}  // namespace
