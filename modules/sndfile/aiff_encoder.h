// clAiffEncoder: AIFF files of integer samples, and AIFC files of float ones, written by libsndfile.
#pragma once

#include "modules/support/file_encoder.h"
#include "modules/support/sample_input.h"

struct sf_private_tag;

class clAiffEncoder : public clFileEncoder {
  public:
    using clFileEncoder::clFileEncoder;
    ~clAiffEncoder() override { Release(); }

    const char16_t* Extension() const override { return u".aiff"; }

  private:
    XString Plan(const char16_t* settings, const QvFormatExtensible& format) override;
    bool Start() override;
    bool Consume(const std::uint8_t* data, std::uint32_t bytes) override;
    bool Complete() override;
    void Release() override;

    bool Write(const void* data, std::uint32_t count);
    bool UncountPadding();

    clSampleInput mInput;
    sf_private_tag* mSound = nullptr;
    std::uint64_t mPosition = 0;  // where the library writes next
    std::uint64_t mAudioBytes = 0;

    friend struct AiffCallbacks;
};
