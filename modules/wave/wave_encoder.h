// clWaveEncoder: blocks of audio into a WAVE file.
//
// Blocks are written as they come, one write each; only the header is written twice. The first trouble is
// reported, and from then on nothing is written and End answers false. Blocks may be cut anywhere, as long as
// the whole makes whole frames.
#pragma once

#include "modules/support/file_writer.h"
#include "modules/support/module_encoder.h"
#include "modules/wave/wave_header.h"

class clWaveEncoder : public clModuleEncoder {
  public:
    explicit clWaveEncoder(const clModuleLog& log, std::uint64_t riffLimit = clWaveHeader::kRiffLimit)
        : clModuleEncoder(log), mHeader(riffLimit) {}

    const char16_t* Extension() const override { return u".wav"; }
    bool Begin(const char16_t* file, const char16_t* settings, const QvFormatExtensible& format) override;
    bool Encode(const std::uint8_t* data, std::uint32_t bytes) override;
    bool End() override;
    void Abandon() override { mGood = false; }

  private:
    XString Plan(const char16_t* settings, const QvFormatExtensible& format);
    bool Complete();
    bool Fail(const char16_t* trouble);
    bool FailWriting();

    clWaveHeader mHeader;
    clFileWriter mWriter;
    XString mPath;
    std::uint64_t mAudioBytes = 0;
    bool mGood = false;
};
