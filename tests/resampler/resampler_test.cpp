#include "audio/resampler.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>

#include "audio/format_records.h"
#include "resampler/resampled.h"
#include "support/allocation_faults.h"
#include "support/effort.h"
#include "support/instruction_sets.h"

namespace {

// A resampler for one format, fed with bytes.
struct Stage {
    Stage(QvFormat record, std::uint32_t target) : format(record) {
        in.setFormat(&format);
        designed = resampler.Design(in, target);
    }

    bool Give(const std::vector<std::uint8_t>& bytes, bool final) {
        in.setData(bytes.data() ? bytes.data() : &none, static_cast<std::uint32_t>(bytes.size()), &format,
                   false);
        return resampler.Process(in, final);
    }
    // Silence.
    bool Give(std::size_t frames, bool final) {
        const std::uint8_t level = format.wBitsPerSample == 8 ? 128 : 0;
        in.setFormat(&format);
        return Give(std::vector<std::uint8_t>(frames * in.BytesPerSample() * in.Channels(), level), final);
    }

    QvFormat format;
    clAudioBlock in;
    clResampler resampler;
    bool designed;
    std::uint8_t none = 0;
};

template <typename Sample>
std::vector<Sample> SamplesOf(const clAudioBlock& block) {
    std::vector<Sample> samples(block.bytes / sizeof(Sample));
    if (!samples.empty()) std::memcpy(samples.data(), block.data, block.bytes);
    return samples;
}

template <typename Sample>
std::vector<std::uint8_t> BytesOf(const std::vector<Sample>& samples) {
    std::vector<std::uint8_t> bytes(samples.size() * sizeof(Sample));
    std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}

QvFormat Floats(std::uint32_t rate) {
    return Plain(QV_FORMAT_FLOAT, 1, rate, 64);
}

}  // namespace

TEST(Resampler, refuses_formats_without_samples_and_rates_it_can_not_reach) {
    EXPECT_FALSE(Stage(Plain(QV_FORMAT_PCM, 0, 44100, 16), 48000).designed);
    EXPECT_FALSE(Stage(Plain(QV_FORMAT_PCM, 2, 44100, 4), 48000).designed);
    EXPECT_FALSE(Stage(Plain(QV_FORMAT_FLOAT, 2, 44100, 16), 48000).designed);
    EXPECT_FALSE(Stage(Floats(25000), 30000).designed);
    EXPECT_FALSE(Stage(Floats(44100), 0).designed);
    EXPECT_TRUE(Stage(Floats(44100), 44100).designed);
}

TEST(Resampler, says_the_target_rate_of_its_output) {
    Stage stage(Plain(QV_FORMAT_PCM, 2, 44100, 16), 48000);
    ASSERT_TRUE(stage.Give(10, false));
    EXPECT_EQ(stage.resampler.output.format->nSamplesPerSec, 48000u);
    EXPECT_EQ(stage.resampler.output.format->nAvgBytesPerSec, 192000u);
    EXPECT_EQ(stage.resampler.output.format->nChannels, 2);
}

TEST(Resampler, gives_a_valid_empty_block_for_an_empty_one) {
    Stage stage(Floats(44100), 48000);
    ASSERT_TRUE(stage.Give(0, false));
    EXPECT_EQ(stage.resampler.output.bytes, 0u);
    EXPECT_NE(stage.resampler.output.data, nullptr);
}

TEST(Resampler, gives_nothing_until_a_step_is_fed_and_the_delay_is_over) {
    Stage stage(Floats(44100), 22050);
    ASSERT_TRUE(stage.Give(16383, false));
    EXPECT_EQ(stage.resampler.output.bytes, 0u);
    ASSERT_TRUE(stage.Give(1, false));
    EXPECT_EQ(stage.resampler.output.frames(),
              8193u - 4096u);  // one more than half a step: it picks at both ends
}

TEST(Resampler, hands_on_a_block_that_is_at_the_rate_already) {
    Stage stage(Floats(44100), 48000);
    const QvFormat there = Floats(48000);
    const std::vector<double> samples = {0.5, -2.0, 0.25};
    stage.in.setData(samples.data(), 24, &there, true);
    ASSERT_TRUE(stage.resampler.Process(stage.in, false));
    EXPECT_EQ(SamplesOf<double>(stage.resampler.output), samples);
}

TEST(Resampler, gives_the_same_samples_however_audio_is_cut) {
    for (const RatePair rates : {RatePair{44100, 48000}, {96000, 44100}, {44100, 22050}}) {
        const std::vector<double> input = Noise(2 * 50000, 3), whole = Resampled(input, 2, rates);
        std::mt19937 random(rates.source);
        for (int i = 0; i < Times(20, 4, 6); ++i) {
            std::vector<std::size_t> blocks(20);
            for (std::size_t& block : blocks) block = 1 + random() % (i % 2 == 0 ? 40000 : 700);
            EXPECT_TRUE(Resampled(input, 2, rates, blocks) == whole) << i;
        }
    }
}

TEST(Resampler, treats_every_channel_like_a_stream_of_its_own) {
    for (const RatePair rates : {RatePair{44100, 48000}, {48000, 44100}})
        for (const std::uint16_t channels : std::initializer_list<std::uint16_t>{2, 3, 8}) {
            const std::size_t frames = 40000;
            const std::vector<double> input = Noise(frames * channels, channels);
            const std::vector<double> output = Resampled(input, channels, rates);
            for (std::size_t channel = 0; channel < channels; ++channel) {
                std::vector<double> alone(frames);
                for (std::size_t i = 0; i < frames; ++i) alone[i] = input[i * channels + channel];
                const std::vector<double> expected = Resampled(alone, 1, rates);
                ASSERT_EQ(output.size(), expected.size() * channels);
                for (std::size_t i = 0; i < expected.size(); ++i)
                    ASSERT_EQ(output[i * channels + channel], expected[i]) << channel << " " << i;
            }
        }
}

// Full scale out of phase with the frames overshoots between them.
TEST(Resampler, limits_integers_and_lets_floats_go_beyond_full_scale) {
    std::vector<std::int16_t> square(40000);
    for (std::size_t i = 0; i < square.size(); ++i) square[i] = i / 50 % 2 == 0 ? 32767 : -32768;
    Stage integers(Plain(QV_FORMAT_PCM, 1, 44100, 16), 48000);
    ASSERT_TRUE(integers.Give(BytesOf(square), true));
    const std::vector<std::int16_t> limited = SamplesOf<std::int16_t>(integers.resampler.output);
    EXPECT_EQ(*std::max_element(limited.begin(), limited.end()), 32767);
    EXPECT_EQ(*std::min_element(limited.begin(), limited.end()), -32768);

    std::vector<double> floats(square.begin(), square.end());
    for (double& sample : floats) sample /= 32768;
    const std::vector<double> output = Resampled(floats, 1, {44100, 48000});
    EXPECT_GT(*std::max_element(output.begin(), output.end()), 1.1);
}

TEST(Resampler, keeps_the_silence_of_every_depth) {
    for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{8, 16, 24, 32}) {
        Stage stage(Plain(QV_FORMAT_PCM, 2, 48000, bits), 44100);
        ASSERT_TRUE(stage.Give(30000, true)) << bits;
        ASSERT_EQ(stage.resampler.output.frames(), 27562u) << bits;
        const std::uint8_t level = bits == 8 ? 128 : 0;
        for (const std::uint8_t byte : SamplesOf<std::uint8_t>(stage.resampler.output))
            ASSERT_EQ(byte, level) << bits;
    }
}

// 12 bits are stored in one byte here, and nobody knows how.
TEST(Resampler, gives_zeros_for_a_depth_that_nobody_knows) {
    Stage stage(Plain(QV_FORMAT_PCM, 1, 48000, 12), 24000);
    ASSERT_TRUE(stage.designed);
    ASSERT_TRUE(stage.Give(std::vector<std::uint8_t>(5000, 77), true));
    EXPECT_EQ(SamplesOf<std::uint8_t>(stage.resampler.output), std::vector<std::uint8_t>(2500, 0));
}

// A frame of silence is 24000 frames then, and 16384 of them would take minutes and gigabytes.
TEST(Resampler, ends_streams_of_the_lowest_rates_without_all_the_silence) {
    Stage stage(Plain(QV_FORMAT_PCM, 1, 2, 16), 48000);
    ASSERT_TRUE(stage.Give(4, true));
    EXPECT_EQ(stage.resampler.output.frames(), 96000u);
}

// Nothing is taken back of what the end of the first time gave too much, so nothing is cut off again.
TEST(Resampler, pushes_its_silence_through_again_at_a_second_last_block) {
    Stage stage(Floats(48000), 44100);
    ASSERT_TRUE(stage.Give(20000, true));
    EXPECT_EQ(stage.resampler.output.frames(), 18375u);
    ASSERT_TRUE(stage.Give(0, true));
    EXPECT_GT(stage.resampler.output.frames(), 0u);
}

// Upward the end of a stream leaves no room in front of the filters: what comes behind it is dropped.
TEST(Resampler, gives_nothing_behind_the_end_of_a_stream_upward) {
    Stage stage(Floats(44100), 48000);
    ASSERT_TRUE(stage.Give(20000, true));
    EXPECT_EQ(stage.resampler.output.frames(), 21768u);
    for (const std::size_t frames : {0u, 30000u}) {
        ASSERT_TRUE(stage.Give(frames, true));
        EXPECT_EQ(stage.resampler.output.frames(), 0u);
        EXPECT_EQ(stage.resampler.carry.held(), 0u);
    }
}

TEST(Resampler, flushes_a_stream_with_an_empty_last_block) {
    for (const RatePair rates : {RatePair{44100, 48000}, {48000, 44100}, {44100, 22050}}) {
        Stage stage(Floats(rates.source), rates.target);
        ASSERT_TRUE(stage.Give(10000, false));
        std::size_t frames = stage.resampler.output.frames();
        ASSERT_TRUE(stage.Give(0, true));
        frames += stage.resampler.output.frames();
        EXPECT_EQ(frames, std::size_t{10000} * rates.target / rates.source);
    }
}

// They count for the length all the same.
TEST(Resampler, counts_blocks_that_were_at_the_rate_already) {
    Stage stage(Floats(44100), 22050);
    const QvFormat there = Floats(22050);
    const std::vector<double> samples(1000);
    stage.in.setData(samples.data(), 8000, &there, true);
    ASSERT_TRUE(stage.resampler.Process(stage.in, false));
    ASSERT_TRUE(stage.Give(2000, true));
    EXPECT_EQ(stage.resampler.output.frames(), 1500u);
}

// It belongs after the state of the first, and serves only so that nothing goes wrong.
TEST(Resampler, stays_in_bounds_and_holds_no_more_and_more_with_further_streams) {
    for (const RatePair rates :
         {RatePair{44100, 48000}, {48000, 44100}, {22050, 44100}, {44100, 22050}, {384000, 44100}}) {
        Stage stage(Floats(rates.source), rates.target);
        for (int stream = 0; stream < 6; ++stream)
            for (int block = 0; block < 12; ++block) {
                ASSERT_TRUE(stage.Give(5000, block == 11));
                ASSERT_LT(stage.resampler.carry.held(), 70000u * 8) << stream;
                ASSERT_LT(stage.resampler.output.bytes, 70000u * 8 * 3) << stream;
            }
    }
}

TEST(Resampler, makes_a_new_design_for_other_channels_depths_and_kinds) {
    Stage stage(Plain(QV_FORMAT_PCM, 2, 44100, 16), 48000);
    ASSERT_TRUE(stage.Give(1000, false));
    const QvFormat others[] = {Plain(QV_FORMAT_PCM, 1, 44100, 16), Plain(QV_FORMAT_PCM, 1, 44100, 24),
                               Plain(QV_FORMAT_PCM, 6, 44100, 32), Plain(QV_FORMAT_FLOAT, 6, 44100, 32),
                               Plain(QV_FORMAT_FLOAT, 6, 32000, 64)};
    for (const QvFormat& other : others) {
        stage.format = other;
        ASSERT_TRUE(stage.Give(other.nSamplesPerSec, true));
        EXPECT_EQ(stage.resampler.output.frames(), 48000u) << other.nChannels << " " << other.wBitsPerSample;
        EXPECT_EQ(stage.resampler.output.format->nChannels, other.nChannels);
    }
    stage.format = Plain(QV_FORMAT_PCM, 0, 44100, 16);
    EXPECT_FALSE(stage.Give(0, false));
}

// Whichever allocation fails: refused or raised, nothing lost for good, and the next stream as it should be.
TEST(Resampler, survives_memory_that_runs_out_anywhere) {
    const std::vector<double> input = Noise(3000, 8), expected = Resampled(input, 1, {44100, 22050});
    const std::vector<std::uint8_t> bytes = BytesOf(input);
    int failed = 0, call = 1;
    for (bool all = false; !all; ++call) {
        Stage stage(Floats(44100), 44100);
        bool done = false;
        {
            AllocationFaults memory;
            memory.FailCall(call);
            try {
                done = stage.resampler.Design(stage.in, 22050) && stage.Give(bytes, true);
            } catch (const std::bad_alloc&) {
            }
            all = memory.Calls() < call;
        }
        failed += !done;
        if (done) continue;
        ASSERT_TRUE(stage.resampler.Design(stage.in, 22050)) << call;
        ASSERT_TRUE(stage.Give(bytes, true)) << call;
        EXPECT_EQ(SamplesOf<double>(stage.resampler.output), expected) << call;
    }
    EXPECT_GT(failed, 10);
}

// The block is lost, and no more.
TEST(Resampler, goes_on_after_a_block_that_there_was_no_memory_for) {
    for (const RatePair rates : {RatePair{44100, 48000}, {48000, 44100}})
        for (int call = 1; call < 4; ++call) {
            Stage stage(Floats(rates.source), rates.target);
            std::size_t frames = 0, refused = 0;
            for (std::size_t block = 0; block < 20; ++block) {
                const std::vector<std::uint8_t> bytes(8 *
                                                      (20000 + 5000 * block));  // growing: each needs memory
                std::unique_ptr<AllocationFaults> memory;
                if (block == 5) memory = std::make_unique<AllocationFaults>(), memory->FailCall(call);
                const bool done = stage.Give(bytes, block == 19);
                if (memory) memory->FailCall(0);
                memory.reset();
                refused += !done;
                if (done && block > 5) frames += stage.resampler.output.frames();
            }
            EXPECT_LE(refused, 1u) << call;
            EXPECT_GT(frames, 1000000u) << rates.source << " " << call;
        }
}

// A block that was adopted is not touched once the call is over, even if it failed.
TEST(Resampler, holds_its_own_copy_of_what_waits) {
    Stage stage(Floats(48000), 44100);
    std::vector<double> samples(1000, 0.5);
    stage.in.setData(samples.data(), 8000, &stage.format, true);
    ASSERT_TRUE(stage.resampler.Process(stage.in, false));
    EXPECT_EQ(stage.resampler.carry.adopted, 0);
    EXPECT_EQ(stage.resampler.carry.held(), 8000u);
}
