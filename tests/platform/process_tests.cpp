// Child processes: what reaches them, what comes back, and how they are held, driven and ended.
#include "platform/process.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "owned_event.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/pipe.h"
#include "platform/program.h"
#include "platform/synchronisation.h"
#include "running_child.h"
#include "support/child.h"
#include "support/temp_folder.h"
#include "unique_name.h"

using namespace platform;

namespace {

constexpr std::uint32_t kNoCount = 0xFFFFFFFF;

std::u16string Widen(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

// An event that a child opens by name.
struct Signal {
    explicit Signal(const char* what) : name(UniqueName(what)), event(CreateEventW(name.c_str())) {}

    const std::u16string name;
    const OwnedEvent event;
};

// Fails to start, and leaves what it was given alone.
std::uint32_t ErrorOfStarting(std::u16string line) {
    ChildHandles child{77, 78};
    EXPECT_FALSE(CreateProcessW(line.data(), kCreateNoWindow, {}, &child));
    EXPECT_EQ(child.process, 77);
    EXPECT_EQ(child.thread, 78);
    return GetLastError();
}

bool VanishesWithItsHolders(const std::u16string& name) {
    for (;; Sleep(1)) {
        const OwnedEvent event(OpenEventW(name.c_str()));
        if (!event) return GetLastError() == kErrorFileNotFound;
    }
}

}  // namespace

CHILD_PROGRAM(greet) {
    WriteToStream(kStdOutput, "to the output");
    WriteToStream(kStdError, "to the errors");
    return 42;
}

CHILD_PROGRAM(print_arguments) {
    for (int i = 0; i < argc; ++i) WriteToStream(kStdOutput, std::string("[") + argv[i] + "]");
    return argc;
}

CHILD_PROGRAM(print_surroundings) {
    WriteToStream(kStdOutput, std::filesystem::current_path().string());
    const char* const path = std::getenv("PATH");
    WriteToStream(kStdError, path ? path : "none");
    return 0;
}

CHILD_PROGRAM(flood) {
    for (int i = 0; i < 1024; ++i) {
        if (!WriteToStream(kStdOutput, std::string(1024, 'o'))) return 1;
        if (!WriteToStream(kStdError, std::string(1024, 'e'))) return 2;
    }
    return 0;
}

// Says that it is there, and ends when the event in its argument is set.
CHILD_PROGRAM(await_event) {
    const OwnedEvent event = OpenByArgument(argv[0]);
    WriteToStream(kStdOutput, "r");
    return WaitForSingleObject(event, kInfinite) == kWaitObject ? 5 : 6;
}

// Looks for the event again and again, so that only a thread that runs notices it.
CHILD_PROGRAM(poll_event) {
    const OwnedEvent event = OpenByArgument(argv[0]);
    WriteToStream(kStdOutput, "r");
    while (WaitForSingleObject(event, 0) != kWaitObject) Sleep(1);
    return 5;
}

TEST(Processes, have_two_streams_and_an_exit_code) {
    RunningChild child("greet");
    EXPECT_EQ(child.Finish(), 42u);
    EXPECT_EQ(child.Output(), "to the output");
    EXPECT_EQ(child.Errors(), "to the errors");
}

TEST(Processes, get_their_arguments_as_Windows_programs_read_a_line) {
    struct Row {
        const char16_t* line;
        const char* arguments;
    };
    const Row rows[] = {
        {u"", ""},
        {u"one  two\tthree ", "[one][two][three]"},
        {u"\"one two\" three", "[one two][three]"},
        {u"-a=\"b c\"d", "[-a=b cd]"},
        {u"\"\" x", "[][x]"},
        {u"a\\b \\ c:\\d\\", "[a\\b][\\][c:\\d\\]"},
        {u"\\\"a\\\"", "[\"a\"]"},
        {u"\"a\\\\\" b", "[a\\][b]"},
        {u"\"a\\\\\\\"b\" c", "[a\\\"b][c]"},
        {u"a\\\\b", "[a\\\\b]"},
    };
    for (const Row& row : rows) {
        RunningChild child("print_arguments", row.line);
        child.Finish();
        EXPECT_EQ(child.Output(), row.arguments);
    }
}

TEST(Processes, share_folder_and_environment) {
    RunningChild child("print_surroundings");
    EXPECT_EQ(child.Finish(), 0u);
    EXPECT_EQ(child.Output(), std::filesystem::current_path().string());
    EXPECT_EQ(child.Errors(), std::getenv("PATH"));
}

TEST(Processes, a_megabyte_on_both_streams_arrives_whole) {
    RunningChild child("flood");
    EXPECT_EQ(child.Finish(), 0u);
    EXPECT_TRUE(child.Output() == std::string(1 << 20, 'o')) << child.Output().size();
    EXPECT_TRUE(child.Errors() == std::string(1 << 20, 'e')) << child.Errors().size();
}

TEST(Processes, what_is_no_program_does_not_start) {
    const TempFolder folder;
    EXPECT_EQ(ErrorOfStarting(u"\"" + (folder / u"none.exe") + u"\" -argument"), kErrorFileNotFound);
    ErrorOfStarting(u"\"" + folder.Write(u"text.exe", "just text") + u"\"");
    ErrorOfStarting(u"\"" + folder.Path() + u"\"");
}

TEST(Processes, a_handle_is_signalled_by_the_end_alone) {
    Signal end("end");
    RunningChild child("await_event", end.name);
    ASSERT_TRUE(child.ReadOutput(1));
    std::uint32_t exitCode = 77;
    EXPECT_EQ(WaitForSingleObject(child.Process(), 0), kWaitTimeout);
    EXPECT_EQ(WaitForSingleObject(child.Process(), 20), kWaitTimeout);
    EXPECT_FALSE(GetExitCodeProcess(child.Process(), &exitCode));
    EXPECT_EQ(exitCode, 77u);
    std::thread waiter([&] { EXPECT_EQ(WaitForSingleObject(child.Process(), kInfinite), kWaitObject); });
    EXPECT_TRUE(SetEvent(end.event));
    EXPECT_EQ(WaitForSingleObject(child.Process(), 600000), kWaitObject);
    waiter.join();
    EXPECT_EQ(WaitForSingleObject(child.Process(), 0), kWaitObject);
    EXPECT_TRUE(GetExitCodeProcess(child.Process(), &exitCode));
    EXPECT_EQ(exitCode, 5u);
}

TEST(Processes, leave_what_they_wrote_behind_them) {
    RunningChild child("greet");
    EXPECT_EQ(WaitForSingleObject(child.Process(), kInfinite), kWaitObject);
    child.ReadToEnd();
    EXPECT_EQ(child.Output(), "to the output");
    EXPECT_EQ(child.Errors(), "to the errors");
}

TEST(Processes, can_be_ended) {
    Signal end("end");
    RunningChild child("await_event", end.name);
    ASSERT_TRUE(child.ReadOutput(1));
    EXPECT_TRUE(TerminateProcess(child.Process()));
    EXPECT_NE(child.Finish(), 5u);
}

TEST(Processes, one_that_is_suspended_stands_still) {
    Signal end("end");
    RunningChild child("poll_event", end.name);
    ASSERT_TRUE(child.ReadOutput(1));
    EXPECT_EQ(SuspendThread(child.Thread()), 0u);
    EXPECT_TRUE(SetEvent(end.event));
    // Running, it would end within a few milliseconds.
    EXPECT_EQ(WaitForSingleObject(child.Process(), 300), kWaitTimeout);
    EXPECT_EQ(ResumeThread(child.Thread()), 1u);
    EXPECT_EQ(child.Finish(), 5u);
}

TEST(Processes, suspensions_are_counted) {
    Signal end("end");
    RunningChild child("poll_event", end.name);
    ASSERT_TRUE(child.ReadOutput(1));
    EXPECT_EQ(ResumeThread(child.Thread()), 0u);
    EXPECT_EQ(SuspendThread(child.Thread()), 0u);
    EXPECT_EQ(SuspendThread(child.Thread()), 1u);
    EXPECT_EQ(SuspendThread(child.Thread()), 2u);
    EXPECT_EQ(ResumeThread(child.Thread()), 3u);
    EXPECT_EQ(ResumeThread(child.Thread()), 2u);
    EXPECT_TRUE(SetEvent(end.event));
    EXPECT_EQ(WaitForSingleObject(child.Process(), 50), kWaitTimeout);
    EXPECT_EQ(ResumeThread(child.Thread()), 1u);
    EXPECT_EQ(child.Finish(), 5u);
}

TEST(Processes, a_suspended_one_can_be_ended) {
    Signal end("end");
    RunningChild child("poll_event", end.name);
    ASSERT_TRUE(child.ReadOutput(1));
    EXPECT_EQ(SuspendThread(child.Thread()), 0u);
    EXPECT_TRUE(TerminateProcess(child.Process()));
    EXPECT_EQ(WaitForSingleObject(child.Process(), kInfinite), kWaitObject);
}

TEST(Processes, their_priority_can_be_lowered_step_by_step) {
    Signal end("end");
    RunningChild child("await_event", end.name);
    EXPECT_TRUE(SetThreadPriority(child.Thread(), kThreadPriorityNormal));
    EXPECT_TRUE(SetPriorityClass(child.Process(), kNormalPriorityClass));
    EXPECT_TRUE(SetThreadPriority(child.Thread(), kThreadPriorityBelowNormal));
    EXPECT_TRUE(SetPriorityClass(child.Process(), kNormalPriorityClass));
    EXPECT_TRUE(SetThreadPriority(child.Thread(), kThreadPriorityIdle));
    EXPECT_TRUE(SetPriorityClass(child.Process(), kIdlePriorityClass));
    EXPECT_TRUE(SetEvent(end.event));
    EXPECT_EQ(child.Finish(), 5u);
}

TEST(Processes, that_are_none_are_refused) {
    std::uint32_t exitCode = 77;
    EXPECT_EQ(SuspendThread(kNullHandle), kNoCount);
    EXPECT_EQ(ResumeThread(kNullHandle), kNoCount);
    EXPECT_FALSE(SetThreadPriority(kNullHandle, kThreadPriorityNormal));
    EXPECT_FALSE(SetPriorityClass(kNullHandle, kNormalPriorityClass));
    EXPECT_FALSE(GetExitCodeProcess(kNullHandle, &exitCode));
    EXPECT_FALSE(TerminateProcess(kNullHandle));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_EQ(exitCode, 77u);
}

TEST(Processes, nothing_but_the_two_streams_reaches_them) {
    Signal end("end");
    Handle reader = kInvalidHandle, writer = kInvalidHandle, fit = kInvalidHandle;
    ASSERT_TRUE(CreatePipe(&reader, &writer));
    ASSERT_TRUE(DuplicateHandle(writer, &fit));  // fit for a child, but not given to this one
    RunningChild child("await_event", end.name);
    ASSERT_TRUE(child.ReadOutput(1));
    EXPECT_TRUE(CloseHandle(fit));
    std::uint32_t available = 0;
    EXPECT_FALSE(PeekNamedPipe(reader, &available)) << "the child holds the pipe open";
    EXPECT_TRUE(CloseHandle(reader));
    EXPECT_TRUE(SetEvent(end.event));
    EXPECT_EQ(child.Finish(), 5u);
}

TEST(Processes, one_stream_may_serve_as_both) {
    Handle reader = kInvalidHandle, writer = kInvalidHandle, both = kInvalidHandle;
    ASSERT_TRUE(CreatePipe(&reader, &writer));
    ASSERT_TRUE(DuplicateHandle(writer, &both));
    std::u16string line = child::CommandLine("greet");
    ChildHandles child;
    ASSERT_TRUE(CreateProcessW(line.data(), kCreateNoWindow, {both, both}, &child));
    for (const Handle handle : {both, child.process, child.thread}) EXPECT_TRUE(CloseHandle(handle));
    std::string all(100, '\0');
    std::uint32_t read = 0, length = 0;
    while (ReadFile(reader, all.data() + length, 100 - length, &read)) length += read;
    EXPECT_EQ(all.substr(0, length), "to the outputto the errors");
    EXPECT_TRUE(CloseHandle(reader));
}

TEST(Processes, go_on_when_their_handles_are_closed) {
    Signal end("end");
    RunningChild child("await_event", end.name);
    ASSERT_TRUE(child.ReadOutput(1));
    child.LetGo();
    EXPECT_TRUE(SetEvent(end.event));
    child.ReadToEnd();
    EXPECT_EQ(child.Output(), "r");
}

CHILD_PROGRAM(take_first_processor) {
    return SetProcessAffinityMask(1) ? 0 : 1;
}
CHILD_PROGRAM(take_no_processor) {
    return SetProcessAffinityMask(0) ? 0 : 1;
}

CHILD_PROGRAM(step_back) {
    return SetOwnPriority(kThreadPriorityBelowNormal, kNormalPriorityClass) &&
                   SetOwnPriority(kThreadPriorityIdle, kIdlePriorityClass)
               ? 0
               : 1;
}

TEST(Processes, may_lower_their_own_priority) {
    EXPECT_EQ(RunningChild("step_back").Finish(), 0u);
}

TEST(Processes, may_keep_to_one_processor_but_not_to_none) {
    EXPECT_EQ(RunningChild("take_first_processor").Finish(), 0u);
    EXPECT_EQ(RunningChild("take_no_processor").Finish(), 1u);
}

// Holds the first event in its arguments for ever, once it has set the second.
CHILD_PROGRAM(live_on) {
    const OwnedEvent alive = Create(Widen(argv[0]));
    SetEvent(OpenByArgument(argv[1]));
    for (;;) Sleep(10);
}

// Starts live_on from a thread that ends, then waits to be killed.
CHILD_PROGRAM(bind_children) {
    if (!EndChildrenWithMe()) return 1;
    std::thread([&] {
        std::u16string line = child::CommandLine("live_on", Widen(argv[0]) + u" " + Widen(argv[1]));
        ChildHandles child;
        WriteToStream(kStdOutput, CreateProcessW(line.data(), kCreateNoWindow, {}, &child) ? "s" : "f");
    }).join();
    std::u16string line = u"\"" + Widen(argv[2]) + u"\"";
    ChildHandles child;
    const bool refused = !CreateProcessW(line.data(), kCreateNoWindow, {}, &child);
    WriteToStream(kStdOutput, refused && GetLastError() == kErrorFileNotFound ? "m" : "?");
    for (;;) Sleep(10);
}

TEST(Processes, bound_children_end_with_a_killed_parent_and_not_with_the_thread_that_started_them) {
    Signal there("there");
    const TempFolder folder;
    const auto alive = UniqueName("alive");
    {
        RunningChild child("bind_children", alive + u" " + there.name + u" \"" + (folder / u"none") + u"\"");
        ASSERT_TRUE(child.ReadOutput(2));
        EXPECT_EQ(child.Output(), "sm");
        EXPECT_EQ(WaitForSingleObject(there.event, kInfinite), kWaitObject);
        EXPECT_TRUE(OwnedEvent(OpenEventW(alive.c_str())));
        EXPECT_TRUE(TerminateProcess(child.Process()));
    }
    EXPECT_TRUE(VanishesWithItsHolders(alive));
}
