#include "realfiles/checksum.h"

#include <array>

namespace {

constexpr std::array<std::uint32_t, 256> Table() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) rest = (rest >> 1) ^ (rest & 1 ? 0xEDB88320 : 0);
        table[byte] = rest;
    }
    return table;
}

constexpr auto kTable = Table();

}  // namespace

std::uint32_t Checksum(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) sum = (sum >> 8) ^ kTable[(sum ^ static_cast<std::uint8_t>(byte)) & 0xFF];
    return ~sum;
}
