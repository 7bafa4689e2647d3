#include "utf8.h"

#include <cstdint>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHigh(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLow(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

void AppendUtf8(std::string& text, char32_t code) {
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | (code >> 6));
        tail(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | (code >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (code >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

// The code point at `at`, which moves past it.
char32_t NextCode(std::string_view text, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(at++);
    if (lead < 0x80) return lead;
    const std::size_t tail = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || at + tail > text.size()) return kReplacement;
    char32_t code = lead & (0x3Fu >> tail);
    for (std::size_t i = 0; i < tail; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return kReplacement;
        code = (code << 6) | (byte(at + i) & 0x3Fu);
    }
    constexpr char32_t kLowest[] = {0, 0x80, 0x800, 0x10000};
    if (code < kLowest[tail] || code > 0x10FFFF) return kReplacement;
    at += tail;
    return code;
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (IsHigh(code) && i + 1 < text.size() && IsLow(text[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
        }
        AppendUtf8(result, code);
    }
    return result;
}

std::u16string FromUtf8(std::string_view text) {
    std::u16string result;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t code = NextCode(text, at);
        if (code < 0x10000) {
            result += static_cast<char16_t>(code);
        } else {
            result += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            result += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        }
    }
    return result;
}
