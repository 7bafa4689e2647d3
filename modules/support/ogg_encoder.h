// clOggEncoder: an Ogg file with one stream of sound, whichever library encodes it.
//
// The library gets float samples, channels in the order that Vorbis and Opus share, in pieces of always the
// same length: what it makes of them depends on where they end, and must not depend on how a host cuts its
// blocks. The stream's serial number, which is to differ between streams that are put into one file, is
// reckoned from format, settings and the first piece. So the same sound gives the same file.
#pragma once

#include <vector>

#include "modules/support/file_encoder.h"
#include "modules/support/sample_input.h"

class clOggEncoder : public clFileEncoder {
  public:
    static constexpr std::uint32_t kMostChannels = 8;
    static constexpr std::uint32_t kPieceFrames = 4096;

    using clFileEncoder::clFileEncoder;

  protected:
    // The library is set up, the file not yet there. Empty, or what is wrong.
    virtual XString Prepare(const char16_t* settings) = 0;
    // Before the first piece, which may be empty. False after Fail, as with the next two.
    virtual bool StartStream(std::uint32_t serial) = 0;
    // kPieceFrames frames, or at the end fewer, never none.
    virtual bool EncodePiece(std::span<const float> samples) = 0;
    virtual bool FinishStream() = 0;

    clSampleInput mInput;

  private:
    XString Plan(const char16_t* settings, const QvFormatExtensible& format) final;
    bool Consume(const std::uint8_t* data, std::uint32_t bytes) final;
    bool Complete() final;

    bool Collect(std::span<const float> samples);
    bool HandOn();

    std::vector<float> mPiece;
    std::uint32_t mSerial = 0;
    bool mHasStarted = false;
};
