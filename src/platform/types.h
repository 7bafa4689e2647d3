// The small types that cross the seam.
//
// Everything the library needs of its operating system stands in the headers of this folder, one subject
// each, under the names the operations carry on Windows. platform/windows/ forwards each of them;
// platform/posix/ implements what the comments here promise. No header of the seam includes a header of
// either system.
#pragma once

#include <cstdint>

namespace platform {

// A file, pipe end, event, mutex, process or thread. On POSIX a file or pipe end is its descriptor number,
// never below 3, so that 0 and -1 stay free to mean "none" as they do on Windows.
using Handle = std::intptr_t;

inline constexpr Handle kNullHandle = 0;
inline constexpr Handle kInvalidHandle = -1;

// True for a handle that names something: neither of the two words for "none".
constexpr bool IsOpen(Handle handle) {
    return handle != kNullHandle && handle != kInvalidHandle;
}

}  // namespace platform
