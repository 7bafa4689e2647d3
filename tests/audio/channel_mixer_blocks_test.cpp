// What becomes of a block and its record, which blocks are refused, and what sums are written as.
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "audio/built_mixer.h"
#include "audio/format_records.h"
#include "support/allocation_faults.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

template <class Value>
std::vector<Value> MixedValues(const std::vector<Value>& values, std::uint32_t from, std::uint32_t to) {
    const auto mixer = BuiltMixer();
    const bool isFloat = !std::numeric_limits<Value>::is_integer;
    const QvFormat format = Plain(isFloat ? 3 : 1, static_cast<std::uint16_t>(from), 44100,
                                  static_cast<std::uint16_t>(8 * sizeof(Value)));
    clAudioBlock in;
    in.setData(values.data(), static_cast<std::uint32_t>(values.size() * sizeof(Value)), &format, true);
    EXPECT_TRUE(mixer->Mix(in, to));
    std::vector<Value> result(mixer->output.bytes / sizeof(Value));
    std::memcpy(result.data(), mixer->output.data, mixer->output.bytes);
    return result;
}

TEST(ChannelMixerBlocks, One_channel_is_heard_alike_in_all_others) {
    for (std::uint32_t to = 2; to <= 8; ++to) {
        std::vector<std::int16_t> expected;
        for (const std::int16_t value : {std::int16_t{-32768}, std::int16_t{5}, std::int16_t{32767}})
            expected.insert(expected.end(), to, value);
        EXPECT_EQ(MixedValues<std::int16_t>({-32768, 5, 32767}, 1, to), expected);
    }
}

TEST(ChannelMixerBlocks, Stereo_in_phase_saturates_in_integers_and_grows_in_floats) {
    EXPECT_EQ(MixedValues<std::int16_t>({32767, 32767, -32768, -32768, 1000, 1000, 1000, -1000}, 2, 1),
              std::vector<std::int16_t>({32767, -32768, 1245, 0}));
    EXPECT_EQ(MixedValues<double>({1, 1}, 2, 1), std::vector<double>({2 * 0.6222539674441618}));
    EXPECT_EQ(MixedValues<float>({1, 1}, 2, 1),
              std::vector<float>({static_cast<float>(2 * 0.6222539674441618)}));
}

TEST(ChannelMixerBlocks, A_negative_zero_comes_out_of_a_sum_as_zero) {
    const std::vector<double> values = MixedValues<double>({-0.0}, 1, 2);
    EXPECT_FALSE(std::signbit(values[0]) || std::signbit(values[1]));
}

TEST(ChannelMixerBlocks, As_many_channels_as_there_are_pass_through_however_many) {
    clChannelMixer mixer;
    const Bytes samples = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    for (const std::uint16_t channels : {std::uint16_t{0}, std::uint16_t{1}, std::uint16_t{9}}) {
        const QvFormat format = Plain(1, channels, 44100, 8);
        clAudioBlock in;
        in.setData(samples.data(), 11, &format, true);
        ASSERT_TRUE(mixer.Mix(in, channels));
        EXPECT_EQ(Bytes(mixer.output.data, mixer.output.data + mixer.output.bytes), samples);
        EXPECT_EQ(mixer.output.format->nChannels, channels);
        EXPECT_EQ(mixer.fromChannels, 0u);
    }
}

TEST(ChannelMixerBlocks, Counts_that_have_no_layout_are_refused) {
    const auto mixer = BuiltMixer();
    const Bytes samples(72, 0);
    for (const auto& [from, to] : {std::pair{2u, 0u}, {9u, 2u}, {0u, 2u}, {2u, 9u}, {9u, 8u}, {8u, 65538u}}) {
        const QvFormat format = Plain(1, static_cast<std::uint16_t>(from), 44100, 16);
        clAudioBlock in;
        in.setData(samples.data(), 72, &format, true);
        EXPECT_FALSE(mixer->Mix(in, to)) << from << " to " << to;
    }
}

TEST(ChannelMixerBlocks, Float_in_containers_that_hold_no_float_is_refused) {
    const auto mixer = BuiltMixer();
    const Bytes samples(12, 0);
    for (const std::uint16_t bits :
         {std::uint16_t{0}, std::uint16_t{16}, std::uint16_t{24}, std::uint16_t{128}}) {
        const QvFormat format = Plain(3, 2, 44100, bits);
        clAudioBlock in;
        in.setData(samples.data(), 12, &format, true);
        EXPECT_FALSE(mixer->Mix(in, 1)) << bits;
        EXPECT_TRUE(mixer->Mix(in, 2)) << "nothing is read";
    }
}

TEST(ChannelMixerBlocks, A_depth_that_nobody_knows_is_silence_of_the_right_size) {
    const auto mixer = BuiltMixer();
    const Bytes samples(12, 0x7F);
    const QvFormat known = Plain(1, 2, 44100, 16), unknown = Plain(1, 2, 44100, 12);
    clAudioBlock in;
    in.setData(samples.data(), 12, &known, true);
    ASSERT_TRUE(mixer->Mix(in, 8));
    in.setData(samples.data(), 12, &unknown, true);
    ASSERT_TRUE(mixer->Mix(in, 3));
    EXPECT_EQ(Bytes(mixer->output.data, mixer->output.data + mixer->output.bytes), Bytes(18, 0));
}

TEST(ChannelMixerBlocks, The_record_says_what_became_of_the_channels) {
    const auto mixer = BuiltMixer();
    const Bytes samples(26, 0);
    const QvFormatExtensible format = Extensible(1, 6, 48000, 16);
    clAudioBlock in;
    in.setData(samples.data(), 26, &format.Format, true);
    ASSERT_TRUE(mixer->Mix(in, 4));
    const clAudioBlock& out = mixer->output;
    EXPECT_EQ(out.format->nChannels, 4);
    EXPECT_EQ(out.format->nBlockAlign, 8);
    EXPECT_EQ(out.format->nAvgBytesPerSec, 8u * 48000);
    EXPECT_EQ(out.bytes, 16u) << "two bytes are no frame";
    EXPECT_EQ(out.bytes, out.capacity);
    EXPECT_EQ(reinterpret_cast<const QvFormatExtensible*>(out.format)->dwChannelMask, 0u);
    ASSERT_TRUE(mixer->Mix(in, 6));
    EXPECT_EQ(reinterpret_cast<const QvFormatExtensible*>(out.format)->dwChannelMask, 3u)
        << "the same channels";
}

TEST(ChannelMixerBlocks, An_empty_block_gives_an_empty_block) {
    const auto mixer = BuiltMixer();
    const QvFormat format = Plain(1, 6, 44100, 16);
    clAudioBlock in;
    in.setFormat(&format);
    ASSERT_TRUE(mixer->Mix(in, 2));
    EXPECT_EQ(mixer->output.bytes, 0u);
    EXPECT_NE(mixer->output.data, nullptr);
    EXPECT_EQ(mixer->output.format->nChannels, 2);
}

TEST(ChannelMixerBlocks, Another_pair_is_chosen_when_the_block_is_another) {
    const auto mixer = BuiltMixer();
    const std::int16_t samples[] = {100, 300};
    for (const std::uint16_t from : {std::uint16_t{2}, std::uint16_t{1}, std::uint16_t{2}}) {
        const QvFormat format = Plain(1, from, 44100, 16);
        clAudioBlock in;
        in.setData(samples, 4, &format, true);
        ASSERT_TRUE(mixer->Mix(in, 3));
        EXPECT_EQ(mixer->output.bytes, from == 2 ? 6u : 12u);
        EXPECT_EQ(mixer->fromChannels, from);
    }
    mixer->ForgetPair();
    EXPECT_EQ(mixer->fromChannels + mixer->toChannels, 0u);
}

TEST(ChannelMixerBlocks, A_size_that_no_block_can_count_is_refused) {
    const auto mixer = BuiltMixer();
    const std::uint8_t nothing = 0;
    QvFormat format = Plain(1, 1, 44100, 8);
    clAudioBlock in;
    in.Borrow(&nothing, 0x20000000, &format);
    EXPECT_FALSE(mixer->Mix(in, 8));
    EXPECT_EQ(mixer->output.bytes + mixer->output.capacity, 0u);
}

TEST(ChannelMixerBlocks, Without_memory_it_is_false_and_the_next_block_works) {
    const QvFormatExtensible format = Extensible(1, 2, 44100, 16);
    const Bytes samples(128, 1);
    clAudioBlock in;
    in.setData(samples.data(), 128, &format.Format, true);
    int failures = 0;
    for (bool failed = true; failed; failures += failed) {
        const auto mixer = BuiltMixer();
        bool done = true;
        {
            AllocationFaults memory;
            memory.FailCall(failures + 1);
            done = mixer->Mix(in, 6);
            failed = memory.HasFailed();
        }
        EXPECT_NE(done, failed) << failures;
        ASSERT_TRUE(mixer->Mix(in, 6));
        EXPECT_EQ(mixer->output.bytes, 384u);
    }
    EXPECT_EQ(failures, 3) << "the record while it is made, the record, the samples";
}

}  // namespace
