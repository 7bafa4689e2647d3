// The forms in which samples are stored.
#pragma once

#include <cstdint>

// How one sample is stored, little-endian.
enum class SampleKind : std::uint32_t {
    Int16 = 0,
    Int24 = 1,  // three bytes
    UInt8 = 2,  // 128 is silence
    Int32 = 3,
    Float32 = 4,
    Float64 = 5,
    None = 0xFFFFFFFF  // a depth that nobody knows: reads as silence, and nothing is written
};

// Bytes of one sample; 0 where nobody knows.
std::uint32_t BytesOf(SampleKind kind);
