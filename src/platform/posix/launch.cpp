// Starting a program, in two ways.
//
// As a rule by posix_spawn, which copies nothing of the host's memory. A child that is to end with this
// process has to ask the system for that itself, between fork and exec; and the system means the end of the
// thread that forked. So one thread, made for this and never ended, does it.
//
// This code stands in a process twice when a program of ours uses the library, and the program's choice
// has to reach the library's children. The two know nothing of each other but share the environment, so
// that is where the choice is kept, with the id of the process that made it: its children inherit the
// variable, not the meaning.
#include "platform/posix/launch.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>

#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"

namespace platform::posix {

namespace {

constexpr const char* kNothing = "/dev/null";

std::vector<char*> PointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

// The settings of a posix_spawn, each of which may fail for want of memory.
class SpawnPlan {
  public:
    explicit SpawnPlan(const Launch& launch) {
        Need(posix_spawn_file_actions_init(&mActions));
        Need(posix_spawnattr_init(&mAttributes));
        Need(posix_spawn_file_actions_addopen(&mActions, 0, kNothing, O_RDONLY, 0));
        PlanStream(launch.output, 1);
        PlanStream(launch.error, 2);
        Need(posix_spawn_file_actions_addclosefrom_np(&mActions, kFirstDescriptor));
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        Need(posix_spawnattr_setsigmask(&mAttributes, &none));
        Need(posix_spawnattr_setsigdefault(&mAttributes, &all));
        Need(posix_spawnattr_setflags(&mAttributes,
                                      POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID));
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&mActions);
        posix_spawnattr_destroy(&mAttributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    pid_t Run(char* const* arguments) {
        pid_t child = -1;
        if (mError == 0)
            mError = posix_spawn(&child, arguments[0], &mActions, &mAttributes, arguments, environ);
        errno = mError;
        return mError == 0 ? child : -1;
    }

  private:
    void Need(int error) {
        if (mError == 0) mError = error;
    }
    void PlanStream(int from, int to) {
        Need(from >= 0 ? posix_spawn_file_actions_adddup2(&mActions, from, to)
                       : posix_spawn_file_actions_addopen(&mActions, to, kNothing, O_WRONLY, 0));
    }

    posix_spawn_file_actions_t mActions;
    posix_spawnattr_t mAttributes;
    int mError = 0;
};

bool PlaceStream(int from, int to) {
    if (from < 0) from = open(kNothing, to == 0 ? O_RDONLY : O_WRONLY);
    return from == to || dup2(from, to) == to;
}

void RestoreSignals() {
    for (int number = 1; number < NSIG; ++number) signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// In the child of a fork: nothing here may take memory or a lock. The reason for a failure goes through
// `report`, which a successful exec closes.
[[noreturn]] void Become(const Launch& launch, char* const* arguments, pid_t parent, int report) {
    constexpr int kReport = kFirstDescriptor;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    setsid();
    const bool placed = PlaceStream(-1, 0) && PlaceStream(launch.output, 1) && PlaceStream(launch.error, 2);
    if (report != kReport) dup3(report, kReport, O_CLOEXEC);
    closefrom(kReport + 1);
    RestoreSignals();
    if (placed) execve(arguments[0], arguments, environ);
    const int reason = errno;
    _exit(write(kReport, &reason, sizeof reason) == sizeof reason ? 1 : 2);
}

// With all signals blocked, so that no handler of the host runs in the child.
pid_t ForkBound(const Launch& launch) {
    const std::vector<char*> arguments = PointersTo(launch.arguments);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return -1;
    const Descriptor reader(ends[0]);
    Descriptor writer(RaiseDescriptor(ends[1]));
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) Become(launch, arguments.data(), parent, writer.Get());
    if (child < 0) return -1;
    writer = {};
    int reason = 0;
    if (Retry([&] { return read(reader.Get(), &reason, sizeof reason); }) <= 0) return child;
    Retry([&] { return waitpid(child, nullptr, 0); });
    errno = reason;
    return -1;
}

// The thread that the bound children belong to. It takes one launch at a time.
class Keeper {
  public:
    void Run() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, nullptr);
        std::unique_lock lock(mLock);
        for (;;) {
            mChanged.wait(lock, [this] { return mLaunch; });
            mChild = ForkBound(*mLaunch);
            mReason = errno;
            mLaunch = nullptr;
            mChanged.notify_all();
        }
    }

    pid_t Start(const Launch& launch) {
        const std::lock_guard turn(mTurn);
        std::unique_lock lock(mLock);
        mLaunch = &launch;
        mChanged.notify_all();
        mChanged.wait(lock, [this] { return !mLaunch; });
        errno = mReason;
        return mChild;
    }

  private:
    std::mutex mTurn, mLock;
    std::condition_variable mChanged;
    const Launch* mLaunch = nullptr;
    pid_t mChild = -1;
    int mReason = 0;
};

// A library whose code a thread runs for ever can't be unloaded. This has no effect on a program.
void StayLoaded() {
    Dl_info self{};
    if (dladdr(reinterpret_cast<void*>(&StayLoaded), &self)) {
        dlopen(self.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    }
}

// Started with the first child that needs it; it lives as long as the process, as its thread does. Null
// with errno when there is no room for a thread.
Keeper* TheKeeper() {
    static std::mutex lock;
    static Keeper* keeper = nullptr;
    const std::lock_guard turn(lock);
    if (keeper) return keeper;
    StayLoaded();
    auto fresh = std::make_unique<Keeper>();
    try {
        std::thread(&Keeper::Run, fresh.get()).detach();
    } catch (const std::system_error&) {
        errno = EAGAIN;
        return nullptr;
    }
    return keeper = fresh.release();
}

constexpr const char* kBoundTo = "QUAVERMILL_CHILDREN_END_WITH";

bool ChildrenAreBound() {
    const char* const id = getenv(kBoundTo);
    return id && id == std::to_string(getpid());
}

}  // namespace

pid_t Start(const Launch& launch) {
    if (ChildrenAreBound()) {
        Keeper* const keeper = TheKeeper();
        return keeper ? keeper->Start(launch) : -1;
    }
    const std::vector<char*> arguments = PointersTo(launch.arguments);
    return SpawnPlan(launch).Run(arguments.data());
}

bool BindChildrenToThisProcess() {
    return setenv(kBoundTo, std::to_string(getpid()).c_str(), 1) == 0;
}

}  // namespace platform::posix
