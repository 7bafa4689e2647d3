// FLAC files made for a test, and their parts.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/codec/codec_modules.h"

// A plain record, or an extensible one as soon as `validBits` or `mask` is given.
QvFormatExtensible PcmFormat(std::uint32_t rate, std::uint16_t channels, std::uint16_t bits,
                             std::uint16_t validBits = 0, std::optional<std::uint32_t> mask = {});

// Samples in the manner of `format` that no encoder finds trivial; the bits below the valid ones are 0.
std::string Noise(std::uint32_t frames, const QvFormatExtensible& format, std::uint32_t seed = 1);

// A file of the encoder's own: what stands before its frames, and each of them. Blocks have 4096 frames of
// audio, and of blocks there are fewer than 128.
struct FlacParts {
    std::string headers;
    std::vector<std::string> frames;

    std::string Whole() const;
};
FlacParts Split(const std::string& file, std::uint32_t audioFrames);

// Fields of the header.
void SetLength(std::string& file, std::uint64_t frames);
void SetCheckSum(std::string& file, const std::string& sum);
inline constexpr std::uint32_t kBlockFrames = 4096;

class Flac : public ::testing::Test {
  protected:
    static constexpr std::uint32_t kFrames = 50001;

    // The bytes of a file with this audio.
    std::string Encode(const QvFormatExtensible& format, const std::string& audio,
                       const char16_t* settings = u"");
    Decoding Decode(const std::string& bytes);
    std::string Errors(const Decoding& decoding) const;  // in ASCII, without the file's name

    // From this frame of audio to the end.
    std::string From(std::int64_t frame);
    void Open(const std::string& bytes);
    std::u16string Write(const std::string& bytes);  // lets go of the file before

    TempFolder folder;
    CodecModules modules{u"FLAC", u"FLAC"};

    const QvFormatExtensible stereo = PcmFormat(44100, 2, 16);
    const std::string audio = Noise(kFrames, stereo);
};
