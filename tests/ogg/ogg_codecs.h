// The codecs in Ogg, and what tests need of them.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "modules/support/audio_stream.h"
#include "modules/support/module_encoder.h"
#include "ogg/ogg_file.h"
#include "support/codec/codec_modules.h"
#include "support/temp_folder.h"
#include "support/wide_text.h"

struct OggCodec {
    const char* name;
    const char16_t* module;
    const char16_t* codec;  // as it is called in messages
    const char16_t* file;
    std::uint32_t rate;
    std::unique_ptr<clAudioStream> (*makeStream)(const clModuleLog& log);
    std::unique_ptr<clModuleEncoder> (*makeEncoder)(const clModuleLog& log);
    const char16_t* fine;  // settings that give large packets
};

extern const OggCodec kVorbis, kOpus;
void PrintTo(const OggCodec& codec, std::ostream* out);

// Interleaved float: in each channel a tone of its own under some noise, the same for the same seed.
std::vector<float> MakeSound(std::uint32_t frames, std::uint32_t channels, std::uint32_t seed = 1);
QvFormatExtensible FloatFormat(std::uint32_t rate, std::uint32_t channels);
std::string_view BytesOf(const std::vector<float>& samples);
std::vector<float> Floats(std::string_view audio);

// A codec's modules in a folder of the test's own.
class OggModules {
  public:
    explicit OggModules(const OggCodec& which) : modules(which.module, which.module), codec(which) {}

    // The bytes of a file with so much sound; empty, after a failed expectation, when it could not be
    // encoded.
    std::string Encode(std::uint32_t frames, std::uint32_t seed = 1, std::uint32_t channels = 2,
                       const char16_t* settings = u"");
    std::string Encode(const std::vector<float>& sound, const QvFormatExtensible& format,
                       const char16_t* settings = u"");
    // Why it was refused, the file's name taken off.
    std::u16string Refusal(const QvFormatExtensible& format, const char16_t* settings);
    Decoding Decode(std::string_view bytes);
    // The samples from a frame on of the file last decoded, as many blocks as it takes to have `frames`.
    std::vector<float> DecodeFrom(std::uint64_t frame, std::size_t frames);
    bool Open();  // the file last decoded
    // The value of a row for display.
    std::u16string Row(std::string_view bytes, const char16_t* name);
    // What went to the log, the file's name and the end of the line taken off.
    std::u16string Told(const std::u16string& text) const;

    TempFolder folder;
    CodecModules modules;
    const OggCodec& codec;
};

class OggTest : public testing::TestWithParam<const OggCodec*> {
  protected:
    OggTest() : ogg(*GetParam()) {}
    OggModules ogg;
};

std::string NameOf(const testing::TestParamInfo<const OggCodec*>& info);

#define OGG_TESTS(suite) INSTANTIATE_TEST_SUITE_P(Codecs, suite, testing::Values(&kVorbis, &kOpus), NameOf)
