#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "effects/effect_run.h"

namespace {

class Fade : public testing::Test {
  protected:
    EffectModule mFade{u"Fade"};
};

double Linear(std::size_t frame, double frames) {
    return static_cast<double>(frame) < frames ? static_cast<double>(frame) / frames : 1;
}
double Cosine(std::size_t frame, double frames) {
    return (1 - std::cos(std::numbers::pi * Linear(frame, frames))) / 2;
}

// At 1000 Hz a millisecond is a frame.
struct Shaped {
    const char16_t* settings;
    FactorOf factor;
};
constexpr Shaped kShapes[] = {
    {u"-in=0.25 -out=0.5",
     [](std::size_t frame, std::size_t behind) { return Linear(frame, 250) * Linear(behind, 500); }},
    {u"-in=0.001", [](std::size_t frame, std::size_t) { return Linear(frame, 1); }},
    {u"-out=0.2 -shape=linear", [](std::size_t, std::size_t behind) { return Linear(behind, 200); }},
    {u"-in=0.4 -shape=cosine", [](std::size_t frame, std::size_t) { return Cosine(frame, 400); }},
    {u"-in=1.5 -out=2 -shape=cosine",
     [](std::size_t frame, std::size_t behind) { return Cosine(frame, 1500) * Cosine(behind, 2000); }},
    {u"-in=3600 -out=3600",
     [](std::size_t frame, std::size_t behind) { return Linear(frame, 3.6e6) * Linear(behind, 3.6e6); }},
};

TEST_F(Fade, multiplies_each_frame_by_its_distance_from_both_ends) {
    for (const Depth& depth : kDepths) {
        const QvFormatExtensible format = SampleFormat(depth.bits, depth.isFloat, 2);
        for (const Shaped& shape : kShapes) {
            for (const std::size_t frames : {1u, 2u, 100u, 999u, 3000u}) {  // shorter than the fades, too
                const std::string audio = Noise(format, frames);
                const EffectRun run = mFade.Run(shape.settings, format, audio, {64});
                EXPECT_TRUE(run.good);
                EXPECT_TRUE(run.audio == Twin(format, audio, shape.factor))
                    << depth.bits << (depth.isFloat ? " float " : " ") << frames << " "
                    << testing::PrintToString(shape.settings);
            }
        }
    }
}

TEST_F(Fade, begins_and_ends_with_silence_and_leaves_the_middle_alone) {
    const QvFormatExtensible format = SampleFormat(16, false, 1);
    const std::string audio = Noise(format, 1000);
    for (const char16_t* settings : {u"-in=0.1 -out=0.1", u"-in=0.1 -out=0.1 -shape=cosine"}) {
        const std::string faded = mFade.Run(settings, format, audio).audio;
        ASSERT_EQ(faded.size(), audio.size());
        EXPECT_EQ(faded.substr(0, 2), std::string(2, '\0'));
        EXPECT_EQ(faded.substr(1998), std::string(2, '\0'));
        EXPECT_EQ(faded.substr(200, 1600), audio.substr(200, 1600));
    }
}

TEST_F(Fade, without_settings_or_without_audio_changes_nothing) {
    const QvFormatExtensible format = SampleFormat(24, false);
    const std::string audio = Noise(format, 1000);
    EXPECT_TRUE(mFade.Run(u"", format, audio).audio == audio);
    EXPECT_TRUE(mFade.Run(u"-in=0 -out=0.0004", format, audio).audio == audio);  // less than half a frame
    const EffectRun nothing = mFade.Run(u"-in=1 -out=1", format, "");
    EXPECT_TRUE(nothing.good);
    EXPECT_EQ(nothing.audio, "");
    EXPECT_EQ(nothing.tailBlocks, 1u);
}

TEST_F(Fade, does_not_care_how_the_audio_is_cut) {
    const QvFormatExtensible format = SampleFormat(16, false);
    const std::string audio = Noise(format, 2000);
    const std::string whole = mFade.Run(kShapes[0].settings, format, audio, {2000}).audio;
    for (const std::vector<std::size_t>& pieces :
         {std::vector<std::size_t>{1}, {499}, {500}, {501}, {1999, 1}, {0, 1, 0, 300}})
        EXPECT_TRUE(mFade.Run(kShapes[0].settings, format, audio, pieces).audio == whole);
}

// What is held back comes in pieces, so that a long fade of many channels needs no second copy of itself.
TEST_F(Fade, gives_a_long_fade_out_in_pieces) {
    const QvFormatExtensible format = SampleFormat(32, false, 8, 48000);
    const std::string audio = Noise(format, 80000);  // 2.5 MB
    const EffectRun run = mFade.Run(u"-out=3600", SampleFormat(32, false, 8, 1000), audio, {5000});
    EXPECT_TRUE(run.good);
    EXPECT_EQ(run.audio.size(), audio.size());
    EXPECT_EQ(run.tailBlocks, 3u);
}

TEST_F(Fade, refuses_a_fade_out_that_would_need_too_much_memory) {
    const QvFormatExtensible format = SampleFormat(64, true, 8, 192000);
    EXPECT_TRUE(mFade.Run(u"-in=3600 -out=87", format, "").good);
    const EffectRun run = mFade.Run(u"-out=88", format, "");
    EXPECT_FALSE(run.began);
    EXPECT_EQ(run.errors, u"Fade: a fade-out of this audio can be at most 87 seconds long\r\n");
}

TEST_F(Fade, refuses_settings_in_words) {
    const struct {
        const char16_t* settings;
        std::u16string error;
    } rows[] = {
        {u"-in=-1", u"Fade: the setting -in is \"-1\", but must be a number from 0 to 3600\r\n"},
        {u"-out=3601", u"Fade: the setting -out is \"3601\", but must be a number from 0 to 3600\r\n"},
        {u"-shape=round", u"Fade: the setting -shape is \"round\", but must be one of linear cosine\r\n"},
        {u"-in=1 -in=2", u"Fade: the setting -in is given twice\r\n"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(mFade.Run(row.settings, SampleFormat(16, false), "").errors, row.error);
}

}  // namespace
