// Memory that runs out in the middle of an operation: what it had begun is undone.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "platform/synchronisation.h"
#include "platform/unique_name.h"
#include "support/allocation_faults.h"
#include "support/child.h"
#include "support/handle_gauge.h"
#include "support/temp_folder.h"

using namespace platform;

CHILD_PROGRAM(do_nothing) {
    return 0;
}

TEST(PosixMemory, a_child_is_held_or_was_never_started) {
    const HandleGauge before;
    const std::u16string line = child::CommandLine("do_nothing");
    const auto start = [&](std::u16string own) {
        ChildHandles child;
        if (!CreateProcessW(own.data(), kCreateNoWindow, {}, &child)) return;
        WaitForSingleObject(child.process, kInfinite);
        CloseHandle(child.process);
        CloseHandle(child.thread);
    };
    EXPECT_GT(FailEachAllocation([&] { start(line); }), 3);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    EXPECT_TRUE(HandleGauge() == before);
}

TEST(PosixMemory, a_named_event_is_there_or_its_name_is_free) {
    const HandleGauge before;
    const auto name = UniqueName("event");
    EXPECT_GT(FailEachAllocation([&] {
                  const Handle event = CreateEventW(name.c_str());
                  if (event) CloseHandle(event);
              }),
              2);
    EXPECT_EQ(OpenEventW(name.c_str()), kNullHandle);
    EXPECT_TRUE(HandleGauge() == before);
}

TEST(PosixMemory, a_walk_or_a_key_is_open_or_nothing_is) {
    const HandleGauge before;
    const TempFolder folder;
    folder.Write(u"entry");
    const std::u16string pattern = folder / u"*";
    EXPECT_GT(FailEachAllocation([&] {
                  FindData data;
                  const Handle search = FindFirstFileW(pattern.c_str(), &data);
                  if (search != kInvalidHandle) FindClose(search);
              }),
              2);
    EXPECT_GT(FailEachAllocation([&] {
                  Handle key = kNullHandle;
                  if (RegCreateKeyExW(u"key\\of\\memory", kKeyWrite, &key) == 0) RegCloseKey(key);
              }),
              2);
    EXPECT_TRUE(HandleGauge() == before);
}

TEST(PosixMemory, a_timer_runs_or_was_never_made) {
    const HandleGauge before;
    const auto start = [] {
        return timeSetEvent(
            10, 0, [](void*) {}, nullptr, kTimePeriodic);
    };
    for (const int call : {1, 2}) {
        bool raised = false;
        {
            AllocationFaults memory;
            memory.FailCall(call);
            try {
                start();
            } catch (const std::bad_alloc&) {
                raised = true;
            }
        }
        EXPECT_TRUE(raised);
        EXPECT_EQ(HandleGauge().threads, before.threads);
    }
    EXPECT_TRUE(timeKillEvent(start()));
}
