// clVorbisEncoder: Ogg Vorbis, written by libvorbisenc.
//
// Length is exact: the last page says where the last frame ends. Nothing is resampled; what the library has
// no mode for is refused.
#pragma once

#include <memory>

#include "modules/support/ogg_encoder.h"

class clVorbisEncoder : public clOggEncoder {
  public:
    explicit clVorbisEncoder(const clModuleLog& log);
    ~clVorbisEncoder() override;

    const char16_t* Extension() const override { return u".ogg"; }
    std::span<const clPanelRow> PanelRows() const override;

  private:
    struct Library;  // what libvorbis needs during one encoding

    XString Prepare(const char16_t* settings) override;
    bool StartStream(std::uint32_t serial) override;
    bool EncodePiece(std::span<const float> samples) override;
    bool FinishStream() override;
    void Release() override;

    bool Drain();
    bool WritePages(bool all);

    std::unique_ptr<Library> mLibrary;
};
