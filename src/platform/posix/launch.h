// Starting a program.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace platform::posix {

struct Launch {
    std::vector<std::string> arguments;  // the program's path first
    int output = -1;                     // descriptors from 3 up; -1 for a stream that leads nowhere
    int error = -1;
};

// Starts the program in a session of its own, so that no terminal reaches it, with the default signal
// settings, no standard input, the two streams and no other descriptor. The result is the child, or -1 with
// errno, also when it is the program that can't be run.
pid_t Start(const Launch& launch);

// From here on Start makes children that the system kills when this process ends, whichever copy of this
// code in the process it is. Before there is a second thread.
bool BindChildrenToThisProcess();

}  // namespace platform::posix
