#include "wave/wave_bytes.h"

#include <cstring>

namespace wave_bytes {

namespace {

std::string Little(std::uint64_t number, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> (8 * i) & 0xFF);
    return text;
}

std::string Padded(std::string text) {
    if (text.size() % 2 != 0) text += '\0';
    return text;
}

}  // namespace

std::string U16(std::uint16_t number) {
    return Little(number, 2);
}
std::string U32(std::uint32_t number) {
    return Little(number, 4);
}
std::string U64(std::uint64_t number) {
    return Little(number, 8);
}

std::string Claiming(std::string_view id, std::uint32_t size, std::string_view content) {
    return std::string(id) + U32(size) + std::string(content);
}

std::string Chunk(std::string_view id, std::string_view content) {
    return Padded(Claiming(id, static_cast<std::uint32_t>(content.size()), content));
}

std::string Riff(std::string_view chunks) {
    return Claiming("RIFF", static_cast<std::uint32_t>(chunks.size() + 4), "WAVE" + std::string(chunks));
}

std::string Riff64(std::string_view id, std::uint64_t dataBytes, std::string_view chunks) {
    const std::uint64_t whole = 4 + 36 + chunks.size();
    const std::string sizes = Chunk("ds64", U64(whole) + U64(dataBytes) + U64(0) + U32(0));
    return Claiming(id, 0xFFFFFFFF, "WAVE" + sizes + std::string(chunks));
}

std::string Head(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate, std::uint16_t align,
                 std::uint16_t bits) {
    return U16(tag) + U16(channels) + U32(rate) + U32(rate * align) + U16(align) + U16(bits);
}

QvFormatExtensible Plain(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate, std::uint16_t bits) {
    QvFormatExtensible record{};
    QvFormat& head = record.Format;
    head.wFormatTag = tag;
    head.nChannels = channels;
    head.nSamplesPerSec = rate;
    head.wBitsPerSample = bits;
    head.nBlockAlign = static_cast<std::uint16_t>(std::uint32_t{channels} * bits / 8);
    head.nAvgBytesPerSec = rate * head.nBlockAlign;
    return record;
}

QvFormatExtensible Extensible(std::uint16_t type, std::uint16_t channels, std::uint32_t rate,
                              std::uint16_t bits, std::uint16_t validBits, std::uint32_t mask) {
    QvFormatExtensible record = Plain(QV_FORMAT_EXTENSIBLE, channels, rate, bits);
    record.Format.cbSize = 22;
    record.wValidBitsPerSample = validBits;
    record.dwChannelMask = mask;
    const std::string type32 = U32(type);
    const std::uint8_t tail[12] = {0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
    std::memcpy(record.SubFormat, type32.data(), 4);
    std::memcpy(record.SubFormat + 4, tail, sizeof tail);
    return record;
}

QvFormatExtensible Coded(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                         std::uint32_t byteRate, std::uint16_t align, std::uint16_t bits,
                         std::string_view extension) {
    QvFormatExtensible record{};
    record.Format = {
        tag, channels, rate, byteRate, align, bits, static_cast<std::uint16_t>(extension.size())};
    std::memcpy(&record.wValidBitsPerSample, extension.data(), extension.size());
    return record;
}

std::string Noise(std::size_t count) {
    std::string bytes(count, '\0');
    std::uint32_t state = 12345;
    for (char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

std::string StereoFormat() {
    return Chunk("fmt ", Head(QV_FORMAT_PCM, 2, 44100, 4, 16));
}

}  // namespace wave_bytes
