// Interruptions, as the terminal sends them.
#include "platform/program.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>

#include "platform/clock.h"

namespace {
std::atomic<std::uint32_t> gCount = 0;
}

TEST(PosixProgram, interruptions_are_counted_and_their_default_action_does_not_follow) {
    ASSERT_TRUE(platform::SetConsoleCtrlHandler([](std::uint32_t count) { gCount = count; }));
    for (std::uint32_t expected = 1; expected <= 3; ++expected) {
        std::raise(expected == 2 ? SIGTERM : SIGINT);
        while (gCount != expected) platform::Sleep(1);
    }
    EXPECT_EQ(gCount, 3u);
}
