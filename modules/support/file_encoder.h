// clFileEncoder: what encoders that write one file have in common: the file, and that the first failure counts.
//
// The road through an encoding is Plan, Start, Consume for each block, Complete. Whatever goes wrong is
// reported once; nothing more is written then, and End answers false.
#pragma once

#include "foundation/wide_string.h"
#include "modules/support/file_writer.h"
#include "modules/support/module_encoder.h"

class clFileEncoder : public clModuleEncoder {
  public:
    using clModuleEncoder::clModuleEncoder;

    bool Begin(const char16_t* file, const char16_t* settings, const QvFormatExtensible& format) final;
    bool Encode(const std::uint8_t* data, std::uint32_t bytes) final;
    bool End() final;
    void Abandon() final { mGood = false; }

  protected:
    // Can this be encoded? Empty for yes, otherwise why not; the file is not touched then. Also forgets
    // whatever an encoding before has left.
    virtual XString Plan(const char16_t* settings, const QvFormatExtensible& format) = 0;
    // Writes what stands in front of the audio, now that the file is there. False after Fail, as with the next
    // two.
    virtual bool Start() { return true; }
    // A block, never empty; it may be cut anywhere.
    virtual bool Consume(const std::uint8_t* data, std::uint32_t bytes) = 0;
    // Writes what stands behind the audio and puts right what stands in front of it.
    virtual bool Complete() = 0;
    // Frees what the library holds, also after a failure. May come more than once.
    virtual void Release() {}

    // Both are always false.
    bool Fail(const char16_t* trouble);
    bool FailWriting();

    clFileWriter mWriter;

  private:
    XString mPath;
    bool mGood = false;
};
