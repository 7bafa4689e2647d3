// Samples as doubles, the form in which channels are mixed and rates are changed: full scale is 1, and every
// stored form reads and writes without loss but where it says so.
//
// Samples are little-endian and need no alignment; `count` is in samples. The two sides don't overlap.
#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/sample_kind.h"

// Integers are divided by full scale, floats taken as they are; samples of no kind read as 0.
void ReadSamples(double* to, const std::uint8_t* from, std::size_t count, SampleKind kind);

// Integers are rounded, halves away from zero, and values beyond full scale saturate by sign; floats are
// neither rounded nor limited beyond what their width does. NaN is stored as 0 in an integer. Nothing is
// written for samples of no kind.
void WriteSamples(std::uint8_t* to, const double* from, std::size_t count, SampleKind kind);
