// Events and mutexes, forwarded.
#include "platform/synchronisation.h"

#include "platform/windows/native.h"

namespace platform {

static_assert(kInfinite == INFINITE && kWaitObject == WAIT_OBJECT_0 && kWaitTimeout == WAIT_TIMEOUT &&
              kWaitFailed == WAIT_FAILED);

constinit Operation<Handle(const char16_t*)> CreateEventW{
    [](const char16_t* name) { return FromNative(::CreateEventW(nullptr, TRUE, FALSE, Native(name))); }};

constinit Operation<Handle(const char16_t*)> OpenEventW{[](const char16_t* name) {
    return FromNative(::OpenEventW(SYNCHRONIZE | EVENT_MODIFY_STATE, FALSE, Native(name)));
}};

constinit Operation<bool(Handle)> SetEvent{[](Handle event) { return ::SetEvent(Native(event)) != 0; }};
constinit Operation<bool(Handle)> ResetEvent{[](Handle event) { return ::ResetEvent(Native(event)) != 0; }};

constinit Operation<Handle()> CreateMutexW{
    [] { return FromNative(::CreateMutexW(nullptr, FALSE, nullptr)); }};
constinit Operation<bool(Handle)> ReleaseMutex{
    [](Handle mutex) { return ::ReleaseMutex(Native(mutex)) != 0; }};

// A mutex whose holder's thread is gone is the waiter's like any other.
constinit Operation<std::uint32_t(Handle, std::uint32_t)> WaitForSingleObject{
    [](Handle handle, std::uint32_t milliseconds) -> std::uint32_t {
        const DWORD result = ::WaitForSingleObject(Native(handle), milliseconds);
        return result == WAIT_ABANDONED ? kWaitObject : result;
    }};

}  // namespace platform
