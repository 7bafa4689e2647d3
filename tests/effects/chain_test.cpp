// Effects behind one another, each with the format that the one before answered with.
#include <gtest/gtest.h>

#include <cstring>

#include "effects/effect_run.h"
#include "support/codec/codec_modules.h"

namespace {

using Chain = std::vector<std::pair<std::u16string_view, const char16_t*>>;

EffectRun Through(const Chain& chain, const QvFormatExtensible& format, const std::string& audio) {
    EffectRun run;
    run.good = true;
    run.format = format;
    run.audio = audio;
    for (const auto& [name, settings] : chain) {
        EffectModule effect(name);
        run = effect.Run(settings, run.format, run.audio, {3000});
        EXPECT_TRUE(run.good) << testing::PrintToString(run.errors);
    }
    return run;
}

constexpr std::size_t kFrames = 20000;
const QvFormatExtensible kStereo = SampleFormat(16, false, 2, 44100);
const Chain::value_type kRate{u"Resample", u"-rate=48000"}, kMono{u"Channels", u"-channels=1"},
    kLess{u"Depth", u"-bits=8"}, kMore{u"Depth", u"-bits=32"}, kQuiet{u"Volume", u"-gain=-6"},
    kOut{u"Fade", u"-out=0.1"};

TEST(EffectChain, comes_to_the_same_format_and_length_in_every_order) {
    const std::string audio = Noise(kStereo, kFrames);
    Chain chain{kMono, kRate, kLess};
    const QvFormatExtensible expected = SampleFormat(8, false, 1, 48000);
    for (int order = 0; order < 6; ++order) {
        const EffectRun run = Through(chain, kStereo, audio);
        EXPECT_EQ(std::memcmp(&run.format, &expected, sizeof expected), 0);
        EXPECT_EQ(run.audio.size(), kFrames * 48000 / 44100);
        if (order % 2 == 0)
            std::swap(chain[0], chain[1]);
        else
            std::swap(chain[1], chain[2]);
    }
}

// A fade counts the frames that come to it.
TEST(EffectChain, lets_a_fade_end_where_the_new_rate_ends) {
    const std::string audio(kFrames * 4, '\x20');  // a steady level
    const EffectRun plain = Through({kRate}, kStereo, audio), faded = Through({kRate, kOut}, kStereo, audio);
    ASSERT_EQ(faded.audio.size(), kFrames * 48000 / 44100 * 4);
    const std::size_t before = faded.audio.size() - 4800 * 4;
    EXPECT_TRUE(faded.audio.substr(0, before) == plain.audio.substr(0, before));
    EXPECT_TRUE(faded.audio.substr(before) != plain.audio.substr(before));
    EXPECT_TRUE(faded.audio.ends_with(std::string(4, '\0')));
}

TEST(EffectChain, serves_those_in_front_and_behind_in_their_own_formats) {
    const std::string audio = Noise(kStereo, kFrames);
    const EffectRun run = Through({kMore, kQuiet, kMono, kOut, kRate, kLess}, kStereo, audio);
    const QvFormatExtensible expected = SampleFormat(8, false, 1, 48000);
    EXPECT_EQ(std::memcmp(&run.format, &expected, sizeof expected), 0);
    EXPECT_EQ(run.audio.size(), kFrames * 48000 / 44100);
}

// There and back: narrowing takes off exactly what widening had put on.
TEST(EffectChain, of_more_bits_and_fewer_again_changes_nothing) {
    const std::string audio = Noise(kStereo, kFrames);
    const Chain::value_type back{u"Depth", u"-bits=16"}, floats{u"Depth", u"-bits=32 -type=float"};
    EXPECT_TRUE(Through({kMore, back}, kStereo, audio).audio == audio);
    EXPECT_TRUE(Through({floats, back}, kStereo, audio).audio == audio);
}

}  // namespace
