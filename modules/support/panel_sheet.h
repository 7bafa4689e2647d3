// clPanelSheet: a settings panel without its window: what stands in each row, and the settings text of it all.
//
// A module describes its panel as a table of rows over the rules by which it reads its settings, so what a panel
// gives is what the module takes.
//
// Values are texts as they stand behind the "=", in their normal form: "05" is "5" here. The empty value is that
// of a setting that isn't given; only a row that offers it has it.
//
// The text that comes out is the shortest that says it all: what is standard is left out, so with nothing
// changed it is empty.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "modules/support/settings.h"

enum class PanelControl {
    list,    // one of the choices
    check,   // a box for two choices, the second when it is ticked
    number,  // typed or stepped through; where there are choices they are offered, and others can be typed
    preset   // the choices are whole settings texts: shows which one it is, and sets all the others
};

struct clPanelChoice {
    const char16_t* value;
    const char16_t* shown;
};

struct clPanelRow {
    const char16_t* label;  // its mnemonic behind an "&", no two alike in a panel
    PanelControl control = PanelControl::list;
    // Null for a preset, and for a list that only says which of other rows counts: that isn't written.
    const clSettingRule* rule = nullptr;
    std::span<const clPanelChoice> choices{};
    const char16_t* unit = u"";
    double step = 1;  // of a number's arrows
    // Of a number that has no standard, as not giving it means something else: what stands first. It is always
    // written.
    double initial = 0;
    // It counts only while the row with this index shows one of these choices (bit 0 is the first).
    std::int32_t onlyWith = -1;
    std::uint32_t ofChoices = 0;
};

class clPanelSheet {
  public:
    // The rows are a constant table.
    explicit clPanelSheet(std::span<const clPanelRow> rows);

    std::span<const clPanelRow> Rows() const { return mRows; }

    // Everything standard, then each setting of the text that can be understood. What is unknown, wrong or given
    // a second time is passed over.
    void Read(std::u16string_view text);
    std::u16string Text() const;

    const std::u16string& Value(std::size_t row) const { return mValues[row]; }
    // False, and all stays, for what the row can't be.
    bool Set(std::size_t row, std::u16string_view value);
    // What a user has typed into a number: blanks around it don't count, a comma is a point, a number beyond the
    // range is its end, and what a choice shows is that choice. False, and the value stays, for anything else.
    bool Type(std::size_t row, std::u16string_view typed);
    void Step(std::size_t row, int steps);

    // The index among the choices. A preset's is their count when none of them is it.
    std::size_t Choice(std::size_t row) const;
    void Choose(std::size_t row, std::size_t choice);
    bool IsActive(std::size_t row) const;

  private:
    std::u16string Standard(const clPanelRow& row) const;
    void Take(std::u16string_view word, std::vector<bool>& isGiven);

    std::span<const clPanelRow> mRows;
    std::vector<std::u16string> mValues;
};
