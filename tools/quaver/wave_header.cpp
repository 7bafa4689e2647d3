#include "wave_header.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

constexpr std::uint32_t kOpen = 0xFFFFFFFF;
constexpr std::size_t kWideSizes = 28;  // three 64-bit numbers and an empty table

std::string LittleEndian(std::uint64_t number, std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
    return text;
}

std::string Chunk(std::string_view id, const std::string& content) {
    return std::string(id) + LittleEndian(content.size(), 4) + content;
}

bool IsExtensible(const QvFormatExtensible& format) {
    return format.Format.wFormatTag == QV_FORMAT_EXTENSIBLE && format.Format.cbSize >= 22;
}

// Integers in the oldest form, without the size of an extension that isn't there.
std::string Record(const QvFormatExtensible& format) {
    std::size_t bytes = format.Format.wFormatTag == QV_FORMAT_PCM ? 16 : 18;
    QvFormatExtensible record = format;
    record.Format.cbSize = IsExtensible(format) ? 22 : 0;
    if (IsExtensible(format)) bytes = sizeof record;
    std::string text(bytes, '\0');
    std::memcpy(text.data(), &record, bytes);
    return text;
}

}  // namespace

std::uint32_t SampleType(const QvFormatExtensible& format) {
    if (!IsExtensible(format)) return format.Format.wFormatTag;
    constexpr std::uint8_t kFamily[] = {0x00, 0x00, 0x10, 0x00, 0x80, 0x00,
                                        0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
    std::uint32_t type;
    std::memcpy(&type, format.SubFormat, sizeof type);
    const bool known = std::memcmp(format.SubFormat + 4, kFamily, sizeof kFamily) == 0;
    return known ? type : std::uint32_t{QV_FORMAT_EXTENSIBLE};
}

WaveHeader::WaveHeader(const QvFormatExtensible& format)
    : mFormat(Record(format)),
      mFrameBytes(std::max<std::uint32_t>(format.Format.nBlockAlign, 1)),
      mCountsFrames(SampleType(format) != QV_FORMAT_PCM) {}

bool WaveHeader::CanDescribe(const QvFormatExtensible& format) {
    const std::uint32_t bits = format.Format.wBitsPerSample;
    if (format.Format.nBlockAlign != format.Format.nChannels * bits / 8) return false;
    switch (SampleType(format)) {
        case QV_FORMAT_PCM:
            return bits == 8 || bits == 16 || bits == 24 || bits == 32;
        case QV_FORMAT_FLOAT:
            return bits == 32 || bits == 64;
        case QV_FORMAT_ALAW:
        case QV_FORMAT_MULAW:
            return bits == 8;
        default:
            return false;
    }
}

std::string WaveHeader::Open() const {
    return Assemble("RIFF", kOpen, {}, kOpen, kOpen);
}

std::string WaveHeader::Closed(std::uint64_t audioBytes) const {
    const std::uint64_t rest = Open().size() - 8 + audioBytes + audioBytes % 2;
    const std::uint64_t frames = audioBytes / mFrameBytes;
    if (rest < kOpen) {
        return Assemble("RIFF", static_cast<std::uint32_t>(rest), {}, static_cast<std::uint32_t>(frames),
                        static_cast<std::uint32_t>(audioBytes));
    }
    const std::string wideSizes =
        LittleEndian(rest, 8) + LittleEndian(audioBytes, 8) + LittleEndian(frames, 8) + LittleEndian(0, 4);
    return Assemble("RF64", kOpen, wideSizes, kOpen, kOpen);
}

std::string WaveHeader::Assemble(std::string_view id, std::uint32_t riffBytes, const std::string& wideSizes,
                                 std::uint32_t frames, std::uint32_t audioBytes) const {
    std::string header = std::string(id) + LittleEndian(riffBytes, 4) + "WAVE";
    header += wideSizes.empty() ? Chunk("JUNK", std::string(kWideSizes, '\0')) : Chunk("ds64", wideSizes);
    header += Chunk("fmt ", mFormat);
    if (mCountsFrames) header += Chunk("fact", LittleEndian(frames, 4));
    return header + "data" + LittleEndian(audioBytes, 4);
}
