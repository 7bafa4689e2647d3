// One run of Quavercore without the library: the command file, the events and the pipes made by hand, the
// pipes read until they break.
#pragma once

#include <string>

// Returns the child's exit code, or -1 when it could not be started.
int RunDirectly(const std::u16string& converter, const std::u16string& source,
                const std::u16string& destination);
