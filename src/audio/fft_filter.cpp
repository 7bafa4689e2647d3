#include "audio/fft_filter.h"

#include <cmath>

#include "audio/fft/convolution.h"
#include "audio/low_pass.h"

// A convolution multiplies by half its length: the taps make up for it.
void clFftFilter::Design(const clResamplerPlan& plan) {
    const auto length = static_cast<std::size_t>(plan.fftLength);
    mSpectrum.Assign(length);
    mWork.Assign(length);
    mFftIndex.assign(static_cast<std::size_t>(std::sqrt(static_cast<double>(length)) + 2), 0);
    mFftTable.Assign(length / 2);
    const clLowPass lowPass(plan.lowPass.cutoff, static_cast<double>(plan.lowPass.rate), plan.lowPass.length);
    const std::int64_t half = plan.lowPass.length / 2;
    clAlignedDoubles taps;
    taps.Assign(length / 2);
    for (std::int64_t i = 0; i <= half; ++i) {
        const double tap = lowPass.Tap(i) * plan.lowPass.gain / static_cast<double>(length) * 2.0;
        taps.Data()[half - i] = taps.Data()[half + i] = tap;
    }
    MakeSpectrum(length, taps.Data(), mSpectrum.Data(), mFftIndex.data(), mFftTable.Data());
}

void clFftFilter::Apply(double* samples, double* overhang) {
    Convolve(mSpectrum.Size(), samples, overhang, mSpectrum.Data(), mWork.Data(), mFftIndex.data(),
             mFftTable.Data());
}
