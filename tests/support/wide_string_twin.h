// The slow, obvious twin of XString: a std::u16string and a number for the capacity, every rule written as it
// reads.
//
// A script of bytes drives both through the same operations, each followed by a comparison of all there is to
// see. Random bytes make a test of it, a fuzzer's bytes a fuzz target.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>

#include "foundation/wide_string.h"

class WideStringTwin {
  public:
    WideStringTwin(const std::uint8_t* script, std::size_t size) : mAt(script), mEnd(script + size) {}

    // The name of the first operation after which the two disagree; empty when they agreed to the script's
    // end.
    std::string Run() {
        while (mAt != mEnd) {
            if (mText.size() > kLongest) mString = XString(), mText.clear();
            const Operation& operation = kOperations[Byte() % std::size(kOperations)];
            const bool sameAnswer = (this->*operation.run)();
            if (!sameAnswer || !IsLikeTwin()) return operation.name;
        }
        return {};
    }

  private:
    static constexpr std::size_t kLongest = 5000;  // a script mustn't double a text for ever

    using Text16 = std::u16string;
    struct Operation {
        const char* name;
        bool (WideStringTwin::*run)();
    };

    // What a script says.

    std::uint8_t Byte() { return mAt == mEnd ? std::uint8_t{0} : *mAt++; }

    char16_t Unit() {
        static constexpr char16_t kRare[] = {0x00E9, 0x00C9, 0x0130, 0x20AC, 0xD83D,
                                             0xDE00, 0xFFFF, u'\r',  u'"'};
        const std::uint8_t byte = Byte();
        return byte < 240 ? static_cast<char16_t>(u' ' + byte % 95) : kRare[byte % std::size(kRare)];
    }

    Text16 Text() {
        const std::uint8_t shape = Byte();
        Text16 text;
        if (shape >= 200) text.assign(Byte(), Unit());
        for (int left = shape < 200 ? shape % 16 : 0; left > 0; --left) text += Unit();
        return text;
    }

    std::int32_t Position() {
        static constexpr std::int32_t kFar[] = {std::numeric_limits<std::int32_t>::min(), kLengthDefault, -1,
                                                std::numeric_limits<std::int32_t>::max()};
        const std::uint8_t byte = Byte();
        if (byte >= 248) return kFar[byte % 4];
        return byte >= 160 ? Count() - 204 + byte : byte - 2;  // around the end, around the start
    }

    std::size_t Offset() { return Byte() % (mText.size() + 1); }

    // The rules.

    std::int32_t Count() const { return static_cast<std::int32_t>(mText.size()) + 1; }
    static std::int32_t CountOf(const Text16& text) { return static_cast<std::int32_t>(text.size()) + 1; }

    bool Reserve(std::int32_t minimum, std::int32_t extra) {
        if (mCapacity < minimum) mCapacity = minimum + extra;
        return true;
    }
    bool Become(const Text16& text) {
        mText = text;
        return Reserve(Count(), 0);
    }
    bool Grow(const Text16& text) {
        mText += text;
        return Reserve(Count(), 25);
    }
    bool GrowByAThird(const Text16& text) {
        mText += text;
        return Reserve(Count(), Count() / 3);
    }
    bool TakeIn(const Text16& text, std::int32_t position) {
        if (text.empty()) return true;
        Reserve(Count() + CountOf(text) - 1, 32);
        if (position >= 1 && position <= Count()) mText.insert(static_cast<std::size_t>(position - 1), text);
        return true;
    }

    Text16 Slice(std::int64_t first, std::int64_t last) const {
        Text16 slice;
        if (first < 1) return slice;
        for (std::int64_t position = first; position <= last && position < Count(); ++position)
            slice += mText[static_cast<std::size_t>(position - 1)];
        return slice;
    }
    std::int32_t PositionOf(const Text16& pattern, std::int32_t first) const {
        for (std::int32_t position = std::max(first, 1); position < Count(); ++position)
            if (mText.compare(static_cast<std::size_t>(position - 1), pattern.size(), pattern) == 0)
                return position;
        return 0;
    }
    Text16 Shifted(char16_t from, char16_t to, int distance) const {
        Text16 text = mText;
        for (char16_t& unit : text)
            if (unit >= from && unit <= to) unit = static_cast<char16_t>(unit + distance);
        return text;
    }

    static bool IsExactly(const XString& string, const Text16& text) {
        return string.Text() == text && string.Count() == CountOf(text) &&
               string.Capacity() == std::max(XString::kInlineUnits, CountOf(text));
    }
    bool IsLikeTwin() const {
        return mString.Text() == mText && mString.Count() == Count() && mString.Capacity() == mCapacity;
    }

    // The operations. Those that answer give whether both answered the same.

    bool AssignText() {
        const Text16 text = Text();
        return IsExactly(XString(text.c_str()), text) && Units(mString = text.c_str()) == text &&
               Become(text);
    }
    bool AssignString() {
        const Text16 text = Text();
        return Units(mString = XString(text.c_str())) == text && Become(text);
    }
    bool AssignCounted() {
        const Text16 text = Text();
        mString.Assign(text.c_str(), CountOf(text));
        return Become(text);
    }
    bool AssignNull() {
        mString.Assign(nullptr, Position());
        return Become({});
    }
    bool AddText() {
        const Text16 text = Text();
        return Units(mString += text.c_str()) == mText + text && Grow(text);
    }
    bool AddString() {
        const Text16 text = Text();
        return Units(mString += XString(text.c_str())) == mText + text && Grow(text);
    }
    bool AppendText() {
        const Text16 text = Text();
        mString.Append(text.c_str());
        return GrowByAThird(text);
    }
    bool AppendPart() {
        const Text16 text = Text(), part = text.substr(0, text.size() / 2);
        mString.Append(text.c_str(), CountOf(part) - 1);
        return GrowByAThird(part);
    }
    bool InsertText() {
        const Text16 text = Text();
        const std::int32_t position = Position();
        mString.Insert(text.c_str(), position);
        return TakeIn(text, position);
    }
    bool Truncate() {
        const std::int32_t characters = Position();
        mString.Truncate(characters);
        for (std::int32_t left = characters; left > 0 && !mText.empty(); --left) mText.pop_back();
        return true;
    }
    bool RemoveAt() {
        const std::int32_t position = Position();
        mString.RemoveAt(position);
        if (position >= 1 && position < Count()) mText.erase(static_cast<std::size_t>(position - 1), 1);
        return true;
    }
    bool Quote() {
        mString.Quote();
        const Text16 old = mText;
        return Become(u"\"") && Grow(old) && Grow(u"\"");
    }

    bool AssignItself() { return Units(mString = *&mString) == mText; }
    bool AddItself() { return Units(mString += mString) == mText + mText && Grow(Text16(mText)); }
    bool AssignOwnTail() {
        const std::size_t offset = Offset();
        mString = mString.Text() + offset;
        return Become(mText.substr(offset));
    }
    bool AddOwnTail() {
        const std::size_t offset = Offset();
        mString += mString.Text() + offset;
        return Grow(mText.substr(offset));
    }
    bool AppendOwnTail() {
        const std::size_t offset = Offset();
        mString.Append(mString.Text() + offset);
        return GrowByAThird(mText.substr(offset));
    }
    bool InsertOwnTail() {
        const std::size_t offset = Offset();
        const std::int32_t position = Position();
        mString.Insert(mString.Text() + offset, position);
        return TakeIn(mText.substr(offset), position);
    }

    bool Copy() { return IsExactly(XString(mString), mText) && mString == XString(mString); }
    bool Compare() {
        const Text16 text = Text();
        return (mString == text.c_str()) == (mText == text) && mString == mText.c_str();
    }
    bool GetAt() {
        const std::int32_t position = Position();
        const std::int32_t meant = position == kLengthDefault ? Count() - 1 : position;
        const Text16 unit = Slice(meant, meant);
        return mString.GetAt(position) == (unit.empty() ? char16_t{0} : unit[0]);
    }
    bool Mid() {
        const std::int32_t first = Position(), last = Position();
        return IsExactly(mString.Mid(first, last), Slice(first, last)) &&
               IsExactly(mString.MidToEnd(first), Slice(first, Count()));
    }
    bool Left() {
        const std::int32_t length = Position();
        return IsExactly(mString.Left(length), Slice(1, length));
    }
    bool Right() {
        const std::int32_t length = Position();
        const std::int64_t first = std::max<std::int64_t>(std::int64_t{Count()} - length, 1);
        return IsExactly(mString.Right(length), Slice(first, Count()));
    }
    bool Find() {
        const Text16 pattern = Text().substr(0, 2);
        const std::int32_t first = Position();
        return mString.Find(pattern.c_str(), first) == PositionOf(pattern, first);
    }
    bool FindUnit() {
        const char16_t unit = Unit();
        const std::int32_t first = Position();
        return mString.Find(unit, first) == PositionOf(Text16(1, unit), first);
    }
    bool ToUpper() { return IsExactly(mString.ToUpper(), Shifted(u'a', u'z', -32)); }
    bool ToLower() { return IsExactly(mString.ToLower(), Shifted(u'A', u'Z', 32)); }

    static Text16 Units(const XString& string) { return string.Text(); }

    static const Operation kOperations[28];

    const std::uint8_t* mAt;
    const std::uint8_t* mEnd;
    XString mString;
    Text16 mText;
    std::int32_t mCapacity = XString::kInlineUnits;
};

inline constexpr WideStringTwin::Operation WideStringTwin::kOperations[28] = {
    {"= text", &WideStringTwin::AssignText},
    {"= string", &WideStringTwin::AssignString},
    {"Assign", &WideStringTwin::AssignCounted},
    {"Assign null", &WideStringTwin::AssignNull},
    {"+= text", &WideStringTwin::AddText},
    {"+= string", &WideStringTwin::AddString},
    {"Append", &WideStringTwin::AppendText},
    {"Append a part", &WideStringTwin::AppendPart},
    {"Insert", &WideStringTwin::InsertText},
    {"Truncate", &WideStringTwin::Truncate},
    {"RemoveAt", &WideStringTwin::RemoveAt},
    {"Quote", &WideStringTwin::Quote},
    {"= itself", &WideStringTwin::AssignItself},
    {"+= itself", &WideStringTwin::AddItself},
    {"= its own tail", &WideStringTwin::AssignOwnTail},
    {"+= its own tail", &WideStringTwin::AddOwnTail},
    {"Append its own tail", &WideStringTwin::AppendOwnTail},
    {"Insert its own tail", &WideStringTwin::InsertOwnTail},
    {"copy", &WideStringTwin::Copy},
    {"==", &WideStringTwin::Compare},
    {"GetAt", &WideStringTwin::GetAt},
    {"Mid and MidToEnd", &WideStringTwin::Mid},
    {"Left", &WideStringTwin::Left},
    {"Right", &WideStringTwin::Right},
    {"Find", &WideStringTwin::Find},
    {"Find a unit", &WideStringTwin::FindUnit},
    {"ToUpper", &WideStringTwin::ToUpper},
    {"ToLower", &WideStringTwin::ToLower},
};
