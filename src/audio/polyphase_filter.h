// clPolyphaseFilter: a low-pass at a rate that is a multiple of its input's, of which only the outputs are
// computed that are kept.
//
// Between two input samples stand phases - 1 zeros that are never multiplied: an output needs only the taps
// that meet a sample, one row of them. The k-th output lies at input sample k * stride / phases; the row is
// the distance to the next whole sample.
#pragma once

#include <cstdint>
#include <vector>

#include "audio/aligned_doubles.h"
#include "audio/resampler_plan.h"

class clPolyphaseFilter {
  public:
    // What a run may read behind the last sample it uses, in samples.
    static constexpr std::int64_t kSpare = 16;

    // Raises when there is no memory.
    void Design(const clResamplerPlan& plan);
    void Release() { *this = {}; }

    // Makes `count` outputs. `before` is the number of outputs made before, modulo Cycle().
    void Run(double* to, const double* from, std::int64_t count, std::int64_t before) const;
    std::int64_t Cycle() const;

  private:
    void LayTaps(const clResamplerPlan& plan);
    void LayGroups();

    clAlignedDoubles mTaps;  // row after row, in the order in which they are used
    std::vector<std::int32_t> mAdvance;
    std::size_t mWidth = 0;
    std::size_t mStride = 0;
    clAlignedDoubles mGroupTaps;  // the same taps by groups of outputs, where that is worth it
    std::vector<std::int32_t> mGroupAdvance;
    std::size_t mSpan = 0;  // 0 where it isn't
};
