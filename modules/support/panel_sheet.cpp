// Whatever is asked of a value is asked of clSettings, which reads it for the module itself: a value is good when
// the text "-name=value" gives no trouble under the row's rule.
#include "modules/support/panel_sheet.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

namespace {

// In its shortest form, with no exponent: a double can need all its places behind the point.
std::u16string NumberText(double number) {
    char text[512];
    number += 0.0;  // -0 is 0
    const auto end = std::to_chars(std::begin(text), std::end(text), number, std::chars_format::fixed).ptr;
    return {std::begin(text), end};
}

std::u16string Setting(const char16_t* name, std::u16string_view value) {
    return (std::u16string(u"-") + name + u"=").append(value);
}

std::optional<double> Number(const clSettingRule& rule, std::u16string_view value) {
    clSettings settings(Setting(rule.name, value).c_str());
    const double number = rule.isWhole ? static_cast<double>(settings.Integer(rule)) : settings.Decimal(rule);
    return settings.Trouble().IsEmpty() ? std::optional(number) : std::nullopt;
}

std::optional<std::u16string> Normal(const clSettingRule& rule, std::u16string_view value) {
    if (rule.words.empty()) {
        const auto number = Number(rule, value);
        return number ? std::optional(NumberText(*number)) : std::nullopt;
    }
    const auto word = std::ranges::find(rule.words, value);
    return word != rule.words.end() ? std::optional<std::u16string>(*word) : std::nullopt;
}

std::size_t IndexOf(const clPanelRow& row, std::u16string_view value) {
    const auto choice = std::ranges::find(row.choices, value, &clPanelChoice::value);
    return static_cast<std::size_t>(choice - row.choices.begin());
}

bool Offers(const clPanelRow& row, std::u16string_view value) {
    return IndexOf(row, value) < row.choices.size();
}

std::u16string Trimmed(std::u16string_view typed) {
    const std::size_t first = std::min(typed.find_first_not_of(u' '), typed.size());
    typed.remove_prefix(first);
    return std::u16string(typed.substr(0, typed.find_last_not_of(u' ') + 1));
}

}  // namespace

clPanelSheet::clPanelSheet(std::span<const clPanelRow> rows) : mRows(rows), mValues(rows.size()) {
    Read({});
}

std::u16string clPanelSheet::Standard(const clPanelRow& row) const {
    if (row.control == PanelControl::preset || Offers(row, u"")) return {};
    if (!row.rule) return row.choices[0].value;
    if (row.rule->words.empty()) return NumberText(row.initial != 0 ? row.initial : row.rule->standard);
    return row.rule->words[static_cast<std::size_t>(row.rule->standard)];
}

void clPanelSheet::Read(std::u16string_view text) {
    std::ranges::transform(mRows, mValues.begin(), [this](const clPanelRow& row) { return Standard(row); });
    std::vector<bool> isGiven(mRows.size());
    while (!text.empty()) {
        const std::size_t blank = std::min(text.find(u' '), text.size());
        Take(text.substr(0, blank), isGiven);
        text.remove_prefix(std::min(blank + 1, text.size()));
    }
}

// Of settings that exclude each other the one that is given first counts.
void clPanelSheet::Take(std::u16string_view word, std::vector<bool>& isGiven) {
    const std::u16string whole(word);
    const clSettings setting(whole.c_str());
    for (std::size_t i = 0; i < mRows.size(); ++i) {
        const clPanelRow& row = mRows[i];
        if (!row.rule || isGiven[i] || !setting.IsGiven(row.rule->name)) continue;
        if (!Set(i, word.substr(word.find(u'=') + 1))) continue;
        isGiven[i] = true;
        if (row.onlyWith < 0) continue;
        const auto above = static_cast<std::size_t>(row.onlyWith);
        if (mRows[above].rule || isGiven[above]) continue;
        Choose(above, static_cast<std::size_t>(std::countr_zero(row.ofChoices)));
        isGiven[above] = true;
    }
}

std::u16string clPanelSheet::Text() const {
    std::u16string text;
    for (std::size_t i = 0; i < mRows.size(); ++i) {
        const clPanelRow& row = mRows[i];
        const std::u16string& value = mValues[i];
        if (!row.rule || value.empty() || !IsActive(i)) continue;
        if (row.initial == 0 && value == Standard(row)) continue;
        if (!text.empty()) text += u' ';
        text += Setting(row.rule->name, value);
    }
    return text;
}

bool clPanelSheet::Set(std::size_t row, std::u16string_view value) {
    const clPanelRow& its = mRows[row];
    std::optional<std::u16string> normal(value);
    if (its.rule && !(value.empty() && Offers(its, value))) normal = Normal(*its.rule, value);
    const bool fits = normal && (its.control == PanelControl::number || Offers(its, *normal));
    if (fits) mValues[row] = *normal;
    return fits;
}

bool clPanelSheet::Type(std::size_t row, std::u16string_view typed) {
    const clPanelRow& its = mRows[row];
    std::u16string text = Trimmed(typed);
    const auto shown = std::ranges::find(its.choices, std::u16string_view(text), &clPanelChoice::shown);
    if (shown != its.choices.end()) text = shown->value;
    std::ranges::replace(text, u',', u'.');
    if (Set(row, text)) return true;
    clSettingRule anyNumber = *its.rule;
    anyNumber.isWhole = false;
    anyNumber.least = std::numeric_limits<double>::lowest();
    anyNumber.most = std::numeric_limits<double>::max();
    const auto number = Number(anyNumber, text);
    if (!number) return false;
    const double within = std::clamp(*number, its.rule->least, its.rule->most);
    return Set(row, NumberText(its.rule->isWhole ? std::round(within) : within));
}

// What isn't given steps from what is standard.
void clPanelSheet::Step(std::size_t row, int steps) {
    constexpr double kGrain = 1e6;  // steps leave no dust in the last places
    const clSettingRule& rule = *mRows[row].rule;
    const double from = Number(rule, mValues[row]).value_or(rule.standard);
    const double to = std::round((from + steps * mRows[row].step) * kGrain) / kGrain;
    Set(row, NumberText(std::clamp(to, rule.least, rule.most)));
}

std::size_t clPanelSheet::Choice(std::size_t row) const {
    const bool isPreset = mRows[row].control == PanelControl::preset;
    return IndexOf(mRows[row], isPreset ? Text() : mValues[row]);
}

// A preset that is none of the choices leaves all as it stands.
void clPanelSheet::Choose(std::size_t row, std::size_t choice) {
    const clPanelRow& its = mRows[row];
    if (choice >= its.choices.size()) return;
    if (its.control == PanelControl::preset)
        Read(its.choices[choice].value);
    else
        Set(row, its.choices[choice].value);
}

bool clPanelSheet::IsActive(std::size_t row) const {
    const std::int32_t above = mRows[row].onlyWith;
    if (above < 0) return true;
    const auto index = static_cast<std::size_t>(above);
    return IsActive(index) && (mRows[row].ofChoices >> Choice(index) & 1) != 0;
}
