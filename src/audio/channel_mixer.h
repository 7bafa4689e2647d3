// clChannelMixer: the channel stage, which makes a block of other channels of a block.
//
// It passes audio through whose channels are as many as asked for, however many; any other change is refused.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"

class clChannelMixer {
  public:
    // What mixing any two counts needs. Called once, before the first block whose channels change. With no
    // two different counts mixed, that is nothing.
    void BuildTables() {}
    // Makes `output` what `in` is in `to` channels. False when that is refused or there is no memory.
    bool Mix(const clAudioBlock& in, std::uint32_t to);
    // The next block chooses its pair of counts anew.
    void ForgetPair() { fromChannels = toChannels = 0; }

    clAudioBlock output;
    std::uint32_t fromChannels = 0;  // the pair that was chosen, 0 for none
    std::uint32_t toChannels = 0;
};
