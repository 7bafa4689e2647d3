// Time, and the periodic timer.
#pragma once

#include <cstdint>

#include "platform/operation.h"

namespace platform {

// Milliseconds since the system started, sleep included; wraps after 49.7 days.
extern Operation<std::uint32_t()> GetTickCount;

// The date and time of day in UTC.
struct SystemTime {
    std::uint16_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
};
extern Operation<void(SystemTime* time)> GetSystemTime;

// A counter of fine resolution; false where there is none.
extern Operation<bool(std::int64_t* counter)> QueryPerformanceCounter;

extern Operation<void(std::uint32_t milliseconds)> Sleep;

inline constexpr std::uint32_t kTimePeriodic = 1;

using TimerCallback = void (*)(void* user);

// Calls `callback` with `user` every `delayMs` on a thread of the timer service, one tick at a time, until
// timeKillEvent. Resolution 0 asks for the service's best. A tick that is late is not made up for. Returns
// the timer's identifier, or 0 when the service refuses. POSIX runs all timers of the process on one thread,
// started with the first and ended with the last.
extern Operation<std::uint32_t(std::uint32_t delayMs, std::uint32_t resolutionMs, TimerCallback callback,
                               void* user, std::uint32_t flags)>
    timeSetEvent;

// Ends a timer. When this returns no tick of it runs or will run; it therefore waits for one that is running
// and must not be called from inside the tick. An unknown identifier is refused.
extern Operation<bool(std::uint32_t timer)> timeKillEvent;

}  // namespace platform
