// Little-endian numbers in bytes at any address, as audio files hold them.
#pragma once

#include <cstdint>

inline std::uint16_t Get16(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

inline std::uint32_t Get32(const std::uint8_t* bytes) {
    return Get16(bytes) | static_cast<std::uint32_t>(Get16(bytes + 2)) << 16;
}

inline std::uint64_t Get64(const std::uint8_t* bytes) {
    return Get32(bytes) | static_cast<std::uint64_t>(Get32(bytes + 4)) << 32;
}

// Each stores the number and returns the place behind it.
template <class Number>
std::uint8_t* PutNumber(std::uint8_t* bytes, Number number) {
    for (unsigned i = 0; i < sizeof(Number); ++i) *bytes++ = static_cast<std::uint8_t>(number >> (8 * i));
    return bytes;
}

inline std::uint8_t* Put16(std::uint8_t* bytes, std::uint16_t number) {
    return PutNumber(bytes, number);
}
inline std::uint8_t* Put32(std::uint8_t* bytes, std::uint32_t number) {
    return PutNumber(bytes, number);
}
inline std::uint8_t* Put64(std::uint8_t* bytes, std::uint64_t number) {
    return PutNumber(bytes, number);
}
