#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>
#include <random>
#include <vector>

#include "effects/effect_run.h"

namespace {

class ResampleEffect : public testing::Test {
  protected:
    EffectRun Run(const QvFormatExtensible& format, std::uint32_t rate, std::string_view audio,
                  const std::vector<std::size_t>& pieces = {16384}) {
        const std::u16string settings = u"-rate=" + std::u16string(XString::FromUInt64(rate).Text());
        return mResample.Run(settings.c_str(), format, audio, pieces);
    }

    EffectModule mResample{u"Resample"};
};

struct Pair {
    std::uint32_t from, to;
};
constexpr Pair kPairs[] = {{44100, 48000},  {48000, 44100},  {44100, 22050}, {22050, 44100},  {96000, 44100},
                           {44100, 96000},  {192000, 44100}, {8000, 48000},  {352800, 48000}, {384000, 44100},
                           {176400, 48000}, {44100, 192000}, {11025, 8000},  {32000, 44100}};

TEST_F(ResampleEffect, gives_as_many_frames_as_the_rates_ask_for) {
    std::mt19937 random(11);
    for (const Pair& pair : kPairs) {
        const QvFormatExtensible format = SampleFormat(16, false, 1, pair.from);
        for (const std::size_t frames :
             {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{1000},
              std::size_t{16384}, std::size_t{random() % 100000}}) {
            const std::string audio = Noise(format, frames);
            const EffectRun run = Run(format, pair.to, audio, {1 + random() % 20000});
            EXPECT_TRUE(run.good) << testing::PrintToString(run.errors);
            EXPECT_EQ(run.audio.size() / 2, std::uint64_t{pair.to} * frames / pair.from)
                << frames << " at " << pair.from << " to " << pair.to;
            EXPECT_EQ(run.tailBlocks, 1u);
        }
    }
}

std::string Sine(double hertz, double rate, std::size_t frames, std::size_t channels) {
    std::string audio;
    for (std::size_t i = 0; i < frames * channels; ++i) {
        const double channel = 1 + static_cast<double>(i % channels);
        const double time = static_cast<double>(i / channels) / rate;
        const double value = 0.5 / channel * std::sin(2 * std::numbers::pi * hertz * channel * time);
        audio.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    return audio;
}

// The amplitude of the sine of this frequency in a stretch of audio, and what is left without it.
struct Tone {
    double amplitude, rest;
};
Tone Measure(const std::vector<double>& audio, double turnsPerFrame) {
    double sine = 0, cosine = 0, largest = 0;
    const auto angle = [&](std::size_t i) {
        return 2 * std::numbers::pi * turnsPerFrame * static_cast<double>(i);
    };
    const double scale = 2 / static_cast<double>(audio.size());
    for (std::size_t i = 0; i < audio.size(); ++i) {
        sine += scale * audio[i] * std::sin(angle(i));
        cosine += scale * audio[i] * std::cos(angle(i));
    }
    for (std::size_t i = 0; i < audio.size(); ++i) {
        const double expected = sine * std::sin(angle(i)) + cosine * std::cos(angle(i));
        largest = std::max(largest, std::abs(audio[i] - expected));
    }
    return {std::hypot(sine, cosine), largest};
}

std::vector<double> Channel(const std::string& audio, std::size_t channel, std::size_t channels,
                            std::size_t from, std::size_t frames) {
    std::vector<double> values(frames);
    for (std::size_t i = 0; i < frames; ++i)
        std::memcpy(&values[i], audio.data() + ((from + i) * channels + channel) * sizeof(double),
                    sizeof(double));
    return values;
}

// A second of it from the middle, where whole turns fit: 1000, 2000 and 3000 Hz.
TEST_F(ResampleEffect, keeps_each_tone_in_its_channel_and_adds_nothing) {
    for (const Pair& pair : {kPairs[0], kPairs[1], kPairs[4], kPairs[5], kPairs[7]}) {
        const QvFormatExtensible format = SampleFormat(64, true, 3, pair.from);
        const EffectRun run = Run(format, pair.to, Sine(1000, pair.from, 3 * pair.from, 3));
        ASSERT_TRUE(run.good) << testing::PrintToString(run.errors);
        ASSERT_EQ(run.audio.size(), 3u * pair.to * 3 * sizeof(double));
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const auto number = static_cast<double>(channel + 1);
            const Tone tone =
                Measure(Channel(run.audio, channel, 3, pair.to, pair.to), 1000 * number / pair.to);
            EXPECT_NEAR(tone.amplitude, 0.5 / number, 1e-7) << pair.from << " to " << pair.to;
            EXPECT_LT(tone.rest, 1e-7) << pair.from << " to " << pair.to;
        }
    }
}

TEST_F(ResampleEffect, serves_every_depth) {
    const std::string sine = Sine(1000, 44100, 44100, 1);
    for (const Depth& depth : kDepths) {
        EffectModule depths(u"Depth");
        const std::u16string settings = u"-bits=" + std::u16string(XString::FromUInt64(depth.bits).Text()) +
                                        (depth.isFloat ? u" -type=float" : u" -type=integer");
        const EffectRun stored = depths.Run(settings.c_str(), SampleFormat(64, true, 1, 44100), sine);
        const EffectRun run = Run(stored.format, 48000, stored.audio);
        ASSERT_TRUE(run.good) << testing::PrintToString(run.errors);
        const QvFormatExtensible expected = SampleFormat(depth.bits, depth.isFloat, 1, 48000);
        EXPECT_EQ(std::memcmp(&run.format, &expected, sizeof expected), 0) << depth.bits;
        EXPECT_EQ(run.audio.size(), 48000u * depth.bits / 8);
        // Back in 64 bits it is the sine but for what its depth can't tell.
        std::string large = run.audio;
        if (depth.isFloat && depth.bits == 32) large = depths.Run(u"-bits=64", run.format, run.audio).audio;
        if (!depth.isFloat) {
            const EffectRun narrow = depths.Run(u"-bits=32 -type=float", run.format, run.audio);
            large = depths.Run(u"-bits=64", narrow.format, narrow.audio).audio;
        }
        const Tone tone = Measure(Channel(large, 0, 1, 12000, 24000), 1.0 / 48);
        EXPECT_NEAR(tone.amplitude, 0.5, depth.bits == 8 ? 0.01 : 1e-4) << depth.bits;
        EXPECT_LT(tone.rest, depth.bits == 8 ? 0.02 : 1e-4) << depth.bits;
    }
}

}  // namespace
