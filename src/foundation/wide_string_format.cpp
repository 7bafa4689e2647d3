// Two formatters. Format is printf's, bounded, for the few conversions the library's own formats use;
// FormatFallback takes what is left over and has rules of its own.
//
// Format writes into a buffer of 1000 units and tries again with five times as many until the result and its
// NUL fit. The largest buffer has 78125000 units; what would need more goes to FormatFallback, and so does a
// format with a conversion that Format does not know, at once.
//
// FormatFallback reads behind each % any number of characters up to one that ends the conversion:
//
//     0-9          the width; behind a point, the precision
//     .            begins the precision, which is 5 otherwise; a second one makes the whole result empty
//     %            a percent sign
//     s            16-bit text; null is nothing; width and precision are ignored
//     d u          the argument's low 32 bits, unsigned: d shows -1 as 4294967295
//     i            the same bits, signed; the sign counts in the width
//     x X          the same bits in hexadecimal
//     f            a double by FromDouble, with the precision; the width is ignored
//     (the end)    makes the whole result empty
//     all others   are skipped, so that length modifiers fall away
//
// Whole numbers are padded to the width with zeros, never with blanks. Their precision is read and dropped.
//
// Arguments are read as the two x86-64 calling conventions lay them out: one slot of eight bytes each,
// whatever the width of the integer. An int is read from a slot because only the low half is ever wanted; the
// upper half of a slot that was passed as int is undefined.
#include <algorithm>
#include <cstdarg>
#include <limits>
#include <memory>

#include "foundation/wide_string.h"

namespace {

constexpr std::int64_t kFirstBuffer = 1000;
constexpr std::int64_t kBufferGrowth = 5;
constexpr std::int64_t kBufferLimit = 0x6400000;  // 100 Mi units: no buffer reaches it
constexpr std::int32_t kDefaultPrecision = 5;

class Arguments {
  public:
    explicit Arguments(std::va_list list) { va_copy(mList, list); }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;
    ~Arguments() { va_end(mList); }

    const char16_t* Text() {
        const char16_t* const text = va_arg(mList, const char16_t*);
        return text ? text : u"";
    }
    std::int32_t Int32() { return va_arg(mList, int); }
    double Double() { return va_arg(mList, double); }

  private:
    std::va_list mList;
};

const char16_t* EndOfRun(const char16_t* at) {
    while (*at && *at != u'%') ++at;
    return at;
}

// The buffer of one attempt. A text that does not fit ends the attempt, so nothing is cut.
class BoundedText {
  public:
    explicit BoundedText(std::int64_t size)
        : mUnits(std::make_unique_for_overwrite<char16_t[]>(static_cast<std::size_t>(size))),
          mRoom(size - 1) {}

    void Put(const char16_t* text) {
        for (; *text && !IsFull(); ++text) Put(*text);
    }
    void Put(char16_t unit) {
        if (mLength < mRoom) mUnits[static_cast<std::size_t>(mLength)] = unit;
        ++mLength;
    }
    bool IsFull() const { return mLength > mRoom; }
    const char16_t* Finish() {
        mUnits[static_cast<std::size_t>(mLength)] = 0;
        return mUnits.get();
    }

  private:
    std::unique_ptr<char16_t[]> mUnits;
    std::int64_t mLength = 0;
    std::int64_t mRoom;
};

enum class Outcome { kDone, kTooLong, kUnknownConversion };

Outcome FormatBounded(BoundedText& out, const char16_t* format, Arguments& arguments) {
    for (; *format && !out.IsFull(); ++format) {
        if (*format != u'%') {
            out.Put(*format);
            continue;
        }
        switch (*++format) {
            case u'%':
                out.Put(u'%');
                break;
            case u's':
                out.Put(arguments.Text());
                break;
            case u'd':
                out.Put(XString::FromInt64(arguments.Int32()).Text());
                break;
            default:
                return Outcome::kUnknownConversion;
        }
    }
    return out.IsFull() ? Outcome::kTooLong : Outcome::kDone;
}

// A width or a precision takes one more digit. It stays at the largest count instead of wrapping.
void AddDigit(std::int32_t& number, char16_t digit) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    const std::int64_t longer = std::int64_t{number} * 10 + (digit - u'0');
    number = longer < kMost ? static_cast<std::int32_t>(longer) : kMost;
}

}  // namespace

class XString::FallbackFormatter {
  public:
    explicit FallbackFormatter(Arguments& arguments) : mArguments(arguments) {}

    XString Run(const char16_t* format) {
        mAt = format;
        for (;;) {
            const char16_t* const end = EndOfRun(mAt);
            mResult.Concatenate(mAt, end - mAt, (mResult.mCount + (end - mAt)) / 3);
            if (!*end) return mResult;
            mAt = end + 1;
            if (!Conversion()) return XString();
        }
    }

  private:
    // Reads up to the character that ends the conversion. False for a malformed one.
    bool Conversion() {
        std::int32_t width = 0, precision = kDefaultPrecision;
        bool pointSeen = false;
        for (;;) {
            const char16_t unit = *mAt++;
            if (unit == 0 || (unit == u'.' && pointSeen)) return false;
            if (unit == u'.') {
                pointSeen = true;
                precision = 0;
            } else if (unit >= u'0' && unit <= u'9') {
                AddDigit(pointSeen ? precision : width, unit);
            } else if (Convert(unit, width, precision)) {
                return true;
            }
        }
    }

    // False for a character that ends no conversion.
    bool Convert(char16_t unit, std::int32_t width, std::int32_t precision) {
        switch (unit) {
            case u'%':
                mResult.Append(u"%");
                return true;
            case u's':
                mResult.Append(mArguments.Text());
                return true;
            case u'd':
            case u'u':
                Padded(FromUInt64(Bits()), width);
                return true;
            case u'i':
                Signed(mArguments.Int32(), width);
                return true;
            case u'x':
                Padded(FromHex(Bits()).ToLower(), width);
                return true;
            case u'X':
                Padded(FromHex(Bits()), width);
                return true;
            case u'f':
                mResult.Append(FromDouble(mArguments.Double(), precision).mText);
                return true;
            default:
                return false;
        }
    }

    std::uint32_t Bits() { return static_cast<std::uint32_t>(mArguments.Int32()); }

    void Signed(std::int64_t value, std::int32_t width) {
        if (value < 0) {
            mResult.Append(u"-");
            if (width > 0) --width;
        }
        Padded(FromInt64(value < 0 ? -value : value), width);
    }

    // The room is taken at once: a width that no text can have fails before anything is written.
    void Padded(const XString& digits, std::int32_t width) {
        const std::int64_t longer = std::int64_t{mResult.mCount} + std::max(width, digits.Length());
        mResult.Reserve(longer, longer / 3);
        for (std::int32_t zeros = width - digits.Length(); zeros > 0; --zeros) mResult.Append(u"0");
        mResult.Append(digits.mText);
    }

    Arguments& mArguments;
    const char16_t* mAt = nullptr;
    XString mResult;
};

void XString::Format(const char16_t* format, ...) {
    Assign(nullptr, 0);
    std::va_list list;
    va_start(list, format);
    Outcome outcome = Outcome::kTooLong;
    for (std::int64_t size = kFirstBuffer; size < kBufferLimit && outcome == Outcome::kTooLong;
         size *= kBufferGrowth) {
        BoundedText attempt(size);
        Arguments arguments(list);
        outcome = FormatBounded(attempt, format, arguments);
        if (outcome == Outcome::kDone) Assign(attempt.Finish(), 0);
    }
    if (outcome != Outcome::kDone) {
        Arguments arguments(list);
        Assign(FallbackFormatter(arguments).Run(format).mText, 0);
    }
    va_end(list);
}

void XString::FormatFallback(const char16_t* format, ...) {
    std::va_list list;
    va_start(list, format);
    {
        Arguments arguments(list);
        Assign(FallbackFormatter(arguments).Run(format).mText, 0);
    }
    va_end(list);
}
