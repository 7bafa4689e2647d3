// clOpusStream: Opus in Ogg, decoded by libopusfile to 32-bit float at 48000 Hz.
//
// A block is one packet of the file: up to 5760 frames. The output gain of the header is applied, that of
// tags is not.
//
// A decoder of Opus learns from what it has decoded, and forgets slowly: after the customary 80 ms in front
// of a place that is sought a difference can be heard. After kPreRoll what comes is what decoding from the
// beginning gives there, to the bit where sound is coded as music. Where it is coded as speech, at low bit
// rates, the rounding of whole numbers keeps some 50 dB below it apart, however long one waits.
#pragma once

#include <vector>

#include "modules/support/ogg_stream.h"

struct OggOpusFile;  // libopusfile's own name for a decoder

class clOpusStream : public clOggStream {
  public:
    static constexpr std::uint32_t kRate = 48000;
    static constexpr std::uint64_t kPreRoll = 2 * kRate;  // frames

    using clOggStream::clOggStream;
    ~clOpusStream() override;

    void AddPropertyRows(clIDTagList& rows) const override;

  private:
    const char16_t* CodecName() const override { return u"Opus"; }
    int OpenLibrary() override;
    Sound OpenSound() const override;
    void Describe() override;
    int Decode() override;
    int SeekLibrary(std::uint64_t frame) override;
    std::uint64_t BytesTaken() const override;

    void Take(std::size_t first, std::size_t frames);

    OggOpusFile* mDecoder = nullptr;
    std::vector<float> mPacket;     // in the order of the file
    std::uint64_t mFirstFrame = 0;  // what comes before is not given out
};
