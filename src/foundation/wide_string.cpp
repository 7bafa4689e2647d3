// Where an XString's units lie and how they grow.
//
// A string starts in its inline room and moves to the heap once, never back. Assigning sizes a block exactly,
// since most texts are built once and read; growing takes a slack that its caller chooses, so that the loops
// that append stay linear. Sizes are computed in 64 bits: what no 32-bit count can name fails like an
// exhausted allocator. A block is owned by the string from the moment it exists, so an exception anywhere
// leaves a string that can be destroyed.
#include "foundation/wide_string.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <new>
#include <string>

#include "platform/text.h"

namespace {

constexpr std::int64_t kConcatenationSlack = 25;
constexpr std::int64_t kInsertionSlack = 32;
constexpr std::int64_t kNarrowSlack = 4;

std::int64_t Measure(const char16_t* text) {
    return static_cast<std::int64_t>(std::char_traits<char16_t>::length(text));
}

void MoveUnits(char16_t* to, const char16_t* from, std::int64_t count) {
    std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(char16_t));
}

}  // namespace

XString::XString()
    : mText(mInline), mCount(1), mTag(0), mNarrow(nullptr), mNarrowSize(0), mCapacity(kInlineUnits) {
    mInline[0] = 0;
}

XString::XString(const char16_t* text) : XString() {
    Assign(text, 0);
}

XString::XString(const char* narrow) : XString() {
    if (narrow) TakeNarrow(narrow);
}

XString::XString(const XString& other) : XString() {
    mTag = other.mTag;
    Assign(other.mText, other.mCount);
}

XString::XString(std::int32_t value) : XString(FromInt64(value)) {}

XString::XString(std::int64_t value) : XString(FromInt64(value)) {}

XString::~XString() {
    FreeText();
    FreeNarrow();
}

XString XString::operator=(const char16_t* text) {
    Assign(text, 0);
    return *this;
}

XString XString::operator=(const XString& other) {
    Assign(other.mText, other.mCount);
    return *this;
}

XString XString::operator=(const char* narrow) {
    TakeNarrow(narrow);
    return *this;
}

XString XString::operator+=(const char16_t* text) {
    Concatenate(text, Measure(text), kConcatenationSlack);
    return *this;
}

XString XString::operator+=(const XString& other) {
    Concatenate(other.mText, other.Length(), kConcatenationSlack);
    return *this;
}

XString operator+(XString& left, const char16_t* right) {
    return left += right;
}

XString operator+(XString& left, const XString& right) {
    return left += right;
}

void XString::Assign(const char16_t* text, std::int32_t count) {
    if (text) {
        Take(text, count > 0 ? count - 1 : Measure(text));
    } else {
        mCount = 1;
        mText[0] = 0;
    }
}

void XString::Append(const char16_t* text) {
    const std::int64_t length = Measure(text);
    if (length > 0) Concatenate(text, length, (mCount + length) / 3);
}

void XString::Append(const char16_t* text, std::int32_t length) {
    if (length > 0) Concatenate(text, length, (mCount + std::int64_t{length}) / 3);
}

void XString::Insert(const char16_t* text, std::int32_t position) {
    if (Owns(text)) return Insert(XString(text).mText, position);
    const std::int64_t length = Measure(text);
    if (length == 0) return;
    Reserve(length + mCount, kInsertionSlack);  // also for a position outside: only the text stays as it was
    if (position < 1 || position > mCount) return;
    char16_t* at = mText + position - 1;
    MoveUnits(at + length, at, mCount - position + 1);
    MoveUnits(at, text, length);
    mCount += static_cast<std::int32_t>(length);
}

void XString::Quote() {
    const XString old(*this);
    Assign(u"\"", 0);
    *this += old;
    *this += u"\"";
}

const char* XString::ToNarrow() {
    const std::int64_t size = platform::WideCharToMultiByte(mText, nullptr, 0) + kNarrowSlack;
    if (size > std::numeric_limits<std::int32_t>::max()) throw std::bad_array_new_length();
    if (size != mNarrowSize) {
        FreeNarrow();
        mNarrow = new char[static_cast<std::size_t>(size)];
        mNarrowSize = static_cast<std::int32_t>(size);
    }
    if (platform::WideCharToMultiByte(mText, mNarrow, mNarrowSize) == 0) mNarrow[0] = 0;
    return mNarrow;
}

char16_t* XString::NewUnits(std::int64_t count) {
    if (count > std::numeric_limits<std::int32_t>::max()) throw std::bad_array_new_length();
    return new char16_t[static_cast<std::size_t>(count)];
}

// Whether `text` lies in the string's own units, which an operation is about to move.
bool XString::Owns(const char16_t* text) const {
    const std::less<const char16_t*> before;
    return !before(text, mText) && before(text, mText + mCount);
}

void XString::FreeText() {
    if (mText != mInline) delete[] mText;
    mText = mInline;
    mInline[0] = 0;
    mCount = 1;
    mCapacity = kInlineUnits;
}

void XString::FreeNarrow() {
    delete[] mNarrow;
    mNarrow = nullptr;
    mNarrowSize = 0;
}

// The old block goes before the new one comes: nothing of it is needed, and both at once could be too much.
void XString::Fit(std::int64_t count) {
    if (mCapacity >= count) return;
    FreeText();
    mText = NewUnits(count);
    mText[0] = 0;
    mCapacity = static_cast<std::int32_t>(count);
}

void XString::Reserve(std::int64_t minimum, std::int64_t extra) {
    if (mCapacity >= minimum) return;
    char16_t* const block = NewUnits(minimum + extra);
    MoveUnits(block, mText, mCount);
    if (mText != mInline) delete[] mText;
    mText = block;
    mCapacity = static_cast<std::int32_t>(minimum + extra);
}

// A text of the string's own is never longer than its room, so Fit leaves it where it is.
void XString::Take(const char16_t* text, std::int64_t length) {
    Fit(length + 1);
    MoveUnits(mText, text, length);
    mText[length] = 0;
    mCount = static_cast<std::int32_t>(length + 1);
}

void XString::TakeNarrow(const char* narrow) {
    Fit(platform::MultiByteToWideChar(narrow, nullptr, 0));
    mCount = std::max(platform::MultiByteToWideChar(narrow, mText, mCapacity), 1);
    mText[mCount - 1] = 0;
}

void XString::Concatenate(const char16_t* text, std::int64_t length, std::int64_t extra) {
    const std::int64_t ownOffset = Owns(text) ? text - mText : -1;
    Reserve(mCount + length, extra);
    MoveUnits(mText + mCount - 1, ownOffset < 0 ? text : mText + ownOffset, length);
    mCount += static_cast<std::int32_t>(length);
    mText[mCount - 1] = 0;
}
