// A child process, shared by its process handle and its thread handle.
#pragma once

#include <sys/types.h>

#include <memory>
#include <mutex>
#include <optional>

#include "platform/posix/waitable.h"
#include "platform/process.h"

namespace platform::posix {

// The nice value of both halves together. It is a thread's own here, so every thread of the process gets it.
// False with errno.
bool SetNiceValue(pid_t process, std::int32_t priority, std::uint32_t priorityClass);

class Child {
  public:
    static constexpr std::uint32_t kNoCount = 0xFFFFFFFF;

    Child() = default;
    ~Child();  // hands a child that still runs to the service
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Before anything else: the process that this is. Takes no memory, so no child is lost for want of it.
    void Begin(pid_t id);

    std::uint32_t Wait(const Deadline& deadline);
    bool GetExitCode(std::uint32_t* exitCode);
    bool Terminate();

    // The former count, or kNoCount for a child that has ended.
    std::uint32_t Suspend();
    std::uint32_t Resume();

    bool SetThreadPriority(std::int32_t priority);
    bool SetPriorityClass(std::uint32_t priorityClass);

  private:
    bool HasEnded();
    void SleepUntilEnd(const Deadline& deadline);
    bool Apply(std::int32_t priority, std::uint32_t priorityClass);

    pid_t mId = 0;
    Descriptor mEnd;   // readable once the child has ended; none where the system has no such thing
    std::mutex mLock;  // over what follows
    bool mEnded = false;
    std::optional<std::uint32_t> mExitCode;  // none when the host took the child's end away
    std::uint32_t mSuspensions = 0;
    std::int32_t mThreadPriority = kThreadPriorityNormal;
    std::uint32_t mPriorityClass = kNormalPriorityClass;
};

class ChildHandle : public Waitable {
  public:
    explicit ChildHandle(std::shared_ptr<Child> child) : mChild(std::move(child)) {}
    // Before anything else: the process that this is. Takes no memory, so no child is lost for want of it.
    void Begin(pid_t id);

    std::uint32_t Wait(const Deadline& deadline) override { return mChild->Wait(deadline); }
    Child& Get() { return *mChild; }

  private:
    std::shared_ptr<Child> mChild;
};
class ProcessHandle final : public ChildHandle {
    using ChildHandle::ChildHandle;
};
class ThreadHandle final : public ChildHandle {
    using ChildHandle::ChildHandle;
};

}  // namespace platform::posix
