// Numbers to text and back, in plain ASCII digits.
//
// FromDouble works in integers: the value times a power of ten, cut to 64 bits, is written as digits and the
// point is put in afterwards. A value below 1 is raised by 1 for the way, so that the zeros behind its point
// are written too, and its first digit is lowered again at the end. Adding 0.49 before the cut rounds to the
// nearest and sends what lies exactly halfway down, which keeps a rate such as 2.675 from showing more than
// it is.
#include <cmath>
#include <iterator>
#include <limits>

#include "foundation/wide_string.h"

namespace {

constexpr int kMostDigits = 20;  // of a 64-bit number in decimal
constexpr int kHexDigits = 16;
constexpr double kRounding = 0.49;

XString Render(std::uint64_t value, unsigned base, int leastDigits, bool negative = false) {
    char16_t text[kMostDigits + 2] = {};  // with a sign and the NUL
    char16_t* first = std::end(text) - 1;
    for (int digit = 0; digit < leastDigits || value != 0; ++digit, value /= base)
        *--first = u"0123456789ABCDEF"[value % base];
    if (negative) *--first = u'-';
    return XString(first);
}

double PowerOfTen(std::int32_t exponent) {
    double power = 1.0;
    for (std::int32_t step = 0; step < exponent && std::isfinite(power); ++step) power *= 10.0;
    return power;
}

std::uint64_t CutTo64Bits(double value) {
    constexpr double kBit63 = 9223372036854775808.0;
    if (!(value >= 0.0)) return 0;
    if (value >= 2.0 * kBit63) return std::numeric_limits<std::uint64_t>::max();
    if (value < kBit63) return static_cast<std::uint64_t>(value);
    return static_cast<std::uint64_t>(value - kBit63) + (std::uint64_t{1} << 63);
}

void DropTrailingZeros(XString& text) {
    while (text.Length() > 1 && text.GetAt() == u'0') text.Truncate(1);
    if (text.GetAt() == u'.') text.Truncate(1);
}

bool IsDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

}  // namespace

XString XString::FromInt64(std::int64_t value) {
    const bool negative = value < 0;
    const auto bits = static_cast<std::uint64_t>(value);
    return Render(negative ? 0 - bits : bits, 10, 1,
                  negative);  // unsigned, as the smallest value has no positive twin
}

XString XString::FromUInt64(std::uint64_t value) {
    return Render(value, 10, 1);
}

XString XString::FromHex64(std::uint64_t value) {
    return Render(value, 16, kHexDigits);
}

XString XString::FromHex(std::uint64_t value) {
    return Render(value, 16, 1);
}

XString XString::FromDouble(double value, std::int32_t decimals) {
    const bool negative = value < 0.0;
    if (negative) value = -value;
    const bool raised = value < 1.0;
    if (raised) value += 1.0;
    XString text = FromUInt64(CutTo64Bits(PowerOfTen(decimals) * value + kRounding));
    if (raised) --text.mText[0];  // before the point comes, which may stand in front

    const std::int64_t point = std::int64_t{text.mCount} - decimals;
    if (point >= 1 && point <= text.mCount) text.Insert(u".", static_cast<std::int32_t>(point));
    if (negative) text.Insert(u"-", 1);
    DropTrailingZeros(text);
    return text;
}

std::int64_t XString::ToInt64() const {
    const char16_t* unit = mText;
    while (*unit == u' ') ++unit;
    const bool negative = *unit == u'-';
    if (negative || *unit == u'+') ++unit;
    std::uint64_t value = 0;
    for (; IsDigit(*unit); ++unit) value = value * 10 + static_cast<std::uint64_t>(*unit - u'0');
    return static_cast<std::int64_t>(negative ? 0 - value : value);
}
