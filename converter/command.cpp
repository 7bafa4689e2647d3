// A hand-written scanner over the one order that switches may have. It never looks for a switch: it expects
// the next one at the place it has reached, so text inside a value can't be taken for one. Where an optional
// switch is not found, the text is tested against every switch name, and one that stands there is out of its
// order; only what is no switch at all is settings text.
#include "converter/command.h"

#include <algorithm>
#include <utility>

#include "foundation/priorities.h"
#include "platform/names.h"

namespace {

constexpr std::u16string_view kSwitches[] = {
    u"-infile=",    u"-outfile=",  u"-convert_to=", u"-evtquit=", u"-evtwatchdog=",
    u"-processor=", u"-priority=", u"-dspeffect",   u"-noidtag",  u"-tag=",
};

// Each works within the one before.
constexpr std::size_t kMostEffects = 1000;

struct Refusal {
    CommandError error;
};

std::u16string QuotesBack(std::u16string_view text) {
    constexpr std::u16string_view kMark = u"{qt}";
    std::u16string result;
    for (std::size_t at = 0; at < text.size();) {
        const bool mark = text.substr(at, kMark.size()) == kMark;
        result += mark ? u'"' : text[at];
        at += mark ? kMark.size() : 1;
    }
    return result;
}

// "name=value": the first equals sign parts them.
Command::Pair SplitPair(std::u16string_view text) {
    const std::size_t equals = text.find(u'=');
    if (equals == std::u16string_view::npos) return {QuotesBack(text), u""};
    return {QuotesBack(text.substr(0, equals)), QuotesBack(text.substr(equals + 1))};
}

class Scanner {
  public:
    explicit Scanner(std::u16string_view text) : mText(text) {}

    bool At(std::u16string_view word) const { return mText.substr(mAt, word.size()) == word; }

    bool Take(std::u16string_view word) {
        if (!At(word)) return false;
        mAt += word.size();
        return true;
    }

    void Expect(std::u16string_view word, const char16_t* reason) {
        if (!Take(word)) Refuse(reason);
    }

    // A value in double quotes, the scanner standing on the first.
    std::u16string_view Value() {
        Expect(u"\"", u"a value must stand in double quotes");
        const std::size_t end = mText.find(u'"', mAt);
        if (end == std::u16string_view::npos) Refuse(u"the closing quote is missing");
        const std::u16string_view value = mText.substr(mAt, end - mAt);
        mAt = end + 1;
        return value;
    }

    std::u16string_view Rest() const { return mText.substr(mAt); }

    [[noreturn]] void Refuse(std::u16string reason) const { throw Refusal{{mAt + 1, std::move(reason)}}; }

  private:
    std::u16string_view mText;
    std::size_t mAt = 0;
};

// Windows takes a slash for a separator too; all that follows knows only its own.
std::u16string Path(std::u16string path) {
    std::replace(path.begin(), path.end(), u'/', platform::kPathSeparator);
    return path;
}

std::u16string Required(Scanner& scanner, const std::u16string& name) {
    if (!scanner.Take(u" " + name)) scanner.Refuse(u"the switch " + name + u" must stand here");
    return std::u16string(scanner.Value());
}

std::int64_t Processor(Scanner& scanner, std::u16string_view digits) {
    const bool negative = digits.starts_with(u'-');
    if (negative) digits.remove_prefix(1);
    if (digits.empty() || digits.size() > 10) scanner.Refuse(u"the processor is no number");
    std::int64_t value = 0;
    for (const char16_t digit : digits) {
        if (digit < u'0' || digit > u'9') scanner.Refuse(u"the processor is no number");
        value = value * 10 + (digit - u'0');
    }
    value = negative ? -value : value;
    if (value < -1) scanner.Refuse(u"the processor must be -1, 0 or a processor's number from 1");
    return value == 0 ? -1 : value;
}

std::uint32_t Priority(Scanner& scanner, std::u16string_view name) {
    for (std::uint32_t i = 1; i < std::size(kPriorityLevels); ++i)
        if (name == kPriorityLevels[i].name) return i;
    scanner.Refuse(u"the priority must be low, idle or high");
}

std::u16string Decimal(std::size_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

// The effects, each with a blank of its own behind it.
void Effects(Scanner& scanner, Command& command) {
    if (!scanner.Take(u" -dspeffect")) return;
    do {
        if (command.effects.size() == kMostEffects) scanner.Refuse(u"these are too many effects");
        const std::u16string number = Decimal(command.effects.size() + 1);
        if (!scanner.Take(number + u"=")) scanner.Refuse(u"effect number " + number + u" must stand here");
        command.effects.push_back(SplitPair(scanner.Value()));
        scanner.Expect(u" ", u"a blank must follow an effect");
    } while (scanner.Take(u"-dspeffect"));
}

void Settings(Scanner& scanner, Command& command) {
    scanner.Expect(u" ", u"a blank must stand before the settings");
    for (const std::u16string_view name : kSwitches) {
        if (scanner.At(name))
            scanner.Refuse(u"the switch " + std::u16string(name) + u" is out of order or comes twice");
    }
    command.settings = scanner.Rest();
}

Command Parse(std::u16string_view text) {
    Scanner scanner(text);
    Command command;
    command.source = Path(Required(scanner, u"-infile="));
    command.destination = Path(Required(scanner, u"-outfile="));
    command.encoder = Required(scanner, u"-convert_to=");
    command.cancelEvent = Required(scanner, u"-evtquit=");
    command.watchdogEvent = Required(scanner, u"-evtwatchdog=");
    if (scanner.Take(u" -processor=")) command.processor = Processor(scanner, scanner.Value());
    if (scanner.Take(u" -priority=")) command.priority = Priority(scanner, scanner.Value());
    Effects(scanner, command);
    command.carryTags = !scanner.Take(u" -noidtag");
    while (scanner.Take(u" -tag=")) command.tags.push_back(SplitPair(scanner.Value()));
    Settings(scanner, command);
    return command;
}

}  // namespace

std::optional<Command> ParseCommand(std::u16string_view text, CommandError* error) {
    try {
        return Parse(text);
    } catch (Refusal& refusal) {
        *error = std::move(refusal.error);
        return std::nullopt;
    }
}
