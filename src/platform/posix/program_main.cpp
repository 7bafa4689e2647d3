// A program's first function: its arguments in 16-bit text. A file that grows beyond what the user may have
// is a write that fails, like one on a full disk, and must not end the program.
#include <signal.h>

#include "platform/program.h"
#include "platform/text.h"

int main(int argc, char** argv) {
    signal(SIGXFSZ, SIG_IGN);
    std::vector<std::u16string> arguments;
    for (int i = 1; i < argc; ++i) {
        std::u16string text(static_cast<std::size_t>(platform::MultiByteToWideChar(argv[i], nullptr, 0)),
                            u'\0');
        platform::MultiByteToWideChar(argv[i], text.data(), static_cast<std::int32_t>(text.size()));
        text.pop_back();
        arguments.push_back(std::move(text));
    }
    return platform::ProgramMain(arguments);
}
