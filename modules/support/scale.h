// value * multiplier / divisor for lengths and positions, without a wrap on the way.
#pragma once

#include <cstdint>
#include <limits>

// Truncates. A result that needs more than 64 bits becomes the largest number; a divisor of 0 gives 0.
constexpr std::uint64_t Scale(std::uint64_t value, std::uint32_t multiplier, std::uint32_t divisor) {
    constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();
    if (divisor == 0 || multiplier == 0) return 0;
    const std::uint64_t whole = value / divisor;
    const std::uint64_t rest = value % divisor * multiplier / divisor;  // both factors are below 2^32
    if (whole > (kLargest - rest) / multiplier) return kLargest;
    return whole * multiplier + rest;
}
