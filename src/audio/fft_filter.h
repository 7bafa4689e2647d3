// clFftFilter: a long low-pass, applied to half a transform's length of samples at once by multiplying spectra.
//
// The half that follows the samples is zero on the way in and holds the filter's overhang on the way out: added
// to what comes out of the next half, it makes the whole a convolution (overlap-add; Oppenheim and Schafer,
// Discrete-Time Signal Processing).
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

    // Filters the Half() samples at the start of `block`, which is Length() doubles; what stands behind them is
    // taken for zeros.
    void Apply(double* block);

    std::int64_t Length() const { return static_cast<std::int64_t>(mSpectrum.Size()); }
    std::int64_t Half() const { return Length() / 2; }

  private:
    clAlignedDoubles mSpectrum;  // of the taps
    std::vector<std::int32_t> mFftIndex;
    clAlignedDoubles mFftTable;
};
