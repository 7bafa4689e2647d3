#include "platform/posix/command_line.h"

namespace platform::posix {

namespace {

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t';
}

void SkipBlanks(const char16_t*& at) {
    while (IsBlank(*at)) ++at;
}

std::u16string TakeProgram(const char16_t*& at) {
    std::u16string program;
    bool quoted = false;
    for (; *at && (quoted || !IsBlank(*at)); ++at) {
        if (*at == u'"') {
            quoted = !quoted;
        } else {
            program += *at;
        }
    }
    return program;
}

// A row of backslashes: halved before a quote, where an odd one makes the quote a character; kept otherwise.
void TakeBackslashes(const char16_t*& at, std::u16string& argument) {
    std::size_t count = 0;
    for (; *at == u'\\'; ++at) ++count;
    if (*at != u'"') {
        argument.append(count, u'\\');
        return;
    }
    argument.append(count / 2, u'\\');
    if (count % 2) argument += *at++;
}

std::u16string TakeArgument(const char16_t*& at) {
    std::u16string argument;
    bool quoted = false;
    while (*at && (quoted || !IsBlank(*at))) {
        if (*at == u'\\') {
            TakeBackslashes(at, argument);
        } else if (*at != u'"') {
            argument += *at++;
        } else if (quoted && at[1] == u'"') {
            argument += u'"';
            at += 2;
        } else {
            quoted = !quoted;
            ++at;
        }
    }
    return argument;
}

}  // namespace

std::vector<std::u16string> SplitCommandLine(const char16_t* line) {
    std::vector<std::u16string> arguments{TakeProgram(line)};
    for (SkipBlanks(line); *line; SkipBlanks(line)) arguments.push_back(TakeArgument(line));
    return arguments;
}

}  // namespace platform::posix
