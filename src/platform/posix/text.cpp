// UTF-8 to UTF-16 and back, with an escape for what is neither.
//
// A file name on POSIX is any run of bytes. Those that are no part of well-formed UTF-8 become lone low
// surrogates 0xDC80..0xDCFF, which no well-formed text holds, so the way back knows them again. Both
// directions run over the text once, into a sink that only counts when it has no room to store.
#include "platform/text.h"

#include <limits>

#include "platform/posix/native_text.h"

namespace platform {

namespace {

constexpr char16_t kEscape = 0xDC00;

bool IsHigh(char32_t unit) {
    return (unit & 0xFFFFFC00) == 0xD800;
}
bool IsLow(char32_t unit) {
    return (unit & 0xFFFFFC00) == 0xDC00;
}
bool IsEscapedByte(char32_t unit) {
    return unit >= kEscape + 0x80 && unit <= kEscape + 0xFF;
}

template <class Unit>
class Sink {
  public:
    Sink(Unit* data, std::int64_t room) : mData(data), mRoom(room) {}

    void Put(char32_t unit) {
        if (mCount < mRoom) mData[mCount] = static_cast<Unit>(unit);
        ++mCount;
    }
    std::int64_t Count() const { return mCount; }

    // What a conversion returns: the count, or 0 when it was more than there was room for.
    std::int32_t Result() const {
        const std::int64_t limit = mRoom ? mRoom : std::numeric_limits<std::int32_t>::max();
        return mCount <= limit ? static_cast<std::int32_t>(mCount) : 0;
    }

  private:
    Unit* mData;
    std::int64_t mRoom;
    std::int64_t mCount = 0;
};

struct Character {
    char32_t code;
    int bytes;
};

// The well-formed sequence that begins at `text`; 0 bytes when none does. The NUL that ends the text is no
// continuation byte, so nothing behind it is looked at.
Character Decode(const char* text) {
    const auto byte = [text](int i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80) return {first, 1};
    const int bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4) return {0, 0};
    char32_t code = first & (0x7Fu >> bytes);
    for (int i = 1; i < bytes; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return {0, 0};
        code = code << 6 | (byte(i) & 0x3Fu);
    }
    const bool overlong = (bytes == 3 && code < 0x800) || (bytes == 4 && code < 0x10000);
    if (overlong || IsHigh(code) || IsLow(code) || code > 0x10FFFF) return {0, 0};
    return {code, bytes};
}

void Widen(const char* narrow, Sink<char16_t>& sink) {
    while (*narrow) {
        const Character character = Decode(narrow);
        if (character.bytes == 0) {
            sink.Put(kEscape + static_cast<unsigned char>(*narrow++));
            continue;
        }
        if (character.code >= 0x10000) {
            sink.Put(0xD800 + ((character.code - 0x10000) >> 10));
            sink.Put(0xDC00 + (character.code & 0x3FF));
        } else {
            sink.Put(character.code);
        }
        narrow += character.bytes;
    }
    sink.Put(0);
}

void Encode(char32_t code, Sink<char>& sink) {
    if (code < 0x80) return sink.Put(code);
    if (code < 0x800) {
        sink.Put(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            sink.Put(0xE0 | code >> 12);
        } else {
            sink.Put(0xF0 | code >> 18);
            sink.Put(0x80 | (code >> 12 & 0x3F));
        }
        sink.Put(0x80 | (code >> 6 & 0x3F));
    }
    sink.Put(0x80 | (code & 0x3F));
}

void Tighten(const char16_t* wide, Sink<char>& sink) {
    while (*wide) {
        const char32_t unit = *wide++;
        if (IsHigh(unit) && IsLow(*wide)) {
            Encode(0x10000 + ((unit & 0x3FF) << 10) + (*wide++ & 0x3FFu), sink);
        } else if (IsEscapedByte(unit)) {
            sink.Put(unit - kEscape);
        } else {
            Encode(unit, sink);
        }
    }
    sink.Put(0);
}

std::int32_t ToWide(const char* narrow, char16_t* wide, std::int32_t wideCount) {
    Sink<char16_t> sink(wide, wideCount);
    Widen(narrow, sink);
    return sink.Result();
}

std::int32_t ToNarrow(const char16_t* wide, char* narrow, std::int32_t narrowCount) {
    Sink<char> sink(narrow, narrowCount);
    Tighten(wide, sink);
    return sink.Result();
}

}  // namespace

constinit Operation<std::int32_t(const char*, char16_t*, std::int32_t)> MultiByteToWideChar{&ToWide};
constinit Operation<std::int32_t(const char16_t*, char*, std::int32_t)> WideCharToMultiByte{&ToNarrow};

namespace posix {

std::string Narrow(const char16_t* wide) {
    Sink<char> measure(nullptr, 0);
    Tighten(wide, measure);
    std::string narrow(static_cast<std::size_t>(measure.Count()), '\0');
    Sink<char> sink(narrow.data(), measure.Count());
    Tighten(wide, sink);
    narrow.pop_back();
    return narrow;
}

std::u16string Wide(const char* narrow) {
    Sink<char16_t> measure(nullptr, 0);
    Widen(narrow, measure);
    std::u16string wide(static_cast<std::size_t>(measure.Count()), u'\0');
    Sink<char16_t> sink(wide.data(), measure.Count());
    Widen(narrow, sink);
    wide.pop_back();
    return wide;
}

}  // namespace posix
}  // namespace platform
