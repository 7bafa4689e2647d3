// quaver: the library at the command line.
#include <CLI/CLI.hpp>
#include <new>
#include <string>
#include <vector>

#include "commands.h"
#include "exit_codes.h"
#include "platform/program.h"
#include "terminal.h"
#include "utf8.h"

namespace {

ExitCode Run(const std::vector<std::u16string>& wideArguments) {
    CLI::App app("Converts, decodes, describes and tags audio files.", "quaver");
    app.set_version_flag("--version", "quaver " QV_VERSION);
    app.require_subcommand(1);
    // A slash begins a path, on Windows too.
    app.allow_windows_style_options(false);
    app.footer(
        "Exit codes: 0 done, 1 failed, 2 usage, 3 refused, 4 cancelled, 5 internal, 6 some files failed, "
        "7 damaged input, 8 output not writable.");
    Command command;
    AddCommands(app, command);

    // The parser takes its arguments last first.
    std::vector<std::string> reversed;
    for (auto i = wideArguments.rbegin(); i != wideArguments.rend(); ++i) reversed.push_back(ToUtf8(*i));
    try {
        app.parse(reversed);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    }
    return command();
}

}  // namespace

int platform::ProgramMain(const std::vector<std::u16string>& arguments) {
    try {
        return static_cast<int>(Run(arguments));
    } catch (const std::bad_alloc&) {
        Tell(u"Out of memory");
        return static_cast<int>(ExitCode::kInternal);
    }
}
