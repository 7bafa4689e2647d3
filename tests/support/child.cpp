#include "support/child.h"

#include <cstdio>
#include <map>

#include "platform/module.h"

namespace child {

namespace {
std::map<std::string, Program>& Programs() {
    static std::map<std::string, Program> programs;
    return programs;
}
}  // namespace

Registration::Registration(const char* name, Program program) {
    Programs()[name] = program;
}

int Run(const char* name, int argc, char** argv) {
    const auto found = Programs().find(name);
    if (found == Programs().end()) {
        std::fprintf(stderr, "no child program %s\n", name);
        return 99;
    }
    return found->second(argc, argv);
}

std::u16string CommandLine(const char* name, const std::u16string& arguments) {
    char16_t self[4096];
    platform::GetModuleFileNameW(nullptr, self, 4096);
    const std::string narrow(name);
    std::u16string line =
        u"\"" + std::u16string(self) + u"\" --child=" + std::u16string(narrow.begin(), narrow.end());
    if (!arguments.empty()) line += u" " + arguments;
    return line;
}

}  // namespace child
