// clLowPass: the taps of a windowed-sinc low-pass under a Kaiser window of 170 dB.
//
// The window is that of J. F. Kaiser, "Nonrecursive digital filter design using the I0-sinh window function"
// (1974), with his rules for its shape and for the width of the transition. Its Bessel function is the sum of
// sixteen terms of the series (Abramowitz and Stegun, Handbook of Mathematical Functions, 9.6.12), no more:
// what the sixteen leave out reaches the pass band and the stop band far below what they are held to.
#pragma once

#include <array>
#include <cstdint>

class clLowPass {
  public:
    // How wide the transition is, in the distances of a filter's frequency grid: a filter of n taps at a rate
    // goes from pass to stop within rate * kTransitionWidth / (n - 1) hertz. (170 - 7.95) / 14.36.
    static constexpr double kTransitionWidth = 11.284818941504179;

    // A filter of an odd number of taps that passes what is below `cutoff`, both in hertz.
    clLowPass(double cutoff, double rate, std::int64_t length);

    // The tap `distance` taps from the middle one, to either side: at most length / 2. All of them sum to 1,
    // within the ripple.
    double Tap(std::int64_t distance) const;

  private:
    static constexpr int kTerms = 15;  // beside the first, which is 1

    double Bessel(double x) const;

    std::array<double, kTerms + 1> mFactorials;
    double mBand;          // of the whole spectrum, what is passed
    double mSpan;          // the length squared that the window is stretched to
    double mWindowHeight;  // in the middle
};
