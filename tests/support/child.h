// Child programs inside the test program: a test starts its own executable again with --child=NAME.
#pragma once

#include <string>

namespace child {

// Its arguments are those behind --child=NAME; the result is the exit code.
using Program = int (*)(int argc, char** argv);

struct Registration {
    Registration(const char* name, Program program);
};

int Run(const char* name, int argc, char** argv);

// The command line that starts child NAME of this program, arguments appended as they stand.
std::u16string CommandLine(const char* name, const std::u16string& arguments = u"");

}  // namespace child

#define CHILD_PROGRAM(name)                                                   \
    static int Child_##name(int argc, char** argv);                           \
    static const child::Registration registered_##name(#name, &Child_##name); \
    static int Child_##name([[maybe_unused]] int argc, [[maybe_unused]] char** argv)
