// What a conversion hands to the converter, and a start that fails.
#include <gtest/gtest.h>

#include "interface/host.h"
#include "platform/file.h"
#include "platform/module.h"
#include "supervisor/owner.h"
#include "support/allocation_faults.h"
#include "support/handle_gauge.h"

namespace {

// What stands between the switches that every command has and the settings.
std::u16string Tail(const Launch& launch) {
    const std::u16string lastFixed = u" -evtwatchdog=\"" + launch.Value(u" -evtwatchdog") + u"\"";
    return launch.command.substr(launch.command.find(lastFixed) + lastFixed.size());
}

class ConversionRequest : public testing::Test {
  protected:
    ManualTimers timers;
    Host host;
};

}  // namespace

TEST_F(ConversionRequest, The_command_carries_the_hosts_words) {
    const Launch launch;
    host->cpu = 0;
    QACConvertAudio(host.handle, In(u"a b.wav"), In(u"c d.qv"), In(u"Some Encoder"), In(u"-q \"5\""));
    EXPECT_EQ(launch.Value(u" -infile"), u"a b.wav");
    EXPECT_EQ(launch.Value(u" -outfile"), u"c d.qv");
    EXPECT_EQ(launch.Value(u" -convert_to"), u"Some Encoder");
    EXPECT_EQ(Tail(launch), u" -noidtag -q \"5\"");
}

TEST_F(ConversionRequest, The_converter_is_looked_for_beside_the_library) {
    const Launch launch;
    char16_t self[4096];
    platform::GetModuleFileNameW(nullptr, self, 4096);
    const std::u16string_view program(self);
    host.Convert();
    EXPECT_EQ(
        launch.line.substr(1, launch.line.find(u'"', 1) - 1).find(program.substr(0, program.rfind(u"qv_"))),
        0u);
}

TEST_F(ConversionRequest, The_processor_of_a_new_handle_is_minus_one_and_0_leaves_the_switch_out) {
    for (const auto& [cpu, expected] :
         {std::pair(-1, u" -processor=\"-1\" -noidtag "), std::pair(0, u" -noidtag "),
          std::pair(3, u" -processor=\"3\" -noidtag ")}) {
        const Launch launch;
        if (cpu != -1) QACSetCPU(host.handle, cpu);
        host.Convert();
        EXPECT_EQ(Tail(launch), expected);
    }
}

TEST_F(ConversionRequest, Write_through_above_0_leaves_the_switch_out) {
    host->cpu = 0;
    for (const auto& [enabled, expected] :
         {std::pair(0, u" -noidtag "), std::pair(1, u" "), std::pair(99, u" "), std::pair(-1, u" -noidtag "),
          std::pair(INT32_MIN, u" -noidtag ")}) {
        const Launch launch;
        QACSetTagWriteThrough(host.handle, enabled);
        host.Convert();
        EXPECT_EQ(Tail(launch), expected) << enabled;
    }
}

TEST_F(ConversionRequest, Effects_are_numbered_densely_and_only_their_settings_have_quotes_replaced) {
    host->cpu = 0;
    for (const auto& [name, settings] : {std::pair(u"Echo", u"a=\"1\""), std::pair(u"", u"nameless"),
                                         std::pair(u"Pan", u""), std::pair(u"Q\"uote", u"\"\"")}) {
        host.AddEffect(name, settings);
    }
    const Launch launch;
    host.Convert();
    EXPECT_EQ(Tail(launch),
              u" -dspeffect1=\"Echo=a={qt}1{qt}\" -dspeffect2=\"Pan=\" "
              u"-dspeffect3=\"Q\"uote={qt}{qt}\"  -noidtag ");
}

TEST_F(ConversionRequest, Only_effects_without_a_name_are_no_effects) {
    host->cpu = 0;
    host.AddEffect(u"", u"s");
    const Launch launch;
    host.Convert();
    EXPECT_EQ(Tail(launch), u" -noidtag ");
}

TEST_F(ConversionRequest, Tags_with_a_value_go_along_whatever_write_through_says) {
    host->cpu = 0;
    host.AddTag(u"Ti\"tle", u"a \"b\"");
    host.AddTag(u"Empty", u"");
    host->tagList.AddBinary(u"Cover", u"", "art", 3);
    host.AddTag(u"", u"nameless");
    for (const int enabled : {0, 1}) {
        const Launch launch;
        QACSetTagWriteThrough(host.handle, enabled);
        host.Convert();
        EXPECT_EQ(Tail(launch), std::u16string(enabled ? u"" : u" -noidtag") +
                                    u" -tag=\"Ti{qt}tle=a {qt}b{qt}\" -tag=\"=nameless\" ");
    }
}

TEST_F(ConversionRequest, Leaves_both_lists_for_the_next_one) {
    host->cpu = 0;
    host.AddEffect(u"E", u"\"");
    host.AddTag(u"T", u"\"");
    std::u16string first;
    for (int run = 0; run < 2; ++run) {
        const Launch launch;
        host.Convert();
        if (run == 0) first = Tail(launch);
        EXPECT_EQ(Tail(launch), first);
    }
    EXPECT_EQ(host->dspChain.At(0).settings.Text(), std::u16string(u"\""));
    EXPECT_EQ(host->tagList.Count(), 1);
}

TEST_F(ConversionRequest, Null_texts_are_empty) {
    const Launch launch;
    EXPECT_EQ(QACConvertAudio(host.handle, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(launch.command.substr(0, 43), u" -infile=\"\" -outfile=\"\" -convert_to=\"\" -evt");
    timers.Tick();
    EXPECT_EQ(host.Info(), u"Converting '' to '' []\r\n");
}

TEST_F(ConversionRequest, A_converter_that_can_not_be_started_is_told_with_the_reason_first) {
    const Launch launch;
    EXPECT_FALSE(host.Convert());
    timers.Tick();
    EXPECT_EQ(host.Errors(), u"Error running Quavercore\r\nError starting encoder\r\n");
    EXPECT_EQ(host.Info(), u"Converting 'in.wav' to 'out.qv' [WAV]\r\n");
    EXPECT_EQ(host.Progress(), 0u);
}

TEST_F(ConversionRequest, Priority_pause_and_cancel_are_wiped_by_its_start) {
    const Launch launch;
    QACSetPriority(host.handle, 3);
    QACSetPause(host.handle, 1);
    QACSetCancelled(host.handle);
    EXPECT_EQ(host->priority, 3u);
    EXPECT_EQ(host->paused, 1);
    EXPECT_EQ(host->cancelled, 1) << "stays until the next start";
    host->encodingFinished = true;
    host.Convert();
    EXPECT_EQ(host->priority, 0u);
    EXPECT_EQ(host->paused, 0);
    EXPECT_EQ(host->cancelled, 0);
    EXPECT_FALSE(host->encodingFinished);
    EXPECT_EQ(Tail(launch).find(u"-priority"), std::u16string::npos);
}

TEST_F(ConversionRequest, The_trace_shows_its_steps) {
    const Launch launch;
    host.AddEffect(u"A", u"s");
    host.AddEffect(u"", u"passed over");
    host.AddEffect(u"B", u"");
    Trace trace(host);
    host.Convert();
    EXPECT_EQ(trace.OwnLines(),
              Enter("clConverter::ConvertAudio") +
                  u"*** Information: Converting 'in.wav' to 'out.qv' [WAV]\r\n" +
                  Enter("clConverter::ReplaceQuotes") + Leave("clConverter::ReplaceQuotes") +
                  Enter("clConverter::ReplaceQuotes") + Leave("clConverter::ReplaceQuotes") +
                  u"*** Error: Error running Quavercore\r\n*** Error: Error starting encoder\r\n" +
                  Leave("clConverter::ConvertAudio"));
}

TEST(ConversionRequestWithoutMemory, A_start_that_raises_leaves_a_handle_that_works_and_nothing_else) {
    Faulty<platform::CreateProcessW> starts;
    starts.Replace(
        [&](char16_t*, std::uint32_t, const platform::ChildStreams& streams, platform::ChildHandles*) {
            platform::CloseHandle.Native()(streams.output);
            platform::CloseHandle.Native()(streams.error);
            return false;
        });
    const ManualTimers timers;
    const std::u16string longText(300, u'x');
    const auto prepare = [&](Host& host) {
        host.AddEffect(longText.c_str(), longText.c_str());
        host.AddTag(longText.c_str(), longText.c_str());
    };
    {
        Host warmUp;
        prepare(warmUp);
        warmUp.Convert(longText.c_str());
    }
    const HandleGauge before;
    int raises = 0;
    for (bool failed = true; failed;) {
        Host host;
        prepare(host);
        bool raised = false;
        {
            AllocationFaults memory;
            memory.FailCall(raises + 1);
            try {
                host.Convert(longText.c_str());
            } catch (const std::bad_alloc&) {
                raised = true;
            }
            failed = memory.HasFailed();
        }
        raises += failed;
        EXPECT_LE(raised, failed);
        EXPECT_FALSE(host.Convert());
        timers.Tick();
        const std::u16string errors = host.Errors();
        EXPECT_TRUE(errors.ends_with(u"Error running Quavercore\r\nError starting encoder\r\n"));
    }
    EXPECT_GT(raises, 5);
    EXPECT_EQ(HandleGauge(), before);
}
