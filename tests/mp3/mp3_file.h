// MP3 files made for a test, and where their frames stand.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "support/codec/codec_modules.h"

inline QvFormatExtensible PcmFormat(std::uint32_t rate, std::uint16_t channels) {
    const auto align = static_cast<std::uint16_t>(2 * channels);
    QvFormatExtensible format{};
    format.Format = {QV_FORMAT_PCM, channels, rate, rate * align, align, 16, 0};
    return format;
}

// Two tones, 16 bits.
inline std::string Tones(std::uint32_t frames, std::uint32_t channels) {
    std::string audio;
    for (std::uint32_t i = 0; i < frames * channels; ++i) {
        const auto sample =
            static_cast<std::int16_t>(std::lround(9000 * std::sin(0.07 * i) + 5000 * std::sin(0.3 * i)));
        audio.append(reinterpret_cast<const char*>(&sample), sizeof sample);
    }
    return audio;
}

// The beginnings of the frames of a file of 44100 Hz and one bit rate, made by the encoder's -bitrate=128.
inline std::vector<std::size_t> FramesOf(const std::string& file) {
    std::vector<std::size_t> frames;
    for (std::size_t at = 0; at + 4 <= file.size();) {
        const auto byte = [&](std::size_t i) {
            return std::uint32_t{static_cast<std::uint8_t>(file[at + i])};
        };
        if (byte(0) != 0xFF || (byte(1) & 0xE0) != 0xE0) break;
        frames.push_back(at);
        at += 144 * 128000 / 44100 + (byte(2) >> 1 & 1u);
    }
    return frames;
}

class Mp3 : public ::testing::Test {
  protected:
    static constexpr std::uint32_t kFrames = 100000;

    std::u16string Encode(const char16_t* settings, std::uint32_t rate = 44100, std::uint16_t channels = 2) {
        const std::u16string file = folder / u"a.mp3";
        EXPECT_TRUE(
            modules.Encode(file, PcmFormat(rate, channels), Tones(kFrames, channels), {65536}, settings));
        return file;
    }

    TempFolder folder;
    CodecModules modules{u"MP3", u"MP3"};
};
