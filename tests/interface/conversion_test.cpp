// A conversion as the host drives it: how far it is said to be, and what reaches it while it runs.
#include <gtest/gtest.h>

#include <thread>

#include "interface/host.h"
#include "platform/file.h"
#include "platform/pipe.h"
#include "platform/process.h"
#include "platform/synchronisation.h"
#include "supervisor/owner.h"
#include "support/child.h"

namespace {

// A converter that walks hand in hand with its test.
struct Walk {
    Signal first, second, go, end;
    std::u16string Arguments() const {
        return first.As("first") + u" " + second.As("second") + u" " + go.As("go") + u" " + end.As("end");
    }
};

class Conversion : public testing::Test {
  protected:
    ManualTimers timers;
    Host host;
};

}  // namespace

TEST_F(Conversion, Progress_of_a_new_handle_is_0_also_where_the_end_of_a_run_was_written) {
    EXPECT_EQ(host.Progress(), 0u);
    XLog::Information(u"Encoding finished", host->log);
    timers.Tick();
    EXPECT_EQ(host.Progress(), 0u);
    EXPECT_EQ(QACGetProgress(host.handle, nullptr), 1);
}

TEST_F(Conversion, Priority_takes_four_values_and_refuses_every_other_without_a_change) {
    for (const std::uint32_t priority : {1u, 2u, 3u, 0u, 2u}) {
        EXPECT_EQ(QACSetPriority(host.handle, priority), 1);
        EXPECT_EQ(host->priority, priority);
    }
    for (const std::uint32_t priority : {4u, 100u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(QACSetPriority(host.handle, priority), 0);
        EXPECT_EQ(host->priority, 2u);
    }
}

TEST_F(Conversion, Progress_follows_the_converter_then_holds_at_99_until_its_last_words_are_delivered) {
    const Walk walk;
    const Launch launch("Worker", walk.Arguments());
    ASSERT_TRUE(host.Convert());
    ASSERT_TRUE(walk.first.Wait());
    ASSERT_TRUE(host.PollUntil(37));
    walk.go.Set();
    ASSERT_TRUE(walk.second.Wait());
    ASSERT_TRUE(host.PollUntil(99)) << "what the converter says beyond is not said on";
    timers.Tick();
    EXPECT_TRUE(host->encodingFinished) << "the converter forged the text";
    EXPECT_EQ(host.Progress(), 99u) << "it runs";
    EXPECT_NE(host->encoderProcess.Running(), 0u);
    host.Info();
    walk.end.Set();
    ASSERT_TRUE(Eventually([&] {
        EXPECT_EQ(host.Progress(), 99u) << "nothing has been drained since its end";
        return host->encoderProcess.Finished();
    }));
    EXPECT_EQ(host.Errors(), u"");
    timers.Tick();
    EXPECT_EQ(host.Progress(), 100u);
    EXPECT_EQ(host.Progress(), 100u);
    EXPECT_EQ(host.Errors(), u"sour words\r\n");
    const std::u16string info = host.Info();
    EXPECT_NE(info.find(u"Encoding finished\r\n"), std::u16string::npos);
    EXPECT_NE(info.find(u"last words\r\n"), std::u16string::npos);
}

TEST_F(Conversion, A_tick_that_is_skipped_does_not_bring_100) {
    const Launch launch("Quiet");
    ASSERT_TRUE(host.Convert());
    ASSERT_TRUE(Eventually([&] {
        const std::uint32_t percent = host.Progress();
        EXPECT_EQ(percent, host->encoderProcess.Finished() ? 99u : 0u);
        return host->encoderProcess.Finished();
    }));
    host->timerBusy = true;
    timers.Tick();
    EXPECT_EQ(host.Progress(), 99u);
    host->timerBusy = false;
    timers.Tick();
    EXPECT_EQ(host.Progress(), 100u);
}

TEST_F(Conversion, A_tick_inside_the_poll_that_notices_the_end_does_not_bring_100_with_words_outstanding) {
    const Launch launch("Quiet");
    ASSERT_TRUE(host.Convert());
    // The end is told on the information channel before the child's last output is read: tick right there.
    Faulty<platform::WriteFile> writes;
    bool ticked = false;
    writes.Replace([&](platform::Handle file, const void* data, std::uint32_t count, std::uint32_t* written) {
        const bool done = writes.Native(file, data, count, written);
        if (file == host->log.mInfoOut &&
            std::u16string_view(static_cast<const char16_t*>(data), count / 2) == u"Encoding finished\r\n") {
            timers.Tick();
            ticked = true;
        }
        return done;
    });
    ASSERT_TRUE(Eventually([&] {
        host.Progress();
        return host->encoderProcess.Finished();
    }));
    EXPECT_TRUE(ticked);
    EXPECT_TRUE(host->encodingFinished);
    EXPECT_EQ(host.Progress(), 99u);
    timers.Tick();
    EXPECT_EQ(host.Progress(), 100u);
}

TEST_F(Conversion, Any_service_call_notices_the_end) {
    for (const int call : {0, 1, 2}) {
        const Launch launch("Quiet");
        ASSERT_TRUE(host.Convert());
        ASSERT_TRUE(Eventually([&] {
            if (call == 0) QACSetPause(host.handle, 0);
            if (call == 1) QACSetPriority(host.handle, 0);
            if (call == 2) QACSetCancelled(host.handle);
            return host->encoderProcess.Finished();
        }));
        timers.Tick();
        EXPECT_EQ(host.Progress(), 100u) << call;
    }
}

TEST_F(Conversion, Cancelling_ends_it_and_the_next_one_begins_without) {
    const Walk walk;
    {
        const Launch launch("Endless", walk.Arguments());
        ASSERT_TRUE(host.Convert());
        ASSERT_TRUE(walk.first.Wait());
        EXPECT_EQ(QACSetCancelled(host.handle), 1);
        ASSERT_TRUE(Eventually([&] {
            timers.Tick();
            return host.Progress() == 100;
        }));
    }
    EXPECT_EQ(host.Errors(), u"");
    EXPECT_EQ(host->cancelled, 1);
    const Walk second;
    const Launch launch("Endless", second.Arguments());
    ASSERT_TRUE(host.Convert());
    ASSERT_TRUE(second.first.Wait());
    for (int poll = 0; poll < 20; ++poll) EXPECT_EQ(host.Progress(), 0u);
    const platform::Handle cancel = platform::OpenEventW(launch.Value(u" -evtquit").c_str());
    EXPECT_EQ(platform::WaitForSingleObject(cancel, 0), platform::kWaitTimeout);
    platform::CloseHandle(cancel);
    QACSetCancelled(host.handle);
    ASSERT_TRUE(Eventually([&] {
        timers.Tick();
        return host.Progress() == 100;
    }));
}

TEST_F(Conversion, Pause_and_priority_reach_the_child_at_once) {
    Faulty<platform::SuspendThread> suspends;
    Faulty<platform::ResumeThread> resumes;
    Faulty<platform::SetThreadPriority> priorities;
    std::int32_t last = 99;
    priorities.Replace([&](platform::Handle, std::int32_t priority) {
        last = priority;
        return true;
    });
    const Walk walk;
    const Launch launch("Endless", walk.Arguments());
    ASSERT_TRUE(host.Convert());
    ASSERT_TRUE(walk.first.Wait());
    EXPECT_EQ(QACSetPause(host.handle, 200), 1);
    EXPECT_EQ(suspends.Calls(), 1);
    EXPECT_EQ(QACSetPause(host.handle, 1), 1);
    EXPECT_EQ(suspends.Calls(), 1) << "held once";
    EXPECT_EQ(resumes.Calls(), 0);
    EXPECT_EQ(QACSetPause(host.handle, 0), 1);
    EXPECT_EQ(resumes.Calls(), 1);
    EXPECT_EQ(QACSetPriority(host.handle, 2), 1);
    EXPECT_EQ(last, platform::kThreadPriorityIdle);
    EXPECT_EQ(QACSetPriority(host.handle, 0), 1);
    EXPECT_EQ(last, platform::kThreadPriorityNormal);
    QACSetCPU(host.handle, 5);
    EXPECT_EQ(host->cpu, 5);
    QACSetCancelled(host.handle);
    ASSERT_TRUE(Eventually([&] {
        timers.Tick();
        return host.Progress() == 100;
    }));
}

TEST_F(Conversion, Nothing_advances_while_the_host_does_not_poll) {
    const Launch launch("Quiet");
    ASSERT_TRUE(host.Convert());
    ASSERT_EQ(platform::WaitForSingleObject(launch.child.process, 60000), platform::kWaitObject);
    for (int tick = 0; tick < 10; ++tick) timers.Tick();
    EXPECT_EQ(host->encoderProcess.Running(), 1u);
    EXPECT_FALSE(host->encodingFinished);
    EXPECT_EQ(host.Info(), u"Converting 'in.wav' to 'out.qv' [WAV]\r\n");
    EXPECT_EQ(host.Progress(), 99u);
}

TEST_F(Conversion, Destroying_a_handle_sends_its_converter_no_signal_and_closes_events_and_pipes) {
    const Walk walk;
    const Launch launch("Orphan", walk.Arguments());
    ASSERT_TRUE(host.Convert());
    ASSERT_TRUE(walk.first.Wait());
    const std::u16string name = launch.Value(u" -evtquit");
    const platform::Handle cancel = platform::OpenEventW(name.c_str());
    ASSERT_TRUE(platform::IsOpen(cancel));
    host.Destroy();
    EXPECT_EQ(platform::WaitForSingleObject(cancel, 0), platform::kWaitTimeout);
    platform::CloseHandle(cancel);
    EXPECT_FALSE(platform::IsOpen(platform::OpenEventW(name.c_str()))) << "the handle's own is closed";
    walk.go.Set();
    EXPECT_TRUE(walk.second.Wait()) << "the child runs on, and its pipe has no reader";
    walk.end.Set();
}

TEST(ConversionWithTimers, One_after_the_other_with_the_systems_own_timer) {
    Host host;
    for (int run = 0; run < 3; ++run) {
        const Launch launch("Quiet");
        ASSERT_TRUE(host.Convert());
        ASSERT_TRUE(host.PollUntil(100));
        const std::u16string info = host.Info();
        EXPECT_EQ(CountOf(info, u"Encoding finished\r\n"), 1u);
        EXPECT_EQ(host.Errors(), u"");
    }
}

TEST(ConversionWithTimers, Reaches_100_where_the_timer_service_refuses) {
    Faulty<platform::timeSetEvent> starts;
    starts.FailAlways(0u);
    Host host;
    const Walk walk;
    walk.go.Set();
    walk.end.Set();
    const Launch launch("Worker", walk.Arguments());
    ASSERT_TRUE(host.Convert());
    ASSERT_TRUE(host.PollUntil(100));
    EXPECT_EQ(host.Errors(), u"sour words\r\n");
    EXPECT_NE(host.Info().find(u"last words\r\n"), std::u16string::npos);
}

TEST(ConversionWithTimers, Two_handles_convert_side_by_side_in_two_threads) {
    Faulty<platform::CreateProcessW> starts;
    starts.Replace([&](char16_t*, std::uint32_t flags, const platform::ChildStreams& streams,
                       platform::ChildHandles* handles) {
        std::u16string line = child::CommandLine("Quiet");
        return starts.Native(line.data(), flags, streams, handles);
    });
    std::atomic<int> finished = 0;
    const auto convert = [&finished] {
        Host host;
        for (int run = 0; run < 5; ++run) {
            if (host.Convert() && host.PollUntil(100) && host.Errors().empty()) ++finished;
        }
    };
    std::thread first(convert), second(convert);
    first.join();
    second.join();
    EXPECT_EQ(finished, 10);
}

TEST(ConversionWithTimers, Without_its_information_channel_it_ends_at_99) {
    const ManualTimers timers;
    Faulty<platform::CreatePipe> pipes;
    pipes.FailCall(1, false);
    Host host;
    const Launch launch("Quiet");
    ASSERT_TRUE(host.Convert());
    ASSERT_TRUE(Eventually([&] {
        host.Progress();
        return host->encoderProcess.Finished();
    }));
    for (int tick = 0; tick < 5; ++tick) timers.Tick();
    EXPECT_EQ(host.Progress(), 99u);
}

TEST_F(Conversion, The_trace_of_a_pause_has_two_leave_marks_and_that_of_progress_none) {
    Trace trace(host);
    host.Progress();
    EXPECT_EQ(trace.Take(), u"");
    QACSetPause(host.handle, 1);
    EXPECT_EQ(trace.Take(), Leave("clConverter::SetPause") + Leave("clConverter::SetPause"));
    QACSetCancelled(host.handle);
    EXPECT_EQ(trace.Take(), Enter("clConverter::SetCancelled") + Leave("clConverter::SetCancelled"));
    QACSetPriority(host.handle, 0);
    QACSetPriority(host.handle, 4);
    EXPECT_EQ(trace.Take(), Enter("clConverter::SetCodecPriority") + Leave("clConverter::SetCodecPriority") +
                                Enter("clConverter::SetCodecPriority") +
                                Leave("clConverter::SetCodecPriority"));
}
