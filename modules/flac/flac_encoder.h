// clFlacEncoder: FLAC files written by libFLAC.
//
// Integer samples keep every bit that their format calls valid; float ones are rounded to 24 or 16 bits. The
// header is written again at the end, with length and check sum. An encoding that is never ended leaves a file
// whose length is open.
//
// There is no seek table: every frame says where it belongs, and decoders find any of them by a few reads. Its
// place is better left to tags.
#pragma once

#include <FLAC/metadata.h>
#include <FLAC/stream_encoder.h>

#include <memory>

#include "modules/support/file_encoder.h"
#include "modules/support/sample_input.h"

class clFlacEncoder : public clFileEncoder {
  public:
    using clFileEncoder::clFileEncoder;

    const char16_t* Extension() const override { return u".flac"; }
    std::span<const clPanelRow> PanelRows() const override;

  private:
    struct Deleter {
        void operator()(FLAC__StreamEncoder* encoder) const { FLAC__stream_encoder_delete(encoder); }
        void operator()(FLAC__StreamMetadata* block) const { FLAC__metadata_object_delete(block); }
    };
    using Metadata = std::unique_ptr<FLAC__StreamMetadata, Deleter>;

    friend struct FlacEncoderCallbacks;

    XString Plan(const char16_t* settings, const QvFormatExtensible& format) override;
    bool Start() override;
    bool Consume(const std::uint8_t* data, std::uint32_t bytes) override;
    bool Complete() override;
    void Release() override;

    XString ReadSettings(const char16_t* text);
    bool MakeMetadata();
    bool FailEncoding();
    bool Write(const void* data, std::uint32_t count);

    clSampleInput mInput;
    std::uint32_t mBits = 0;
    std::uint32_t mLevel = 0;
    bool mVerifies = false;
    std::uint64_t mPosition = 0;  // where the library writes next
    Metadata mComments, mPadding;
    std::unique_ptr<FLAC__StreamEncoder, Deleter> mEncoder;  // refers to both
};
