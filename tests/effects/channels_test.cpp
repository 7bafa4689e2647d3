#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "effects/effect_run.h"

namespace {

class ChannelsEffect : public testing::Test {
  protected:
    EffectModule mChannels{u"Channels"};
};

using Frame = std::vector<double>;

std::string Stored(const Frame& frame) {
    return {reinterpret_cast<const char*>(frame.data()), frame.size() * sizeof(double)};
}

constexpr double kHalfPower = 0.7071067811865476;

// What comes of one frame, where 64-bit float shows every digit. The rows are of the mixer's rule.
TEST_F(ChannelsEffect, mixes_as_the_library_does) {
    const double both = 0.44 * 1.4142135623730951;
    const struct {
        Frame in, out;
    } rows[] = {
        {{0.5}, {0.5, 0.5}},
        {{0.5}, {0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5}},
        {{0.25, 0.5}, {0.25 * both + 0.5 * both}},
        {{0.25, 0.5}, {0.25, 0.5, 0.375, 0.375, kHalfPower * 0.25, kHalfPower * 0.5}},
        {{0.25, 0.5, 0.125}, {kHalfPower * 0.25 + 0.44 * 0.125, kHalfPower * 0.5 + 0.44 * 0.125}},
        {{4, -4}, {4, -4, 0, 0, kHalfPower * 4, kHalfPower * -4}},  // float is held by nothing
    };
    for (const auto& row : rows) {
        const auto from = static_cast<std::uint16_t>(row.in.size()),
                   to = static_cast<std::uint16_t>(row.out.size());
        const std::u16string settings = u"-channels=" + std::u16string(XString::FromUInt64(to).Text());
        const EffectRun run = mChannels.Run(settings.c_str(), SampleFormat(64, true, from), Stored(row.in));
        ASSERT_TRUE(run.good) << testing::PrintToString(run.errors);
        EXPECT_EQ(run.format.Format.nChannels, to);
        ASSERT_EQ(run.audio.size(), row.out.size() * sizeof(double));
        Frame out(row.out.size());
        std::memcpy(out.data(), run.audio.data(), run.audio.size());
        for (std::size_t i = 0; i < out.size(); ++i)
            EXPECT_DOUBLE_EQ(out[i], row.out[i]) << from << " to " << to;
    }
}

// Any number of 1 to 8 becomes any other, frame by frame.
TEST_F(ChannelsEffect, has_a_way_from_each_count_to_each_other) {
    for (std::uint16_t from = 1; from <= 8; ++from) {
        for (std::uint16_t to = 1; to <= 8; ++to) {
            const std::u16string settings = u"-channels=" + std::u16string(XString::FromUInt64(to).Text());
            const QvFormatExtensible format = SampleFormat(16, false, from);
            const EffectRun run = mChannels.Run(settings.c_str(), format, Noise(format, 777), {100});
            EXPECT_TRUE(run.good) << testing::PrintToString(run.errors);
            EXPECT_EQ(run.audio.size(), 777u * 2 * to) << from << " to " << to;
            EXPECT_NE(run.audio, std::string(run.audio.size(), '\0'));
        }
    }
}

TEST_F(ChannelsEffect, doubles_mono_bit_for_bit_in_every_depth) {
    for (const Depth& depth : kDepths) {
        const QvFormatExtensible format = SampleFormat(depth.bits, depth.isFloat, 1);
        const std::string audio = Noise(format, 3001);
        std::string twice;
        for (std::size_t at = 0; at < audio.size(); at += depth.bits / 8u)
            for (int side = 0; side < 2; ++side) twice += audio.substr(at, depth.bits / 8u);
        EXPECT_TRUE(mChannels.Run(u"-channels=2", format, audio).audio == twice) << depth.bits;
    }
}

TEST_F(ChannelsEffect, holds_integers_that_are_too_loud_at_full_scale) {
    const std::string loud("\xFF\x7F\xFF\x7F\x00\x80\x00\x80", 8);
    EXPECT_EQ(mChannels.Run(u"-channels=1", SampleFormat(16, false, 2), loud).audio,
              std::string("\xFF\x7F\x00\x80", 4));
}

}  // namespace
