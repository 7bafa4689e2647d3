#include "audio/fft/sine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/effort.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

// Systems' own functions lose digits in large angles, so the twin takes the quarter turns off first, in two parts:
// the product with the first is exact in a long double.
long double SineAfter(double angle, long quarters) {
    const long double quarter = 0x1.921fb54442p+0L, rest = 0xd.18469898cc51701b839p-44L;
    const long double whole = std::nearbyint(static_cast<long double>(angle) / quarter);
    const long double reduced = (static_cast<long double>(angle) - whole * quarter) - whole * rest;
    const long turned = ((static_cast<long>(whole) + quarters) % 4 + 4) % 4;
    const long double size = turned % 2 == 0 ? std::sin(reduced) : std::cos(reduced);
    return turned < 2 ? size : -size;
}

void ExpectTrue(double angle) {
    EXPECT_LE(std::abs(static_cast<long double>(Sine(angle)) - SineAfter(angle, 0)), 0x1p-52L) << angle;
    EXPECT_LE(std::abs(static_cast<long double>(Cosine(angle)) - SineAfter(angle, 1)), 0x1p-52L) << angle;
}

TEST(Sine, Every_size_of_angle_is_within_one_part_in_2_to_the_52) {
    std::mt19937_64 random(4);
    for (double size = 0x1p-30; size <= 0x1p22; size *= 2) {
        std::uniform_real_distribution<double> angles(-size, size);
        for (int i = 0; i < Times(2000, 200, 500); ++i) ExpectTrue(angles(random));
    }
}

TEST(Sine, Angles_around_multiples_of_an_eighth_of_a_turn_are_within_the_same) {
    for (int eighth = -4000; eighth <= 4000; ++eighth) {
        const double angle = eighth * (kPi / 4);
        ExpectTrue(angle);
        ExpectTrue(std::nextafter(angle, 1e9));
        ExpectTrue(std::nextafter(angle, -1e9));
    }
    for (int eighth = 5340000; eighth > 5336000; --eighth) {  // the largest below 2^22
        ExpectTrue(eighth * (kPi / 4));
        ExpectTrue(eighth * (-kPi / 4));
    }
}

TEST(Sine, Is_odd_and_cosine_even) {
    for (double angle = 0; angle < 100; angle += 0.37) {
        EXPECT_EQ(Sine(-angle), -Sine(angle));
        EXPECT_EQ(Cosine(-angle), Cosine(angle));
    }
}

TEST(Sine, Gives_the_same_bits_on_every_system) {
    const struct {
        double angle, sine, cosine;
    } rows[] = {
        {0, 0x0p+0, 0x1p+0},
        {1, 0x1.aed548f090ceep-1, 0x1.14a280fb5068cp-1},
        {-1, -0x1.aed548f090ceep-1, 0x1.14a280fb5068cp-1},
        {0.5, 0x1.eaee8744b05fp-2, 0x1.c1528065b7d5p-1},
        {3.0, 0x1.210386db6d55bp-3, -0x1.fae04be85e5d2p-1},
        {0x1.921fb54442d18p-1, 0x1.6a09e667f3bccp-1, 0x1.6a09e667f3bcdp-1},
        {0x1.921fb54442d18p+0, 0x1p+0, 0x1.1a62633145c07p-54},
        {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53, -0x1p+0},
        {1e-9, 0x1.12e0be826d695p-30, 0x1p+0},
        {100.0, -0x1.03425b78c4db8p-1, 0x1.b981dbf665fep-1},
        {-12345.678, 0x1.687d5890974a5p-1, 0x1.6b94c3bbe24b8p-1},
        {1048575.5, -0x1.4cb305757fa67p-3, 0x1.f932ec65b1d71p-1},
        {4194303.25, 0x1.1ff4e9a4093ap-1, 0x1.a7598417de4cap-1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Sine(row.angle), row.sine) << row.angle;
        EXPECT_EQ(Cosine(row.angle), row.cosine) << row.angle;
    }
}

}  // namespace
