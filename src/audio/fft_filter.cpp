#include "audio/fft_filter.h"

#include <cmath>

#include "audio/fft/fft.h"
#include "audio/low_pass.h"

// A transform there and back multiplies by half its length: the taps make up for it.
void clFftFilter::Design(const clResamplerPlan& plan) {
    const auto length = static_cast<std::size_t>(plan.fftLength);
    mSpectrum.Assign(length);
    mFftIndex.assign(static_cast<std::size_t>(std::sqrt(static_cast<double>(length)) + 2), 0);
    mFftTable.Assign(length / 2);
    const clLowPass lowPass(plan.lowPass.cutoff, static_cast<double>(plan.lowPass.rate), plan.lowPass.length);
    const std::int64_t half = plan.lowPass.length / 2;
    for (std::int64_t i = 0; i <= half; ++i) {
        const double tap = lowPass.Tap(i) * plan.lowPass.gain / static_cast<double>(length) * 2.0;
        mSpectrum.Data()[half - i] = mSpectrum.Data()[half + i] = tap;
    }
    RealFft(length, FftDirection::Forward, mSpectrum.Data(), mFftIndex.data(), mFftTable.Data());
}

void clFftFilter::Apply(double* block) {
    ConvolveHalf(mSpectrum.Size(), block, mSpectrum.Data(), mFftIndex.data(), mFftTable.Data());
}
