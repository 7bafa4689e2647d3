// Time is forwarded; timers need a little more: the service's callback has another shape than ours, so each
// timer owns a record of callback and user value, found again by the timer's number when it ends.
//
// TIME_KILL_SYNCHRONOUS makes the service wait in timeKillEvent for a tick that is running and start none
// after it. Only that makes it safe to drop the record there.
#include "platform/clock.h"

#include <map>
#include <memory>
#include <mutex>

#include "platform/windows/native.h"

#include <mmsystem.h>

namespace platform {

namespace {

struct Tick {
    TimerCallback callback;
    void* user;
};

struct Timers {
    std::mutex lock;
    std::map<MMRESULT, std::unique_ptr<Tick>> ticks;
};

// Never destroyed: a timer still running while the program ends may tick.
Timers& AllTimers() {
    static Timers& timers = *new Timers;
    return timers;
}

void CALLBACK OnTick(UINT, UINT, DWORD_PTR user, DWORD_PTR, DWORD_PTR) {
    const auto* tick = reinterpret_cast<const Tick*>(user);
    tick->callback(tick->user);
}

std::uint32_t StartTimer(std::uint32_t delayMs, std::uint32_t resolutionMs, TimerCallback callback,
                         void* user, std::uint32_t flags) {
    auto tick = std::make_unique<Tick>(Tick{callback, user});
    Timers& timers = AllTimers();
    std::lock_guard guard(timers.lock);
    const MMRESULT timer =
        ::timeSetEvent(delayMs, resolutionMs, &OnTick, reinterpret_cast<DWORD_PTR>(tick.get()),
                       flags | TIME_CALLBACK_FUNCTION | TIME_KILL_SYNCHRONOUS);
    if (timer) timers.ticks[timer] = std::move(tick);
    return timer;
}

std::unique_ptr<Tick> Release(std::uint32_t timer) {
    Timers& timers = AllTimers();
    std::lock_guard guard(timers.lock);
    const auto found = timers.ticks.find(timer);
    if (found == timers.ticks.end()) return nullptr;
    std::unique_ptr<Tick> tick = std::move(found->second);
    timers.ticks.erase(found);
    return tick;
}

// The list lock is not held while the service waits: the tick may start or end other timers.
bool EndTimer(std::uint32_t timer) {
    const std::unique_ptr<Tick> tick = Release(timer);
    return tick && ::timeKillEvent(timer) == TIMERR_NOERROR;
}

}  // namespace

constinit Operation<std::uint32_t()> GetTickCount{[]() -> std::uint32_t { return ::GetTickCount(); }};

constinit Operation<void(SystemTime*)> GetSystemTime{[](SystemTime* time) {
    SYSTEMTIME now;
    ::GetSystemTime(&now);
    *time = {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}};

constinit Operation<bool(std::int64_t*)> QueryPerformanceCounter{[](std::int64_t* counter) {
    LARGE_INTEGER now;
    if (!::QueryPerformanceCounter(&now)) return false;
    *counter = now.QuadPart;
    return true;
}};

constinit Operation<void(std::uint32_t)> Sleep{[](std::uint32_t milliseconds) { ::Sleep(milliseconds); }};

static_assert(kTimePeriodic == TIME_PERIODIC);

constinit Operation<std::uint32_t(std::uint32_t, std::uint32_t, TimerCallback, void*, std::uint32_t)>
    timeSetEvent{&StartTimer};
constinit Operation<bool(std::uint32_t)> timeKillEvent{&EndTimer};

}  // namespace platform
