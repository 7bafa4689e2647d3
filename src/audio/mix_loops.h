// The loops that sum channels, for every instruction set: frames of doubles, interleaved on both sides.
//
// No set uses fused operations, and each sum starts from 0 and takes its terms in their order: all give the
// same bits, but for which NaN comes of several.
#pragma once

#include <cstddef>
#include <cstdint>

#include "processor/instruction_set.h"

inline constexpr std::size_t kMixChannels = 8;  // at most, and terms of a sum too

// One output channel: the input channels it sums, by position from 1, and a 0 behind the last unless all 8 are
// there.
struct clMixTerm {
    std::uint32_t position;
    double coefficient;
};
using clMixTerms = clMixTerm[kMixChannels];

// `toChannels` rows of terms. Nothing but `frames` frames is touched on either side; they need no alignment
// and don't overlap.
using MixLoop = void(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from,
                     std::uint32_t fromChannels, std::size_t frames, const clMixTerms* rows);

MixLoop MixPlain;
MixLoop MixSse2;
MixLoop MixAvx2;
MixLoop MixAvx512;

// The same for samples of 16 bits on both sides, rounded and saturated as sample_values.h says.
MixLoop MixInt16Avx512;

inline constexpr Forms<MixLoop> kMixLoop = {{MixPlain, MixSse2, MixAvx2, MixAvx512}};
