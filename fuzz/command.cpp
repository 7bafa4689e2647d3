// The converter's command: any text is refused with a position inside it, or understood. What is understood
// is written out again as a host would write it and must be understood as the same.
#include "converter/command.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

std::u16string Decimal(std::int64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::u16string Switch(const std::u16string& name, const std::u16string& value) {
    return name + u"\"" + value + u"\"";
}

std::u16string Marked(const std::u16string& text) {
    std::u16string marked;
    for (const char16_t unit : text) marked += unit == u'"' ? u"{qt}" : std::u16string(1, unit);
    return marked;
}

std::u16string Pair(const Command::Pair& pair) {
    return Marked(pair.name) + u"=" + Marked(pair.value);
}

std::u16string Written(const Command& command) {
    constexpr const char16_t* kPriorities[] = {u"", u"low", u"idle", u"high"};
    std::u16string text = Switch(u" -infile=", command.source) + Switch(u" -outfile=", command.destination) +
                          Switch(u" -convert_to=", command.encoder) +
                          Switch(u" -evtquit=", command.cancelEvent) +
                          Switch(u" -evtwatchdog=", command.watchdogEvent) +
                          Switch(u" -processor=", Decimal(command.processor));
    if (command.priority > 0) text += Switch(u" -priority=", kPriorities[command.priority]);
    std::int64_t number = 0;
    for (const Command::Pair& effect : command.effects) {
        if (++number == 1) text += u" ";
        text += Switch(u"-dspeffect" + Decimal(number) + u"=", Pair(effect)) + u" ";
    }
    if (!command.carryTags) text += u" -noidtag";
    for (const Command::Pair& tag : command.tags) text += Switch(u" -tag=", Pair(tag));
    return text + u" " + command.settings;
}

bool Same(const std::vector<Command::Pair>& first, const std::vector<Command::Pair>& second) {
    if (first.size() != second.size()) return false;
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (first[i].name != second[i].name || first[i].value != second[i].value) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / 2, u'\0');
    std::memcpy(text.data(), data, text.size() * 2);
    CommandError error{};
    const std::optional<Command> command = ParseCommand(text, &error);
    if (!command) {
        Require(error.position >= 1 && error.position <= text.size() + 1 && !error.reason.empty());
        return 0;
    }
    const std::optional<Command> again = ParseCommand(Written(*command), &error);
    Require(again.has_value());
    Require(again->source == command->source && again->destination == command->destination);
    Require(again->encoder == command->encoder && again->settings == command->settings);
    Require(again->cancelEvent == command->cancelEvent && again->watchdogEvent == command->watchdogEvent);
    Require(again->processor == command->processor && again->priority == command->priority);
    Require(again->carryTags == command->carryTags);
    Require(Same(again->effects, command->effects) && Same(again->tags, command->tags));
    return 0;
}
