#include "bench/audio/blocks.h"

#include <cmath>
#include <random>

#include "audio/sample_values.h"

QvFormat FormatOf(const SampleType& type, std::uint16_t channels) {
    QvFormat format{};
    format.wFormatTag = type.isFloat ? QV_FORMAT_FLOAT : QV_FORMAT_PCM;
    format.nChannels = channels;
    format.nSamplesPerSec = 48000;
    format.wBitsPerSample = type.bits;
    return format;
}

void FillWithNoise(clAudioBlock& block, const SampleType& type, std::uint16_t channels,
                   std::uint32_t frames) {
    const QvFormat format = FormatOf(type, channels);
    const std::uint32_t count = frames * channels;
    block.setData(nullptr, count * (type.bits / 8u), &format, false);
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> noise(-0.9, 0.9);
    std::vector<double> values(count);
    for (double& value : values) value = noise(random);
    WriteSamples(block.data, values.data(), count, type.kind);
}

std::vector<double> Values(const void* samples, std::size_t count, SampleKind kind) {
    std::vector<double> values(count);
    ReadSamples(values.data(), static_cast<const std::uint8_t*>(samples), count, kind);
    return values;
}

std::string Difference(const std::vector<double>& a, const std::vector<double>& b, double tolerance) {
    if (a.size() != b.size()) return std::to_string(a.size()) + " samples and " + std::to_string(b.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!(std::abs(a[i] - b[i]) <= tolerance))
            return "sample " + std::to_string(i) + " is " + std::to_string(a[i]) + " and " +
                   std::to_string(b[i]);
    return "";
}
