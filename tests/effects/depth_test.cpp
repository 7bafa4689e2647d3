#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "effects/effect_run.h"

namespace {

class DepthEffect : public testing::Test {
  protected:
    EffectModule mDepth{u"Depth"};
};

// A sample as an integer of 32 bits with the sample at the top; what float has beyond that is cut off.
std::int64_t Taken(const std::string& sample, const Depth& depth) {
    if (depth.isFloat) {
        double value = 0;
        float narrow = 0;
        std::memcpy(&narrow, sample.data(), sizeof narrow);
        if (depth.bits == 64)
            std::memcpy(&value, sample.data(), sizeof value);
        else
            value = static_cast<double>(narrow);
        return static_cast<std::int64_t>(std::trunc(std::clamp(value * 0x1p31, -0x1p31, 0x1p31 - 1)));
    }
    std::int64_t value = 0;
    for (std::size_t i = 0; i < sample.size(); ++i)
        value += std::int64_t{static_cast<std::uint8_t>(sample[i])} << (8 * i);
    if (depth.bits == 8) return (value - 128) * (std::int64_t{1} << 24);
    if (value >= std::int64_t{1} << (depth.bits - 1)) value -= std::int64_t{1} << depth.bits;
    return value * (std::int64_t{1} << (32 - depth.bits));
}

std::string Stored(std::int64_t value, const Depth& depth) {
    std::string sample(depth.bits / 8u, '\0');
    if (depth.isFloat) {
        const double large = static_cast<double>(value) * 0x1p-31;
        const auto small = static_cast<float>(large);
        if (depth.bits == 64)
            std::memcpy(sample.data(), &large, sizeof large);
        else
            std::memcpy(sample.data(), &small, sizeof small);
        return sample;
    }
    value >>= 32 - depth.bits;
    if (depth.bits == 8) value += 128;
    for (std::size_t i = 0; i < sample.size(); ++i) sample[i] = static_cast<char>(value >> (8 * i));
    return sample;
}

std::string Twin(const std::string& audio, const Depth& from, const Depth& to) {
    std::string changed;
    for (std::size_t at = 0; at < audio.size(); at += from.bits / 8u)
        changed += Stored(Taken(audio.substr(at, from.bits / 8u), from), to);
    return changed;
}

std::u16string Settings(const Depth& to) {
    return u"-bits=" + std::u16string(XString::FromUInt64(to.bits).Text()) +
           (to.isFloat ? u" -type=float" : u" -type=integer");
}

TEST_F(DepthEffect, changes_every_sample_of_every_depth) {
    for (const Depth& from : kDepths) {
        for (const Depth& to : kDepths) {
            const bool isSame = from.bits == to.bits && from.isFloat == to.isFloat;
            if (isSame || (!from.isFloat && to.bits == 64)) continue;
            const QvFormatExtensible format = SampleFormat(from.bits, from.isFloat, 3, 44100);
            const std::string audio = Noise(format, 2111);
            const EffectRun run = mDepth.Run(Settings(to).c_str(), format, audio, {1000});
            EXPECT_TRUE(run.good) << testing::PrintToString(run.errors);
            EXPECT_TRUE(run.audio == Twin(audio, from, to))
                << from.bits << (from.isFloat ? " float" : "") << " to " << to.bits
                << (to.isFloat ? " float" : "");
        }
    }
}

// There is no float of 8, 16 or 24 bits.
TEST_F(DepthEffect, makes_integers_of_float_where_only_they_have_the_depth) {
    const struct {
        const char16_t* settings;
        Depth from, to;
    } rows[] = {{u"-bits=8", {32, true}, {8, false}},        {u"-bits=16", {64, true}, {16, false}},
                {u"-bits=24", {32, true}, {24, false}},      {u"-bits=32", {64, true}, {32, true}},
                {u"-bits=64", {32, true}, {64, true}},       {u"-bits=32", {16, false}, {32, false}},
                {u"-type=integer", {32, true}, {32, false}}, {u"-type=float", {32, false}, {32, true}}};
    for (const auto& row : rows) {
        const QvFormatExtensible format = SampleFormat(row.from.bits, row.from.isFloat, 2, 44100);
        const QvFormatExtensible expected = SampleFormat(row.to.bits, row.to.isFloat, 2, 44100);
        const std::string audio = Noise(format, 100);
        const EffectRun run = mDepth.Run(row.settings, format, audio);
        EXPECT_TRUE(run.good) << testing::PrintToString(run.errors);
        EXPECT_EQ(std::memcmp(&run.format, &expected, sizeof expected), 0)
            << testing::PrintToString(row.settings);
        EXPECT_TRUE(run.audio == Twin(audio, row.from, row.to)) << testing::PrintToString(row.settings);
    }
}

TEST_F(DepthEffect, holds_float_beyond_full_scale_at_its_ends) {
    const float in[] = {1.5f, -1.5f, 1.0f, -1.0f, 0.5f};
    const std::string audio(reinterpret_cast<const char*>(in), sizeof in);
    const std::string out("\xFF\x7F\x00\x80\xFF\x7F\x00\x80\x00\x40", 10);
    EXPECT_EQ(mDepth.Run(u"-bits=16", SampleFormat(32, true, 1), audio).audio, out);
}

}  // namespace
