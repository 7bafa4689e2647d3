#include "flac/flac_file.h"

#include <cstring>
#include <random>

QvFormatExtensible PcmFormat(std::uint32_t rate, std::uint16_t channels, std::uint16_t bits,
                             std::uint16_t validBits, std::optional<std::uint32_t> mask) {
    constexpr std::uint8_t kPcm[] = {1, 0, 0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
    const auto align = static_cast<std::uint16_t>(channels * bits / 8);
    QvFormatExtensible format{};
    format.Format = {QV_FORMAT_PCM, channels, rate, rate * align, align, bits, 0};
    if (validBits == 0 && !mask) return format;
    format.Format.wFormatTag = QV_FORMAT_EXTENSIBLE;
    format.Format.cbSize = 22;
    format.wValidBitsPerSample = validBits != 0 ? validBits : bits;
    format.dwChannelMask = mask.value_or(0);
    std::memcpy(format.SubFormat, kPcm, sizeof kPcm);
    return format;
}

std::string Noise(std::uint32_t frames, const QvFormatExtensible& format, std::uint32_t seed) {
    const std::uint32_t bytes = format.Format.wBitsPerSample / 8u;
    const std::uint32_t valid =
        format.Format.cbSize != 0 ? format.wValidBitsPerSample : format.Format.wBitsPerSample;
    std::mt19937 random(seed);
    std::string audio;
    for (std::uint32_t i = 0; i < frames * format.Format.nChannels; ++i) {
        const auto sample = static_cast<std::uint32_t>(random()) >> (32 - valid) << (32 - valid);
        for (std::uint32_t byte = 4 - bytes; byte < 4; ++byte)
            audio += static_cast<char>(sample >> (8 * byte));
    }
    return audio;
}

std::string FlacParts::Whole() const {
    std::string whole = headers;
    for (const std::string& frame : frames) whole += frame;
    return whole;
}

FlacParts Split(const std::string& file, std::uint32_t audioFrames) {
    FlacParts parts;
    std::size_t begin = file.find("\xFF\xF8");
    parts.headers = file.substr(0, begin);
    const std::uint32_t count = (audioFrames + kBlockFrames - 1) / kBlockFrames;
    for (std::uint32_t i = 1; i <= count; ++i) {
        std::size_t next = begin;
        do next = file.find("\xFF\xF8", next + 1);
        while (next != std::string::npos && static_cast<std::uint8_t>(file[next + 4]) != i);
        if (i == count) next = file.size();
        parts.frames.push_back(file.substr(begin, next - begin));
        begin = next;
    }
    EXPECT_EQ(parts.Whole().size(), file.size());
    return parts;
}

void SetLength(std::string& file, std::uint64_t frames) {
    file[21] = static_cast<char>((file[21] & 0xF0) | static_cast<int>(frames >> 32));
    for (std::size_t i = 0; i < 4; ++i) file[22 + i] = static_cast<char>(frames >> (24 - 8 * i));
}

void SetCheckSum(std::string& file, const std::string& sum) {
    file.replace(26, 16, sum);
}

std::string Flac::Encode(const QvFormatExtensible& format, const std::string& samples,
                         const char16_t* settings) {
    EXPECT_TRUE(modules.Encode(folder / u"a.flac", format, samples, {65536}, settings));
    EXPECT_EQ(modules.Log().TakeErrors(), u"");
    return folder.Read(u"a.flac");
}

std::string Flac::Errors(const Decoding& decoding) const {
    const std::u16string name = folder / u"a.flac" + u": ";
    std::string errors;
    for (std::size_t at = 0; at < decoding.errors.size();) {
        if (decoding.errors.compare(at, name.size(), name) == 0) at += name.size();
        errors += static_cast<char>(decoding.errors[at++]);
    }
    return errors;
}

std::u16string Flac::Write(const std::string& bytes) {
    modules.Decoder().Destroy();
    return folder.Write(u"a.flac", bytes);
}

Decoding Flac::Decode(const std::string& bytes) {
    return modules.Decode(Write(bytes));
}

void Flac::Open(const std::string& bytes) {
    clOpenFileRec record;
    ASSERT_TRUE(modules.Open(Write(bytes), QV_OPEN_DECODING, record));
}

std::string Flac::From(std::int64_t frame) {
    modules.Decoder().SetPosition(frame);
    std::string rest;
    while (modules.DecodeBlock(rest)) {
    }
    return rest;
}
