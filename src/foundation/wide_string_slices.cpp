// Reading an XString: units, slices, searches and comparison.
//
// Every position is 1-based and every answer outside the text is defined, because callers compute positions
// from what a search gave them, and a search gives 0 when it found nothing.
#include <algorithm>
#include <string_view>

#include "foundation/wide_string.h"

namespace {

constexpr char16_t kCaseDistance = u'a' - u'A';

char16_t Raise(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - kCaseDistance) : unit;
}

char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + kCaseDistance) : unit;
}

}  // namespace

char16_t XString::GetAt(std::int32_t position) const {
    if (position == kLengthDefault) position = Length();
    return position >= 1 && position < mCount ? mText[position - 1] : char16_t{0};
}

XString XString::Mid(std::int32_t first, std::int32_t last) const {
    XString slice;
    last = std::min(last, Length());
    if (first >= 1 && last >= first) slice.Take(mText + first - 1, last - first + 1);
    return slice;
}

XString XString::MidToEnd(std::int32_t first) const {
    return Mid(first, Length());
}

XString XString::Left(std::int32_t length) const {
    return Mid(1, length);
}

XString XString::Right(std::int32_t length) const {
    const std::int64_t first = std::clamp<std::int64_t>(std::int64_t{mCount} - length, 1, mCount);
    return MidToEnd(static_cast<std::int32_t>(first));
}

std::int32_t XString::Find(char16_t unit, std::int32_t first) const {
    const char16_t pattern[] = {unit, 0};
    return unit ? Find(pattern, first) : 0;
}

std::int32_t XString::Find(const char16_t* pattern, std::int32_t first) const {
    first = std::max(first, 1);
    if (first >= mCount) return 0;
    const std::u16string_view text(mText, static_cast<std::size_t>(Length()));
    const std::size_t found = text.find(pattern, static_cast<std::size_t>(first - 1));
    return found == std::u16string_view::npos ? 0 : static_cast<std::int32_t>(found) + 1;
}

XString XString::ToUpper() const {
    XString upper(*this);
    std::transform(upper.mText, upper.mText + upper.Length(), upper.mText, Raise);
    return upper;
}

XString XString::ToLower() const {
    XString lower(*this);
    std::transform(lower.mText, lower.mText + lower.Length(), lower.mText, Lower);
    return lower;
}

bool XString::operator==(const char16_t* text) const {
    return text && std::u16string_view(mText, static_cast<std::size_t>(Length())) == text;
}

void XString::Truncate(std::int32_t characters) {
    mCount -= std::clamp(characters, 0, Length());
    mText[mCount - 1] = 0;
}

void XString::RemoveAt(std::int32_t position) {
    if (position < 1 || position >= mCount) return;
    std::copy(mText + position, mText + mCount, mText + position - 1);
    --mCount;
}
