// A program's first function: its arguments as the system splits them.
#include <windows.h>

#include "platform/program.h"

extern "C" int wmain(int argc, wchar_t** argv);

int wmain(int argc, wchar_t** argv) {
    // A crash or a bad module ends the program and opens no dialog that waits for somebody.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    std::vector<std::u16string> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(reinterpret_cast<const char16_t*>(argv[i]));
    return platform::ProgramMain(arguments);
}
