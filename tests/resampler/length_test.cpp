#include <gtest/gtest.h>

#include <random>

#include "resampler/resampled.h"
#include "support/effort.h"

namespace {

std::size_t Due(std::size_t frames, RatePair rates) {
    return frames * rates.target / rates.source;
}

std::size_t FramesOf(std::size_t frames, RatePair rates) {
    return Resampled(std::vector<double>(frames, 0.25), 1, rates).size();
}

}  // namespace

TEST(ResamplerLength, is_the_ratio_rounded_down_for_any_pair_and_length) {
    const std::uint32_t usual[] = {8000,  11025, 16000, 22050, 24000,  32000,  37800,  44100, 48000,
                                   64000, 88100, 88200, 96000, 176400, 192000, 352800, 384000};
    std::mt19937 random(20);
    const auto any = [&] { return static_cast<std::uint32_t>(4000 + 60 * (random() % 3000)); };
    for (int i = 0; i < Times(2000, 150, 400); ++i) {
        RatePair rates = {usual[random() % std::size(usual)], usual[random() % std::size(usual)]};
        if (i % 4 == 0) rates = {any(), any()};
        if (rates.source == rates.target) continue;
        const std::size_t frames = random() % (i % 8 == 0 ? 100000 : i % 2 == 0 ? 50 : 8000);
        clResamplerPlan plan;
        if (!plan.Make(rates.source, rates.target, 1)) continue;
        ASSERT_EQ(FramesOf(frames, rates), Due(frames, rates))
            << rates.source << " to " << rates.target << ", " << frames;
    }
}

// 0 included, where a frame is shorter than one of the target's.
TEST(ResamplerLength, of_the_shortest_streams) {
    for (const RatePair rates :
         {RatePair{44100, 22050}, {44100, 48000}, {48000, 44100}, {22050, 192000}, {384000, 8000}})
        for (const std::size_t frames : {0u, 1u, 2u, 3u, 7u})
            EXPECT_EQ(FramesOf(frames, rates), Due(frames, rates))
                << rates.source << " to " << rates.target << ", " << frames;
}

// A step upward may be shorter than one frame of the source.
TEST(ResamplerLength, of_sources_whose_frames_last_longer_than_a_step) {
    for (const RatePair rates : {RatePair{2, 48000}, {4, 96000}, {6, 192000}})
        for (const std::size_t frames : {1u, 4u, 9u})
            EXPECT_EQ(FramesOf(frames, rates), Due(frames, rates)) << rates.source << ", " << frames;
}

// The delay is longer than the 16384 frames of silence that are enough elsewhere.
TEST(ResamplerLength, of_sources_whose_filters_are_longer_than_a_block_of_silence) {
    for (const std::uint32_t target : {44100u, 48000u, 88200u, 96000u, 192000u})
        for (const std::size_t frames : {1u, 1000u, 40000u, 400001u})
            EXPECT_EQ(FramesOf(frames, {384000, target}), Due(frames, {384000, target}))
                << target << ", " << frames;
}

// A quarter or half of the rates is rounded down: the audio is a trifle slower or faster than the rates say, and
// the length is still theirs.
TEST(ResamplerLength, holds_where_the_rates_worked_with_are_not_quite_in_ratio) {
    for (const RatePair rates :
         {RatePair{352800, 44103}, {176400, 48003}, {88101, 88100}, {48001, 88100}, {352800, 4802}})
        for (const std::size_t frames : {1u, 88100u, 300000u})
            EXPECT_EQ(FramesOf(frames, rates), Due(frames, rates))
                << rates.source << " to " << rates.target << ", " << frames;
}

TEST(ResamplerLength, does_not_depend_on_the_blocks) {
    for (const RatePair rates : {RatePair{48000, 44100}, {44100, 48000}, {192000, 44100}})
        for (const std::size_t block : {1000u, 16384u, 16385u, 20000u, 100000u})
            EXPECT_EQ(Resampled(std::vector<double>(60000), 1, rates, {block}).size(), Due(60000, rates))
                << rates.source << " in blocks of " << block;
}
