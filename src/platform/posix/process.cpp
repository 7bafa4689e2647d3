// Child processes.
#include "platform/process.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include "platform/error.h"
#include "platform/posix/child.h"
#include "platform/posix/command_line.h"
#include "platform/posix/launch.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"
#include "platform/posix/tasks.h"

namespace platform {

using namespace posix;

namespace {

// Placing one stream must not overwrite the other, so a stream that is one of the three standard ones goes
// by a copy further up. That copy is what this owns.
class StreamForChild {
  public:
    explicit StreamForChild(Handle stream) : mNumber(DescriptorOf(stream)) {
        if (mNumber < 0 || mNumber >= kFirstDescriptor) return;
        mCopy = Descriptor(fcntl(mNumber, F_DUPFD_CLOEXEC, kFirstDescriptor));
        mNumber = mCopy.Get();
    }
    int Get() const { return mNumber; }

  private:
    int mNumber;
    Descriptor mCopy;
};

bool Create(char16_t* commandLine, std::uint32_t flags, const ChildStreams& streams, ChildHandles* child) {
    const StreamForChild output(streams.output), error(streams.error);
    Launch launch{{}, output.Get(), error.Get()};
    for (const std::u16string& argument : SplitCommandLine(commandLine)) {
        launch.arguments.push_back(Narrow(argument.c_str()));
    }
    const auto shared = std::make_shared<Child>();
    auto process = std::make_unique<ProcessHandle>(shared);
    auto thread = std::make_unique<ThreadHandle>(shared);
    const pid_t id = Start(launch);
    if (id < 0) return FailOnPath(launch.arguments[0]);
    shared->Begin(id);
    if (flags & kIdlePriorityClass) shared->SetPriorityClass(kIdlePriorityClass);
    child->process = HandleOf(process.release());
    child->thread = HandleOf(thread.release());
    return true;
}

std::uint32_t Suspend(Handle handle) {
    ThreadHandle* const thread = ObjectAs<ThreadHandle>(handle);
    return thread ? thread->Get().Suspend() : Child::kNoCount;
}

std::uint32_t Resume(Handle handle) {
    ThreadHandle* const thread = ObjectAs<ThreadHandle>(handle);
    return thread ? thread->Get().Resume() : Child::kNoCount;
}

bool SetPriority(Handle handle, std::int32_t priority) {
    ThreadHandle* const thread = ObjectAs<ThreadHandle>(handle);
    return thread && thread->Get().SetThreadPriority(priority);
}

bool SetClass(Handle handle, std::uint32_t priorityClass) {
    ProcessHandle* const process = ObjectAs<ProcessHandle>(handle);
    return process && process->Get().SetPriorityClass(priorityClass);
}

bool SetOwn(std::int32_t priority, std::uint32_t priorityClass) {
    return SetNiceValue(getpid(), priority, priorityClass) ? true : FailWithErrno();
}

bool ExitCode(Handle handle, std::uint32_t* exitCode) {
    ProcessHandle* const process = ObjectAs<ProcessHandle>(handle);
    return process && process->Get().GetExitCode(exitCode);
}

bool Terminate(Handle handle) {
    ProcessHandle* const process = ObjectAs<ProcessHandle>(handle);
    return process && process->Get().Terminate();
}

bool SetAffinity(std::uint64_t mask) {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    for (std::size_t i = 0; i < 64; ++i) {
        if (mask >> i & 1) CPU_SET(i, &processors);
    }
    const auto apply = [&](pid_t task) {
        return sched_setaffinity(task, sizeof processors, &processors) == 0;
    };
    return ForEachTask(getpid(), apply) ? true : FailWithErrno();
}

bool BindChildren() {
    return BindChildrenToThisProcess() ? true : FailWithErrno();
}

}  // namespace

constinit Operation<bool(char16_t*, std::uint32_t, const ChildStreams&, ChildHandles*)> CreateProcessW{
    &Create};
constinit Operation<std::uint32_t(Handle)> SuspendThread{&Suspend};
constinit Operation<std::uint32_t(Handle)> ResumeThread{&Resume};
constinit Operation<bool(Handle, std::int32_t)> SetThreadPriority{&SetPriority};
constinit Operation<bool(Handle, std::uint32_t)> SetPriorityClass{&SetClass};
constinit Operation<bool(std::int32_t, std::uint32_t)> SetOwnPriority{&SetOwn};
constinit Operation<bool(Handle, std::uint32_t*)> GetExitCodeProcess{&ExitCode};
constinit Operation<bool(Handle)> TerminateProcess{&Terminate};
constinit Operation<bool(std::uint64_t)> SetProcessAffinityMask{&SetAffinity};
constinit Operation<bool()> EndChildrenWithMe{&BindChildren};

}  // namespace platform
