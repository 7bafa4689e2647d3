#include "codecs/codec_table.h"

#include <cmath>
#include <cstring>
#include <random>

namespace {

// Half a step of 16 bits, for codecs whose seeks land exactly.
constexpr double kExact = 0.5 / 32768;

std::int32_t IntegerAt(const std::uint8_t* sample, unsigned bits) {
    std::uint32_t top = 0;
    std::memcpy(reinterpret_cast<std::uint8_t*>(&top) + 4 - bits / 8, sample, bits / 8);
    if (bits == 8) top ^= 0x80000000u;
    return static_cast<std::int32_t>(top);
}

double SampleAt(const std::uint8_t* sample, const QvFormat& format, bool isFloat) {
    if (!isFloat) return IntegerAt(sample, format.wBitsPerSample) / 2147483648.0;
    float value = 0;
    std::memcpy(&value, sample, sizeof value);
    return value;
}

}  // namespace

const std::vector<Codec>& AllCodecs() {
    static const std::vector<Codec> codecs = {
        {"Wave", u"Wave", u"Wave", u"t\u00f6n.wav", 44100, true, false, 0},
#ifdef QV_HAS_FLAC
        {"Flac", u"FLAC", u"FLAC", u"t\u00f6n.flac", 44100, true, true, 0},
#endif
#ifdef QV_HAS_VORBIS
        {"Vorbis", u"Ogg Vorbis", u"Ogg Vorbis", u"t\u00f6n.ogg", 44100, false, true, kExact},
#endif
#ifdef QV_HAS_OPUS
        {"Opus", u"Opus", u"Opus", u"t\u00f6n.opus", 48000, false, true, 0.01},
#endif
#ifdef QV_HAS_MP3
        {"Mp3", u"MP3", u"MP3", u"t\u00f6n.mp3", 44100, false, false, kExact},
#endif
#ifdef QV_HAS_SNDFILE
        {"Aiff", u"AIFF and others", u"AIFF", u"t\u00f6n.aiff", 44100, true, false, 0},
#endif
    };
    return codecs;
}

void PrintTo(const Codec& codec, std::ostream* out) {
    *out << codec.testName;
}

std::string NameOf(const ::testing::TestParamInfo<Codec>& info) {
    return info.param.testName;
}

std::string MakeAudio(std::uint32_t frames, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::string audio;
    for (std::uint32_t i = 0; i < frames; ++i) {
        const auto noise = static_cast<int>(random() % 2001) - 1000;
        const double left = 9000 * std::sin(0.05 * i) + noise;
        const double right = 7000 * std::sin(0.031 * i + 1) - noise;
        for (const double value : {left, right}) {
            const auto sample = static_cast<std::int16_t>(std::lround(value));
            audio.append(reinterpret_cast<const char*>(&sample), sizeof sample);
        }
    }
    return audio;
}

QvFormatExtensible StereoFormat(std::uint32_t rate) {
    QvFormatExtensible format{};
    format.Format = {QV_FORMAT_PCM, 2, rate, rate * kFrameBytes, kFrameBytes, 16, 0};
    return format;
}

std::uint32_t FrameBytesOf(const Decoding& decoding) {
    const QvFormat format = decoding.Format().Format;
    return std::uint32_t{format.nChannels} * format.wBitsPerSample / 8;
}

std::vector<double> Samples(const Decoding& decoding) {
    const QvFormatExtensible record = decoding.Format();
    const QvFormat format = record.Format;
    const bool isFloat = (format.wFormatTag == QV_FORMAT_EXTENSIBLE ? record.SubFormat[0]
                                                                    : format.wFormatTag) == QV_FORMAT_FLOAT;
    const std::size_t step = format.wBitsPerSample / 8;
    std::vector<double> samples(decoding.audio.size() / step);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(decoding.audio.data());
    for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = SampleAt(bytes + i * step, format, isFloat);
    return samples;
}

std::u16string CodecTest::Encode(std::uint32_t frames, std::uint32_t seed) {
    const std::u16string file = folder / GetParam().file;
    EXPECT_TRUE(modules.Encode(file, StereoFormat(GetParam().rate), MakeAudio(frames, seed), {10000, 4099},
                               GetParam().settings));
    return file;
}
