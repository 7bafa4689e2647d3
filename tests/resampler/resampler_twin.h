// The slow twin of the resampler: one output frame of one channel at a time, in long double, by convolving the
// whole input with both filters as they are defined. No transforms, no steps, no state.
#pragma once

#include <cstdint>
#include <vector>

class ResamplerTwin {
  public:
    // The rates that are worked with, one of them the lower by more than nothing.
    ResamplerTwin(std::int64_t source, std::int64_t target);

    // Frame `frame` of what the input gives. Frames before and behind the input are silence.
    long double Frame(const std::vector<double>& input, std::int64_t frame) const;

  private:
    using Taps = std::vector<long double>;

    static Taps LowPass(long double cutoff, long double rate, std::int64_t length, long double gain);
    static std::int64_t SteepLength(std::int64_t rate);
    void MakeUp();
    void MakeDown();
    std::int64_t GivenFrames(std::int64_t output) const;
    long double Polyphase(std::int64_t output, std::int64_t inputRate, std::int64_t outputRate,
                          const auto& sample) const;

    std::int64_t mSource, mTarget, mCommon = 0, mOversample = 1, mDelay = 0, mPadding = 0;
    Taps mSteep, mPoly;
};
