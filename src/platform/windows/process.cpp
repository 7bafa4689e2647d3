// Child processes.
//
// Inheritable handles would reach every child that any thread of the host starts meanwhile with inheritance
// on; ours get an explicit list instead, so that a child of ours holds its two streams and nothing of the
// host's.
#include "platform/process.h"

#include <cstddef>
#include <memory>
#include <mutex>

#include "platform/windows/native.h"

namespace platform {

namespace {

static_assert(kCreateNoWindow == CREATE_NO_WINDOW && kNormalPriorityClass == NORMAL_PRIORITY_CLASS &&
              kIdlePriorityClass == IDLE_PRIORITY_CLASS);
static_assert(kThreadPriorityIdle == THREAD_PRIORITY_IDLE &&
              kThreadPriorityNormal == THREAD_PRIORITY_NORMAL &&
              kThreadPriorityBelowNormal == THREAD_PRIORITY_BELOW_NORMAL &&
              kThreadPriorityAboveNormal == THREAD_PRIORITY_ABOVE_NORMAL);

// The attribute list that names the handles a child inherits. The handles are kept by address.
class InheritedHandles {
  public:
    explicit InheritedHandles(const ChildStreams& streams) {
        if (IsOpen(streams.output)) mHandles[mCount++] = Native(streams.output);
        if (IsOpen(streams.error) && streams.error != streams.output)
            mHandles[mCount++] = Native(streams.error);
    }
    ~InheritedHandles() {
        if (mList) ::DeleteProcThreadAttributeList(mList);
    }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;

    bool Build() {
        if (!Any()) return true;
        SIZE_T bytes = 0;
        ::InitializeProcThreadAttributeList(nullptr, 1, 0, &bytes);
        mStorage = std::make_unique<std::byte[]>(bytes);
        const auto list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(mStorage.get());
        if (!::InitializeProcThreadAttributeList(list, 1, 0, &bytes)) return false;
        mList = list;
        return ::UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, mHandles,
                                           mCount * sizeof(HANDLE), nullptr, nullptr) != 0;
    }

    bool Any() const { return mCount > 0; }
    LPPROC_THREAD_ATTRIBUTE_LIST List() const { return mList; }

  private:
    HANDLE mHandles[2] = {};
    std::size_t mCount = 0;
    std::unique_ptr<std::byte[]> mStorage;
    LPPROC_THREAD_ATTRIBUTE_LIST mList = nullptr;
};

bool StartChild(char16_t* commandLine, std::uint32_t flags, const ChildStreams& streams,
                ChildHandles* child) {
    InheritedHandles inherited(streams);
    if (!inherited.Build()) return false;
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    // Null would do on Windows itself; Wine puts the hidden console's input in its place, where a reader
    // waits for ever.
    startup.StartupInfo.hStdInput = INVALID_HANDLE_VALUE;
    startup.StartupInfo.hStdOutput = Native(streams.output);
    startup.StartupInfo.hStdError = Native(streams.error);
    startup.lpAttributeList = inherited.List();
    PROCESS_INFORMATION started{};
    // One at a time: where several threads start children at once, Wine now and then loses the way to its server ("sendmsg:
    // Socket operation on non-socket"), and a child stands still. Windows itself has no need of this.
    static std::mutex one;
    const std::lock_guard<std::mutex> held(one);
    if (!::CreateProcessW(nullptr, Native(commandLine), nullptr, nullptr, inherited.Any(),
                          flags | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &startup.StartupInfo,
                          &started))
        return false;
    child->process = FromNative(started.hProcess);
    child->thread = FromNative(started.hThread);
    return true;
}

// Asks the process object itself: a child may well end with the code that the system gives for a running one.
bool ExitCodeOfEnded(Handle process, std::uint32_t* exitCode) {
    const DWORD state = ::WaitForSingleObject(Native(process), 0);
    if (state == WAIT_TIMEOUT) ::SetLastError(ERROR_GEN_FAILURE);
    return state == WAIT_OBJECT_0 && ::GetExitCodeProcess(Native(process), Native(exitCode));
}

// This process joins a job that ends all its members once its last handle is closed. The only handle is never
// closed here, so the system does it when this process is gone.
bool JoinJob() {
    const HANDLE job = ::CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    return job && ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits) &&
           ::AssignProcessToJobObject(job, ::GetCurrentProcess());
}

}  // namespace

constinit Operation<bool(char16_t*, std::uint32_t, const ChildStreams&, ChildHandles*)> CreateProcessW{
    &StartChild};

constinit Operation<std::uint32_t(Handle)> SuspendThread{
    [](Handle thread) -> std::uint32_t { return ::SuspendThread(Native(thread)); }};

constinit Operation<std::uint32_t(Handle)> ResumeThread{
    [](Handle thread) -> std::uint32_t { return ::ResumeThread(Native(thread)); }};

constinit Operation<bool(Handle, std::int32_t)> SetThreadPriority{
    [](Handle thread, std::int32_t priority) { return ::SetThreadPriority(Native(thread), priority) != 0; }};

constinit Operation<bool(Handle, std::uint32_t)> SetPriorityClass{
    [](Handle process, std::uint32_t priorityClass) {
        return ::SetPriorityClass(Native(process), priorityClass) != 0;
    }};

constinit Operation<bool(std::int32_t, std::uint32_t)> SetOwnPriority{
    [](std::int32_t priority, std::uint32_t priorityClass) {
        return ::SetThreadPriority(::GetCurrentThread(), priority) &&
               ::SetPriorityClass(::GetCurrentProcess(), priorityClass);
    }};

constinit Operation<bool(Handle, std::uint32_t*)> GetExitCodeProcess{&ExitCodeOfEnded};

constinit Operation<bool(Handle)> TerminateProcess{
    [](Handle process) { return ::TerminateProcess(Native(process), 1) != 0; }};

constinit Operation<bool(std::uint64_t)> SetProcessAffinityMask{
    [](std::uint64_t mask) { return ::SetProcessAffinityMask(::GetCurrentProcess(), mask) != 0; }};

constinit Operation<bool()> EndChildrenWithMe{&JoinJob};

}  // namespace platform
