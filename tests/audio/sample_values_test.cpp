#include "audio/sample_values.h"

#include <gtest/gtest.h>

#include <bit>

#include "audio/sample_twins.h"
#include "support/instruction_sets.h"

namespace {

using twin::Bytes;

constexpr std::size_t kCounts[] = {0, 1, 2, 3, 5, 8, 13, 15, 16, 17, 31, 33, 67, 2003, 6149};

Bytes Written(const std::vector<double>& values, SampleKind kind) {
    Bytes bytes(values.size() * BytesOf(kind));
    WriteSamples(bytes.data(), values.data(), values.size(), kind);
    return bytes;
}

double WrittenValue(double value, SampleKind kind) {
    return twin::StoredValue(Written({value}, kind).data(), kind);
}

TEST(SampleValues, Integers_read_as_fractions_of_full_scale_and_floats_as_they_are) {
    const struct {
        SampleKind kind;
        Bytes stored;
        double value;
    } rows[] = {
        {SampleKind::Int16, {0x00, 0x80}, -1.0},
        {SampleKind::Int16, {0x01, 0x00}, 3.0517578125e-5},
        {SampleKind::Int24, {0x00, 0x00, 0x80}, -1.0},
        {SampleKind::Int24, {0xFF, 0xFF, 0xFF}, -1.1920928955078125e-7},
        {SampleKind::UInt8, {0}, -1.0},
        {SampleKind::UInt8, {128}, 0.0},
        {SampleKind::UInt8, {129}, 0.0078125},
        {SampleKind::Int32, {1, 0, 0, 0}, 4.656612873077393e-10},
        {SampleKind::Int32, {0, 0, 0, 0x80}, -1.0},
        {SampleKind::Float32, {0, 0, 0xC0, 0xBF}, -1.5},
        {SampleKind::Float64, {0, 0, 0, 0, 0, 0, 0xF8, 0xBF}, -1.5},
        {SampleKind::None, {0x55, 0x55}, 0.0},
    };
    for (const auto& row : rows) {
        double value = 9;
        ReadSamples(&value, row.stored.data(), 1, row.kind);
        EXPECT_EQ(value, row.value) << twin::NameOf(row.kind);
    }
}

TEST(SampleValues, Halves_are_rounded_away_from_zero) {
    for (const SampleKind kind :
         {SampleKind::Int16, SampleKind::Int24, SampleKind::UInt8, SampleKind::Int32}) {
        SCOPED_TRACE(twin::NameOf(kind));
        const double step = 1 / twin::HalfRange(kind);
        const struct {
            double steps, stored;
        } rows[] = {{0.0, 0}, {0.25, 0}, {0.5, 1}, {0.75, 1}, {1.0, 1}, {1.5, 2}, {2.5, 3}, {100.5, 101}};
        for (const auto& row : rows) {
            EXPECT_EQ(WrittenValue(row.steps * step, kind), row.stored) << row.steps;
            EXPECT_EQ(WrittenValue(-row.steps * step, kind), -row.stored) << -row.steps;
        }
        // The sum with a half is a double like any other, and rounds up to one here.
        EXPECT_EQ(WrittenValue(0.49999999999999994 * step, kind), 1);
        EXPECT_EQ(WrittenValue(0.4999999999999999 * step, kind), 0);
    }
}

TEST(SampleValues, What_is_beyond_full_scale_saturates_by_sign_and_what_is_no_number_is_silence) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const SampleKind kind :
         {SampleKind::Int16, SampleKind::Int24, SampleKind::UInt8, SampleKind::Int32}) {
        SCOPED_TRACE(twin::NameOf(kind));
        const double half = twin::HalfRange(kind);
        for (const double large : {1.0, 1.5, 1e10, 1e300, kInfinity}) {
            EXPECT_EQ(WrittenValue(large, kind), half - 1);
            EXPECT_EQ(WrittenValue(-large, kind), -half);
        }
        EXPECT_EQ(WrittenValue(std::numeric_limits<double>::quiet_NaN(), kind), 0);
    }
}

TEST(SampleValues, Silence_in_8_bits_is_128) {
    EXPECT_EQ(Written({0.0, -0.0}, SampleKind::UInt8), Bytes({128, 128}));
}

TEST(SampleValues, Floats_are_written_without_a_limit) {
    EXPECT_EQ(WrittenValue(-7.25, SampleKind::Float32), -7.25);
    EXPECT_EQ(WrittenValue(1e300, SampleKind::Float64), 1e300);
    EXPECT_EQ(WrittenValue(1e300, SampleKind::Float32), std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(WrittenValue(std::numeric_limits<double>::quiet_NaN(), SampleKind::Float32)));
}

TEST(SampleValues, Nothing_is_written_for_samples_of_no_kind) {
    std::uint8_t byte = 7;
    const double value = 1;
    WriteSamples(&byte, &value, 1, SampleKind::None);
    EXPECT_EQ(byte, 7);
}

TEST(SampleValues, Every_integer_that_was_read_is_written_as_it_was) {
    for (const SampleKind kind :
         {SampleKind::Int16, SampleKind::Int24, SampleKind::UInt8, SampleKind::Int32}) {
        const Bytes samples = twin::Samples(kind, 70000, 5);
        std::vector<double> values(70000);
        ReadSamples(values.data(), samples.data(), values.size(), kind);
        EXPECT_EQ(Written(values, kind), samples) << twin::NameOf(kind);
    }
}

TEST(SampleValues, Reading_is_bit_exact_in_every_instruction_set) {
    for (const SampleKind kind : twin::kKinds)
        for (const std::size_t count : kCounts) {
            Bytes samples = twin::Samples(kind, count, static_cast<std::uint32_t>(count));
            std::vector<std::uint64_t> expected(count + 1, 0xA5A5);
            for (std::size_t i = 0; i < count; ++i)
                expected[i] = std::bit_cast<std::uint64_t>(twin::ReadOne(&samples[i * BytesOf(kind)], kind));
            samples.insert(samples.begin(), 0x5A);
            samples.shrink_to_fit();
            for (const InstructionSet set : OfferedSets()) {
                const ForcedSet forced(set);
                std::vector<std::uint64_t> result(count + 1, 0xA5A5);
                ReadSamples(reinterpret_cast<double*>(result.data()), samples.data() + 1, count, kind);
                ASSERT_EQ(result, expected) << twin::NameOf(kind) << ", " << count << ", " << NameOf(set);
            }
        }
}

TEST(SampleValues, Writing_is_bit_exact_in_every_instruction_set) {
    for (const SampleKind kind : twin::kKinds)
        for (const std::size_t count : kCounts) {
            const Bytes bits = twin::Samples(SampleKind::Float64, count, static_cast<std::uint32_t>(count));
            std::vector<double> values(count);
            if (count > 0) std::memcpy(values.data(), bits.data(), bits.size());
            Bytes expected(count * BytesOf(kind) + 2, 0xA5);
            for (std::size_t i = 0; i < count; ++i)
                twin::WriteOne(&expected[1 + i * BytesOf(kind)], values[i], kind);
            for (const InstructionSet set : OfferedSets()) {
                const ForcedSet forced(set);
                Bytes result(count * BytesOf(kind) + 2, 0xA5);
                WriteSamples(result.data() + 1, values.data(), count, kind);
                ASSERT_EQ(result, expected) << twin::NameOf(kind) << ", " << count << ", " << NameOf(set);
            }
        }
}

}  // namespace
