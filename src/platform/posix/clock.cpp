// Time. The tick count goes on while the system sleeps; waiting and the fine counter go
// by the clock that does not.
#include "platform/clock.h"

#include <time.h>

#include "platform/error.h"
#include "platform/posix/native_error.h"
#include "platform/posix/service.h"
#include "platform/posix/waitable.h"
#include "platform/synchronisation.h"

namespace platform {

using namespace posix;

namespace {

std::uint32_t Ticks() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1000000);
}

void Utc(SystemTime* time) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts{};
    gmtime_r(&now.tv_sec, &parts);
    const auto part = [](long value) { return static_cast<std::uint16_t>(value); };
    *time = {part(parts.tm_year + 1900L), part(parts.tm_mon + 1L), part(parts.tm_mday),
             part(parts.tm_hour),         part(parts.tm_min),      part(parts.tm_sec),
             part(now.tv_nsec / 1000000)};
}

bool Counter(std::int64_t* counter) {
    *counter = Clock::now().time_since_epoch().count();
    return true;
}

// A signal of the host ends no sleep: what is left of it is slept again.
void SleepFor(std::uint32_t milliseconds) {
    timespec left{milliseconds / 1000, milliseconds % 1000 * 1000000L};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR || milliseconds == kInfinite) {
    }
}

std::uint32_t StartTimer(std::uint32_t delayMs, std::uint32_t, TimerCallback callback, void* user,
                         std::uint32_t flags) {
    if (delayMs == 0 || !callback || flags != kTimePeriodic) return Fail(kErrorInvalidParameter);
    const std::uint32_t timer = AddTimer(delayMs, callback, user);
    return timer ? timer : Fail(kErrorNotEnoughMemory);
}

}  // namespace

constinit Operation<std::uint32_t()> GetTickCount{&Ticks};
constinit Operation<void(SystemTime*)> GetSystemTime{&Utc};
constinit Operation<bool(std::int64_t*)> QueryPerformanceCounter{&Counter};
constinit Operation<void(std::uint32_t)> Sleep{&SleepFor};
constinit Operation<std::uint32_t(std::uint32_t, std::uint32_t, TimerCallback, void*, std::uint32_t)>
    timeSetEvent{&StartTimer};
constinit Operation<bool(std::uint32_t)> timeKillEvent{&RemoveTimer};

}  // namespace platform
