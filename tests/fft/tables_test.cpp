#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "fft/real_transform.h"

namespace {

constexpr double kUntouched = 77;

long double Angle(std::size_t h, std::size_t j) {
    return std::atan(1.0L) / static_cast<long double>(h) * static_cast<long double>(j);
}

double Near(long double value) {
    return static_cast<double>(value);
}

// Of the angle's cosine, the table's own error and that of the angle as a double.
constexpr double kOff = 0x1p-52;

void ExpectTwiddles(const double* table, std::size_t h) {
    SCOPED_TRACE(testing::Message() << "table of " << h);
    EXPECT_EQ(table[0], 1.0);
    EXPECT_NEAR(table[1], Near(std::cos(Angle(h, h))), kOff);
    if (h < 4) return;
    EXPECT_NEAR(table[2], Near(0.5L / std::cos(Angle(h, 2))), kOff);
    EXPECT_NEAR(table[3], Near(0.5L / std::cos(Angle(h, 6))), 4 * kOff);  // up to 1/(2 cos(3 pi/8))
    for (std::size_t j = 4; j < h; j += 4) {
        ASSERT_NEAR(table[j], Near(std::cos(Angle(h, j))), kOff) << j;
        ASSERT_NEAR(table[j + 1], Near(std::sin(Angle(h, j))), kOff) << j;
        ASSERT_NEAR(table[j + 2], Near(std::cos(3 * Angle(h, j))), 2 * kOff) << j;
        ASSERT_NEAR(table[j + 3], Near(std::sin(3 * Angle(h, j))), 2 * kOff) << j;
    }
}

TEST(FftTables, Twiddles_hold_cosines_and_sines_for_every_length_down_to_the_shortest) {
    for (std::size_t nw = 4; nw <= 65536; nw *= 2) {
        SCOPED_TRACE(nw);
        std::int32_t index[2] = {-1, -1};
        Values table(nw);
        MakeTwiddles(nw, index, table.data());
        EXPECT_EQ(index[0], static_cast<std::int32_t>(nw));
        EXPECT_EQ(index[1], 1);
        for (std::size_t h = nw / 2; h >= 2; h /= 2) ExpectTwiddles(table.data() + nw - 2 * h, h);
    }
}

TEST(FftTables, The_last_two_twiddle_entries_are_not_used) {
    for (std::size_t nw = 4; nw <= 1024; nw *= 2) {
        SCOPED_TRACE(nw);
        std::int32_t index[2];
        Values table(nw, kUntouched);
        MakeTwiddles(nw, index, table.data());
        EXPECT_EQ(std::count(table.begin(), table.end(), kUntouched), 2);
        EXPECT_EQ(table[nw - 2], kUntouched);
        EXPECT_EQ(table[nw - 1], kUntouched);
    }
}

TEST(FftTables, A_table_is_the_end_of_every_longer_one_to_the_bit) {
    std::int32_t index[2];
    Values longest(65536);
    MakeTwiddles(longest.size(), index, longest.data());
    for (std::size_t nw = 4; nw <= 32768; nw *= 2) {
        Values table(nw);
        MakeTwiddles(nw, index, table.data());
        EXPECT_TRUE(std::equal(table.begin(), table.end(), longest.end() - static_cast<std::ptrdiff_t>(nw)))
            << nw;
    }
}

TEST(FftTables, Too_short_ones_are_counted_but_not_written) {
    for (std::size_t nw = 1; nw <= 2; ++nw) {
        std::int32_t index[2] = {0, 0};
        Values table(4, kUntouched);
        MakeTwiddles(nw, index, table.data());
        EXPECT_EQ(index[0], static_cast<std::int32_t>(nw));
        EXPECT_EQ(index[1], 1);
        EXPECT_EQ(table, Values(4, kUntouched));
    }
    std::int32_t index[2] = {5, 0};
    Values table(4, kUntouched);
    MakeCosTable(1, index, table.data());
    EXPECT_EQ(index[0], 5);
    EXPECT_EQ(index[1], 1);
    EXPECT_EQ(table, Values(4, kUntouched));
}

TEST(FftTables, Cosines_are_halved_and_go_down_to_the_sines) {
    for (std::size_t nc = 2; nc <= 65536; nc *= 2) {
        SCOPED_TRACE(nc);
        const std::size_t h = nc / 2;
        std::int32_t index[2] = {5, 0};
        Values table(nc, kUntouched);
        MakeCosTable(nc, index, table.data());
        EXPECT_EQ(index[0], 5);
        EXPECT_EQ(index[1], static_cast<std::int32_t>(nc));
        EXPECT_NEAR(table[0], Near(std::cos(Angle(1, 1))), kOff);
        EXPECT_EQ(table[h], 0.5 * table[0]);
        for (std::size_t j = 1; j < h; ++j) {
            ASSERT_NEAR(table[j], Near(0.5L * std::cos(Angle(h, j))), kOff / 2) << j;
            ASSERT_NEAR(table[nc - j], Near(0.5L * std::sin(Angle(h, j))), kOff / 2) << j;
        }
    }
}

TEST(FftTables, A_transform_of_four_has_tables_of_one_and_writes_neither) {
    FftTables tables(4);
    tables.table = {kUntouched, kUntouched};
    EXPECT_EQ(Transformed({1, 2, 3, 4}, FftDirection::Forward, tables), Values({10, -2, -2, -2}));
    EXPECT_EQ(tables.index[0], 1);
    EXPECT_EQ(tables.index[1], 1);
    EXPECT_EQ(tables.table, Values({kUntouched, kUntouched}));
}

}  // namespace
