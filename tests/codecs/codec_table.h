// Every format there is a module for, with what may be expected of it; and audio to encode.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "quavermill/types.h"
#include "support/codec/codec_modules.h"

struct Codec {
    const char* testName;
    const char16_t* decoder;
    const char16_t* encoder;
    const char16_t* file;  // a file name with the extension that the encoder writes
    std::uint32_t rate;
    bool isLossless;
    bool hasCheckSums;     // over all of the audio
    double seekTolerance;  // of a sample after a seek, full scale being 1
    const char16_t* settings = u"";
    const char16_t* wrongSettings = u"-no-such-setting=1";
};

// Those that this build has modules for.
const std::vector<Codec>& AllCodecs();

void PrintTo(const Codec& codec, std::ostream* out);
std::string NameOf(const ::testing::TestParamInfo<Codec>& info);

// 16-bit stereo that no codec finds trivial: two tones and noise, the same for the same seed.
std::string MakeAudio(std::uint32_t frames, std::uint32_t seed);
QvFormatExtensible StereoFormat(std::uint32_t rate);
inline constexpr std::uint32_t kFrameBytes = 4;

// The samples of a decoding, full scale being 1.
std::vector<double> Samples(const Decoding& decoding);
std::uint32_t FrameBytesOf(const Decoding& decoding);

// A codec's modules and a file encoded with them.
class CodecTest : public ::testing::TestWithParam<Codec> {
  protected:
    CodecTest() : modules(GetParam().decoder, GetParam().encoder) {}

    // The path of a new file with so much audio in it.
    std::u16string Encode(std::uint32_t frames, std::uint32_t seed = 1);
    std::string FileBytes() { return folder.Read(GetParam().file); }
    std::u16string Rewrite(std::string_view bytes) { return folder.Write(GetParam().file, bytes); }

    TempFolder folder;
    CodecModules modules;
};
