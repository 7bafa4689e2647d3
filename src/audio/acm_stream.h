// clAcmStream: the stage for what the others can't reach, sample types that are neither integer PCM nor
// float.
//
// The system's audio compression manager is asked for a stream between the two types. It is fed whole blocks
// of the source's own alignment: what is short of one, and what the stream leaves, waits in a queue for the
// next call. Many codecs know integers of 16 bits only, so one that refuses is asked a second time for those.
// Audio whose type and rate are those asked for passes, and integers become float at the same rate, without
// any stream; depth and channels are not compared, as they are settled before.
//
// The stream is opened by the first block that needs one and is kept: a later block of another format goes
// into it as it is. One thread at a time.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"
#include "audio/block_carry.h"
#include "platform/acm.h"

class clAcmStream {
  public:
    clAcmStream() = default;
    clAcmStream(const clAcmStream&) = delete;
    clAcmStream& operator=(const clAcmStream&) = delete;
    ~clAcmStream() { Close(); }

    // Makes `output` what `in` is in the target's type and rate; it may be empty. `final` with the last block
    // of a stream. False when no codec does that, when it fails or when there is no memory: `output` is not
    // to be read then, and what went into the conversion is lost. What waits in the queue never stands in
    // `in`.
    bool Convert(const clAudioBlock& in, const clFormatHolder& target, bool final);
    // Chooses the way from one format to the other: a stream, or none where that does. Done by the first
    // Convert that needs it. False when there is no way.
    bool Open(const clAudioBlock& in, const clFormatHolder& target);
    // Lets go of the stream and of what waits. The next Convert chooses anew.
    void Close();

    clFormatHolder sourceFormat;  // as the stream sees it
    clFormatHolder targetFormat;
    clAudioBlock output;
    platform::AcmStream stream = nullptr;  // null for none
    std::uint8_t startPending = 0;         // the next conversion is the first of its stream
    std::uint8_t ownFloat = 0;             // integers to float, without a stream
    std::uint8_t sixteenFirst = 0;         // the stream takes 16 bits, and blocks are narrowed to them
    clAudioBlock narrowed;                 // what this stage converts itself
    clBlockCarry carry;                    // waits for the stream

  private:
    bool OpenStream();
    bool ConvertToFloat(const clAudioBlock& in);
    bool Queue(const clAudioBlock& in);
    bool ConvertQueued(bool final);
    bool MakeRoom(std::uint32_t suggested);
    bool RunStream(const clAudioBlock& source, bool final);
    bool KeepQueue();
};
