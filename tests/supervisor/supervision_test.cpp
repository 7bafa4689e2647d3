// One run from its start to its end, with a child of every temper.
#include <gtest/gtest.h>

#include "supervisor/active_run.h"

namespace {

constexpr std::u16string_view kFinished = u"Encoding finished\r\n";
constexpr std::uint32_t kMinuteMs = 60000;

}  // namespace

TEST(Supervision, idle_object_does_nothing) {
    TestClock clock;
    clock.Hold();
    Owner owner;
    for (int poll = 0; poll < 3; ++poll) owner.Poll(poll == 1, true, 0);
    owner.Create();
    owner.Poll(false, true, 3);
    EXPECT_EQ(owner.errors.Text() + owner.information.Text(), u"");
    EXPECT_EQ(owner.encoder.Running(), 0u);
    EXPECT_FALSE(owner.encoder.Finished());
    EXPECT_EQ(owner.encoder.Percent(), 0);
}

TEST(Supervision, run_ends_with_its_child) {
    ActiveRun run("converts");
    ASSERT_TRUE(run.owner.PollUntilEnd());
    EXPECT_FALSE(run.IsRunning());
    EXPECT_EQ(run.owner.encoder.Percent(), 100);
    EXPECT_EQ(CountOf(run.owner.information.Text(), std::u16string(kFinished)), 1u);
    EXPECT_EQ(run.owner.errors.Text(), u"");
    EXPECT_TRUE(FileExists(run.launch.commandFile));
    run.owner.Poll();  // and then there is nothing left to end
    EXPECT_EQ(CountOf(run.owner.information.Text(), std::u16string(kFinished)), 1u);
}

TEST(Supervision, child_that_leaves_before_opening_its_events_is_an_end_like_any_other) {
    ActiveRun run("leaves");
    ASSERT_TRUE(run.owner.PollUntilEnd());
    EXPECT_EQ(run.owner.information.Text(), kFinished);
    EXPECT_EQ(run.owner.errors.Text(), u"");
    EXPECT_EQ(run.owner.encoder.Percent(), 0);
}

TEST(Supervision, crash_is_an_end_whose_complaints_are_told) {
    ActiveRun run("crashes");
    ASSERT_TRUE(run.owner.PollUntilEnd());
    EXPECT_TRUE(run.owner.errors.Text().starts_with(u"the source is damaged\r\n"));
    EXPECT_EQ(run.owner.encoder.Percent(), 40);
    EXPECT_EQ(CountOf(run.owner.information.Text(), std::u16string(kFinished)), 1u);
}

TEST(Supervision, cancel_reaches_the_child_which_ends_by_itself) {
    ActiveRun run("obeys_cancel");
    ASSERT_TRUE(run.ready.Wait());
    run.owner.Poll();
    EXPECT_FALSE(IsSet(run.launch.Value(u" -evtquit")));
    ASSERT_TRUE(run.CancelUntilEnd());
    EXPECT_EQ(CountOf(run.owner.information.Text(), u"cancelled\r\n"), 1u);
    EXPECT_EQ(CountOf(run.owner.information.Text(), std::u16string(kFinished)), 1u);
    EXPECT_EQ(run.owner.errors.Text(), u"");
}

TEST(Supervision, cancel_is_set_at_each_poll_while_it_is_wanted) {
    ActiveRun run("hangs");
    ASSERT_TRUE(run.ready.Wait());
    const std::u16string name = run.launch.Value(u" -evtquit");
    const platform::Handle event = platform::OpenEventW(name.c_str());
    for (int poll = 0; poll < 3; ++poll) {
        run.owner.Poll(false, true);
        EXPECT_TRUE(IsSet(name));
        platform::ResetEvent(event);
    }
    run.owner.Poll(false, false);
    EXPECT_FALSE(IsSet(name));
    platform::CloseHandle(event);
    EXPECT_TRUE(run.IsRunning());  // a child that ignores it runs on
}

TEST(Supervision, cancel_before_the_child_has_opened_its_event_still_works) {
    ActiveRun run("opens_late");
    ASSERT_TRUE(run.ready.Wait());
    run.owner.Poll(false, true);
    run.go.Set();
    ASSERT_TRUE(run.owner.PollUntilEnd());
    EXPECT_EQ(CountOf(run.owner.information.Text(), u"cancelled\r\n"), 1u);
}

TEST(Supervision, null_events_are_skipped) {
    const Signal bye;
    Faulty<platform::CreateEventW> events;
    events.FailAlways(platform::kNullHandle);
    Owner owner;
    const Launch launch("hangs", bye.As("bye"));
    owner.Create();
    owner.Start();
    Faulty<platform::SetEvent> sets;
    Faulty<platform::ResetEvent> resets;
    Faulty<platform::WaitForSingleObject> waits;
    waits.Replace([&](platform::Handle handle, std::uint32_t ms) {
        EXPECT_EQ(handle, launch.child.process);
        return waits.Native(handle, ms);
    });
    owner.Poll(false, true);
    EXPECT_EQ(owner.encoder.Running(), 1u);
    bye.Set();
    ASSERT_TRUE(owner.PollUntil([&] { return owner.encoder.Finished(); }, false, true));
    EXPECT_EQ(sets.Calls(), 0);
    EXPECT_EQ(resets.Calls(), 0);
}

TEST(Supervision, no_wait_has_a_timeout) {
    ActiveRun run("obeys_cancel");
    Faulty<platform::WaitForSingleObject> waits;
    waits.Replace([&](platform::Handle handle, std::uint32_t ms) {
        EXPECT_EQ(ms, 0u);
        return waits.Native(handle, ms);
    });
    run.owner.Poll(true);
    run.owner.Poll(false, false, 1);
    EXPECT_TRUE(run.CancelUntilEnd());
    EXPECT_GT(waits.Calls(), 3);
}

TEST(Supervision, pause_suspends_once_and_unpause_resumes_once) {
    ActiveRun run("obeys_cancel");
    ASSERT_TRUE(run.ready.Wait());
    Faulty<platform::SuspendThread> suspends;
    Faulty<platform::ResumeThread> resumes;
    run.owner.Poll(false);
    EXPECT_EQ(resumes.Calls(), 0);
    for (int poll = 0; poll < 3; ++poll) run.owner.Poll(true);
    EXPECT_EQ(suspends.Calls(), 1);
    EXPECT_EQ(resumes.Calls(), 0);
    for (int poll = 0; poll < 3; ++poll) run.owner.Poll(false);
    EXPECT_EQ(suspends.Calls(), 1);
    EXPECT_EQ(resumes.Calls(), 1);
    EXPECT_TRUE(run.CancelUntilEnd());
}

TEST(Supervision, pause_of_several_minutes_does_not_trip_the_watchdog) {
    ActiveRun run("hangs");
    for (int poll = 0; poll < 5; ++poll) {
        run.clock.Advance(2 * kMinuteMs);
        run.owner.Poll(true);
        ASSERT_TRUE(run.IsRunning());
    }
    run.clock.Advance(kMinuteMs);
    run.owner.Poll(false);
    EXPECT_TRUE(run.IsRunning());
    run.clock.Advance(1);
    run.owner.Poll(false);
    EXPECT_FALSE(run.IsRunning());
}

TEST(Supervision, pause_without_polls_is_forgiven_by_the_first_poll_that_still_pauses) {
    ActiveRun run("hangs");
    run.owner.Poll(true);
    run.clock.Advance(10 * kMinuteMs);
    run.owner.Poll(true);
    run.owner.Poll(false);
    EXPECT_TRUE(run.IsRunning());
}

TEST(Supervision, pause_without_polls_is_not_forgiven_by_a_poll_that_ends_it) {
    ActiveRun run("hangs");
    run.owner.Poll(true);
    run.clock.Advance(10 * kMinuteMs);
    run.owner.Poll(false);
    EXPECT_FALSE(run.IsRunning());
}

TEST(Supervision, cancel_during_a_pause_waits_for_its_end) {
    ActiveRun run("obeys_cancel");
    ASSERT_TRUE(run.ready.Wait());
    run.owner.Poll(true);
    for (int poll = 0; poll < 20; ++poll) {
        run.clock.Advance(kMinuteMs);
        run.owner.Poll(true, true);
        ASSERT_TRUE(run.IsRunning());
    }
    EXPECT_TRUE(run.CancelUntilEnd());
    EXPECT_EQ(CountOf(run.owner.information.Text(), u"cancelled\r\n"), 1u);
}

TEST(Supervision, start_forgets_the_pause_of_the_last_run) {
    ActiveRun run("hangs");
    run.owner.Poll(true);
    Faulty<platform::ResumeThread> resumes;
    const platform::ChildHandles abandoned = run.launch.child;
    run.owner.Create();
    run.owner.Start();
    run.owner.Poll(false);
    EXPECT_EQ(resumes.Calls(), 0);
    platform::ResumeThread(abandoned.thread);
    run.bye.Set();
    EXPECT_EQ(platform::WaitForSingleObject(abandoned.process, 60000), platform::kWaitObject);
    platform::CloseHandle(abandoned.process);
    platform::CloseHandle(abandoned.thread);
    EXPECT_TRUE(run.owner.PollUntilEnd());
}

TEST(Supervision, start_alone_forgets_a_pause_that_outlived_its_run) {
    ActiveRun run("hangs");
    run.owner.Poll(true);
    platform::ResumeThread(run.launch.child.thread);
    run.bye.Set();
    ASSERT_TRUE(run.owner.PollUntil([&] { return run.owner.encoder.Finished(); }, true));
    run.bye.Reset();
    run.owner.Start();
    Faulty<platform::ResumeThread> resumes;
    run.owner.Poll(false);
    EXPECT_EQ(run.owner.encoder.Running(), 1u);
    EXPECT_EQ(resumes.Calls(), 0);
}

TEST(Supervision, priority_goes_to_the_thread_first_and_then_to_the_process) {
    const struct {
        std::uint32_t priority;
        std::int32_t thread;
        std::uint32_t process;
    } rows[] = {{1, -1, 32}, {2, -15, 64}, {3, 1, 32},         {0, 0, 32},
                {4, 0, 32},  {2, -15, 64}, {0xFFFFFFFF, 0, 32}};
    ActiveRun run("hangs");
    std::vector<std::int64_t> calls;
    Faulty<platform::SetThreadPriority> threads;
    Faulty<platform::SetPriorityClass> processes;
    threads.Replace([&](platform::Handle thread, std::int32_t priority) {
        EXPECT_EQ(thread, run.launch.child.thread);
        calls.push_back(priority);
        return true;
    });
    processes.Replace([&](platform::Handle process, std::uint32_t priorityClass) {
        EXPECT_EQ(process, run.launch.child.process);
        calls.push_back(priorityClass);
        return true;
    });
    run.owner.Poll(false, false, 0);
    EXPECT_TRUE(calls.empty());  // as it was
    for (const auto& row : rows) {
        calls.clear();
        for (int poll = 0; poll < 3; ++poll) run.owner.Poll(false, false, row.priority);
        EXPECT_EQ(calls, (std::vector<std::int64_t>{row.thread, row.process})) << row.priority;
    }
}

TEST(Supervision, priority_that_is_refused_changes_nothing_else) {
    ActiveRun run("converts");
    Faulty<platform::SetThreadPriority> threads;
    Faulty<platform::SetPriorityClass> processes;
    threads.FailAlways();
    processes.FailAlways();
    run.owner.Poll(false, false, 3);
    EXPECT_TRUE(run.owner.PollUntilEnd());
    EXPECT_EQ(run.owner.errors.Text(), u"");
}

TEST(Supervision, priorities_of_a_real_child_are_accepted_downwards) {
    ActiveRun run("hangs");
    ASSERT_TRUE(run.ready.Wait());
    Faulty<platform::SetThreadPriority> threads;
    threads.Replace([&](platform::Handle thread, std::int32_t priority) {
        const bool done = threads.Native(thread, priority);
        EXPECT_TRUE(done) << priority;
        return done;
    });
    run.owner.Poll(false, false, 1);
    run.owner.Poll(false, false, 2);
    EXPECT_EQ(threads.Calls(), 2);
}

TEST(Supervision, prepare_during_a_run_abandons_the_child_and_its_handles) {
    ActiveRun run("hangs");
    ASSERT_TRUE(run.ready.Wait());
    Faulty<platform::CloseHandle> closes;
    run.owner.Create();
    EXPECT_EQ(closes.Calls(), 0);
    EXPECT_FALSE(run.IsRunning());
    EXPECT_FALSE(run.owner.encoder.Finished());
    run.clock.Advance(2 * kMinuteMs);
    run.owner.Poll(true, true, 2);
    EXPECT_EQ(run.owner.errors.Text() + run.owner.information.Text(), u"");
    const platform::ChildHandles child = run.launch.child;
    EXPECT_EQ(platform::WaitForSingleObject(child.process, 0), platform::kWaitTimeout);
    run.bye.Set();
    EXPECT_EQ(platform::WaitForSingleObject(child.process, 60000), platform::kWaitObject);
    platform::CloseHandle(child.process);
    platform::CloseHandle(child.thread);
}

TEST(Supervision, destruction_does_not_touch_a_child_that_runs) {
    const Signal ready, bye, gone;
    {
        Owner owner;
        const Launch launch("hangs", ready.As("ready") + u" " + bye.As("bye") + u" " + gone.As("gone"));
        owner.Create();
        owner.Start();
        ASSERT_TRUE(ready.Wait());
        owner.Poll();
    }
    bye.Set();
    EXPECT_TRUE(gone.Wait());
}

TEST(Supervision, end_closes_both_handles_once) {
    ActiveRun run("leaves");
    int closed = 0;
    Faulty<platform::CloseHandle> closes;
    closes.Replace([&](platform::Handle handle) {
        closed += handle == run.launch.child.process || handle == run.launch.child.thread;
        return closes.Native(handle);
    });
    ASSERT_TRUE(run.owner.PollUntilEnd());
    EXPECT_EQ(closed, 2);
}

TEST(Supervision, two_objects_run_side_by_side) {
    Owner first, second;
    const Launch launch("converts");
    for (Owner* owner : {&first, &second}) {
        owner->Create();
        owner->Start();
    }
    for (Owner* owner : {&first, &second}) {
        EXPECT_TRUE(owner->PollUntilEnd());
        EXPECT_EQ(owner->encoder.Percent(), 100);
        EXPECT_EQ(owner->errors.Text(), u"");
    }
}
