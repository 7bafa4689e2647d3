#include "terminal.h"

#include "platform/program.h"

bool Say(const std::u16string& text) {
    return platform::WriteConsoleText(platform::GetStdHandle(platform::kStdOutput), text.c_str());
}

void Tell(const std::u16string& line) {
    TellErrors(line + u"\n");
}

void TellErrors(const std::u16string& errors) {
    platform::WriteConsoleText(platform::GetStdHandle(platform::kStdError), errors.c_str());
}

ExitCode Concluded(ExitCode code, bool said) {
    if (said) return code;
    Tell(u"Standard output can't be written.");
    return ExitCode::kOutput;
}
