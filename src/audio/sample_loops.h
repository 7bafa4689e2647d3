// The loops in which samples change their form, for every pair of forms and every instruction set.
//
// Samples are little-endian and need no alignment. A loop touches nothing but `count` samples on either side,
// and the sides don't overlap. All sets give the same bits.
#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/sample_kind.h"
#include "processor/instruction_set.h"

inline constexpr std::size_t kSampleKinds = 6;   // those with a width, by their numbers
inline constexpr std::size_t kIntegerKinds = 4;  // the first of them

struct SampleLoops {
    using Loop = void(std::uint8_t* to, const std::uint8_t* from, std::size_t count);

    // From any form to any, by way of 32 bits, truncated: see depth.h.
    Loop* convert[kSampleKinds][kSampleKinds];
    // From doubles to integers, rounded: see sample_values.h.
    Loop* round[kIntegerKinds];
    // Floats as doubles, and doubles as floats, neither limited.
    Loop* widen;
    Loop* narrow;
};

extern const SampleLoops kPlainSampleLoops;
extern const SampleLoops kSse2SampleLoops;
extern const SampleLoops kAvx2SampleLoops;
extern const SampleLoops kAvx512SampleLoops;

inline constexpr Forms<const SampleLoops> kSampleLoops = {
    {&kPlainSampleLoops, &kSse2SampleLoops, &kAvx2SampleLoops, &kAvx512SampleLoops}};
