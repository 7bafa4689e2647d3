// The threads of a process.
#pragma once

#include <sys/types.h>

#include <functional>

namespace platform::posix {

// Calls `apply` for every thread of the process, or for its first alone where they can't be listed. A
// thread that ends meanwhile is passed over. False with errno as soon as `apply` says so.
bool ForEachTask(pid_t process, const std::function<bool(pid_t task)>& apply);

}  // namespace platform::posix
