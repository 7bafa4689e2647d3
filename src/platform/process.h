// Child processes.
//
// A child gets the two streams it is given, no standard input and nothing else that is open here. On POSIX a
// child leaves no zombie, also when its handles were closed while it ran, and the host needs no signal
// handler for it.
#pragma once

#include <cstdint>

#include "platform/operation.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t kCreateNoWindow = 0x08000000;
inline constexpr std::uint32_t kNormalPriorityClass = 0x20;
inline constexpr std::uint32_t kIdlePriorityClass = 0x40;

inline constexpr std::int32_t kThreadPriorityNormal = 0;
inline constexpr std::int32_t kThreadPriorityBelowNormal = -1;
inline constexpr std::int32_t kThreadPriorityIdle = -15;
inline constexpr std::int32_t kThreadPriorityAboveNormal = 1;

struct ChildStreams {
    Handle output = kNullHandle;  // an inheritable handle, made by DuplicateHandle
    Handle error = kNullHandle;
};

struct ChildHandles {
    Handle process = kInvalidHandle;  // signalled once the child has ended
    Handle thread = kInvalidHandle;   // its main thread
};

// Starts the program that the command line begins with; its path stands in double quotes when it holds a
// blank. `commandLine` may be written to during the call. The environment and the current folder are the
// caller's. The two stream handles stay the caller's own to close. POSIX splits the line into arguments by
// the rules that Windows programs follow (quotes group, a backslash escapes only a quote). *child is left
// alone on failure.
extern Operation<bool(char16_t* commandLine, std::uint32_t flags, const ChildStreams& streams,
                      ChildHandles* child)>
    CreateProcessW;

// Stops and continues the child's main thread (on POSIX, the child). The result is the former suspend count,
// or 0xFFFFFFFF on failure.
extern Operation<std::uint32_t(Handle thread)> SuspendThread;
extern Operation<std::uint32_t(Handle thread)> ResumeThread;

// The two halves of a priority. POSIX maps their combination to a nice value: idle to 19, below normal to 5,
// normal to 0, above normal to -5, and fails where the system does not let the caller go back up.
extern Operation<bool(Handle thread, std::int32_t priority)> SetThreadPriority;
extern Operation<bool(Handle process, std::uint32_t priorityClass)> SetPriorityClass;

// Gives both halves to this very process and to the thread that calls; on POSIX to every thread there is.
extern Operation<bool(std::int32_t priority, std::uint32_t priorityClass)> SetOwnPriority;

// Stores the exit code of a child that has ended (on POSIX 128 plus the signal that killed it); fails while
// it runs.
extern Operation<bool(Handle process, std::uint32_t* exitCode)> GetExitCodeProcess;

// Ends the child at once.
extern Operation<bool(Handle process)> TerminateProcess;

// Lets this very process run only on the processors of `mask` (bit 0 is the first).
extern Operation<bool(std::uint64_t mask)> SetProcessAffinityMask;

// From here on the children of this process end with it, however it ends. For programs only: the library
// never calls it.
extern Operation<bool()> EndChildrenWithMe;

}  // namespace platform
