#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>

#include "audio/resampler_plan.h"

namespace {

constexpr std::int64_t kMegabyte = 1 << 20;

clResamplerPlan Planned(std::int64_t source, std::int64_t target) {
    clResamplerPlan plan;
    EXPECT_TRUE(plan.Make(source, target, 2)) << source << " to " << target;
    return plan;
}

bool Reaches(std::int64_t source, std::int64_t target, std::int64_t channels = 2) {
    return clResamplerPlan().Make(source, target, channels);
}

}  // namespace

TEST(ResamplerPlan, of_the_usual_pairs) {
    struct Row {
        std::int64_t source, target;
        bool up;
        std::int64_t oversample, firstRate, secondRate, first, second, fft, delay;
    };
    const Row rows[] = {{44100, 48000, true, 3, 7056000, 144000, 1595, 16383, 32768, 2730},
                        {48000, 44100, false, 3, 144000, 7056000, 16383, 1659, 32768, 2513},
                        {44100, 22050, false, 1, 44100, 44100, 16383, 1, 32768, 4096},
                        {22050, 44100, true, 1, 44100, 44100, 47, 16383, 32768, 8191},
                        {96000, 44100, false, 3, 288000, 14112000, 32767, 1659, 65536, 2511},
                        {44100, 96000, true, 3, 14112000, 288000, 1307, 32767, 65536, 5461}};
    for (const Row& row : rows) {
        const clResamplerPlan plan = Planned(row.source, row.target);
        SCOPED_TRACE(std::to_string(row.source) + " to " + std::to_string(row.target));
        EXPECT_EQ(plan.upward, row.up);
        EXPECT_EQ(plan.oversample, row.oversample);
        EXPECT_EQ(plan.firstRate, row.firstRate);
        EXPECT_EQ(plan.secondRate, row.secondRate);
        EXPECT_EQ(row.up ? plan.polyphase.length : plan.lowPass.length, row.first);
        EXPECT_EQ(row.up ? plan.lowPass.length : plan.polyphase.length, row.second);
        EXPECT_EQ(plan.fftLength, row.fft);
        EXPECT_EQ(plan.delay, row.delay);
    }
}

TEST(ResamplerPlan, works_with_lower_rates_than_high_ones) {
    struct Row {
        std::int64_t source, target, worksFrom, worksTo;
    };
    const Row rows[] = {
        {352800, 44100, 88200, 11025},  {352800, 96000, 88200, 24000}, {192000, 44100, 96000, 22050},
        {44100, 192000, 22050, 96000},  {22050, 192000, 11025, 96000}, {176400, 44100, 44100, 11025},
        {176400, 192000, 44100, 48000}, {48000, 88100, 24000, 44050},  {48000, 88200, 48000, 88200},
        {44100, 176400, 44100, 176400}, {192000, 48000, 192000, 48000}};
    for (const Row& row : rows) {
        const clResamplerPlan plan = Planned(row.source, row.target);
        EXPECT_EQ(plan.sourceRate, row.worksFrom) << row.source << " to " << row.target;
        EXPECT_EQ(plan.targetRate, row.worksTo) << row.source << " to " << row.target;
    }
}

TEST(ResamplerPlan, needs_a_factor_of_two_or_three_to_oversample_by) {
    EXPECT_FALSE(Reaches(25000, 30000));  // 5 to 6: upward the source's term counts
    EXPECT_FALSE(Reaches(30000, 25000));
    EXPECT_FALSE(Reaches(7000, 11000));
    EXPECT_EQ(Planned(32000, 44100).oversample, 2);  // 320
    EXPECT_EQ(Planned(44100, 48000).oversample, 3);  // 147
    EXPECT_EQ(Planned(6000, 7000).oversample, 2);    // 6: the two is asked for first
    EXPECT_EQ(Planned(5000, 10000).oversample, 1);   // a term of 1 needs none
}

TEST(ResamplerPlan, takes_rates_that_became_equal_for_a_way_down) {
    const clResamplerPlan plan = Planned(88101, 88100);
    EXPECT_EQ(plan.sourceRate, 44050);
    EXPECT_EQ(plan.targetRate, 44050);
    EXPECT_FALSE(plan.upward);
    EXPECT_EQ(plan.oversample, 1);
}

TEST(ResamplerPlan, refuses_what_is_no_rate) {
    EXPECT_FALSE(Reaches(0, 48000));
    EXPECT_FALSE(Reaches(48000, 0));
    EXPECT_FALSE(Reaches(352800, 3));  // a quarter of it is 0
    EXPECT_FALSE(Reaches(44100, 48000, 0));
    EXPECT_FALSE(Reaches(48000, 20));  // less than the transition is wide: nothing would pass
    EXPECT_FALSE(Reaches(1, 48000));
    EXPECT_TRUE(Reaches(48000, 200));
    EXPECT_TRUE(Reaches(2, 48000));
}

TEST(ResamplerPlan, refuses_tables_and_buffers_beyond_512_megabytes) {
    EXPECT_TRUE(Reaches(44100, 48000, 200));
    EXPECT_FALSE(Reaches(44100, 48000, 65535));
    EXPECT_FALSE(Reaches(4294967294, 4294967290));
    EXPECT_FALSE(Reaches(4294967295, 4294967294));
    EXPECT_FALSE(Reaches(2, 4294967295));
}

// Counted as they are allocated: the largest that is taken stays below.
TEST(ResamplerPlan, counts_what_a_run_allocates) {
    for (const std::int64_t target : {44100, 48000, 96000}) {
        clResamplerPlan plan;
        std::int64_t channels = 1;
        while (plan.Make(target == 44100 ? 48000 : 44100, target, channels + 1)) ++channels;
        ASSERT_TRUE(plan.Make(target == 44100 ? 48000 : 44100, target, channels));
        const clResamplerPlan::Buffers lengths = plan.Lengths();
        const std::int64_t each = lengths.in + lengths.out + lengths.input + lengths.overhang;
        EXPECT_LE(channels * each * 8, 512 * kMegabyte) << target;
        EXPECT_GT((channels + 4) * each * 8, 512 * kMegabyte) << target;
    }
}

// The largest angle that a filter's taps are made with: clLowPass, at its last tap.
double LargestAngle(const clResamplerPlan::Filter& filter) {
    return 2 * std::numbers::pi * filter.cutoff / static_cast<double>(filter.rate) *
           static_cast<double>(filter.length / 2);
}

// Of all ratios up to 12 to 12 and rates as far as they are reached, for the fewest channels.
TEST(ResamplerPlan, lets_no_filter_through_whose_sine_has_larger_angles_than_it_is_true_for) {
    double largest = 0;
    for (std::int64_t from = 1; from <= 12; ++from)
        for (std::int64_t to = 1; to <= 12; ++to)
            for (double unit = 100; unit < 0x1p32; unit *= 1.005) {
                clResamplerPlan plan;
                const auto whole = static_cast<std::int64_t>(unit);
                if (from == to || !plan.Make(from * whole, to * whole, 1)) continue;
                EXPECT_LE(plan.fftLength, 1 << 23);
                largest = std::max({largest, LargestAngle(plan.polyphase), LargestAngle(plan.lowPass)});
            }
    EXPECT_LT(largest, 0x1p22);
    EXPECT_GT(largest, 0x1p21) << "and half of that would not do";
}

// Rates without a common factor have long tables, but no number in them wraps.
TEST(ResamplerPlan, computes_common_rates_beyond_32_bits) {
    const clResamplerPlan plan = Planned(96001, 44102);
    EXPECT_GT(plan.secondRate, std::int64_t{1} << 31);
}
