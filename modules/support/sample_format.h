// clSampleFormat: the plain samples that a format record describes, and the way from their bytes to numbers and
// back.
//
// Integers of 8 (unsigned), 16, 24 and 32 bits and float of 32 and 64, little-endian, channels interleaved.
// What an integer is worth is the same for every depth here: 32 bits with the sample at the top, so that
// full scale is 2^31 whatever the container.
#pragma once

#include <cstdint>
#include <span>

#include "foundation/wide_string.h"
#include "quavermill/types.h"

struct clSampleFormat {
    std::uint32_t rate = 0;
    std::uint32_t channels = 0;
    std::uint32_t mask = 0;       // of loudspeakers, 0 for none given
    std::uint32_t bits = 0;       // of the container
    std::uint32_t validBits = 0;  // of it used, from the top
    bool isFloat = false;

    std::uint32_t SampleBytes() const { return bits / 8; }
    std::uint32_t FrameBytes() const { return channels * SampleBytes(); }

    // Each of these samples into `to`.
    void TakeIntegers(std::span<const std::uint8_t> samples, std::int32_t* to) const;
    double FloatAt(const std::uint8_t* sample) const;

    // Multiplies every sample, rounding to the nearest that the format has, halves away from 0, and holding
    // what would leave its range at the end of it. A factor of 1 changes no bit.
    void Multiply(std::span<std::uint8_t> samples, double factor) const;
};

// Reads a record. Empty when its samples are such ones; otherwise why they "can't be `done`", and *samples is as
// it was.
XString TakeSampleFormat(const QvFormatExtensible& format, const char16_t* done, clSampleFormat* samples);
