// WAVE files put together by hand, for tests.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "quavermill/types.h"

namespace wave_bytes {

std::string U16(std::uint16_t number);
std::string U32(std::uint32_t number);
std::string U64(std::uint64_t number);

// A chunk with its padding; or one whose header claims `size` whatever follows it.
std::string Chunk(std::string_view id, std::string_view content);
std::string Claiming(std::string_view id, std::uint32_t size, std::string_view content);

// Chunks behind "RIFF", the right size and "WAVE".
std::string Riff(std::string_view chunks);
// The same behind "RF64" or "BW64" and a ds64 chunk.
std::string Riff64(std::string_view id, std::uint64_t dataBytes, std::string_view chunks);

// The 16 bytes of a fmt chunk in its oldest form.
std::string Head(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate, std::uint16_t align,
                 std::uint16_t bits);

// The records themselves, agreeing with themselves.
QvFormatExtensible Plain(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate, std::uint16_t bits);
QvFormatExtensible Extensible(std::uint16_t type, std::uint16_t channels, std::uint32_t rate,
                              std::uint16_t bits, std::uint16_t validBits, std::uint32_t mask);
// A coded format; `extension` are the bytes behind cbSize.
QvFormatExtensible Coded(std::uint16_t tag, std::uint16_t channels, std::uint32_t rate,
                         std::uint32_t byteRate, std::uint16_t align, std::uint16_t bits,
                         std::string_view extension);

// Bytes that repeat nowhere near.
std::string Noise(std::size_t count);

// 16 bits, two channels, 44100 Hz: the fmt chunk of most tests.
std::string StereoFormat();

}  // namespace wave_bytes
