// XString: the library's one string, 16-bit text that is stored with its count.
//
// Units are UTF-16; the count includes the terminating NUL, so an empty string has count 1. Positions are
// 1-based: position 1 is the first character, Length() the last, and a search that finds nothing gives 0. A
// text of up to 127 characters lives inside the object; a longer one is sized exactly when assigned and with
// some slack when it grows. Embedded NULs are not supported: several operations measure the text again.
// Memory comes from the global allocator, whose exception is the only failure there is. An object belongs to
// one thread at a time, ToNarrow included.
#pragma once

#include <cstdint>

// "The whole text" as a length, "the last character" as a position.
inline constexpr std::int32_t kLengthDefault = -12345;

class XString {
  public:
    static constexpr std::int32_t kInlineUnits = 128;

    XString();
    XString(const char16_t* text);  // null gives the empty string
    XString(const char* narrow);    // 8-bit text of the platform's code page; null gives the empty string
    XString(const XString& other);
    explicit XString(std::int32_t value);  // decimal text
    explicit XString(std::int64_t value);
    ~XString();

    // Assignment and += return the whole string by value, as every step of building a text does here.
    XString operator=(const char16_t* text);
    XString operator=(const XString& other);
    XString operator=(const char* narrow);     // not null
    XString operator+=(const char16_t* text);  // not null
    XString operator+=(const XString& other);

    // Takes `count` units, the NUL among them; 0 measures. Null empties the string and keeps its buffer.
    void Assign(const char16_t* text, std::int32_t count);
    // += for texts that grow in long loops: a third of slack instead of 25 units. An empty text does nothing.
    void Append(const char16_t* text);
    void Append(const char16_t* text, std::int32_t length);  // the first `length` units, among them no NUL

    const char16_t* Text() const { return mText; }
    std::int32_t Count() const { return mCount; }
    std::int32_t Length() const { return mCount - 1; }
    bool IsEmpty() const { return mCount <= 1; }
    std::int32_t Capacity() const { return mCapacity; }
    std::uint64_t Tag() const { return mTag; }
    void SetTag(std::uint64_t tag) { mTag = tag; }

    // The unit at a position, or 0 outside the text.
    char16_t GetAt(std::int32_t position = kLengthDefault) const;

    // Slices are new strings; first and last are inclusive. A `last` beyond the text is clamped; a range that
    // is empty or begins outside the text gives the empty string.
    XString Mid(std::int32_t first, std::int32_t last) const;
    XString MidToEnd(std::int32_t first) const;
    XString Left(std::int32_t length) const;
    XString Right(std::int32_t length) const;

    // The position of the first match at or behind `first`, or 0. A `first` below 1 is 1; an empty pattern
    // matches at `first`.
    std::int32_t Find(char16_t unit, std::int32_t first = 1) const;
    std::int32_t Find(const char16_t* pattern, std::int32_t first = 1) const;

    // ASCII letters only: no other letter is folded anywhere in the library.
    XString ToUpper() const;
    XString ToLower() const;
    bool operator==(const char16_t* text) const;  // exact; null is unequal
    bool operator==(const XString& other) const { return *this == other.Text(); }

    void Truncate(std::int32_t characters);  // from the end; never below empty
    void RemoveAt(std::int32_t position);
    // Before the character at 1 to Count(), which is behind the last one; elsewhere the text stays. An empty
    // text does nothing.
    void Insert(const char16_t* text, std::int32_t position);
    void Quote();  // "text"

    // The text in the platform's 8-bit code page. It stays the string's own and stands until the next
    // ToNarrow or the string's end, whatever happens to the text meanwhile.
    const char* ToNarrow();

    // Numbers, without grouping and locale.
    static XString FromInt64(std::int64_t value);
    static XString FromUInt64(std::uint64_t value);
    static XString FromHex64(std::uint64_t value);  // always 16 upper-case digits
    static XString FromHex(std::uint64_t value);    // without leading zeros, at least one digit
    // Fixed point without trailing zeros. Rounds by adding 0.49: what lies exactly halfway goes down. Digits
    // that need more than 64 bits stay at the largest 64-bit number; what is not a number is 0.
    static XString FromDouble(double value, std::int32_t decimals);
    // Leading blanks, a sign, digits; what follows ends the number. Wraps in 64 bits; 0 when there is none.
    std::int64_t ToInt64() const;

    // printf with the conversions s (16-bit text), d and %, bounded; any other conversion and a result that
    // outgrows every buffer are left to FormatFallback. The string is emptied first: its own text as an
    // argument reads empty.
    void Format(const char16_t* format, ...);
    // The library's own formatter, whose rules differ from printf's: see wide_string_format.cpp. A format
    // that ends within a conversion, or has two points in one, gives the empty string.
    void FormatFallback(const char16_t* format, ...);

  private:
    class FallbackFormatter;

    static char16_t* NewUnits(std::int64_t count);
    bool Owns(const char16_t* text) const;
    void FreeText();
    void FreeNarrow();
    void Fit(std::int64_t count);  // room for exactly `count` units; the text may be lost
    void Reserve(std::int64_t minimum, std::int64_t extra);  // the text stays
    void Take(const char16_t* text, std::int64_t length);
    void TakeNarrow(const char* narrow);
    void Concatenate(const char16_t* text, std::int64_t length, std::int64_t extra);

    char16_t* mText;
    std::int32_t mCount;
    std::uint64_t mTag;
    char16_t mInline[kInlineUnits];
    char* mNarrow;
    std::int32_t mNarrowSize;
    std::int32_t mCapacity;
};

// Joins as path code does: `left` itself grows, and the result is a copy of it.
XString operator+(XString& left, const char16_t* right);
XString operator+(XString& left, const XString& right);
