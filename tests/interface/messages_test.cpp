// The road of the reported text: from a channel's handle by the tick to the host.
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "interface/host.h"
#include "platform/file.h"
#include "platform/pipe.h"
#include "support/allocation_faults.h"

namespace {

void Fail(Host& host, const char16_t* message, const char* place = nullptr) {
    XLog::Error(message, host->log, place);
}

}  // namespace

TEST(Messages, A_failure_is_told_from_the_next_tick_on) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"Error starting encoder");
    EXPECT_EQ(host.Errors(), u"");
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"Error starting encoder\r\n");
}

TEST(Messages, The_systems_own_timer_brings_them_by_itself) {
    Host host;
    Fail(host, u"by itself");
    EXPECT_TRUE(Eventually([&] { return host.Errors() == u"by itself\r\n"; }));
}

TEST(Messages, A_place_stands_behind_two_blanks_in_brackets) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"Error loading encoder.", "clConverter::EncoderOpenFile");
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"Error loading encoder.  [clConverter::EncoderOpenFile]\r\n");
}

TEST(Messages, Taking_empties_and_a_second_taking_leaves_the_buffer_as_it_was) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"once");
    XLog::Information(u"and once", host->log);
    timers.Tick();
    char16_t buffer[32] = u"";
    EXPECT_EQ(host->GetLastError(buffer), 1);
    EXPECT_EQ(std::u16string(buffer), u"once\r\n");
    buffer[0] = u'X';
    EXPECT_EQ(host->GetLastError(buffer), 0);
    EXPECT_EQ(std::u16string(buffer), u"Xnce\r\n");
    EXPECT_EQ(host->GetLastInfo(buffer), 1);
    EXPECT_EQ(std::u16string(buffer), u"and once\r\n");
    buffer[0] = u'Y';
    EXPECT_EQ(host->GetLastInfo(buffer), 0);
    EXPECT_EQ(buffer[0], u'Y');
}

TEST(Messages, Exactly_the_text_and_its_NUL_are_copied) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"abc");
    timers.Tick();
    std::array<char16_t, 8> buffer;
    buffer.fill(u'#');
    EXPECT_EQ(host->GetLastError(buffer.data()), 1);
    EXPECT_EQ(buffer, (std::array<char16_t, 8>{u'a', u'b', u'c', u'\r', u'\n', 0, u'#', u'#'}));
}

TEST(Messages, A_null_buffer_takes_nothing) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"kept");
    timers.Tick();
    EXPECT_EQ(host->GetLastError(nullptr), 0);
    EXPECT_EQ(host->GetLastInfo(nullptr), 0);
    EXPECT_EQ(host.Errors(), u"kept\r\n");
}

TEST(Messages, Two_failures_between_takings_are_one_text_oldest_first) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"first");
    timers.Tick();
    Fail(host, u"second");
    Fail(host, u"third");
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"first\r\nsecond\r\nthird\r\n");
}

TEST(Messages, What_a_module_writes_comes_as_it_stands) {
    const ManualTimers timers;
    Host host;
    WriteTo(host->log.mErrorOut, u"module: \x00e9\xd83c\xdfb5 no line end");
    WriteTo(host->log.mInfoOut, u"module says\r\n");
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"module: \x00e9\xd83c\xdfb5 no line end");
    EXPECT_EQ(host.Info(), u"module says\r\n");
}

TEST(Messages, A_drain_ends_at_its_first_NUL_and_the_next_drain_goes_on) {
    const ManualTimers timers;
    Host host;
    WriteTo(host->log.mErrorOut, std::u16string_view(u"before\0behind", 13));
    timers.Tick();
    WriteTo(host->log.mErrorOut, std::u16string_view(u"\0nothing", 8));
    timers.Tick();
    WriteTo(host->log.mErrorOut, u" after");
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"before after");
}

TEST(Messages, Half_a_unit_at_the_end_is_completed_by_zero) {
    const ManualTimers timers;
    Host host;
    WriteBytesTo(host->log.mErrorOut, std::string_view("a\0b", 3));
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"ab");
    WriteBytesTo(host->log.mErrorOut, "c");
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"c");
}

TEST(Messages, A_tick_beside_another_is_skipped_and_not_queued) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"waits");
    host->timerBusy = true;
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"");
    host->timerBusy = false;
    EXPECT_EQ(host.Errors(), u"");
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"waits\r\n");
    EXPECT_FALSE(host->timerBusy);
}

TEST(Messages, Only_the_information_channel_tells_the_end_of_a_run) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"Encoding finished");
    XLog::Information(u"Encoding is finished", host->log);
    timers.Tick();
    EXPECT_FALSE(host->encodingFinished);
    XLog::Information(u"Was: Encoding finished, at last", host->log);
    EXPECT_FALSE(host->encodingFinished);
    timers.Tick();
    EXPECT_TRUE(host->encodingFinished);
    EXPECT_EQ(host.Info(), u"Encoding is finished\r\nWas: Encoding finished, at last\r\n");
}

TEST(Messages, The_end_of_a_run_is_heard_also_when_two_drains_share_its_words) {
    const ManualTimers timers;
    const std::u16string words = u"Encoding finished";
    for (std::size_t cut = 1; cut < words.size(); ++cut) {
        Host host;
        WriteTo(host->log.mInfoOut, words.substr(0, cut));
        timers.Tick();
        EXPECT_FALSE(host->encodingFinished) << cut;
        WriteTo(host->log.mInfoOut, words.substr(cut));
        timers.Tick();
        EXPECT_TRUE(host->encodingFinished) << cut;
        EXPECT_EQ(host.Info(), words) << cut;
    }
}

TEST(Messages, A_tick_that_finds_nothing_allocates_nothing) {
    const ManualTimers timers;
    Host host;
    int calls = 0;
    {
        const AllocationFaults memory;
        for (int tick = 0; tick < 100; ++tick) timers.Tick();
        calls = memory.Calls();
    }
    EXPECT_EQ(calls, 0);
}

TEST(Messages, Text_that_finds_no_memory_waits_for_a_tick_that_has_it) {
    const ManualTimers timers;
    for (int failing = 1; failing <= 4; ++failing) {
        Host host;
        const std::u16string error(300, u'e'), info = u"Encoding finished " + std::u16string(300, u'i');
        Fail(host, error.c_str());
        XLog::Information(info.c_str(), host->log);
        {
            AllocationFaults memory;
            memory.FailFrom(failing);
            timers.Tick();
        }
        EXPECT_EQ(host->encodingFinished, !host->lastInfo.IsEmpty()) << failing;
        Fail(host, u"later");
        timers.Tick();  // what waited
        timers.Tick();  // what came meanwhile
        EXPECT_EQ(host.Errors(), error + u"\r\nlater\r\n") << failing;
        EXPECT_EQ(host.Info(), info + u"\r\n") << failing;
        EXPECT_TRUE(host->encodingFinished);
    }
}

TEST(Messages, A_pipe_that_fails_yields_no_text_and_loses_none) {
    const ManualTimers timers;
    Host host;
    Fail(host, u"still there");
    {
        Faulty<platform::PeekNamedPipe> peeks;
        peeks.FailAlways(false);
        timers.Tick();
        EXPECT_EQ(host.Errors(), u"");
    }
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"still there\r\n");
}

TEST(Messages, A_pipe_that_was_refused_silences_its_kind_alone) {
    struct Row {
        int refused;  // 1 is the information pipe, 2 the error pipe, 0 both
        std::u16string errors, info;
    };
    for (const Row& row : {Row{1, u"e\r\n", u""}, Row{2, u"", u"i\r\n"}, Row{0, u"", u""}}) {
        const ManualTimers timers;
        Faulty<platform::CreatePipe> pipes;
        if (row.refused > 0) {
            pipes.FailCall(row.refused, false);
        } else {
            pipes.FailAlways(false);
        }
        Host host;
        EXPECT_EQ(platform::IsOpen(host->log.mErrorOut), !row.errors.empty());
        EXPECT_EQ(platform::IsOpen(host->log.mInfoOut), !row.info.empty());
        Fail(host, u"e");
        XLog::Information(u"i", host->log);
        timers.Tick();
        EXPECT_EQ(host.Errors(), row.errors);
        EXPECT_EQ(host.Info(), row.info);
        EXPECT_EQ(host.Progress(), 0u);
    }
}

TEST(Messages, A_write_end_that_can_not_be_handed_out_silences_its_kind_alone) {
    const ManualTimers timers;
    Faulty<platform::DuplicateHandle> duplicates;
    duplicates.Replace([&](platform::Handle source, platform::Handle* duplicate) {
        if (duplicates.Calls() > 1) return duplicates.Native(source, duplicate);
        platform::CloseHandle(source);
        return false;
    });
    Host host;
    EXPECT_FALSE(platform::IsOpen(host->log.mInfoOut));
    Fail(host, u"e");
    XLog::Information(u"i", host->log);
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"e\r\n");
    EXPECT_EQ(host.Info(), u"");
}

TEST(Messages, Without_a_timer_they_are_there_at_once) {
    Faulty<platform::timeSetEvent> starts;
    starts.FailAlways(0u);
    Host host;
    EXPECT_EQ(host->timerId, 0u);
    Fail(host, u"e");
    XLog::Information(u"i", host->log);
    EXPECT_EQ(host.Errors(), u"e\r\n");
    EXPECT_EQ(host.Info(), u"i\r\n");
}

TEST(Messages, Without_a_timer_a_writer_never_blocks_and_nothing_is_lost) {
    Faulty<platform::timeSetEvent> starts;
    starts.FailAlways(0u);
    Host host;
    std::u16string expected;
    for (int message = 0; message < 40; ++message) {
        const std::u16string text(20000, static_cast<char16_t>(u'a' + message % 26));
        Fail(host, text.c_str());
        XLog::Information(text.c_str(), host->log);
        expected += text + u"\r\n";
    }
    EXPECT_TRUE(host.Errors() == expected);
    EXPECT_TRUE(host.Info() == expected);
}

TEST(Messages, Without_a_timer_a_handle_takes_its_drains_with_it) {
    Faulty<platform::timeSetEvent> starts;
    starts.FailAlways(0u);
    XLog stale;
    {
        const Host host;
        stale = host->log;
    }
    Host next;  // its handles have the same numbers
    starts.Replace(nullptr);
    Fail(next, u"mine");
    EXPECT_EQ(next.Errors(), u"mine\r\n");
}

TEST(Messages, A_flood_from_a_module_reaches_the_host_whole_and_in_order) {
    constexpr int kLines = 60000;
    Host host;
    std::thread module([&] {
        for (int line = 0; line < kLines; ++line) {
            const std::string number = std::to_string(line);
            WriteTo(host->log.mErrorOut, std::u16string(number.begin(), number.end()) + u"\r\n");
        }
    });
    std::u16string expected, all;
    for (int line = 0; line < kLines; ++line) {
        const std::string number = std::to_string(line);
        expected += std::u16string(number.begin(), number.end()) + u"\r\n";
    }
    Eventually([&] {
        all += host.Errors();
        return all.size() >= expected.size();
    });
    module.join();
    EXPECT_TRUE(all == expected) << all.size() << " of " << expected.size();
}

TEST(Messages, One_message_far_beyond_a_pipe_and_a_staging_buffer_comes_whole) {
    Host host;
    const std::u16string text(1'000'000, u'm');
    std::thread module([&] { WriteTo(host->log.mInfoOut, text); });
    std::u16string all;
    Eventually([&] {
        all += host.Info();
        return all.size() >= text.size();
    });
    module.join();
    EXPECT_TRUE(all == text) << all.size();
}

TEST(Messages, Taking_is_marked_in_the_trace_whether_or_not_there_was_text) {
    const ManualTimers timers;
    Host host;
    const Trace trace(host);
    char16_t buffer[64];
    host->GetLastError(buffer);
    Fail(host, u"told", "Place");
    timers.Tick();
    host->GetLastError(buffer);
    host->GetLastInfo(buffer);
    EXPECT_EQ(trace.Text(), Enter("clConverter::GetLastError") + Leave("clConverter::GetLastError") +
                                u"*** Error: told  [Place]\r\n" + Enter("clConverter::GetLastError") +
                                Leave("clConverter::GetLastError") + Enter("clConverter::GetLastInfo") +
                                Leave("clConverter::GetLastInfo"));
}
