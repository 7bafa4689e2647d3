// clWaveDepth: blocks of audio, cut anywhere, in samples of another depth.
#pragma once

#include <cstdint>

#include "audio/block_carry.h"
#include "foundation/wide_string.h"
#include "modules/wave/wave_settings.h"
#include "quavermill/types.h"

class clWaveDepth {
  public:
    // Empty when audio of this format can have that depth: the record is then that of the new samples, and what an
    // audio before has left is forgotten. Otherwise why not.
    XString Plan(WaveDepth depth, QvFormatExtensible& format);

    // What a block gives, standing until the next: whole frames, and what is cut off waits. Null without memory.
    const clAudioBlock* Convert(const std::uint8_t* data, std::uint32_t bytes);
    bool IsWithinAFrame() const { return mWaiting.held() != 0; }

    // False where the samples stay as they are: there is nothing to convert.
    bool Changes() const { return mChanges; }

  private:
    clBlockCarry mWaiting;
    clAudioBlock mConverted;
    std::uint16_t mBits = 0;
    bool mToFloat = false;
    bool mChanges = false;
};
