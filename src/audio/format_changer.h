// clFormatChanger: takes a decoded block in whatever format its module gives, and makes it one in the format
// that was asked for.
//
// Four stages in a fixed order: depth and type, channels, rate, and what is left over to the system's
// conversions. Each takes its input's format from the stage before, so channels and rate are changed in the
// depth of the result, and only the channels of the result are brought to another rate. The stages keep what
// they need between blocks: a changer serves one stream, and neither a seek nor another file makes it forget
// what is still on its way. One thread at a time.
#pragma once

#include <cstdint>

#include "audio/acm_stream.h"
#include "audio/audio_block.h"
#include "audio/channel_mixer.h"
#include "audio/resampler.h"

class clFormatChanger {
  public:
    clFormatChanger() = default;
    clFormatChanger(const clFormatChanger&) = delete;
    clFormatChanger& operator=(const clFormatChanger&) = delete;
    ~clFormatChanger() { Reset(); }

    // Whether blocks of a format are in another already: type, depth, rate and channels. ChangeFormat only copies them.
    static bool Stays(const clFormatHolder& in, const clFormatHolder& out);
    // Makes `result` what `in` is in the format of `out`; it may be empty, and owns its bytes. `final` with
    // the last block of a stream. False when a stage refuses or there is no memory: `result` must not be read
    // then, and this block gives no audio, but the stages before may have taken it in. Nothing is reported.
    bool ChangeFormat(const clAudioBlock& in, const clFormatHolder& out, bool final);
    // Back to the start. What the stages hold is lost.
    void Reset();

    clAudioBlock result;
    clAudioBlock depthBlock;
    clChannelMixer mixer;
    clResampler resampler;
    clAcmStream firstAcm;   // stands in the rate's place when the rate stays
    clAcmStream secondAcm;  // the last stage
    std::uint8_t mixPending = 1;
    std::uint8_t resamplePending = 1;

  private:
    bool ChangeDepth(const clAudioBlock& in, const clFormatHolder& out);
    bool ChangeChannels(const clAudioBlock& in, const clFormatHolder& out);
    const clAudioBlock* ChangeRate(const clAudioBlock& in, const clFormatHolder& out, bool final);
};
