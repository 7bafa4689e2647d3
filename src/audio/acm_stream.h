// clAcmStream: the stage for what the others can't reach, sample types that are neither integer PCM nor float.
//
// It passes audio through whose type and rate are those asked for; any other change is refused. Depth and
// channels are not compared: they are settled before.
#pragma once

#include "audio/audio_block.h"

class clAcmStream {
  public:
    // Makes `output` what `in` is in the target's format. `final` with the last block of a stream. False when
    // that is refused or there is no memory.
    bool Convert(const clAudioBlock& in, const clFormatHolder& target, bool final);
    // Lets go of a conversion that lasts from block to block. Passing through is none.
    void Close() {}

    clAudioBlock output;
};
