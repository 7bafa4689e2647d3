// clWaveEncoder: blocks of audio into a WAVE file.
//
// Blocks are written as they come, one write each, unless another depth is asked for; only the header is written twice.
// They may be cut anywhere, as long as the whole makes whole frames.
#pragma once

#include "modules/support/file_encoder.h"
#include "modules/wave/wave_depth.h"
#include "modules/wave/wave_header.h"

class clWaveEncoder : public clFileEncoder {
  public:
    explicit clWaveEncoder(const clModuleLog& log, std::uint64_t riffLimit = clWaveHeader::kRiffLimit)
        : clFileEncoder(log), mHeader(riffLimit) {}

    const char16_t* Extension() const override { return u".wav"; }
    std::span<const clPanelRow> PanelRows() const override;

  private:
    XString Plan(const char16_t* settings, const QvFormatExtensible& format) override;
    bool Start() override;
    bool Consume(const std::uint8_t* data, std::uint32_t bytes) override;
    bool Complete() override;

    clWaveHeader mHeader;
    clWaveDepth mDepth;
    std::uint64_t mAudioBytes = 0;
};
