// Interruptions, as a console sends them: to a child with a console of its own, so that they reach nobody
// else.
#include "platform/program.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>

#include "platform/file.h"
#include "platform/process.h"
#include "platform/synchronisation.h"
#include "support/child.h"

namespace {

std::atomic<std::uint32_t> gCount = 0;

bool TakesThreeInterruptions() {
    if (!platform::SetConsoleCtrlHandler([](std::uint32_t count) { gCount = count; })) return false;
    for (std::uint32_t expected = 1; expected <= 3; ++expected) {
        if (!::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0)) return false;
        while (gCount != expected) ::Sleep(1);
    }
    return true;
}

}  // namespace

CHILD_PROGRAM(interrupt_itself) {
    ::FreeConsole();
    return ::AllocConsole() && TakesThreeInterruptions() ? 0 : 1;
}

TEST(WindowsProgram, interruptions_are_counted_and_their_default_action_does_not_follow) {
    std::u16string line = child::CommandLine("interrupt_itself");
    platform::ChildHandles child;
    ASSERT_TRUE(platform::CreateProcessW(line.data(), platform::kCreateNoWindow, {}, &child));
    EXPECT_EQ(platform::WaitForSingleObject(child.process, platform::kInfinite), platform::kWaitObject);
    std::uint32_t exitCode = 99;
    EXPECT_TRUE(platform::GetExitCodeProcess(child.process, &exitCode));
    EXPECT_EQ(exitCode, 0u);
    platform::CloseHandle(child.process);
    platform::CloseHandle(child.thread);
}
