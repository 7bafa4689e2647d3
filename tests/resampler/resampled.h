// Audio through a clResampler, for tests.
#pragma once

#include <cstdint>
#include <vector>

#include "audio/resampler.h"

struct RatePair {
    std::uint32_t source, target;
};

// Samples of a format at another rate, given in blocks of these frames, over and over; one block when there are none.
// Empty after a refusal.
std::vector<std::uint8_t> Resampled(const std::vector<std::uint8_t>& input, const QvFormat& format,
                                    std::uint32_t target, const std::vector<std::size_t>& blocks = {});
// The same for interleaved 64-bit floats.
std::vector<double> Resampled(const std::vector<double>& input, std::uint16_t channels, RatePair rates,
                              const std::vector<std::size_t>& blocks = {});

// Random samples within full scale.
std::vector<double> Noise(std::size_t count, unsigned seed);
