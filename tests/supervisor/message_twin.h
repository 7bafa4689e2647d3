// The messages once more, slow and obvious: what a stream's bytes must do to whoever takes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "foundation/wide_string.h"

class MessageTwin {
  public:
    std::int32_t percent = 0;
    std::u16string action, input, output;
    std::u16string information, errors;  // as the log channels carry them

    void Take(bool error, const std::uint8_t* bytes, std::size_t count) {
        for (const std::u16string& line : Lines(Units(bytes, count))) {
            if (line.empty()) continue;
            if (error) {
                errors += line + u"\r\n";
            } else if (line.find(u"MSGTO: ") == std::u16string::npos) {
                information += line + u"\r\n";
            } else {
                Obey(line);
            }
        }
    }

  private:
    static std::u16string Units(const std::uint8_t* bytes, std::size_t count) {
        std::u16string text;
        for (std::size_t at = 0; at < count; at += 2) {
            const unsigned high = at + 1 < count ? bytes[at + 1] : 0u;
            const char16_t unit = static_cast<char16_t>(bytes[at] | high << 8);
            if (unit == 0) break;
            text += unit;
        }
        return text;
    }

    static std::vector<std::u16string> Lines(const std::u16string& text) {
        std::vector<std::u16string> lines(1);
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text.compare(at, 2, u"\r\n") == 0) {
                lines.emplace_back();
                ++at;
            } else {
                lines.back() += text[at];
            }
        }
        return lines;
    }

    // Cuts the text at its first colon and gives what stood before it; false without a colon.
    static bool Cut(std::u16string& text, std::u16string& before) {
        const std::size_t colon = text.find(u':');
        if (colon == std::u16string::npos) return false;
        before = text.substr(0, colon);
        text = text.substr(colon + 1);
        if (!text.empty() && text[0] == u' ') text = text.substr(1);
        return true;
    }

    void Obey(std::u16string text) {
        std::u16string ignored, recipient, key;
        if (!Cut(text, ignored) || !Cut(text, recipient) || recipient != u"qMC" || !Cut(text, key)) return;
        if (key == u"Action") action = text;
        if (key == u"ActionInput") input = text;
        if (key == u"ActionOutput") output = text;
        if (key != u"PCDone") return;
        const std::int64_t value = XString(text.c_str()).ToInt64();
        constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
        if (value > percent) percent = value > kLargest ? kLargest : static_cast<std::int32_t>(value);
    }
};
