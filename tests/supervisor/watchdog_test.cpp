// When a child that gives no sign of life is given up.
#include <gtest/gtest.h>

#include "supervisor/active_run.h"

namespace {

constexpr std::u16string_view kTimeout = u"Error: Watchdog timeout, possible Quavercore crash\r\n";
constexpr std::u16string_view kFinished = u"Encoding finished\r\n";
constexpr std::uint32_t kMinuteMs = 60000;

}  // namespace

TEST(Watchdog, gives_a_child_up_after_more_than_a_minute_without_a_sign) {
    ActiveRun run("hangs");
    ASSERT_TRUE(run.ready.Wait());
    run.clock.Advance(kMinuteMs);
    run.owner.Poll();
    EXPECT_TRUE(run.IsRunning());
    run.clock.Advance(1);
    run.owner.Poll();
    EXPECT_FALSE(run.IsRunning());
    EXPECT_TRUE(run.owner.encoder.Finished());
    EXPECT_EQ(run.owner.errors.Text(), kTimeout);
    EXPECT_TRUE(run.owner.information.Text().starts_with(kFinished));
    run.bye.Set();
    EXPECT_TRUE(run.gone.Wait());  // it was left alone
}

TEST(Watchdog, is_right_across_the_wrap_of_the_tick) {
    ActiveRun run("hangs", 0xFFFFFFFF - 30000);
    ASSERT_TRUE(run.ready.Wait());
    run.clock.Advance(kMinuteMs);
    EXPECT_LT(run.clock.Now(), kMinuteMs);
    run.owner.Poll();
    EXPECT_TRUE(run.IsRunning());
    run.clock.Advance(1);
    run.owner.Poll();
    EXPECT_FALSE(run.IsRunning());
}

TEST(Watchdog, text_is_no_sign_of_life) {
    ActiveRun run("speaks_when_told");
    ASSERT_TRUE(run.ready.Wait());
    run.owner.Say(u"MSGTO: qMC: PCDone: 10\r\n");
    run.clock.Advance(kMinuteMs + 1);
    run.owner.Say(u"MSGTO: qMC: PCDone: 20\r\n");
    run.owner.Poll();
    EXPECT_FALSE(run.IsRunning());
    EXPECT_EQ(run.owner.encoder.Percent(), 20);
}

TEST(Watchdog, one_sign_of_life_is_kept_until_it_is_seen) {
    ActiveRun run("hangs");
    run.SignLife();
    run.clock.Advance(100 * kMinuteMs);  // nobody polled for a long time
    run.owner.Poll();
    EXPECT_TRUE(run.IsRunning());
    EXPECT_FALSE(IsSet(run.launch.Value(u" -evtwatchdog")));
    run.clock.Advance(kMinuteMs);
    run.owner.Poll();
    EXPECT_TRUE(run.IsRunning());
    run.clock.Advance(1);
    run.owner.Poll();
    EXPECT_FALSE(run.IsRunning());
}

TEST(Watchdog, long_silence_of_the_owner_counts_against_the_child) {
    ActiveRun run("hangs");
    run.clock.Advance(100 * kMinuteMs);
    run.owner.Poll();
    EXPECT_FALSE(run.IsRunning());
    EXPECT_EQ(run.owner.errors.Text(), kTimeout);
}

TEST(Watchdog, child_that_signals_lives_for_ever) {
    ActiveRun run("signals_for_ever");
    ASSERT_TRUE(run.ready.Wait());
    const platform::Handle watchdog = run.OpenWatchdog();
    for (int minute = 0; minute < 20; ++minute) {
        ASSERT_EQ(platform::WaitForSingleObject(watchdog, 60000), platform::kWaitObject);
        run.clock.Advance(kMinuteMs - 1);
        run.owner.Poll();
        ASSERT_TRUE(run.IsRunning());
    }
    platform::CloseHandle(watchdog);
    run.bye.Set();
    EXPECT_TRUE(run.owner.PollUntilEnd());
    EXPECT_EQ(run.owner.errors.Text(), u"");
}
