// A frame says which samples it holds, so the last one says how long the file is. It is looked for from the
// end: what begins like a frame (RFC 9639, section 9.1) counts when the CRC over everything from there to the
// end of the file comes out as 0.
#include "modules/flac/last_frame.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <span>

namespace {

constexpr std::uint32_t kMostBytes = 1 << 20;  // that the last frame may have
constexpr std::uint32_t kTailBytes = 128;      // of a tag of ID3v1

using Bytes = std::span<const std::uint8_t>;

template <unsigned bits>
std::uint32_t Crc(Bytes bytes, std::uint32_t polynomial) {
    std::uint32_t crc = 0;
    for (const std::uint8_t byte : bytes) {
        crc ^= std::uint32_t{byte} << (bits - 8);
        for (int i = 0; i < 8; ++i) crc = (crc << 1) ^ ((crc >> (bits - 1) & 1) != 0 ? polynomial : 0);
        crc &= (1u << bits) - 1;
    }
    return crc;
}

// A number in the manner of UTF-8, of up to 7 bytes. 0 for the count of its bytes when it is none.
std::uint32_t TakeNumber(Bytes bytes, std::uint64_t& number) {
    const auto ones = static_cast<std::uint32_t>(std::countl_one(bytes[0]));
    if (ones == 1 || ones == 8) return 0;
    const std::uint32_t count = std::max(ones, 1u);
    if (count > bytes.size()) return 0;
    number = ones == 7 ? 0 : bytes[0] & (0x7Fu >> ones);
    for (std::uint32_t i = 1; i < count; ++i) {
        if ((bytes[i] & 0xC0) != 0x80) return 0;
        number = number << 6 | (bytes[i] & 0x3Fu);
    }
    return count;
}

// The block size by its code; some stand behind the number instead, in *extra bytes.
std::uint32_t BlockSize(std::uint32_t code, Bytes behind, std::uint32_t* extra) {
    *extra = code == 6 ? 1 : code == 7 ? 2 : 0;
    if (behind.size() < *extra || code == 0) return 0;
    if (code == 1) return 192;
    if (code <= 5) return 144u << code;
    if (code == 6) return behind[0] + 1u;
    if (code == 7) return (std::uint32_t{behind[0]} << 8 | behind[1]) + 1;
    return 1u << code;
}

// The number of the sample behind a frame that begins with `bytes`, if they begin a frame.
std::optional<std::uint64_t> EndOfFrame(Bytes bytes, std::uint32_t blockSize) {
    if (bytes.size() < 8 || bytes[0] != 0xFF || (bytes[1] & 0xFE) != 0xF8) return std::nullopt;
    const std::uint32_t rateCode = bytes[2] & 0xF, channelCode = bytes[3] >> 4;
    if (rateCode == 15 || channelCode > 10 || (bytes[3] & 1) != 0) return std::nullopt;
    std::uint64_t number = 0;
    const std::uint32_t numberBytes = TakeNumber(bytes.subspan(4), number);
    if (numberBytes == 0) return std::nullopt;
    std::uint32_t extra = 0;
    const std::uint32_t samples = BlockSize(bytes[2] >> 4, bytes.subspan(4 + numberBytes), &extra);
    const std::uint32_t rateBytes = rateCode == 12 ? 1 : rateCode > 12 ? 2 : 0;
    const std::size_t size = 4 + numberBytes + extra + rateBytes + 1;
    if (samples == 0 || size > bytes.size() || Crc<8>(bytes.first(size), 0x07) != 0) return std::nullopt;
    const bool countsSamples = (bytes[1] & 1) != 0;
    if (!countsSamples && blockSize == 0) return std::nullopt;
    return (countsSamples ? number : number * blockSize) + samples;
}

}  // namespace

std::optional<std::uint64_t> FindEndOfLastFrame(clFileReader& file, std::uint32_t blockSize) {
    const auto size = static_cast<std::uint32_t>(std::min<std::uint64_t>(file.Size(), kMostBytes));
    const auto buffer = std::make_unique_for_overwrite<std::uint8_t[]>(size);
    std::uint32_t got = 0;
    if (!file.Read(file.Size() - size, buffer.get(), size, &got)) return std::nullopt;
    Bytes bytes(buffer.get(), got);
    if (got > kTailBytes && std::memcmp(&bytes[got - kTailBytes], "TAG", 3) == 0)
        bytes = bytes.first(got - kTailBytes);
    for (std::size_t begin = bytes.size(); begin-- > 0;) {
        const auto end = EndOfFrame(bytes.subspan(begin), blockSize);
        if (end && Crc<16>(bytes.subspan(begin), 0x8005) == 0) return end;
    }
    return std::nullopt;
}
