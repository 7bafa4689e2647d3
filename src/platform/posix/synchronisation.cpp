// Events, mutexes and the one wait for all of them.
#include "platform/synchronisation.h"

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/error.h"
#include "platform/posix/event.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_text.h"

namespace platform {

namespace posix {

Deadline DeadlineIn(std::uint32_t milliseconds) {
    if (milliseconds == kInfinite) return std::nullopt;
    return Clock::now() + std::chrono::milliseconds(milliseconds);
}

}  // namespace posix

using namespace posix;

namespace {

class PrivateEvent : public Event {
  public:
    PrivateEvent() : Event(&mOwnWord) {}

  private:
    EventWord mOwnWord = 0;
};

// A lock that knows its holder, so that nobody else can release it.
class Mutex : public Waitable {
  public:
    std::uint32_t Wait(const Deadline& deadline) override {
        std::unique_lock lock(mLock);
        const auto free = [this] { return mDepth == 0 || mHolder == std::this_thread::get_id(); };
        if (!deadline) {
            mReleased.wait(lock, free);
        } else if (!mReleased.wait_until(lock, *deadline, free)) {
            return kWaitTimeout;
        }
        mHolder = std::this_thread::get_id();
        ++mDepth;
        return kWaitObject;
    }

    bool Release() {
        constexpr std::uint32_t kErrorNotOwner = 288;
        const std::lock_guard lock(mLock);
        if (mDepth == 0 || mHolder != std::this_thread::get_id()) return Fail(kErrorNotOwner);
        if (--mDepth == 0) mReleased.notify_one();
        return true;
    }

  private:
    std::mutex mLock;
    std::condition_variable mReleased;
    std::thread::id mHolder;
    std::uint32_t mDepth = 0;
};

Handle HandleOrNull(std::unique_ptr<Event> event) {
    return event ? HandleOf(event.release()) : kNullHandle;
}

Handle Create(const char16_t* name) {
    if (name && *name) return HandleOrNull(CreateNamedEvent(Narrow(name)));
    Fail(kErrorSuccess);
    return HandleOf(new PrivateEvent);
}

Handle Open(const char16_t* name) {
    return HandleOrNull(OpenNamedEvent(Narrow(name)));
}

bool Set(Handle handle) {
    Event* const event = ObjectAs<Event>(handle);
    if (event) event->Set();
    return event;
}

bool Reset(Handle handle) {
    Event* const event = ObjectAs<Event>(handle);
    if (event) event->Reset();
    return event;
}

Handle NewMutex() {
    return HandleOf(new Mutex);
}

bool Release(Handle handle) {
    Mutex* const mutex = ObjectAs<Mutex>(handle);
    return mutex && mutex->Release();
}

std::uint32_t Wait(Handle handle, std::uint32_t milliseconds) {
    Waitable* const object = ObjectAs<Waitable>(handle);
    return object ? object->Wait(DeadlineIn(milliseconds)) : kWaitFailed;
}

}  // namespace

constinit Operation<Handle(const char16_t*)> CreateEventW{&Create};
constinit Operation<Handle(const char16_t*)> OpenEventW{&Open};
constinit Operation<bool(Handle)> SetEvent{&Set};
constinit Operation<bool(Handle)> ResetEvent{&Reset};
constinit Operation<Handle()> CreateMutexW{&NewMutex};
constinit Operation<bool(Handle)> ReleaseMutex{&Release};
constinit Operation<std::uint32_t(Handle, std::uint32_t)> WaitForSingleObject{&Wait};

}  // namespace platform
