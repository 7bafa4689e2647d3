// Format records for tests.
#pragma once

#include <algorithm>
#include <cstring>
#include <vector>

#include "quavermill/types.h"

inline QvFormat Plain(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate, std::uint16_t bits) {
    QvFormat format = {};
    format.wFormatTag = tag;
    format.nChannels = channels;
    format.nSamplesPerSec = rate;
    format.wBitsPerSample = bits;
    return format;
}

inline const std::uint8_t kKnownSubFormatTail[12] = {0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};

inline QvFormatExtensible Extensible(std::uint32_t subFormat, std::uint16_t channels, std::uint32_t rate,
                                     std::uint16_t bits) {
    QvFormatExtensible format = {};
    format.Format = Plain(QV_FORMAT_EXTENSIBLE, channels, rate, bits);
    format.Format.cbSize = 22;
    format.wValidBitsPerSample = bits;
    format.dwChannelMask = 3;
    std::memcpy(format.SubFormat, &subFormat, sizeof subFormat);
    std::memcpy(format.SubFormat + 4, kKnownSubFormatTail, sizeof kKnownSubFormatTail);
    return format;
}

// A record's head with a tail of its own behind it, cbSize set.
inline std::vector<std::uint8_t> WithTail(QvFormat head, const std::vector<std::uint8_t>& tail) {
    head.cbSize = static_cast<std::uint16_t>(tail.size());
    std::vector<std::uint8_t> record(sizeof head + tail.size());
    std::memcpy(record.data(), &head, sizeof head);
    std::copy(tail.begin(), tail.end(), record.begin() + sizeof head);
    return record;
}

inline const QvFormat* AsRecord(const std::vector<std::uint8_t>& bytes) {
    return reinterpret_cast<const QvFormat*>(bytes.data());
}
