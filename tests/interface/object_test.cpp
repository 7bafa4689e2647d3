// Birth and death of a converter.
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "interface/host.h"
#include "interface/module_handle.h"
#include "platform/file.h"
#include "platform/pipe.h"
#include "support/allocation_faults.h"
#include "support/handle_gauge.h"

TEST(Converter, A_new_one_stands_at_its_start_values) {
    const ManualTimers timers;
    const Host host;
    EXPECT_EQ(host->cpu, -1);
    EXPECT_EQ(host->priority, 0u);
    EXPECT_EQ(host->paused, 0);
    EXPECT_EQ(host->cancelled, 0);
    EXPECT_EQ(host->tagWriteThrough, 0);
    EXPECT_FALSE(host->encodingFinished);
    EXPECT_FALSE(host->timerBusy);
    EXPECT_EQ(host->tagList.Count(), 0);
    EXPECT_EQ(host->dspChain.Count(), 0);
    EXPECT_TRUE(host->lastError.IsEmpty());
    EXPECT_TRUE(host->lastInfo.IsEmpty());
    EXPECT_EQ(host->encoderProcess.Running(), 0u);
    EXPECT_FALSE(host->encoderProcess.Finished());
}

TEST(Converter, Opens_both_channels_and_never_the_trace) {
    const Host host;
    EXPECT_TRUE(platform::IsOpen(host->log.mErrorOut));
    EXPECT_TRUE(platform::IsOpen(host->log.mInfoOut));
    EXPECT_NE(host->log.mErrorOut, host->log.mInfoOut);
    EXPECT_FALSE(platform::IsOpen(host->log.mTraceOut));
}

TEST(Converter, Starts_a_periodic_timer_of_10_ms_at_the_services_best_resolution) {
    const ManualTimers timers;
    Host host;
    EXPECT_EQ(timers.delayMs, 10u);
    EXPECT_EQ(timers.resolutionMs, 0u);
    EXPECT_EQ(timers.flags, platform::kTimePeriodic);
    EXPECT_EQ(timers.Count(), 1u);
    EXPECT_NE(host->timerId, 0u);
    host.Destroy();
    EXPECT_EQ(timers.Count(), 0u);
}

TEST(Converter, Takes_the_module_handle_that_the_loader_gave_last) {
    int module = 0;
    platform::OnLibraryNotification(&module, true);
    EXPECT_EQ(Host()->moduleHandle, &module);
    int moved = 0;
    platform::OnLibraryNotification(&moved, true);
    EXPECT_EQ(Host()->moduleHandle, &moved);
    platform::OnLibraryNotification(nullptr, false);
    EXPECT_EQ(Host()->moduleHandle, nullptr);
}

TEST(Converter, Works_between_any_notifications_of_the_loader) {
    for (const bool attached : {false, true, true, false, false, true, false}) {
        platform::OnLibraryNotification(nullptr, attached);
        Host host;
        XLog::Error(u"told", host->log, nullptr);
        EXPECT_TRUE(Eventually([&] { return host.Errors() == u"told\r\n"; }));
    }
}

TEST(Converter,
     Goes_by_stopping_the_timer_then_closing_the_pipes_then_the_trace_the_error_and_the_info_handle) {
    std::vector<platform::Handle> closed;
    std::vector<platform::Handle> expected;
    bool stopped = false;
    {
        const ManualTimers timers;
        Host host;
        platform::Handle ends[2];
        ASSERT_TRUE(platform::CreatePipe(&ends[0], &ends[1]));
        host->log.mTraceOut = ends[1];
        expected = {host->errorPipe.ReadHandle(), host->infoPipe.ReadHandle(), ends[1], host->log.mErrorOut,
                    host->log.mInfoOut};
        Faulty<platform::CloseHandle> closes;
        closes.Replace([&](platform::Handle handle) {
            stopped = closed.empty() ? timers.Count() == 0 : stopped;
            closed.push_back(handle);
            return closes.Native(handle);
        });
        host.Destroy();
        closes.Native(ends[0]);
    }
    EXPECT_TRUE(stopped);
    ASSERT_GE(closed.size(), expected.size());
    closed.resize(expected.size());
    EXPECT_EQ(closed, expected);
}

TEST(Converter, Its_end_shows_in_the_trace_as_an_enter_mark_alone_since_the_trace_is_closed_with_the_rest) {
    platform::Handle ends[2];
    ASSERT_TRUE(platform::CreatePipe(&ends[0], &ends[1]));
    Host host;
    { const Trace withoutIndent(host); }
    host->log.mTraceOut = ends[1];
    host.Destroy();
    char16_t text[64] = {};
    std::uint32_t read = 0;
    EXPECT_TRUE(platform::ReadFile(ends[0], text, sizeof(text) - 2, &read));
    EXPECT_EQ(std::u16string(text), Enter("clConverter::~clConverter"));
    EXPECT_FALSE(platform::ReadFile(ends[0], text, sizeof(text) - 2, &read)) << "its writer is gone";
    platform::CloseHandle(ends[0]);
}

TEST(Converter, Ten_thousand_leave_no_handle_and_no_thread_behind) {
    { const Host warmedUp; }
    const HandleGauge before;
    for (int round = 0; round < 10000; ++round) QACDestroy(QACCreate());
    EXPECT_EQ(HandleGauge(), before);
}

TEST(Converter, May_be_destroyed_while_ticks_run) {
    for (int round = 0; round < 50; ++round) {
        Host host;
        bool sawTick = false;
        for (int message = 0; message < 20; ++message) XLog::Information(u"here", host->log);
        if (round % 2) sawTick = Eventually([&] { return !host.Info().empty(); });
        host.Destroy();
        EXPECT_EQ(sawTick, round % 2 != 0);
    }
}

TEST(Converter, Two_serve_two_threads) {
    std::vector<std::thread> threads;
    std::atomic<int> good = 0;
    for (int number = 0; number < 2; ++number) {
        threads.emplace_back([number, &good] {
            const std::u16string own(3, static_cast<char16_t>(u'a' + number));
            for (int round = 0; round < 20; ++round) {
                Host host;
                host.AddEffect(own.c_str(), u"s");
                host.AddTag(own.c_str(), u"v");
                XLog::Error(own.c_str(), host->log, nullptr);
                if (Eventually([&] { return host.Errors() == own + u"\r\n"; })) ++good;
                EXPECT_EQ(host.Progress(), 0u);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, 40);
}

namespace {

struct Tally {
    int raises = 0, left = 0;
};

// Fails each allocation of a handle's life in turn. Not every one comes out as an exception: what the system
// itself has no memory for counts as refused.
Tally FailEach() {
    Tally tally;
    bool failed = true;
    for (int call = 1; failed; ++call) {
        AllocationFaults memory;
        memory.FailCall(call);
        try {
            QACDestroy(QACCreate());
        } catch (const std::bad_alloc&) {
            ++tally.raises;
        }
        failed = memory.HasFailed();
        tally.left += memory.Live();
    }
    return tally;
}

void ExpectNothingLeft() {
    FailEach();  // brings what the language's run-time makes once, with the first exception
    const HandleGauge before;
    const Tally tally = FailEach();
    EXPECT_GE(tally.raises, 1) << "the object itself";
    EXPECT_EQ(tally.left, 0);
    EXPECT_EQ(HandleGauge(), before);
}

}  // namespace

TEST(Converter, A_birth_that_finds_no_memory_leaves_nothing) {
    const ManualTimers timers;
    ExpectNothingLeft();
    EXPECT_EQ(timers.Count(), 0u);
}

TEST(Converter, A_birth_without_a_timer_that_finds_no_memory_leaves_nothing) {
    Faulty<platform::timeSetEvent> starts;
    starts.FailAlways(0u);
    ExpectNothingLeft();
}
