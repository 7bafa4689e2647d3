// The two guesses cover nearly every file there is: newer programs write UTF-8, older ones the western
// Windows code page. Text in the latter with any accented letter is practically never valid UTF-8 by chance,
// so the test of validity decides. The machine's own code page has no say: a file shall read alike
// everywhere.
#include "modules/support/byte_text.h"

#include <array>
#include <string>

namespace {

constexpr std::array<char16_t, 32> kWindows1252From80 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

struct Lead {
    std::uint32_t bits;
    std::size_t followers;
    std::uint32_t smallest;  // what a shorter form could have held is not valid
};

bool ReadLead(std::uint8_t byte, Lead& lead) {
    if (byte < 0x80)
        lead = {byte, 0, 0};
    else if ((byte & 0xE0) == 0xC0)
        lead = {byte & 0x1Fu, 1, 0x80};
    else if ((byte & 0xF0) == 0xE0)
        lead = {byte & 0x0Fu, 2, 0x800};
    else if ((byte & 0xF8) == 0xF0)
        lead = {byte & 0x07u, 3, 0x10000};
    else
        return false;
    return true;
}

void AppendCodePoint(std::u16string& text, std::uint32_t point) {
    if (point >= 0x10000) {
        text += static_cast<char16_t>(0xD7C0 + (point >> 10));
        point = 0xDC00 + (point & 0x3FF);
    }
    text += static_cast<char16_t>(point);
}

bool FromUtf8(const std::uint8_t* bytes, std::size_t size, std::u16string& text) {
    for (std::size_t i = 0; i < size;) {
        Lead lead{};
        if (!ReadLead(bytes[i], lead) || lead.followers >= size - i) return false;
        std::uint32_t point = lead.bits;
        for (std::size_t k = 1; k <= lead.followers; ++k) {
            if ((bytes[i + k] & 0xC0) != 0x80) return false;
            point = point << 6 | (bytes[i + k] & 0x3Fu);
        }
        const bool surrogate = point >= 0xD800 && point < 0xE000;
        if (point < lead.smallest || surrogate || point > 0x10FFFF) return false;
        AppendCodePoint(text, point);
        i += lead.followers + 1;
    }
    return true;
}

std::u16string FromWindows1252(const std::uint8_t* bytes, std::size_t size) {
    std::u16string text;
    for (std::size_t i = 0; i < size; ++i) {
        const bool mapped = bytes[i] >= 0x80 && bytes[i] < 0xA0;
        text += mapped ? kWindows1252From80[bytes[i] - 0x80u] : static_cast<char16_t>(bytes[i]);
    }
    return text;
}

}  // namespace

XString TextFromBytes(const std::uint8_t* bytes, std::size_t size) {
    std::size_t end = 0;
    while (end < size && bytes[end] != 0) ++end;
    std::size_t begin = 0;
    while (begin < end && bytes[begin] <= ' ') ++begin;
    while (end > begin && bytes[end - 1] <= ' ') --end;
    std::u16string text;
    if (!FromUtf8(bytes + begin, end - begin, text)) text = FromWindows1252(bytes + begin, end - begin);
    return text.c_str();
}
