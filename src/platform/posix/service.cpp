// All timers of the process on one thread.
//
// The ticks of a timer fall on whole multiples of its period on the system's clock, so any number of timers
// of one period costs the thread one wake-up per period. They stand in a map ordered by their next tick.
// The lock is not held during a tick; who removes a timer waits for the tick of that timer alone.
//
// The thread ends when it has nothing left to do, and whoever took away its last timer joins it, so that
// afterwards the process has the threads it had before. (Unless another timer's tick is just running: that
// is not waited for, and the thread ends by itself behind it.) Each thread knows its generation: one that
// was given up ends even when a new one has been started meanwhile. The signals of the host are blocked in
// it: they are the host's threads' affair.
#include "platform/posix/service.h"

#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/error.h"
#include "platform/posix/native_error.h"
#include "platform/posix/waitable.h"

namespace platform::posix {

namespace {

using namespace std::chrono_literals;

constexpr auto kChildrenInterval = 50ms;

struct Timer {
    Clock::duration period;
    TimerCallback callback;
    void* user;
};
using Tickets = std::map<std::pair<Clock::time_point, std::uint32_t>, Timer>;

Clock::time_point NextMultiple(Clock::duration period, Clock::time_point earliest) {
    const auto periods = (earliest.time_since_epoch() - Clock::duration(1)) / period;
    return Clock::time_point(period * (periods + 1));
}

// The host's signals are blocked while this lives, and in a thread started meanwhile for good.
class NoSignals {
  public:
    NoSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &mFormer);
    }
    ~NoSignals() { pthread_sigmask(SIG_SETMASK, &mFormer, nullptr); }
    NoSignals(const NoSignals&) = delete;
    NoSignals& operator=(const NoSignals&) = delete;

  private:
    sigset_t mFormer;
};

class Service {
  public:
    std::uint32_t Add(Clock::duration period, TimerCallback callback, void* user);
    bool Remove(std::uint32_t id);
    void Adopt(pid_t child);
    void Shutdown();

  private:
    using Lock = std::unique_lock<std::mutex>;

    bool IsIdle() const { return mTimers.empty() && mChildren.empty(); }
    Tickets::iterator Find(std::uint32_t id);
    bool EnsureThread(Lock& lock);
    void RetireThread(Lock& lock);
    void Run(std::uint64_t generation);
    void Tick(Lock& lock);
    void Sleep(Lock& lock);
    void ReapChildren();

    std::mutex mLock;
    std::condition_variable mWork;      // something for the thread has changed
    std::condition_variable mTickDone;  // the running tick is over
    std::thread mThread;
    std::uint64_t mGeneration = 0;
    bool mAlive = false;              // the thread of this generation has not ended by itself
    std::atomic<pid_t> mProcess = 0;  // that the thread belongs to
    std::uint32_t mLastId = 0;
    std::uint32_t mTicking = 0;  // the timer whose tick is running, or 0
    Tickets mTimers;             // by their next tick
    std::vector<pid_t> mChildren;
};

// Starts the thread unless it runs. A former one that ended by itself is only a handle to let go of.
bool Service::EnsureThread(Lock&) {
    if (mAlive) return true;
    if (mThread.joinable()) mThread.join();
    const NoSignals blocked;
    try {
        mThread = std::thread(&Service::Run, this, ++mGeneration);
        pthread_setname_np(mThread.native_handle(), "quavermill");
        mProcess = getpid();
        mAlive = true;
    } catch (const std::system_error&) {
    }
    return mAlive;
}

// Ends and joins the thread; the lock is free while it is waited for. From a tick it can't be joined: it
// will see for itself that there is nothing left.
void Service::RetireThread(Lock& lock) {
    if (!mThread.joinable() || mThread.get_id() == std::this_thread::get_id()) return;
    std::thread retired = std::move(mThread);
    ++mGeneration;
    mAlive = false;
    mWork.notify_all();
    lock.unlock();
    retired.join();
    lock.lock();
}

Tickets::iterator Service::Find(std::uint32_t id) {
    return std::find_if(mTimers.begin(), mTimers.end(),
                        [id](const auto& timer) { return timer.first.second == id; });
}

std::uint32_t Service::Add(Clock::duration period, TimerCallback callback, void* user) {
    Lock lock(mLock);
    do {
        ++mLastId;
    } while (mLastId == 0 || Find(mLastId) != mTimers.end());
    const std::uint32_t id = mLastId;
    const Clock::time_point due = NextMultiple(period, Clock::now() + period);
    Tickets timer;
    timer.emplace(std::pair(due, id), Timer{period, callback, user});
    if (!EnsureThread(lock)) return 0;
    mTimers.merge(timer);
    mWork.notify_all();
    return id;
}

bool Service::Remove(std::uint32_t id) {
    Lock lock(mLock);
    const auto found = Find(id);
    if (found == mTimers.end()) return Fail(kErrorInvalidParameter);
    mTimers.erase(found);
    if (mThread.get_id() == std::this_thread::get_id()) return true;
    mTickDone.wait(lock, [&] { return mTicking != id; });
    if (IsIdle() && mTicking == 0) RetireThread(lock);
    return true;
}

// Without a thread the child is looked at again with the next one that is adopted.
void Service::Adopt(pid_t child) {
    Lock lock(mLock);
    mChildren.push_back(child);
    ReapChildren();
    if (IsIdle()) return;
    EnsureThread(lock);
    mWork.notify_all();
}

void Service::ReapChildren() {
    std::erase_if(mChildren, [](pid_t child) {
        const pid_t result = Retry([&] { return waitpid(child, nullptr, WNOHANG); });
        return result == child || (result < 0 && errno == ECHILD);
    });
}

// A fork of the host that ends without an exec has this object and its lock as they
// happened to be, but no thread.
void Service::Shutdown() {
    if (mProcess != getpid()) return;
    Lock lock(mLock);
    mTimers.clear();
    ReapChildren();
    std::vector<pid_t>().swap(mChildren);  // assigning {} would keep its memory
    RetireThread(lock);
}

// The last error is touched first: the storage of a thread's own variables is then there before a library
// that is being unloaded could hold the lock which making it takes.
void Service::Run(std::uint64_t generation) {
    Fail(kErrorSuccess);
    Lock lock(mLock);
    while (generation == mGeneration && !IsIdle()) {
        if (!mTimers.empty() && mTimers.begin()->first.first <= Clock::now()) {
            Tick(lock);
        } else {
            ReapChildren();
            if (!IsIdle()) Sleep(lock);
        }
    }
    if (generation == mGeneration) mAlive = false;
}

// Moving the timer on takes no memory: there is nobody here to tell that there is none.
void Service::Tick(Lock& lock) {
    auto node = mTimers.extract(mTimers.begin());
    const Timer timer = node.mapped();
    auto& [due, id] = node.key();
    due = NextMultiple(timer.period, std::max(due + timer.period, Clock::now()));
    mTicking = id;
    mTimers.insert(std::move(node));
    lock.unlock();
    timer.callback(timer.user);
    lock.lock();
    mTicking = 0;
    mTickDone.notify_all();
}

void Service::Sleep(Lock& lock) {
    Clock::time_point until = Clock::time_point::max();
    if (!mTimers.empty()) until = mTimers.begin()->first.first;
    if (!mChildren.empty()) until = std::min(until, Clock::now() + kChildrenInterval);
    mWork.wait_until(lock, until);
}

// Made on first use and never destroyed, so that whoever still ends a timer while the
// program goes down finds it.
Service& TheService() {
    union Storage {
        Service service;
        Storage() : service() {}
        ~Storage() {}
    };
    static Storage storage;
    return storage.service;
}

__attribute__((destructor)) void EndService() {
    TheService().Shutdown();
}

}  // namespace

std::uint32_t AddTimer(std::uint32_t periodMs, TimerCallback callback, void* user) {
    return TheService().Add(std::chrono::milliseconds(periodMs), callback, user);
}

bool RemoveTimer(std::uint32_t timer) {
    return TheService().Remove(timer);
}

void AdoptChild(pid_t child) noexcept {
    try {
        TheService().Adopt(child);
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace platform::posix
