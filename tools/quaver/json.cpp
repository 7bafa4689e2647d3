#include "json.h"

#include "decimal.h"

namespace {

bool IsHigh(char16_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool IsLow(char16_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

std::u16string Escaped(char16_t unit) {
    constexpr char16_t kDigits[] = u"0123456789abcdef";
    std::u16string escape = u"\\u";
    for (int shift = 12; shift >= 0; shift -= 4) escape += kDigits[(unit >> shift) & 0xF];
    return escape;
}

// What stands for the unit in a quoted text, pairs of surrogates excepted.
std::u16string Spelled(char16_t unit) {
    switch (unit) {
        case u'"':
            return u"\\\"";
        case u'\\':
            return u"\\\\";
        case u'\n':
            return u"\\n";
        case u'\r':
            return u"\\r";
        case u'\t':
            return u"\\t";
        default:
            break;
    }
    const bool plain = unit >= 0x20 && unit != 0x7F && !IsHigh(unit) && !IsLow(unit);
    return plain ? std::u16string(1, unit) : Escaped(unit);
}

}  // namespace

JsonWriter& JsonWriter::Key(std::u16string_view key) {
    NewElement();
    Quote(key);
    mText += u": ";
    mAfterKey = true;
    return *this;
}

JsonWriter& JsonWriter::Text(std::u16string_view text) {
    NewElement();
    Quote(text);
    return *this;
}

JsonWriter& JsonWriter::Number(std::int64_t number) {
    NewElement();
    mText += Decimal(number);
    return *this;
}

JsonWriter& JsonWriter::Begin(char16_t bracket) {
    NewElement();
    mText += bracket;
    ++mDepth;
    mEmpty = true;
    return *this;
}

JsonWriter& JsonWriter::End(char16_t bracket) {
    --mDepth;
    if (!mEmpty) NewLine();
    mText += bracket;
    mEmpty = false;
    return *this;
}

void JsonWriter::NewElement() {
    if (!mAfterKey && mDepth > 0) {
        if (!mEmpty) mText += u',';
        NewLine();
    }
    mAfterKey = false;
    mEmpty = false;
}

void JsonWriter::NewLine() {
    mText += u'\n';
    mText.append(2 * mDepth, u' ');
}

void JsonWriter::Quote(std::u16string_view text) {
    mText += u'"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1]);
        if (pair) {
            mText += text.substr(i++, 2);
        } else {
            mText += Spelled(text[i]);
        }
    }
    mText += u'"';
}
