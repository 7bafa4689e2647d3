// Writes its arguments, one a line, and counts them in its exit code.
#include "platform/program.h"

int platform::ProgramMain(const std::vector<std::u16string>& arguments) {
    for (const std::u16string& argument : arguments)
        WriteConsoleText(GetStdHandle(kStdOutput), (argument + u"\n").c_str());
    return static_cast<int>(arguments.size());
}
