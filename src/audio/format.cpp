// Records come from modules, hosts and files, so every one passes through Take and Normalise: what stages
// divide by is never 0, and PCM records agree with themselves. Products are kept to the width of their field,
// as the record has no more room: a stage that needs a size computes it from the fields in 64 bits.
#include "audio/format.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr std::uint16_t kExtensionBytes = sizeof(QvFormatExtensible) - sizeof(QvFormat);

// An extensible record's type is the first word of its SubFormat, and these twelve bytes follow.
constexpr std::uint8_t kSubFormatTail[12] = {0x00, 0x00, 0x10, 0x00, 0x80, 0x00,
                                             0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};

constexpr std::uint32_t kSubFormatTypes[] = {QV_FORMAT_PCM,   QV_FORMAT_FLOAT, QV_FORMAT_ALAW,
                                             QV_FORMAT_MULAW, QV_FORMAT_ADPCM, QV_FORMAT_MPEG};

std::uint32_t TypeOfSubFormat(const std::uint8_t* subFormat) {
    const std::uint32_t word = subFormat[0] | (std::uint32_t{subFormat[1]} << 8) |
                               (std::uint32_t{subFormat[2]} << 16) | (std::uint32_t{subFormat[3]} << 24);
    const bool known = std::ranges::find(kSubFormatTypes, word) != std::end(kSubFormatTypes) &&
                       std::memcmp(subFormat + 4, kSubFormatTail, sizeof kSubFormatTail) == 0;
    return known ? word : std::uint32_t{QV_FORMAT_EXTENSIBLE};
}

bool IsPcm(std::uint32_t sampleType) {
    return sampleType == QV_FORMAT_PCM || sampleType == QV_FORMAT_FLOAT;
}

}  // namespace

bool clFormatHolder::setFormat(const QvFormat* source) {
    if (source == format) return true;
    const bool whole = Take(*source, reinterpret_cast<const std::uint8_t*>(source) + sizeof(QvFormat));
    Normalise();
    return whole;
}

bool clFormatHolder::setFormat(const void* source, std::size_t available) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    const std::size_t headBytes = std::min(available, sizeof(QvFormat));
    const std::size_t room = available - headBytes;
    QvFormat head = {};
    std::copy_n(bytes, headBytes, reinterpret_cast<std::uint8_t*>(&head));
    if (head.cbSize > room) head.cbSize = static_cast<std::uint16_t>(room);
    const bool whole = Take(head, bytes + headBytes);
    Normalise();
    return whole;
}

// False when there is no memory for the tail.
bool clFormatHolder::Take(const QvFormat& head, const std::uint8_t* tail) {
    inlineFormat = head;
    format = &inlineFormat;
    if (inlineFormat.cbSize == 0) return true;
    if (!formatStore.Resize(std::uint32_t{sizeof(QvFormat)} + inlineFormat.cbSize, false, 0)) {
        inlineFormat.cbSize = 0;
        return false;
    }
    // The tail may be our own, moved up by StripExtensible.
    std::memmove(formatStore.Data() + sizeof(QvFormat), tail, inlineFormat.cbSize);
    std::memcpy(formatStore.Data(), &inlineFormat, sizeof inlineFormat);
    format = reinterpret_cast<QvFormat*>(formatStore.Data());
    return true;
}

void clFormatHolder::Normalise() {
    if (IsPcm(sampleType())) UpdateRates();
    if (format->nAvgBytesPerSec == 0) format->nAvgBytesPerSec = 1;
    if (format->nBlockAlign == 0) format->nBlockAlign = 1;
}

QvFormatExtensible* clFormatHolder::Extension() const {
    const bool extensible = format->wFormatTag == QV_FORMAT_EXTENSIBLE && format->cbSize >= kExtensionBytes;
    return extensible ? reinterpret_cast<QvFormatExtensible*>(format) : nullptr;
}

std::uint32_t clFormatHolder::sampleType() const {
    const QvFormatExtensible* extension = Extension();
    return extension ? TypeOfSubFormat(extension->SubFormat) : format->wFormatTag;
}

void clFormatHolder::SetBits(std::uint16_t bits) {
    QvFormatExtensible* extension = Extension();
    if (extension && IsPcm(sampleType()) && bits != format->wBitsPerSample)
        extension->wValidBitsPerSample = bits;
    format->wBitsPerSample = bits;
    UpdateRates();
}

void clFormatHolder::SetChannels(std::uint16_t channels) {
    QvFormatExtensible* extension = Extension();
    if (extension && channels != format->nChannels) extension->dwChannelMask = 0;
    format->nChannels = channels;
    UpdateRates();
}

void clFormatHolder::SetRate(std::uint32_t rate) {
    format->nSamplesPerSec = rate;
    UpdateRates();
}

void clFormatHolder::SetType(bool isFloat) {
    const std::uint8_t type = isFloat ? QV_FORMAT_FLOAT : QV_FORMAT_PCM;
    QvFormatExtensible* extension = Extension();
    if (!extension) {
        format->wFormatTag = type;
        return;
    }
    const std::uint8_t word[4] = {type, 0, 0, 0};
    std::memcpy(extension->SubFormat, word, sizeof word);
    std::memcpy(extension->SubFormat + sizeof word, kSubFormatTail, sizeof kSubFormatTail);
}

void clFormatHolder::UpdateRates() {
    const std::uint32_t frameBits = std::uint32_t{format->nChannels} * format->wBitsPerSample;
    format->nBlockAlign = static_cast<std::uint16_t>(frameBits / 8);
    format->nAvgBytesPerSec = format->nBlockAlign * format->nSamplesPerSec;
}

bool clFormatHolder::StripExtensible() {
    const QvFormatExtensible* extension = Extension();
    const std::uint32_t type = sampleType();
    if (!extension || type == QV_FORMAT_EXTENSIBLE) return false;
    QvFormat head = extension->Format;
    head.wFormatTag = static_cast<std::uint16_t>(type);
    head.cbSize = static_cast<std::uint16_t>(head.cbSize - kExtensionBytes);
    Take(head, reinterpret_cast<const std::uint8_t*>(extension + 1));
    Normalise();
    return true;
}

XString clFormatHolder::formatDump() const {
    const struct {
        const char16_t* name;
        std::uint32_t value;
    } fields[] = {{u"Format Tag: ", format->wFormatTag},
                  {u"  Channels: ", format->nChannels},
                  {u"  Bits per Sample: ", format->wBitsPerSample},
                  {u"  Samples Per Second: ", format->nSamplesPerSec},
                  {u"  Bytes Per Second: ", format->nAvgBytesPerSec},
                  {u"  Block Align: ", format->nBlockAlign},
                  {u"  CB Size: ", format->cbSize},
                  {u"  Extensible Sub-Format: ", sampleType()}};
    XString line;
    for (const auto& field : fields) {
        if (&field == std::end(fields) - 1 && !IsExtensible()) break;
        line += field.name;
        line += XString::FromUInt64(field.value);
    }
    return line;
}
