// A program's first function: its arguments as the system splits them.
#include "platform/program.h"

extern "C" int wmain(int argc, wchar_t** argv);

int wmain(int argc, wchar_t** argv) {
    std::vector<std::u16string> arguments;
    for (int i = 1; i < argc; ++i) arguments.emplace_back(reinterpret_cast<const char16_t*>(argv[i]));
    return platform::ProgramMain(arguments);
}
