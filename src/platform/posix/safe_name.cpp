#include "platform/posix/safe_name.h"

#include <cstdint>

namespace platform::posix {

namespace {

constexpr std::size_t kLongest = 180;  // leaves room for a prefix below the 255 bytes of a file name
constexpr const char* kDigits = "0123456789abcdef";

bool IsPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

// FNV-1a.
std::string HashOf(const std::string& text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    std::string digits;
    for (int shift = 60; shift >= 0; shift -= 4) digits += kDigits[hash >> shift & 15];
    return digits;
}

}  // namespace

std::string SafeName(const std::string& text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool innerDot = text[i] == '.' && i > 0 && i + 1 < text.size();
        if (IsPlain(text[i]) || innerDot) {
            name += text[i];
        } else {
            const auto byte = static_cast<unsigned char>(text[i]);
            name += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    // No name that was short enough holds a '~', so a cut one is no other's.
    if (name.size() > kLongest) name = name.substr(0, kLongest - 20) + "~" + HashOf(text);
    return name;
}

}  // namespace platform::posix
