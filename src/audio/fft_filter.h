// clFftFilter: a long low-pass, applied to half a transform's length of samples at once (audio/fft/convolution.h).
#pragma once

#include <cstdint>
#include <vector>

#include "audio/aligned_doubles.h"
#include "audio/resampler_plan.h"

class clFftFilter {
  public:
    // Raises when there is no memory.
    void Design(const clResamplerPlan& plan);
    void Release() { *this = {}; }

    // Filters Half() samples in place. The overhang, as long and zeros before a stream's first, is added to them, and the
    // new one left for the next.
    void Apply(double* samples, double* overhang);

    std::int64_t Half() const { return static_cast<std::int64_t>(mSpectrum.Size() / 2); }

  private:
    clAlignedDoubles mSpectrum;  // of the taps
    clAlignedDoubles mWork;      // a convolution on its way
    std::vector<std::int32_t> mFftIndex;
    clAlignedDoubles mFftTable;
};
