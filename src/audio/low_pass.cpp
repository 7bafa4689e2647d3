// Computed tap by tap with plain arithmetic and our own sine, so that both targets make the same filters. The
// window's span is squared in floating point: in 32 bits a filter of 65536 taps would wrap.
#include "audio/low_pass.h"

#include <cmath>

#include "audio/fft/sine.h"

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kAttenuation = 170.0;
constexpr double kShape = 0.1102 * (kAttenuation - 8.7);  // Kaiser's rule above 50 dB

double Power(double base, int exponent) {
    double power = 1.0;
    for (; exponent > 0; exponent /= 2, base *= base)
        if (exponent % 2 != 0) power *= base;
    return power;
}

}  // namespace

clLowPass::clLowPass(double cutoff, double rate, std::int64_t length)
    : mBand(cutoff / rate), mSpan(static_cast<double>(length - 1) * static_cast<double>(length - 1)) {
    mFactorials[0] = 1.0;
    for (std::size_t n = 1; n < mFactorials.size(); ++n)
        mFactorials[n] = mFactorials[n - 1] * static_cast<double>(n);
    mWindowHeight = Bessel(kShape);
}

double clLowPass::Tap(std::int64_t distance) const {
    const auto i = static_cast<double>(distance);
    const double window = Bessel(kShape * std::sqrt(1.0 - 4.0 * i * i / mSpan)) / mWindowHeight;
    const double angle = kTwoPi * mBand * i;
    return window * (2.0 * mBand * (distance == 0 ? 1.0 : Sine(angle) / angle));
}

double clLowPass::Bessel(double x) const {
    double sum = 1.0;
    for (int n = 1; n <= kTerms; ++n) {
        const double term = Power(x / 2.0, n) / mFactorials[static_cast<std::size_t>(n)];
        sum += term * term;
    }
    return sum;
}
