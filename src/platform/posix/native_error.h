// From errno to the last error, and the two lines that every failing operation ends with.
#pragma once

#include <cerrno>
#include <cstdint>

#include "platform/types.h"

namespace platform::posix {

// The error number for an errno value; kErrorGeneral where there is none.
std::uint32_t ErrorOf(int number);

// Store the reason for a failure. The result is false, so that an operation can return it.
bool Fail(std::uint32_t error);
bool FailWithErrno();

// The same for operations whose result is a handle.
inline Handle FailedHandle(Handle none) {
    FailWithErrno();
    return none;
}

// Repeats a system call that a signal of the host interrupted.
template <class Call>
auto Retry(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

}  // namespace platform::posix
