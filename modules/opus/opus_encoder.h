// clOpusEncoder: Opus in Ogg, written by libopusenc.
//
// Opus has 48000 Hz and nothing else; other rates are converted by the library. N frames at a rate of R
// become N * 48000 / R, rounded up: so many whole frames of the original lie within.
#pragma once

#include "modules/support/ogg_encoder.h"

struct OggOpusEnc;  // libopusenc's own name for an encoder

class clOpusEncoder : public clOggEncoder {
  public:
    using clOggEncoder::clOggEncoder;
    ~clOpusEncoder() override { Release(); }

    const char16_t* Extension() const override { return u".opus"; }
    std::span<const clPanelRow> PanelRows() const override;

  private:
    XString Prepare(const char16_t* settings) override;
    bool StartStream(std::uint32_t serial) override;
    bool EncodePiece(std::span<const float> samples) override;
    bool FinishStream() override;
    void Release() override;

    bool Check(int result);

    OggOpusEnc* mEncoder = nullptr;
};
