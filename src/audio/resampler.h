// clResampler: the rate stage.
//
// It passes audio through that is at the rate asked for already; any other change is refused.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"

class clResampler {
  public:
    // Prepares for blocks like `source`, whose samples are not read, at another rate. False when that rate
    // can't be reached.
    bool Design(const clAudioBlock& source, std::uint32_t targetRate);
    // Makes `output` what `in` is at the rate of the design. `final` with the last block of a stream. False
    // when that is refused or there is no memory.
    bool Process(const clAudioBlock& in, bool final);
    // Forgets the design.
    void Release() { targetRateAsked = 0; }

    clAudioBlock output;
    std::uint32_t targetRateAsked = 0;
};
