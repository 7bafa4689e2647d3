// A child process from its start to its end.
//
// Its id stays its own until its end has been taken notice of, which happens here and under the lock: a
// signal or a priority can't hit a stranger. The host needs no handler and may have one: a child whose end
// the host took notice of counts as ended, without an exit code.
#include "platform/posix/child.h"

#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "platform/error.h"
#include "platform/posix/native_error.h"
#include "platform/posix/service.h"
#include "platform/posix/tasks.h"
#include "platform/synchronisation.h"

namespace platform::posix {

namespace {

int NiceValueOf(std::int32_t priority, std::uint32_t priorityClass) {
    if (priorityClass == kIdlePriorityClass || priority <= kThreadPriorityIdle) return 19;
    return priority < kThreadPriorityNormal ? 5 : priority > kThreadPriorityNormal ? -5 : 0;
}

// Milliseconds left, rounded up, as poll takes them.
int LeftUntil(const Deadline& deadline, int most) {
    if (!deadline) return most;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, most));
}

}  // namespace

bool SetNiceValue(pid_t process, std::int32_t priority, std::uint32_t priorityClass) {
    const int nice = NiceValueOf(priority, priorityClass);
    return ForEachTask(process, [nice](pid_t task) {
        return setpriority(PRIO_PROCESS, static_cast<id_t>(task), nice) == 0;
    });
}

void Child::Begin(pid_t id) {
    mId = id;
    mEnd = Descriptor(RaiseDescriptor(static_cast<int>(syscall(SYS_pidfd_open, id, 0))));
}

Child::~Child() {
    if (mId && !HasEnded()) AdoptChild(mId);
}

// Under the lock.
bool Child::HasEnded() {
    if (mEnded) return true;
    siginfo_t end{};
    const int result = Retry([&] { return waitid(P_PID, static_cast<id_t>(mId), &end, WEXITED | WNOHANG); });
    mEnded = result == 0 ? end.si_pid != 0 : errno == ECHILD;
    if (mEnded && result == 0) {
        const auto status = static_cast<std::uint32_t>(end.si_status);
        mExitCode = end.si_code == CLD_EXITED ? status : 128 + status;
    }
    return mEnded;
}

void Child::SleepUntilEnd(const Deadline& deadline) {
    constexpr int kLong = 60000, kGlance = 5;
    pollfd end{mEnd.Get(), POLLIN, 0};  // a negative descriptor only passes the time
    poll(&end, 1, LeftUntil(deadline, mEnd ? kLong : kGlance));
}

std::uint32_t Child::Wait(const Deadline& deadline) {
    for (;;) {
        {
            const std::lock_guard lock(mLock);
            if (HasEnded()) return kWaitObject;
        }
        if (deadline && Clock::now() >= *deadline) return kWaitTimeout;
        SleepUntilEnd(deadline);
    }
}

bool Child::GetExitCode(std::uint32_t* exitCode) {
    const std::lock_guard lock(mLock);
    if (!HasEnded() || !mExitCode) return Fail(kErrorGeneral);
    *exitCode = *mExitCode;
    return true;
}

bool Child::Terminate() {
    const std::lock_guard lock(mLock);
    if (HasEnded()) return Fail(kErrorAccessDenied);
    return kill(mId, SIGKILL) == 0 ? true : FailWithErrno();
}

std::uint32_t Child::Suspend() {
    const std::lock_guard lock(mLock);
    if (HasEnded() || (mSuspensions == 0 && kill(mId, SIGSTOP) != 0)) {
        Fail(kErrorAccessDenied);
        return kNoCount;
    }
    return mSuspensions++;
}

std::uint32_t Child::Resume() {
    const std::lock_guard lock(mLock);
    if (HasEnded() || (mSuspensions == 1 && kill(mId, SIGCONT) != 0)) {
        Fail(kErrorAccessDenied);
        return kNoCount;
    }
    return mSuspensions ? mSuspensions-- : 0;
}

bool Child::SetThreadPriority(std::int32_t priority) {
    const std::lock_guard lock(mLock);
    return Apply(priority, mPriorityClass);
}

bool Child::SetPriorityClass(std::uint32_t priorityClass) {
    const std::lock_guard lock(mLock);
    return Apply(mThreadPriority, priorityClass);
}

// What could not be applied is not remembered either.
bool Child::Apply(std::int32_t priority, std::uint32_t priorityClass) {
    if (HasEnded()) return Fail(kErrorAccessDenied);
    if (!SetNiceValue(mId, priority, priorityClass)) return FailWithErrno();
    mThreadPriority = priority;
    mPriorityClass = priorityClass;
    return true;
}

}  // namespace platform::posix
