#include "audio/depth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "audio/format_records.h"
#include "audio/sample_loops.h"
#include "audio/sample_twins.h"
#include "support/allocation_faults.h"
#include "support/instruction_sets.h"

namespace {

using twin::Bytes;

QvFormat Record(SampleKind kind, std::uint16_t channels) {
    return Plain(twin::IsFloat(kind) ? 3 : 1, channels, 44100, twin::BitsOf(kind));
}

Bytes Converted(const Bytes& samples, const QvFormat& from, std::uint32_t bits, bool toFloat) {
    clAudioBlock in, out;
    in.setData(samples.data(), static_cast<std::uint32_t>(samples.size()), &from, true);
    EXPECT_TRUE(ConvertDepth(out, in, bits, toFloat));
    EXPECT_EQ(out.bytes, out.capacity);
    return Bytes(out.data, out.data + out.bytes);
}

template <class Value>
Bytes AsBytes(std::initializer_list<Value> values) {
    Bytes bytes(values.size() * sizeof(Value));
    std::memcpy(bytes.data(), values.begin(), bytes.size());
    return bytes;
}

TEST(Depth, Any_depth_stays_and_only_integer_and_float_change_theirs) {
    const struct {
        std::uint16_t tag, from;
        std::uint32_t bits;
        bool can;
    } rows[] = {
        {1, 16, 16, true},     {1, 12, 12, true},     {6, 8, 8, true},    {80, 0, 0, true},
        {1, 16, 8, true},      {1, 16, 24, true},     {1, 16, 32, true},  {3, 32, 16, true},
        {3, 32, 64, true},     {3, 64, 32, true},     {1, 16, 64, false}, {1, 32, 64, false},
        {1, 16, 12, false},    {1, 16, 0, false},     {1, 16, 20, false}, {6, 8, 16, false},
        {7, 8, 32, false},     {2, 4, 16, false},     {80, 16, 8, false}, {3, 32, 12, false},
        {1, 16, 65552, false}, {3, 32, 65600, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.tag << ": " << row.from << " to " << row.bits);
        const QvFormat plain = Plain(row.tag, 2, 44100, row.from);
        clAudioBlock block;
        block.setFormat(&plain);
        EXPECT_EQ(CanConvertDepth(block, row.bits), row.can);
        const QvFormatExtensible extensible = Extensible(row.tag, 2, 44100, row.from);
        block.setFormat(&extensible.Format);
        EXPECT_EQ(CanConvertDepth(block, row.bits), row.can);
    }
}

TEST(Depth, Samples_of_some_pairs) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
    const Bytes floats = AsBytes({1.0f, -1.0f, 1.5f, -1.5f, 0.0f, -0.0f, kInfinity, -kInfinity, kNotANumber});
    const QvFormat float32 = Plain(3, 1, 44100, 32), int8 = Plain(1, 1, 44100, 8),
                   int16 = Plain(1, 1, 44100, 16);
    EXPECT_EQ(Converted({0, 1, 127, 128, 255}, int8, 16, false),
              AsBytes<std::int16_t>({-32768, -32512, -256, 0, 32512}));
    EXPECT_EQ(Converted(AsBytes<std::int16_t>({-32768, -1, 0, 255, 256, 32767}), int16, 8, false),
              Bytes({0, 127, 128, 128, 129, 255}));
    EXPECT_EQ(Converted(AsBytes<std::int16_t>({-2, 0x1234}), int16, 24, false),
              Bytes({0, 0xFE, 0xFF, 0, 0x34, 0x12}));
    EXPECT_EQ(Converted({0xFF, 0xFF, 0xFF, 0xFF, 0x34, 0x12}, Plain(1, 1, 44100, 24), 16, false),
              AsBytes<std::int16_t>({-1, 0x1234}));
    EXPECT_EQ(Converted(AsBytes<std::int32_t>({-1, 0x12345678}), Plain(1, 1, 44100, 32), 16, false),
              AsBytes<std::int16_t>({-1, 0x1234}));
    EXPECT_EQ(Converted(AsBytes<std::int16_t>({-32768, 1, 32767}), int16, 32, true),
              AsBytes({-1.0f, 1 / 32768.0f, 32767 / 32768.0f}));
    EXPECT_EQ(Converted(floats, float32, 16, false),
              AsBytes<std::int16_t>({32767, -32768, 32767, -32768, 0, 0, 32767, -32768, 0}));
    constexpr std::int32_t kMost = 2147483647, kLeast = -kMost - 1;
    EXPECT_EQ(Converted(floats, float32, 32, false),
              AsBytes({kMost, kLeast, kMost, kLeast, 0, 0, kMost, kLeast, 0}));
    constexpr double kHighest = 0.9999999995343387;
    EXPECT_EQ(Converted(floats, float32, 64, true),
              AsBytes({kHighest, -1.0, kHighest, -1.0, 0.0, 0.0, kHighest, -1.0, 0.0}));
}

TEST(Depth, Narrowing_goes_toward_minus_infinity_but_a_float_toward_zero_first) {
    const QvFormat float64 = Plain(3, 1, 44100, 64);
    const Bytes small = AsBytes({-0x1p-31, -0x1.8p-31, -0x1.fp-32, 0x1.fp-17, -0x1.fp-17});
    EXPECT_EQ(Converted(small, float64, 32, false), AsBytes<std::int32_t>({-1, -1, 0, 31744, -31744}));
    EXPECT_EQ(Converted(small, float64, 16, false), AsBytes<std::int16_t>({-1, -1, 0, 0, -1}));
}

TEST(Depth, What_has_the_depth_and_type_asked_for_is_copied) {
    const Bytes odd = AsBytes({2.0f, std::numeric_limits<float>::infinity(), -0.0f, 1e-20f});
    EXPECT_EQ(Converted(odd, Plain(3, 2, 44100, 32), 32, true), odd) << "floats aren't limited then";
    EXPECT_EQ(Converted({1, 2, 3, 4, 5}, Plain(1, 2, 44100, 16), 16, false), Bytes({1, 2, 3, 4, 5}))
        << "half frames included";
    EXPECT_EQ(Converted({1, 2, 3}, Plain(3, 1, 44100, 24), 24, true), Bytes({1, 2, 3}))
        << "whatever the depth is";
    EXPECT_EQ(Converted({1, 2, 3}, Plain(1, 1, 44100, 12), 12, false), Bytes({1, 2, 3}));
}

TEST(Depth, Bytes_of_a_law_are_relabelled_at_their_own_depth_and_not_expanded) {
    const Bytes law = {0, 0x55, 0xD5, 0x80, 0xFF, 0x7F, 1};
    for (const std::uint16_t tag : {std::uint16_t{6}, std::uint16_t{7}}) {
        const QvFormat from = Plain(tag, 1, 8000, 8);
        clAudioBlock in, out;
        in.setData(law.data(), 7, &from, true);
        ASSERT_TRUE(ConvertDepth(out, in, 8, false));
        EXPECT_EQ(Bytes(out.data, out.data + out.bytes), law);
        EXPECT_EQ(out.format->wFormatTag, 1);
        EXPECT_EQ(out.format->nBlockAlign, 1);
        EXPECT_FALSE(ConvertDepth(out, in, 16, false));
        EXPECT_FALSE(ConvertDepth(out, in, 8, true)) << "a float of 8 bits";
    }
}

TEST(Depth, A_refusal_leaves_the_destination_as_it_was) {
    const Bytes samples(48, 1);
    const struct {
        QvFormat from;
        std::uint32_t bits;
        bool toFloat;
    } rows[] = {
        {Plain(1, 2, 44100, 32), 64, true},  {Plain(1, 2, 44100, 16), 64, false},
        {Plain(6, 2, 8000, 8), 16, false},   {Plain(3, 2, 44100, 32), 16, true},
        {Plain(3, 2, 44100, 16), 32, true},  {Plain(3, 2, 44100, 24), 16, false},
        {Plain(3, 2, 44100, 16), 16, false}, {Plain(3, 2, 44100, 0), 32, true},
        {Plain(1, 2, 44100, 12), 12, true},  {Plain(3, 2, 44100, 128), 32, true},
        {Plain(1, 2, 44100, 16), 16, true},  {Plain(1, 2, 44100, 16), 12, false},
    };
    const QvFormat before = Plain(1, 1, 11025, 8);
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.from.wBitsPerSample << " to " << row.bits);
        clAudioBlock in, out;
        in.setData(samples.data(), 48, &row.from, true);
        out.setData("abc", 3, &before, false);
        EXPECT_FALSE(ConvertDepth(out, in, row.bits, row.toFloat));
        EXPECT_EQ(out.bytes, 3u);
        EXPECT_EQ(out.data[2], 'c');
        EXPECT_EQ(out.format->nSamplesPerSec, 11025u);
    }
}

TEST(Depth, Float_asked_for_as_64_bit_integer_is_silence_of_the_right_size) {
    const Bytes samples(32, 0x3F);
    EXPECT_EQ(Converted(samples, Plain(3, 2, 44100, 32), 64, false), Bytes(64, 0));
    EXPECT_EQ(Converted(samples, Plain(3, 2, 44100, 64), 64, false), Bytes(32, 0));
}

TEST(Depth, A_depth_that_nobody_knows_reads_and_comes_out_as_silence) {
    const Bytes samples(6, 0x7F);
    EXPECT_EQ(Converted(samples, Plain(1, 1, 44100, 12), 16, false), Bytes(12, 0));
    EXPECT_EQ(Converted(samples, Plain(1, 1, 44100, 20), 24, false), Bytes(9, 0));
    EXPECT_EQ(Converted(samples, Plain(1, 1, 44100, 12), 8, false), Bytes(6, 128)) << "silence is the middle";
    EXPECT_EQ(Converted(samples, Plain(1, 1, 44100, 12), 32, true), Bytes(24, 0));
    EXPECT_EQ(Converted(samples, Plain(2, 1, 44100, 4), 4, false), Bytes(6, 0));
}

TEST(Depth, A_record_without_channels_has_no_samples) {
    EXPECT_EQ(Converted(Bytes(6, 1), Plain(1, 0, 44100, 16), 24, false), Bytes());
}

TEST(Depth, An_empty_block_gives_an_empty_block) {
    const QvFormat from = Plain(1, 2, 44100, 16);
    clAudioBlock in, out;
    in.setFormat(&from);
    ASSERT_TRUE(ConvertDepth(out, in, 24, false));
    EXPECT_NE(out.data, nullptr);
    EXPECT_EQ(out.bytes + out.capacity, 0u);
    EXPECT_EQ(out.store.Capacity(), 1u);
    EXPECT_EQ(out.format->wBitsPerSample, 24);
}

TEST(Depth, The_record_says_what_became_of_the_samples) {
    const Bytes samples(50, 0);
    QvFormatExtensible from = Extensible(1, 6, 48000, 16);
    clAudioBlock in, out;
    in.setData(samples.data(), 50, &from.Format, true);
    in.offset = 12;
    ASSERT_TRUE(ConvertDepth(out, in, 32, true));
    EXPECT_EQ(out.bytes, 4u * 24) << "two bytes are no frame, and what was consumed counts";
    EXPECT_EQ(out.offset + out.adopted, 0u);
    EXPECT_TRUE(out.IsExtensible());
    EXPECT_EQ(out.sampleType(), 3u);
    EXPECT_EQ(out.format->wFormatTag, 0xFFFE);
    EXPECT_EQ(out.format->nBlockAlign, 24);
    EXPECT_EQ(out.format->nAvgBytesPerSec, 24u * 48000);
    const auto* extension = reinterpret_cast<const QvFormatExtensible*>(out.format);
    EXPECT_EQ(extension->wValidBitsPerSample, 32);
    EXPECT_EQ(extension->dwChannelMask, 3u) << "the channels stay";
    from.wValidBitsPerSample = 20;
    from.Format.wBitsPerSample = 32;
    in.setFormat(&from.Format);
    ASSERT_TRUE(ConvertDepth(out, in, 32, true));
    EXPECT_EQ(reinterpret_cast<const QvFormatExtensible*>(out.format)->wValidBitsPerSample, 20)
        << "a depth that stays says nothing new";
}

TEST(Depth, A_plain_record_takes_the_tag_of_its_new_type) {
    const Bytes samples(16, 0);
    clAudioBlock in, out;
    const QvFormat from = Plain(3, 2, 44100, 64);
    in.setData(samples.data(), 16, &from, true);
    ASSERT_TRUE(ConvertDepth(out, in, 24, false));
    EXPECT_EQ(out.format->wFormatTag, 1);
    EXPECT_EQ(out.format->nBlockAlign, 6);
    EXPECT_EQ(out.format->nAvgBytesPerSec, 6u * 44100);
    EXPECT_EQ(out.bytes, 6u);
}

TEST(Depth, A_smaller_block_is_written_into_the_store_of_the_last_one) {
    const Bytes samples(64, 7);
    const QvFormat from = Plain(1, 1, 44100, 16);
    clAudioBlock in, out;
    in.setData(samples.data(), 64, &from, true);
    ASSERT_TRUE(ConvertDepth(out, in, 32, false));
    const std::uint8_t* const store = out.data;
    in.setData(samples.data(), 10, &from, true);
    ASSERT_TRUE(ConvertDepth(out, in, 64 / 2, false));
    EXPECT_EQ(out.data, store);
    EXPECT_EQ(out.bytes, 20u);
    EXPECT_EQ(out.capacity, 20u);
    const QvFormat floats = Plain(3, 1, 44100, 32);
    in.setData(samples.data(), 8, &floats, true);
    ASSERT_TRUE(ConvertDepth(out, in, 64, false));
    EXPECT_EQ(Bytes(out.data, out.data + out.bytes), Bytes(16, 0)) << "nothing of the last block shows";
}

TEST(Depth, A_size_that_no_block_can_count_is_refused) {
    const std::uint8_t nothing = 0;
    QvFormat from = Plain(1, 1, 44100, 8);
    clAudioBlock in, out;
    in.Borrow(&nothing, 0x40000000, &from);
    EXPECT_FALSE(ConvertDepth(out, in, 32, false));
    EXPECT_EQ(out.bytes + out.capacity, 0u);
    EXPECT_EQ(out.data, nullptr);
}

TEST(Depth, Without_memory_it_is_false_and_the_next_block_works) {
    const QvFormatExtensible from = Extensible(1, 2, 44100, 16);
    const Bytes samples = twin::Samples(SampleKind::Int16, 64, 1);
    clAudioBlock in, out;
    in.setData(samples.data(), 128, &from.Format, true);
    int failures = 0;
    for (bool failed = true; failed; failures += failed) {
        clAudioBlock fresh;
        bool done = true;
        {
            AllocationFaults memory;
            memory.FailCall(failures + 1);
            done = ConvertDepth(fresh, in, 24, false);
            failed = memory.HasFailed();
        }
        EXPECT_NE(done, failed) << failures;
        ASSERT_TRUE(ConvertDepth(fresh, in, 24, false));
        EXPECT_EQ(fresh.bytes, 192u);
    }
    EXPECT_EQ(failures, 3) << "the record while it is made, the record, the samples";
}

// Counts that leave every remainder of every vector, and one for which memory is asked early, at addresses that are
// aligned to nothing, between bytes that must stay.
TEST(Depth, All_pairs_are_bit_exact_in_every_instruction_set) {
    for (const SampleKind from : twin::kKinds)
        for (const SampleKind to : twin::kKinds) {
            const std::size_t fromBytes = BytesOf(from), toBytes = BytesOf(to);
            for (const std::size_t count :
                 {0u, 1u, 2u, 3u, 5u, 8u, 13u, 15u, 16u, 17u, 31u, 33u, 67u, 2003u, 6149u, 32771u}) {
                Bytes samples = twin::Samples(from, count, static_cast<std::uint32_t>(count));
                Bytes expected(count * toBytes + 2, 0xA5);
                for (std::size_t i = 0; i < count; ++i)
                    twin::ConvertOne(&expected[1 + i * toBytes], to, &samples[i * fromBytes], from);
                samples.insert(samples.begin(), 0x5A);
                samples.shrink_to_fit();
                for (const InstructionSet set : OfferedSets()) {
                    const ForcedSet forced(set);
                    Bytes result(count * toBytes + 2, 0xA5);
                    kSampleLoops.InUse()->convert[static_cast<int>(from)][static_cast<int>(to)](
                        result.data() + 1, samples.data() + 1, count);
                    ASSERT_EQ(result, expected) << twin::NameOf(from) << " to " << twin::NameOf(to) << ", "
                                                << count << " samples, " << NameOf(set);
                }
            }
        }
}

TEST(Depth, All_pairs_and_channels_through_the_stage) {
    for (const SampleKind from : twin::kKinds)
        for (const SampleKind to : twin::kKinds)
            for (std::uint16_t channels = 1; channels <= 9; ++channels) {
                if (from == to || (to == SampleKind::Float64 && !twin::IsFloat(from))) continue;
                SCOPED_TRACE(testing::Message() << twin::NameOf(from) << " to " << twin::NameOf(to));
                const Bytes samples = twin::Samples(from, 1000u * channels, channels);
                Bytes expected(1000u * channels * BytesOf(to));
                for (std::size_t i = 0; i < 1000u * channels; ++i)
                    twin::ConvertOne(&expected[i * BytesOf(to)], to, &samples[i * BytesOf(from)], from);
                ASSERT_EQ(Converted(samples, Record(from, channels), twin::BitsOf(to), twin::IsFloat(to)),
                          expected);
            }
}

// The same on every system: what these loops give is plain arithmetic.
TEST(Depth, What_all_pairs_give_has_one_digest) {
    for (const InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        std::uint64_t digest = 0;
        for (const SampleKind from : twin::kKinds)
            for (const SampleKind to : twin::kKinds) {
                const Bytes samples = twin::Samples(from, 5000, 3);
                Bytes result(5000 * BytesOf(to));
                kSampleLoops.InUse()->convert[static_cast<int>(from)][static_cast<int>(to)](
                    result.data(), samples.data(), 5000);
                digest = twin::Digest(result, digest);
            }
        EXPECT_EQ(digest, 8690830261496521430u) << NameOf(set);
    }
}

}  // namespace
