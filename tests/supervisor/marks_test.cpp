// The trace, mark by mark and with its indent.
#include <gtest/gtest.h>

#include "supervisor/active_run.h"

namespace {

std::u16string Marks(std::u16string_view text) {  // one per line, '/' for the line ends
    std::u16string all;
    for (const char16_t unit : text) all += unit == u'/' ? std::u16string(u"\r\n") : std::u16string(1, unit);
    return all;
}

constexpr std::u16string_view kIdlePoll =
    u"->->  [CPUEncoder::ServiceEncoder]/<-<-  [CPUEncoder::ServiceEncoder]/";

// Waits for the child without polling, and drops what the trace holds by then.
void AwaitChild(ActiveRun& run) {
    platform::WaitForSingleObject(run.launch.child.process, 60000);
    run.owner.trace.Take();
}

}  // namespace

TEST(SupervisorMarks, Create_brackets_itself_in_the_log_it_was_given) {
    Owner owner;
    owner.Create();
    EXPECT_EQ(owner.trace.Text(), Marks(u"->->  [CPUEncoder::Create]/<-<-  [CPUEncoder::Create]/"));
}

TEST(SupervisorMarks, idle_poll_is_one_pair) {
    TestClock clock;
    clock.Hold();
    Owner owner;
    owner.Create();
    owner.trace.Take();
    owner.Poll();
    owner.Poll(true, true);
    EXPECT_EQ(owner.trace.Take(), Marks(kIdlePoll) + Marks(kIdlePoll));
    clock.Advance(2000);
    owner.Poll();
    EXPECT_EQ(owner.trace.Take(), Marks(std::u16string(kIdlePoll) + u"*** Information: /"));
}

TEST(SupervisorMarks, start_shows_its_tags_and_its_command_line) {
    Owner owner;
    const Launch refused;
    owner.Create();
    owner.tags.Add(u"n", u"v");
    owner.tags.Add(u"without", u"");
    owner.trace.Take();
    owner.Start();
    std::u16string expected = Marks(
        u"->->  [CPUEncoder::StartThisEncoder]/"
        u"  ->->  [CPUEncoder::StartEncoder]/"
        u"    ->->  [CPUEncoder::ReplaceQuotes]/    <-<-  [CPUEncoder::ReplaceQuotes]/"
        u"    ->->  [CPUEncoder::ReplaceQuotes]/    <-<-  [CPUEncoder::ReplaceQuotes]/");
    expected += u"    " + refused.line;
    expected += Marks(
        u"  [CPUEncoder::StartEncoder]/"
        u"*** Error: Error running Quavercore/"
        u"  <-<-  [CPUEncoder::StartEncoder]/"
        u"<-<-  [CPUEncoder::StartThisEncoder]/");
    EXPECT_EQ(owner.trace.Take(), expected);
}

TEST(SupervisorMarks, start_that_works_leaves_balanced_marks) {
    ActiveRun run("leaves");
    const std::u16string text = run.owner.trace.Take();
    EXPECT_TRUE(
        text.ends_with(Marks(u"  <-<-  [CPUEncoder::StartEncoder]/<-<-  [CPUEncoder::StartThisEncoder]/")));
    EXPECT_TRUE(run.owner.PollUntilEnd());
}

TEST(SupervisorMarks, priority_that_meets_no_child_has_no_leave_mark) {
    TestClock clock;
    clock.Hold();
    Owner owner;
    owner.Create();
    owner.trace.Take();
    owner.Poll(false, false, 2);
    EXPECT_EQ(owner.trace.Take(), Marks(std::u16string(kIdlePoll) + u"->->  [CPUEncoder::SetPriority]/"));
    owner.Poll(false, false, 2);
    EXPECT_EQ(owner.trace.Take(),
              Marks(u"  ->->  [CPUEncoder::ServiceEncoder]/  <-<-  [CPUEncoder::ServiceEncoder]/"));
}

TEST(SupervisorMarks, priority_of_a_child_and_its_pause_are_pairs) {
    ActiveRun run("hangs");
    Faulty<platform::SetThreadPriority> threads;
    threads.Replace([](auto...) { return true; });
    run.owner.trace.Take();
    run.owner.Poll(false, false, 1);
    EXPECT_EQ(run.owner.trace.Take(),
              Marks(std::u16string(kIdlePoll) +
                    u"->->  [CPUEncoder::SetPriority]/<-<-  [CPUEncoder::SetPriority]/"));
    run.owner.Poll(true, false, 1);
    EXPECT_EQ(run.owner.trace.Take(), Marks(std::u16string(kIdlePoll) +
                                            u"->->  [CPUEncoder::PauseCLI]/<-<-  [CPUEncoder::PauseCLI]/"));
    run.owner.Poll(false, false, 1);
    EXPECT_EQ(
        run.owner.trace.Take(),
        Marks(std::u16string(kIdlePoll) + u"->->  [CPUEncoder::UnPauseCLI]/<-<-  [CPUEncoder::UnPauseCLI]/"));
}

TEST(SupervisorMarks, last_drain_has_no_leave_mark_so_each_run_sets_the_trace_one_step_in) {
    std::u16string indent;
    ActiveRun run("leaves");
    for (int ended = 0; ended < 3; ++ended) {
        if (ended > 0) run.owner.Create();
        if (ended > 0) run.owner.Start();
        AwaitChild(run);
        run.owner.Poll();
        std::u16string expected;
        for (const char16_t* line :
             {u"->->  [CPUEncoder::ServiceEncoder]/", u"  ->->  [CPUEncoder::EncodingFinished]/",
              u"*** Information: Encoding finished/", u"    ->->  [CPUEncoder::ServiceEncoder]/",
              u"    <-<-  [CPUEncoder::EncodingFinished]/", u"  <-<-  [CPUEncoder::ServiceEncoder]/"}) {
            expected += (*line == u'*' ? u"" : indent) + Marks(line);
        }
        EXPECT_EQ(run.owner.trace.Take(), expected);
        indent += u"  ";
    }
}

TEST(SupervisorMarks, watchdog_tells_its_error_and_then_ends_the_run) {
    ActiveRun run("hangs");
    run.owner.trace.Take();
    run.clock.Advance(60001);
    run.owner.Poll();
    EXPECT_EQ(run.owner.trace.Take(), Marks(std::u16string(kIdlePoll) +
                                            u"*** Error: Error: Watchdog timeout, possible Quavercore crash/"
                                            u"->->  [CPUEncoder::EncodingFinished]/"
                                            u"*** Information: Encoding finished/"
                                            u"  ->->  [CPUEncoder::ServiceEncoder]/"
                                            u"  <-<-  [CPUEncoder::EncodingFinished]/"));
}

TEST(SupervisorMarks, lines_of_the_child_carry_no_indent) {
    Owner owner;
    owner.Create();
    owner.trace.Take();
    owner.Say(u"hello\r\n");
    owner.Say(u"oh no\r\n", CPUEncoder::Stream::kError);
    EXPECT_EQ(owner.trace.Take(), Marks(u"*** Information: hello/*** Error: oh no/"));
}
