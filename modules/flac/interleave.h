// From one row of numbers per channel, as libFLAC gives them, to interleaved samples.
#pragma once

#include <cstdint>

struct clSampleShape {
    std::uint32_t channels = 0;
    std::uint32_t bytes = 0;  // of a sample: 1 to 4; those of one byte are unsigned
    std::uint32_t shift = 0;  // that a number is moved up to reach the top of its sample
};

// Writes `frames` frames behind `to`, beginning with the row's number at index `first`.
void Interleave(const std::int32_t* const rows[], std::uint32_t first, std::uint32_t frames,
                const clSampleShape& shape, std::uint8_t* to);
