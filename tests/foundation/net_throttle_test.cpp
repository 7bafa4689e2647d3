#include "foundation/net_throttle.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "support/faults.h"

namespace {

TEST(NetThrottle, Sleeps_as_long_as_it_is_told_and_not_at_all_for_nothing) {
    Faulty<platform::Sleep> sleeps;
    std::uint32_t slept = 0;
    sleeps.Replace([&](std::uint32_t milliseconds) { slept = milliseconds; });
    for (XNetThrottle& throttle : gNetThrottles) {
        throttle.OnStart();
        EXPECT_TRUE(throttle.Wait(0));
        EXPECT_EQ(slept, 0u);
        EXPECT_TRUE(throttle.Wait(30));
        EXPECT_EQ(slept, 30u);
        throttle.OnStop();
        slept = 0;
    }
    EXPECT_EQ(sleeps.Calls(), 2);
}

}  // namespace
