// The angle is brought within an eighth of a turn of a multiple of a quarter, and there the power series of
// sine and cosine fall below the last digit within nine terms (Abramowitz and Stegun, Handbook of Mathematical
// Functions, 4.3.65 and 4.3.66). The quarters are taken off in three steps: the first part of pi/2 has so
// few digits that its product with 2^22 quarters is exact, and what the products with the others lose is far below
// the last digit.
#include "audio/fft/sine.h"

#include <cmath>
#include <cstdint>

namespace {

constexpr double kQuartersPerRadian = 0.63661977236758134308;
constexpr double kQuarterHigh = 0x1.921fb544p+0;       // pi/2, its first 33 bits
constexpr double kQuarterMiddle = 0x1.0b4611a6p-34;    // the next 33
constexpr double kQuarterLow = 0x1.3198a2e037073p-69;  // the rest

// The sum of terms whose ratio is -square / (n (n + 1)), n growing by 2; innermost first.
constexpr int kTerms = 9;
double Series(double square, int first) {
    double sum = 0;
    for (int n = first + 2 * (kTerms - 1); n >= first; n -= 2) sum = -square / (n * (n + 1)) * (1.0 + sum);
    return sum;
}

// The sine of an angle and `quarters` more quarters of a turn.
double SineAfter(double angle, std::int64_t quarters) {
    const double whole = std::nearbyint(angle * kQuartersPerRadian);
    const double rest = ((angle - whole * kQuarterHigh) - whole * kQuarterMiddle) - whole * kQuarterLow;
    const auto turned = static_cast<std::uint64_t>(static_cast<std::int64_t>(whole) + quarters) % 4;
    const double square = rest * rest;
    const double size = turned % 2 == 0 ? rest + rest * Series(square, 2) : 1.0 + Series(square, 1);
    return turned < 2 ? size : -size;
}

}  // namespace

double Sine(double angle) {
    return SineAfter(angle, 0);
}
double Cosine(double angle) {
    return SineAfter(angle, 1);
}
