// The sign of life and the wish to cancel, over real events.
#include "converter/lifeline.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/synchronisation.h"
#include "support/faults.h"

namespace {

constexpr std::uint32_t kLong = 30000;

struct Events {
    explicit Events(const std::u16string& stem)
        : cancelName(u"qv-test-quit-" + stem), watchName(u"qv-test-watch-" + stem) {
        cancel = platform::CreateEventW(cancelName.c_str());
        watch = platform::CreateEventW(watchName.c_str());
    }
    ~Events() {
        platform::CloseHandle(cancel);
        platform::CloseHandle(watch);
    }
    std::u16string cancelName, watchName;
    platform::Handle cancel, watch;
};

TEST(Lifeline, Signals_the_watchdog_at_once_and_again) {
    Events events(u"again");
    Lifeline lifeline;
    std::u16string missing;
    ASSERT_TRUE(lifeline.Start(events.cancelName, events.watchName, &missing));
    for (int signal = 0; signal < 3; ++signal) {
        lifeline.Beat();
        ASSERT_EQ(platform::WaitForSingleObject(events.watch, kLong), platform::kWaitObject);
        platform::ResetEvent(events.watch);
    }
}

TEST(Lifeline, Sees_the_wish_to_cancel) {
    Events events(u"cancel");
    Lifeline lifeline;
    std::u16string missing;
    ASSERT_TRUE(lifeline.Start(events.cancelName, events.watchName, &missing));
    EXPECT_FALSE(lifeline.Cancelled());
    platform::SetEvent(events.cancel);
    EXPECT_TRUE(lifeline.Cancelled());
}

TEST(Lifeline, Names_the_event_that_is_missing) {
    Events events(u"missing");
    std::u16string missing;
    {
        Lifeline lifeline;
        EXPECT_FALSE(lifeline.Start(u"qv-test-nobody", events.watchName, &missing));
        EXPECT_EQ(missing, u"qv-test-nobody");
        EXPECT_FALSE(lifeline.Cancelled());
    }
    Lifeline lifeline;
    EXPECT_FALSE(lifeline.Start(events.cancelName, u"qv-test-noone", &missing));
    EXPECT_EQ(missing, u"qv-test-noone");
}

// The clock stands 20 s ahead of the last beat: the work hangs, and the thread must not pretend otherwise.
TEST(Lifeline, Falls_silent_when_the_work_no_longer_comes_by) {
    static std::atomic<std::uint32_t> now = 1000;
    now = 1000;
    Faulty<platform::GetTickCount> clock;
    clock.Replace([] { return now.load(); });
    Faulty<platform::SetEvent> signals;
    Events events(u"silent");
    Lifeline lifeline;
    std::u16string missing;
    ASSERT_TRUE(lifeline.Start(events.cancelName, events.watchName, &missing));
    now = 1000 + 20001;
    const auto periods = [&](int count) {
        for (const int from = clock.Calls(); clock.Calls() < from + count;) platform::Sleep(10);
    };
    periods(1);
    const int before = signals.Calls();
    periods(2);
    EXPECT_EQ(signals.Calls(), before);
    lifeline.Beat();
    platform::ResetEvent(events.watch);
    EXPECT_EQ(platform::WaitForSingleObject(events.watch, kLong), platform::kWaitObject);
}

}  // namespace
