// clSampleView: how the samples of a block are stored, found once and used for a whole pass over it.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"
#include "audio/sample_kind.h"

class clSampleView {
  public:
    explicit clSampleView(const clAudioBlock& block);

    // Whether a sample is as wide as the block's record says, so that its frames are all there to be read and
    // written. Only float in containers other than 4 and 8 bytes is not: a stage refuses it.
    bool Fits() const { return sampleKind == SampleKind::None || BytesOf(sampleKind) == containerBytes; }

    std::uint8_t* data;
    std::uint32_t channels;
    SampleKind sampleKind;

  private:
    std::uint32_t containerBytes;
};
