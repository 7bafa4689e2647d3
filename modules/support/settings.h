// clSettings: an encoder's or effect's settings text.
//
//     settings = { blank } [ "-" name "=" value { blank { blank } "-" name "=" value } { blank } ]
//
// Names and values hold no blanks. A text that doesn't read so, a name that the module doesn't have, one given
// twice, and a value out of its range are refused in words; nothing is guessed. A setting that isn't given
// keeps its default.
//
//     clSettings settings(text);
//     settings.Integer(u"compression-level", 0, 8, &level);
//     settings.Choice(u"mode", {u"vbr", u"cbr"}, &mode);
//     const XString trouble = settings.Trouble();        // empty: all of it was understood
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "foundation/wide_string.h"

// What a setting may be, stated once for the code that reads it and for the panel that shows it.
struct clSettingRule {
    const char16_t* name;
    std::span<const char16_t* const> words{};  // it is one of these; a number where there are none
    bool isWhole = true;                       // this, and the next two, of a number
    double least = 0, most = 0;
    double standard = 0;  // what holds where nothing is said: a number, or the index of a word
};

class clSettings {
  public:
    explicit clSettings(const char16_t* text);

    // Each takes the setting of that name, if given, into *value. A decimal number is of the form -12 or
    // -12.5, with a point whatever the locale.
    void Integer(const char16_t* name, std::int64_t least, std::int64_t most, std::int64_t* value);
    void Decimal(const char16_t* name, double least, double most, double* value);
    // *index is that of the chosen word.
    void Choice(const char16_t* name, std::initializer_list<const char16_t*> words, std::size_t* index) {
        Choice(name, std::span(words.begin(), words.size()), index);
    }
    void Choice(const char16_t* name, std::span<const char16_t* const> words, std::size_t* index);

    // The same by rule. The result is what is given or else what is standard, by the rule or by `standard`.
    std::int64_t Integer(const clSettingRule& rule);
    std::int64_t Integer(const clSettingRule& rule, std::int64_t standard);
    double Decimal(const clSettingRule& rule);
    std::size_t Choice(const clSettingRule& rule);
    std::size_t Choice(const clSettingRule& rule, std::size_t standard);

    bool IsGiven(const char16_t* name) const;

    // After all settings were asked for: the first thing wrong, to stand behind a file's name. Empty for none.
    XString Trouble() const;

  private:
    struct Entry {
        std::u16string name;
        std::u16string value;
        bool isAskedFor = false;
    };

    void Read(std::u16string_view word);
    Entry* Ask(const char16_t* name);
    void Complain(const Entry& entry, const std::u16string& range);

    std::vector<Entry> mEntries;
    std::u16string mTrouble;
};
