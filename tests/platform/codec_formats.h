// Format records of coded audio, one channel at 8000 Hz.
#pragma once

#include <cstdint>
#include <vector>

#include "quavermill/types.h"

#pragma pack(push, 1)
struct ImaFormat {
    QvFormat head = {17, 1, 8000, 4055, 256, 4, 2};
    std::uint16_t samplesPerBlock = 505;
};
struct MsAdpcmFormat {
    QvFormat head = {QV_FORMAT_ADPCM, 1, 8000, 4096, 256, 4, 32};
    std::uint16_t samplesPerBlock = 500;
    std::uint16_t coefficients = 7;
    std::int16_t pairs[7][2] = {{256, 0}, {512, -256}, {0, 0}, {192, 64}, {240, 0}, {460, -208}, {392, -232}};
};
struct GsmFormat {
    QvFormat head = {49, 1, 8000, 1625, 65, 0, 2};
    std::uint16_t samplesPerBlock = 320;
};
#pragma pack(pop)

inline constexpr QvFormat kPcm16 = {QV_FORMAT_PCM, 1, 8000, 16000, 2, 16, 0};
inline constexpr QvFormat kALawFormat = {QV_FORMAT_ALAW, 1, 8000, 8000, 1, 8, 0};
inline constexpr QvFormat kMuLawFormat = {QV_FORMAT_MULAW, 1, 8000, 8000, 1, 8, 0};

inline std::vector<std::uint8_t> AsBytes(const std::vector<std::int16_t>& samples) {
    std::vector<std::uint8_t> bytes;
    for (const std::int16_t sample : samples) {
        bytes.push_back(static_cast<std::uint8_t>(sample));
        bytes.push_back(static_cast<std::uint8_t>(sample >> 8));
    }
    return bytes;
}
inline std::vector<std::int16_t> AsSamples(const std::vector<std::uint8_t>& bytes) {
    std::vector<std::int16_t> samples;
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2)
        samples.push_back(static_cast<std::int16_t>(bytes[index] | bytes[index + 1] << 8));
    return samples;
}
