// The commands of quaver and their options.
#pragma once

#include <functional>

#include "exit_codes.h"

namespace CLI {
class App;
}

using Command = std::function<ExitCode()>;

// Adds every command to the parser. Once the parser has met one, `chosen` runs it with the options it has found.
void AddCommands(CLI::App& app, Command& chosen);
