#include "modules/support/settings.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace {

std::u16string Widened(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

// The whole of `text` as a number; false for anything else, what is beyond ASCII included.
template <class Number>
bool Parse(std::u16string_view text, Number* number) {
    std::string ascii;
    for (const char16_t unit : text) ascii += unit < 0x80 ? static_cast<char>(unit) : '?';
    const char* end = ascii.data() + ascii.size();
    std::from_chars_result result{};
    if constexpr (std::is_floating_point_v<Number>)
        result = std::from_chars(ascii.data(), end, *number, std::chars_format::fixed);
    else
        result = std::from_chars(ascii.data(), end, *number);
    return result.ec == std::errc() && result.ptr == end && !ascii.empty();
}

std::u16string Shown(double number) {
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), number).ptr;
    return Widened({text, end});
}

}  // namespace

clSettings::clSettings(const char16_t* text) {
    std::u16string_view rest(text);
    while (!rest.empty()) {
        const std::size_t blank = std::min(rest.find(u' '), rest.size());
        if (blank > 0) Read(rest.substr(0, blank));
        rest.remove_prefix(std::min(blank + 1, rest.size()));
    }
}

void clSettings::Read(std::u16string_view word) {
    const std::size_t equals = word.find(u'=');
    if (!mTrouble.empty()) return;
    if (word[0] != u'-' || equals == std::u16string_view::npos || equals < 2) {
        mTrouble = u"the setting \"" + std::u16string(word) + u"\" does not have the form -name=value";
        return;
    }
    Entry entry{std::u16string(word.substr(1, equals - 1)), std::u16string(word.substr(equals + 1))};
    if (IsGiven(entry.name.c_str())) {
        mTrouble = u"the setting -" + entry.name + u" is given twice";
        return;
    }
    mEntries.push_back(std::move(entry));
}

bool clSettings::IsGiven(const char16_t* name) const {
    return std::ranges::find(mEntries, std::u16string_view(name), &Entry::name) != mEntries.end();
}

clSettings::Entry* clSettings::Ask(const char16_t* name) {
    const auto entry = std::ranges::find(mEntries, std::u16string_view(name), &Entry::name);
    if (entry == mEntries.end()) return nullptr;
    entry->isAskedFor = true;
    return &*entry;
}

void clSettings::Complain(const Entry& entry, const std::u16string& range) {
    if (mTrouble.empty()) {
        mTrouble = u"the setting -" + entry.name + u" is \"" + entry.value + u"\", but must be " + range;
    }
}

void clSettings::Integer(const char16_t* name, std::int64_t least, std::int64_t most, std::int64_t* value) {
    const Entry* entry = Ask(name);
    if (!entry) return;
    std::int64_t number = 0;
    if (Parse(entry->value, &number) && number >= least && number <= most)
        *value = number;
    else
        Complain(*entry, u"a whole number from " + Widened(std::to_string(least)) + u" to " +
                             Widened(std::to_string(most)));
}

void clSettings::Decimal(const char16_t* name, double least, double most, double* value) {
    const Entry* entry = Ask(name);
    if (!entry) return;
    double number = 0;
    if (Parse(entry->value, &number) && number >= least && number <= most)
        *value = number;
    else
        Complain(*entry, u"a number from " + Shown(least) + u" to " + Shown(most));
}

void clSettings::Choice(const char16_t* name, std::span<const char16_t* const> words, std::size_t* index) {
    const Entry* entry = Ask(name);
    if (!entry) return;
    const auto word = std::ranges::find(words, entry->value);
    if (word != words.end()) {
        *index = static_cast<std::size_t>(word - words.begin());
        return;
    }
    std::u16string range = u"one of";
    for (const char16_t* each : words) range += std::u16string(u" ") + each;
    Complain(*entry, range);
}

std::int64_t clSettings::Integer(const clSettingRule& rule) {
    return Integer(rule, static_cast<std::int64_t>(rule.standard));
}

std::int64_t clSettings::Integer(const clSettingRule& rule, std::int64_t standard) {
    Integer(rule.name, static_cast<std::int64_t>(rule.least), static_cast<std::int64_t>(rule.most),
            &standard);
    return standard;
}

double clSettings::Decimal(const clSettingRule& rule) {
    double number = rule.standard;
    Decimal(rule.name, rule.least, rule.most, &number);
    return number;
}

std::size_t clSettings::Choice(const clSettingRule& rule) {
    return Choice(rule, static_cast<std::size_t>(rule.standard));
}

std::size_t clSettings::Choice(const clSettingRule& rule, std::size_t standard) {
    Choice(rule.name, rule.words, &standard);
    return standard;
}

XString clSettings::Trouble() const {
    if (!mTrouble.empty()) return XString(mTrouble.c_str());
    const auto unknown = std::ranges::find(mEntries, false, &Entry::isAskedFor);
    if (unknown == mEntries.end()) return XString();
    return XString((u"the setting -" + unknown->name + u" is not known").c_str());
}
