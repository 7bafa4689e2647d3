// What a child finds, what it leaves, and the host beside it.
#include "platform/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "platform/clock.h"
#include "platform/error.h"
#include "platform/owned_event.h"
#include "platform/program.h"
#include "platform/running_child.h"
#include "platform/unique_name.h"
#include "support/child.h"
#include "support/temp_folder.h"

using namespace platform;

namespace {

// A set of signals out of the process's status. Two numbers belong to the thread library
// alone, which nobody sets.
unsigned long long SignalsIn(const char* line) {
    constexpr unsigned long long kThreadLibrary = 3ull << 31;
    std::ifstream status("/proc/self/status");
    std::string text;
    while (std::getline(status, text)) {
        if (text.starts_with(line))
            return std::stoull(text.substr(text.find(':') + 1), nullptr, 16) & ~kThreadLibrary;
    }
    return ~0ull;
}

// A process of this one that has ended and that nobody has taken notice of.
bool HasZombie() {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream stat(entry.path() / "stat");
        std::string line;
        if (!std::getline(stat, line)) continue;
        const std::string rest = line.substr(line.rfind(')'));
        if (rest.starts_with(") Z " + std::to_string(getpid()) + " ")) return true;
    }
    return false;
}

int CountThreads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<int>(std::distance(begin(tasks), end(tasks)));
}

pid_t IdOf(RunningChild& child) {
    std::size_t length = 0;
    while (child.Output().find('\n') == std::string::npos && child.ReadOutput(++length)) {
    }
    return std::stoi(child.Output());
}

}  // namespace

CHILD_PROGRAM(print_descriptors) {
    std::string all;
    for (int number = 0; number < 1000; ++number) {
        if (fcntl(number, F_GETFD) >= 0) all += std::to_string(number) + " ";
    }
    WriteToStream(kStdOutput, all);
    return std::fgetc(stdin) == EOF ? 0 : 1;
}

CHILD_PROGRAM(print_signals) {
    WriteToStream(kStdOutput, SignalsIn("SigBlk") == 0 && SignalsIn("SigIgn") == 0 ? "default" : "changed");
    return 0;
}

CHILD_PROGRAM(print_session) {
    WriteToStream(kStdOutput, getsid(0) == getpid() && open("/dev/tty", O_RDWR) < 0 ? "own" : "shared");
    return 0;
}

// Writes its id and waits for the event in its argument.
CHILD_PROGRAM(print_id) {
    const OwnedEvent event = OpenByArgument(argv[0]);
    std::thread other([&] { WaitForSingleObject(event, kInfinite); });
    WriteToStream(kStdOutput, std::to_string(getpid()) + "\n");
    WaitForSingleObject(event, kInfinite);
    other.join();
    return 3;
}

CHILD_PROGRAM(kill_itself) {
    return raise(SIGKILL);
}

CHILD_PROGRAM(keep_to_first_processor) {
    const OwnedEvent event(CreateEventW(nullptr));
    int processors = 0;
    std::thread other([&] {
        WaitForSingleObject(event, kInfinite);
        cpu_set_t set;
        sched_getaffinity(0, sizeof set, &set);
        processors = CPU_ISSET(0, &set) ? CPU_COUNT(&set) : -1;
    });
    SetProcessAffinityMask(1);
    SetEvent(event);
    other.join();
    return processors;
}

TEST(PosixProcesses, have_three_descriptors_and_nothing_to_read) {
    const int stray = fcntl(2, F_DUPFD, 60);  // without the close-on-exec mark
    RunningChild child("print_descriptors");
    EXPECT_EQ(child.Finish(), 0u);
    EXPECT_EQ(child.Output(), "0 1 2 ");
    close(stray);
}

TEST(PosixProcesses, streams_may_be_the_hosts_own_in_any_order) {
    std::u16string line = child::CommandLine("print_descriptors");
    const TempFolder folder;
    const int one = dup(1), two = dup(2);
    const int out =
        open((std::string(std::filesystem::path(folder / u"out"))).c_str(), O_RDWR | O_CREAT, 0600);
    dup2(out, 2);
    ChildHandles child;
    const bool started = CreateProcessW(line.data(), 0, {2, 1}, &child);
    dup2(one, 1);
    dup2(two, 2);
    for (const int number : {one, two, out}) close(number);
    ASSERT_TRUE(started);
    EXPECT_EQ(WaitForSingleObject(child.process, kInfinite), kWaitObject);
    EXPECT_EQ(folder.Read(u"out"), "0 1 2 ");
    EXPECT_TRUE(CloseHandle(child.process));
    EXPECT_TRUE(CloseHandle(child.thread));
}

TEST(PosixProcesses, begin_with_default_signal_settings) {
    sigset_t some, former;
    sigemptyset(&some);
    sigaddset(&some, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &some, &former);
    const auto pipe = signal(SIGPIPE, SIG_IGN), interrupt = signal(SIGINT, SIG_IGN);
    {
        RunningChild child("print_signals");
        EXPECT_EQ(child.Finish(), 0u);
        EXPECT_EQ(child.Output(), "default");
    }
    signal(SIGPIPE, pipe);
    signal(SIGINT, interrupt);
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

TEST(PosixProcesses, have_no_terminal) {
    RunningChild child("print_session");
    child.Finish();
    EXPECT_EQ(child.Output(), "own");
}

TEST(PosixProcesses, what_may_not_be_run_does_not_start) {
    const TempFolder folder;
    std::u16string line = folder.Write(u"script", "#!/bin/sh\n");
    ChildHandles child;
    EXPECT_FALSE(CreateProcessW(line.data(), 0, {}, &child));
    EXPECT_EQ(GetLastError(), kErrorAccessDenied);
    EXPECT_EQ(child.process, kInvalidHandle);
    EXPECT_FALSE(HasZombie());
}

TEST(PosixProcesses, killed_by_a_signal_give_128_and_its_number) {
    EXPECT_EQ(RunningChild("kill_itself").Finish(), 128u + SIGKILL);
}

TEST(PosixProcesses, leave_no_zombie_and_no_thread_when_let_go) {
    const auto name = UniqueName("end");
    const OwnedEvent end = Create(name);
    const int threads = CountThreads();
    for (int i = 0; i < 3; ++i) {
        RunningChild child("print_id", name);
        IdOf(child);
        child.LetGo();
    }
    EXPECT_TRUE(SetEvent(end));
    while (HasZombie() || CountThreads() > threads || waitpid(-1, nullptr, WNOHANG | WNOWAIT) == 0) Sleep(1);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "this process has no child any more";
}

TEST(PosixProcesses, leave_no_zombie_when_they_had_ended_before_their_handles_were_closed) {
    {
        RunningChild child("print_session");
        child.ReadToEnd();
        while (!HasZombie()) Sleep(1);
        child.LetGo();
    }
    EXPECT_FALSE(HasZombie());
}

TEST(PosixProcesses, whose_end_the_host_noticed_first_count_as_ended) {
    RunningChild child("print_session");
    child.ReadToEnd();
    EXPECT_GT(waitpid(-1, nullptr, 0), 0);
    EXPECT_EQ(WaitForSingleObject(child.Process(), kInfinite), kWaitObject);
    std::uint32_t exitCode = 77;
    EXPECT_FALSE(GetExitCodeProcess(child.Process(), &exitCode));
    EXPECT_EQ(exitCode, 77u);
    EXPECT_FALSE(TerminateProcess(child.Process()));
    EXPECT_EQ(SuspendThread(child.Thread()), 0xFFFFFFFF);
}

TEST(PosixProcesses, of_a_host_that_ignores_their_end_count_as_ended) {
    const auto former = signal(SIGCHLD, SIG_IGN);
    {
        RunningChild child("print_session");
        child.ReadToEnd();
        EXPECT_EQ(WaitForSingleObject(child.Process(), kInfinite), kWaitObject);
    }
    signal(SIGCHLD, former);
}

TEST(PosixProcesses, have_one_nice_value_for_both_halves_of_a_priority) {
    struct Row {
        std::int32_t thread;
        std::uint32_t process;
        int nice;
    };
    const Row rows[] = {
        {kThreadPriorityNormal, kNormalPriorityClass, 0},
        {kThreadPriorityBelowNormal, kNormalPriorityClass, 5},
        {kThreadPriorityIdle, kNormalPriorityClass, 19},
        {kThreadPriorityIdle, kIdlePriorityClass, 19},
        {kThreadPriorityNormal, kIdlePriorityClass, 19},
        {kThreadPriorityBelowNormal, kNormalPriorityClass, 5},
        {kThreadPriorityNormal, kNormalPriorityClass, 0},
        {kThreadPriorityAboveNormal, kNormalPriorityClass, -5},
    };
    const auto name = UniqueName("end");
    const OwnedEvent end = Create(name);
    RunningChild child("print_id", name);
    const pid_t id = IdOf(child);
    int last = getpriority(PRIO_PROCESS, static_cast<id_t>(id));
    for (const Row& row : rows) {
        // Where the system does not let the child back up, its priority stays and the call says so.
        const bool mayRise =
            SetThreadPriority(child.Thread(), row.thread) && SetPriorityClass(child.Process(), row.process);
        const int nice = getpriority(PRIO_PROCESS, static_cast<id_t>(id));
        EXPECT_EQ(nice, mayRise ? row.nice : std::max(row.nice, last));
        for (const auto& task :
             std::filesystem::directory_iterator("/proc/" + std::to_string(id) + "/task")) {
            const auto number = static_cast<id_t>(std::stoi(task.path().filename()));
            EXPECT_EQ(getpriority(PRIO_PROCESS, number), nice);
        }
        last = nice;
    }
    EXPECT_TRUE(SetEvent(end));
    child.Finish();
}

// Tells by its exit code what every thread of it got.
CHILD_PROGRAM(step_back_with_a_thread) {
    const int before = getpriority(PRIO_PROCESS, 0);
    const bool lowered = SetOwnPriority(kThreadPriorityBelowNormal, kNormalPriorityClass);
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        const auto number = static_cast<id_t>(std::stoi(task.path().filename()));
        if (getpriority(PRIO_PROCESS, number) != std::max(before, 5)) return 1;
    }
    return lowered ? 0 : 2;
}

TEST(PosixProcesses, lower_all_their_own_threads_at_once) {
    EXPECT_EQ(RunningChild("step_back_with_a_thread").Finish(), 0u);
}

TEST(PosixProcesses, a_handle_of_the_other_kind_is_refused) {
    const auto name = UniqueName("end");
    const OwnedEvent end = Create(name);
    RunningChild child("print_id", name);
    EXPECT_FALSE(SetPriorityClass(child.Thread(), kNormalPriorityClass));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_FALSE(SetThreadPriority(child.Process(), kThreadPriorityNormal));
    EXPECT_EQ(SuspendThread(child.Process()), 0xFFFFFFFF);
    EXPECT_FALSE(TerminateProcess(child.Thread()));
    EXPECT_FALSE(TerminateProcess(child.OutputPipe()));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_TRUE(SetEvent(end));
    EXPECT_EQ(child.Finish(), 3u);
    EXPECT_FALSE(TerminateProcess(child.Process()));
}

TEST(PosixProcesses, keep_to_a_processor_with_all_their_threads) {
    EXPECT_EQ(RunningChild("keep_to_first_processor").Finish(), 1u);
}

// Bound children, from a program with strays and settings of its own.
CHILD_PROGRAM(bind_and_start) {
    if (!EndChildrenWithMe()) return 90;
    if (!EndChildrenWithMe()) return 91;
    signal(SIGPIPE, SIG_IGN);
    fcntl(2, F_DUPFD, 60);
    RunningChild descriptors("print_descriptors"), signals("print_signals"), session("print_session");
    if (descriptors.Finish() != 0 || descriptors.Output() != "0 1 2 ") return 1;
    if (signals.Finish() != 0 || signals.Output() != "default") return 2;
    if (session.Finish() != 0 || session.Output() != "own") return 3;
    std::u16string line = u"/none/such";
    ChildHandles child;
    if (CreateProcessW(line.data(), 0, {}, &child) || GetLastError() != kErrorPathNotFound) return 4;
    return HasZombie() ? 5 : 0;
}

TEST(PosixProcesses, bound_ones_are_like_any_others) {
    EXPECT_EQ(RunningChild("bind_and_start").Finish(), 0u);
}
