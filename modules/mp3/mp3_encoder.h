// clMp3Encoder: MP3 files written by LAME.
//
// The first frame of the file describes the rest (see info_frame.h); it is written last, when all is known.
// Nothing is resampled and no channel left out: what MP3 does not have is refused.
#pragma once

#include <vector>

#include "modules/support/file_encoder.h"
#include "modules/support/sample_input.h"

struct lame_global_struct;

class clMp3Encoder : public clFileEncoder {
  public:
    using clFileEncoder::clFileEncoder;
    ~clMp3Encoder() override { Release(); }

    const char16_t* Extension() const override { return u".mp3"; }
    std::span<const clPanelRow> PanelRows() const override;

  private:
    XString Plan(const char16_t* settings, const QvFormatExtensible& format) override;
    bool Consume(const std::uint8_t* data, std::uint32_t bytes) override;
    bool Complete() override;
    void Release() override;

    XString Configure(const char16_t* settings);
    bool EncodePiece(std::span<const float> samples);
    bool Append(int bytes);

    clSampleInput mInput;
    lame_global_struct* mLame = nullptr;
    std::vector<unsigned char> mOut;
};
