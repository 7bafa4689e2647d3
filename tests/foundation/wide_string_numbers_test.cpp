#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

#include "foundation/wide_string.h"
#include "support/wide_text.h"

namespace {

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kHighestUnsigned = std::numeric_limits<std::uint64_t>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(WideStringNumbers, FromInt64_writes_plain_digits) {
    struct Row {
        std::int64_t value;
        const char16_t* text;
    } const rows[] = {{0, u"0"},
                      {-1, u"-1"},
                      {7, u"7"},
                      {10, u"10"},
                      {-1200, u"-1200"},
                      {kHighest, u"9223372036854775807"},
                      {kLowest, u"-9223372036854775808"},
                      {kLowest + 1, u"-9223372036854775807"}};
    for (const Row& row : rows) EXPECT_EQ(Units(XString::FromInt64(row.value)), row.text);
}

TEST(WideStringNumbers, FromUInt64_writes_plain_digits) {
    EXPECT_EQ(Units(XString::FromUInt64(0)), u"0");
    EXPECT_EQ(Units(XString::FromUInt64(1000000)), u"1000000");
    EXPECT_EQ(Units(XString::FromUInt64(kHighestUnsigned)), u"18446744073709551615");
}

TEST(WideStringNumbers, FromHex64_always_writes_16_digits_and_FromHex_only_those_needed) {
    struct Row {
        std::uint64_t value;
        const char16_t *full, *shortest;
    } const rows[] = {{0, u"0000000000000000", u"0"},
                      {255, u"00000000000000FF", u"FF"},
                      {0x1000, u"0000000000001000", u"1000"},
                      {0x0123456789ABCDEF, u"0123456789ABCDEF", u"123456789ABCDEF"},
                      {kHighestUnsigned, u"FFFFFFFFFFFFFFFF", u"FFFFFFFFFFFFFFFF"}};
    for (const Row& row : rows) {
        EXPECT_EQ(Units(XString::FromHex64(row.value)), row.full);
        EXPECT_EQ(Units(XString::FromHex(row.value)), row.shortest);
    }
}

TEST(WideStringNumbers, Random_numbers_read_as_the_run_time_writes_them) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 2000; ++round) {
        const std::uint64_t value = random() >> (round % 64);
        const auto number = static_cast<std::int64_t>(value);
        EXPECT_EQ(Units(XString::FromInt64(number)), Units(XString(std::to_string(number).c_str())));
        EXPECT_EQ(Units(XString::FromUInt64(value)), Units(XString(std::to_string(value).c_str())));
        EXPECT_EQ(XString::FromInt64(number).ToInt64(), number);
        char hex[17];
        std::snprintf(hex, sizeof hex, "%llX", static_cast<unsigned long long>(value));
        EXPECT_EQ(Units(XString::FromHex(value)), Units(XString(hex)));
    }
}

TEST(WideStringNumbers, FromDouble_drops_trailing_zeros_and_the_bare_point) {
    struct Row {
        double value;
        std::int32_t decimals;
        const char16_t* text;
    } const rows[] = {
        {0.0, 5, u"0"},       {-0.0, 5, u"0"},      {1.5, 5, u"1.5"},   {-0.25, 2, u"-0.25"},
        {100.0, 0, u"100"},   {100.0, 3, u"100"},   {0.5, 1, u"0.5"},   {0.05, 2, u"0.05"},
        {0.001, 3, u"0.001"}, {10.0, 1, u"10"},     {44.1, 3, u"44.1"}, {99.999, 2, u"100"},
        {0.999, 2, u"1"},     {-12.5, 1, u"-12.5"}, {0.0, 0, u"0"},     {123456.789, 3, u"123456.789"},
        {-1.0, 5, u"-1"},     {7.0, -1, u"7"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Units(XString::FromDouble(row.value, row.decimals)), row.text) << row.value;
}

TEST(WideStringNumbers, FromDouble_rounds_exactly_halfway_down) {
    struct Row {
        double value;
        std::int32_t decimals;
        const char16_t* text;
    } const rows[] = {{2.675, 2, u"2.67"}, {1.006, 2, u"1.01"}, {0.5, 0, u"0"},      {1.5, 0, u"1"},
                      {2.5, 0, u"2"},      {0.125, 2, u"0.12"}, {0.375, 2, u"0.37"}, {-2.5, 0, u"-2"},
                      {1.51, 0, u"2"},     {1.52, 0, u"2"}};
    for (const Row& row : rows)
        EXPECT_EQ(Units(XString::FromDouble(row.value, row.decimals)), row.text) << row.value;
}

TEST(WideStringNumbers, FromDouble_loses_a_small_half_to_the_raise_by_one) {
    EXPECT_EQ(Units(XString::FromDouble(0.005, 2)), u"0");
}

TEST(WideStringNumbers, FromDouble_keeps_the_sign_of_what_rounds_to_zero) {
    EXPECT_EQ(Units(XString::FromDouble(-0.001, 2)), u"-0");
}

TEST(WideStringNumbers, FromDouble_passes_bit_63_and_stays_at_the_largest_number) {
    EXPECT_EQ(Units(XString::FromDouble(9223372036854775808.0, 0)), u"9223372036854775808");
    EXPECT_EQ(Units(XString::FromDouble(9223372036854777856.0, 0)), u"9223372036854777856");
    EXPECT_EQ(Units(XString::FromDouble(18446744073709549568.0, 0)), u"18446744073709549568");
    EXPECT_EQ(Units(XString::FromDouble(1e30, 0)), u"18446744073709551615");
    EXPECT_EQ(Units(XString::FromDouble(kInfinity, 0)), u"18446744073709551615");
    EXPECT_EQ(Units(XString::FromDouble(-kInfinity, 2)), u"-184467440737095516.15");
    EXPECT_EQ(Units(XString::FromDouble(std::nan(""), 2)), u"0");
}

// The largest number has 20 digits, so that with 20 decimals the point stands in front of them all.
TEST(WideStringNumbers, FromDouble_never_makes_a_sign_of_a_point_in_front) {
    EXPECT_EQ(Units(XString::FromDouble(0.5, 20)), u".08446744073709551615");
    EXPECT_EQ(Units(XString::FromDouble(1.5, 20)), u".18446744073709551615");
}

TEST(WideStringNumbers, FromDouble_takes_any_number_of_decimals) {
    EXPECT_EQ(Units(XString::FromDouble(100.0, -2)), u"1");  // no point protects the zeros
    EXPECT_TRUE(IsSound(XString::FromDouble(1.5, 400)));
    EXPECT_TRUE(IsSound(XString::FromDouble(0.0, std::numeric_limits<std::int32_t>::max())));
    EXPECT_TRUE(IsSound(XString::FromDouble(2.0, std::numeric_limits<std::int32_t>::min())));
}

TEST(WideStringNumbers, FromDouble_stays_within_half_a_digit) {
    std::mt19937 random(2);
    std::uniform_real_distribution<double> values(-5000.0, 5000.0);
    for (int round = 0; round < 3000; ++round) {
        const double value = values(random);
        const int decimals = round % 7;
        XString text = XString::FromDouble(value, decimals);
        const double unit = std::pow(10.0, -decimals);
        EXPECT_NEAR(std::strtod(text.ToNarrow(), nullptr), value, 0.511 * unit) << value << " " << decimals;
    }
}

TEST(WideStringNumbers, ToInt64_reads_what_is_there) {
    struct Row {
        const char16_t* text;
        std::int64_t value;
    } const rows[] = {{u"", 0},
                      {u"0", 0},
                      {u"12", 12},
                      {u"  -12abc", -12},
                      {u"+7", 7},
                      {u"- 7", 0},
                      {u"-", 0},
                      {u"+", 0},
                      {u"abc", 0},
                      {u"\t5", 0},
                      {u"1 2", 1},
                      {u"--5", 0},
                      {u"+-5", 0},
                      {u"007", 7},
                      {u"1-2", 1},
                      {u"\uFF15", 0},
                      {u"   ", 0},
                      {u"1.9", 1},
                      {u"9223372036854775807", kHighest},
                      {u"-9223372036854775808", kLowest}};
    for (const Row& row : rows) EXPECT_EQ(XString(row.text).ToInt64(), row.value) << Narrow(row.text);
}

TEST(WideStringNumbers, ToInt64_wraps_in_64_bits) {
    EXPECT_EQ(XString(u"18446744073709551617").ToInt64(), 1);
    EXPECT_EQ(XString(u"9223372036854775808").ToInt64(), kLowest);
    EXPECT_EQ(XString(u"-18446744073709551617").ToInt64(), -1);
}

TEST(WideStringNumbers, ToInt64_leaves_the_text_alone) {
    const XString text(u"  -5");
    EXPECT_EQ(text.ToInt64(), -5);
    EXPECT_EQ(Units(text), u"  -5");
}

}  // namespace
