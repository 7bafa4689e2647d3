// clSampleView: how the samples of a block are stored, found once and used for a whole pass over it.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"

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

class clSampleView {
  public:
    explicit clSampleView(const clAudioBlock& block);

    std::uint8_t* data;
    std::uint32_t channels;
    SampleKind sampleKind;
};
