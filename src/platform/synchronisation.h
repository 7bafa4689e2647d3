// Events, mutexes and waiting.
#pragma once

#include <cstdint>

#include "platform/operation.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t kInfinite = 0xFFFFFFFF;
inline constexpr std::uint32_t kWaitObject = 0;  // signalled, or the mutex is now held
inline constexpr std::uint32_t kWaitTimeout = 258;
inline constexpr std::uint32_t kWaitFailed = 0xFFFFFFFF;

// Makes a manual-reset event that is not signalled, or opens the one of this name: then its state stays as it
// is and the last error is kErrorAlreadyExists, otherwise kErrorSuccess. A null name makes one that only this
// process knows. A named event is shared by all processes of one user on this machine and vanishes with its
// last handle, also when its holders were killed. kNullHandle on failure.
extern Operation<Handle(const char16_t* name)> CreateEventW;

// Opens an existing named event; kNullHandle with kErrorFileNotFound where there is none.
extern Operation<Handle(const char16_t* name)> OpenEventW;

extern Operation<bool(Handle event)> SetEvent;
extern Operation<bool(Handle event)> ResetEvent;

// Makes an unnamed recursive mutex that nobody holds. kNullHandle on failure.
extern Operation<Handle()> CreateMutexW;
extern Operation<bool(Handle mutex)> ReleaseMutex;  // fails for a thread that does not hold it

// Waits for an event to be signalled, a mutex to be free (it is then held) or a process to end, at most
// `milliseconds`; 0 only looks. Returns one of the three values above.
extern Operation<std::uint32_t(Handle handle, std::uint32_t milliseconds)> WaitForSingleObject;

}  // namespace platform
