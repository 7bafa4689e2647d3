#include "foundation/log.h"

#include <gtest/gtest.h>

#include <cstring>

#include "foundation/file.h"
#include "foundation/log_channels.h"
#include "foundation/native_text.h"
#include "platform/file.h"
#include "platform/process.h"
#include "platform/synchronisation.h"
#include "support/allocation_faults.h"
#include "support/child.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

class Log : public testing::Test {
  protected:
    Log() {
        SettleLog();
        mLog.mTraceOut = mTrace.End();
    }
    void Mark(const char16_t* mark, const char* function) {
        XLog::Write(mark, mLog, function, true, nullptr);
    }
    void Line(const char16_t* message, bool endLine = true) {
        XLog::Write(message, mLog, nullptr, endLine, nullptr);
    }

    XLog mLog;
    LogPipe mTrace;
};

TEST_F(Log, Indents_two_spaces_a_level) {
    Mark(XLog::kEnter, "A");
    Mark(XLog::kEnter, "B");
    Mark(XLog::kLeave, "B");
    Mark(XLog::kLeave, "A");
    EXPECT_EQ(mTrace.Take(), u"->->  [A]\r\n  ->->  [B]\r\n  <-<-  [B]\r\n<-<-  [A]\r\n");
}

TEST_F(Log, Shapes_its_lines) {
    Line(u"->->");
    Mark(XLog::kEnter, "clConverter::SetCPU");
    XLog::Information(u"told", mLog);
    XLog::Error(u"wrong", mLog, "clConverter::SetCPU");
    XLog::Error(u"wrong", mLog, nullptr);
    EXPECT_EQ(mTrace.Take(),
              u"->->\r\n"
              u"  ->->  [clConverter::SetCPU]\r\n"
              u"*** Information: told\r\n"
              u"*** Error: wrong  [clConverter::SetCPU]\r\n"
              u"*** Error: wrong\r\n");
}

TEST_F(Log, An_unmatched_leave_stays_at_the_margin) {
    Mark(XLog::kLeave, "A");
    Mark(XLog::kLeave, "A");
    Line(u"x");
    EXPECT_EQ(mTrace.Take(), u"<-<-  [A]\r\n<-<-  [A]\r\nx\r\n");
}

TEST_F(Log, A_longer_message_that_begins_with_a_mark_counts_and_a_shorter_one_does_not) {
    for (const char16_t* message : {u"->->deeper", u"->-", u"x->->", u"<-<-back", u"<-<", u""}) Line(message);
    EXPECT_EQ(mTrace.Take(), u"->->deeper\r\n  ->-\r\n  x->->\r\n<-<-back\r\n<-<\r\n\r\n");
}

TEST_F(Log, No_message_is_an_empty_one) {
    Line(nullptr);
    XLog::Write(nullptr, mLog, "A", true, u"prefix");
    EXPECT_EQ(mTrace.Take(), u"\r\nprefix  [A]\r\n");
}

TEST_F(Log, A_given_prefix_takes_the_place_of_the_indent) {
    Line(u"->->");
    XLog::Write(u"message", mLog, nullptr, true, u"> ");
    XLog::Write(u"message", mLog, nullptr, true, u"");
    EXPECT_EQ(mTrace.Take(), u"->->\r\n> message\r\nmessage\r\n");
}

TEST_F(Log, An_open_line_is_continued_without_indent_and_names_no_function) {
    Line(u"->->");
    XLog::Write(u"one", mLog, "A", false, nullptr);
    XLog::Write(u" two", mLog, "A", false, nullptr);
    XLog::Write(u" three", mLog, "A", true, nullptr);
    Line(u"four");
    EXPECT_EQ(mTrace.Take(), u"->->\r\n  one two three  [A]\r\n  four\r\n");
}

TEST_F(Log, Its_records_share_one_depth) {
    XLog other = mLog;
    Line(u"->->");
    XLog::Write(u"other", other, nullptr, true, nullptr);
    EXPECT_EQ(mTrace.Take(), u"->->\r\n  other\r\n");
}

TEST_F(Log, Keeps_the_depth_while_nobody_listens) {
    mLog.mTraceOut = platform::kNullHandle;
    Line(u"->->");
    mLog.mTraceOut = platform::kInvalidHandle;
    Line(u"->->");
    Line(u"open", false);
    mLog.mTraceOut = mTrace.End();
    Line(u"goes on");
    Line(u"x");
    EXPECT_EQ(mTrace.Take(), u"goes on\r\n    x\r\n");
}

TEST_F(Log, Costs_no_memory_while_nobody_listens_however_deep_it_is) {
    mLog.mTraceOut = platform::kNullHandle;
    int allocations = 0;
    {
        const AllocationFaults memory;
        for (int i = 0; i < 1000; ++i) Mark(XLog::kEnter, "A");
        for (int i = 0; i < 1000; ++i) Mark(XLog::kLeave, "A");
        XLog::Error(u"wrong", mLog, "A");
        XLog::Information(u"told", mLog);
        allocations = memory.Calls();
    }
    EXPECT_EQ(allocations, 0);
    mLog.mTraceOut = mTrace.End();
    Line(u"x");
    EXPECT_EQ(mTrace.Take(), u"x\r\n");
}

TEST_F(Log, The_error_channel_gets_the_message_and_its_place_and_nothing_more) {
    LogPipe errors, infos;
    mLog.mErrorOut = errors.End();
    mLog.mInfoOut = infos.End();
    Line(u"->->");
    XLog::Error(u"Error loading encoder.", mLog, "clConverter::SetCPU");
    XLog::Error(u"Error starting encoder", mLog, nullptr);
    EXPECT_EQ(errors.Take(), u"Error loading encoder.  [clConverter::SetCPU]\r\nError starting encoder\r\n");
    EXPECT_EQ(infos.Take(), u"");
}

TEST_F(Log, The_information_channel_gets_the_message) {
    LogPipe errors, infos;
    mLog.mErrorOut = errors.End();
    mLog.mInfoOut = infos.End();
    Line(u"->->");
    XLog::Information(u"Encoding finished", mLog);
    EXPECT_EQ(infos.Take(), u"Encoding finished\r\n");
    EXPECT_EQ(errors.Take(), u"");
}

TEST_F(Log, Writes_every_line_in_one_piece) {
    LogPipe errors, infos;
    mLog = {errors.End(), infos.End(), mTrace.End()};
    Faulty<platform::WriteFile> writes;
    XLog::Error(u"wrong", mLog, "A");
    EXPECT_EQ(writes.Calls(), 2);
    XLog::Information(u"told", mLog);
    EXPECT_EQ(writes.Calls(), 4);
    Line(u"->->");
    EXPECT_EQ(writes.Calls(), 5);
}

TEST_F(Log, Writes_nothing_to_channels_that_are_off) {
    Faulty<platform::WriteFile> writes;
    for (const platform::Handle off : {platform::kNullHandle, platform::kInvalidHandle}) {
        mLog = {off, off, off};
        XLog::Error(u"wrong", mLog, "A");
        XLog::Information(u"told", mLog);
        Line(u"->->");
    }
    EXPECT_EQ(writes.Calls(), 0);
}

TEST_F(Log, A_write_that_fails_is_ignored) {
    LogPipe errors;
    mLog.mErrorOut = errors.End();
    Faulty<platform::WriteFile> writes;
    writes.FailAlways();
    Line(u"->->");
    XLog::Error(u"wrong", mLog, "A");
    EXPECT_EQ(writes.Calls(), 3);
}

TEST_F(Log, A_channel_may_be_a_file_and_holds_16_bit_units_without_a_mark) {
    const TempFolder temp;
    XFile file((temp / u"log").c_str());
    ASSERT_TRUE(file.Create());
    mLog.mInfoOut = file.mHandle;
    XLog::Information(u"\x4E2D\x00E9", mLog);
    file.Close();
    EXPECT_EQ(temp.Read(u"log"), std::string("\x2D\x4E\xE9\0\r\0\n\0", 8));
}

TEST_F(Log, MakeLine_joins_what_is_given) {
    struct {
        const char16_t *prefix, *message;
        const char* function;
        bool endLine;
        const char16_t* line;
    } const rows[] = {{u"p ", u"m", "A::b", true, u"p m  [A::b]\r\n"},
                      {u"p ", u"m", nullptr, true, u"p m\r\n"},
                      {nullptr, u"m", "A::b", true, u"m  [A::b]\r\n"},
                      {u"p ", u"m", "A::b", false, u"p m"},
                      {nullptr, nullptr, nullptr, true, u"\r\n"},
                      {nullptr, nullptr, "A", false, u""},
                      {u"", u"m", "", true, u"m  []\r\n"}};
    for (const auto& row : rows)
        EXPECT_EQ(Units(XLog::MakeLine(row.prefix, row.message, row.function, row.endLine)), row.line);
}

TEST_F(Log, Works_unlocked_before_its_start_and_behind_its_end) {
    XLog::ShutDown();
    Faulty<platform::WaitForSingleObject> waits;
    Line(u"->->");
    Line(u"x");
    XLog::ShutDown();
    EXPECT_EQ(waits.Calls(), 0);
    Faulty<platform::CreateMutexW> mutexes;
    XLog::StartUp();
    XLog::StartUp();
    EXPECT_EQ(mutexes.Calls(), 1);
    Line(u"<-<-");
    EXPECT_EQ(waits.Calls(), 1);
    EXPECT_EQ(mTrace.Take(), u"->->\r\n  x\r\n<-<-\r\n");
}

TEST_F(Log, Works_unlocked_where_the_platform_gives_no_mutex) {
    XLog::ShutDown();
    {
        Faulty<platform::CreateMutexW> mutexes;
        mutexes.FailAlways();
        XLog::StartUp();
        EXPECT_EQ(mutexes.Calls(), 1);
    }
    Faulty<platform::WaitForSingleObject> waits;
    Line(u"->->");
    Line(u"x");
    EXPECT_EQ(waits.Calls(), 0);
    EXPECT_EQ(mTrace.Take(), u"->->\r\n  x\r\n");
    XLog::ShutDown();
    XLog::StartUp();
}

TEST_F(Log, A_scope_brackets_its_calls) {
    {
        const XTraceScope outer(mLog, "Outer");
        const XTraceScope inner(mLog, "Inner");
        Line(u"x");
    }
    EXPECT_EQ(mTrace.Take(),
              u"->->  [Outer]\r\n  ->->  [Inner]\r\n    x\r\n  <-<-  [Inner]\r\n<-<-  [Outer]\r\n");
}

TEST_F(Log, A_scope_that_skips_its_leave_mark_stays_open) {
    {
        XTraceScope scope(mLog, "Failing");
        scope.SkipLeaveMark();
    }
    Line(u"x");
    EXPECT_EQ(mTrace.Take(), u"->->  [Failing]\r\n  x\r\n");
}

TEST_F(Log, A_scope_follows_a_record_that_is_filled_or_emptied_in_it) {
    XLog record;
    {
        const XTraceScope scope(record, "Constructor");
        record = mLog;
    }
    EXPECT_EQ(mTrace.Take(), u"<-<-  [Constructor]\r\n");
    {
        const XTraceScope scope(record, "Destructor");
        record = XLog();
    }
    EXPECT_EQ(mTrace.Take(), u"->->  [Destructor]\r\n");
}

TEST_F(Log, A_scope_keeps_the_depth_right_when_memory_ends) {
    const std::string function(200, 'f');  // longer than any text that needs no memory
    {
        AllocationFaults memory;
        const XTraceScope scope(mLog, function.c_str());
        memory.FailFrom(1);
    }
    mTrace.Take();
    Line(u"x");
    EXPECT_EQ(mTrace.Take(), u"x\r\n");
}

// The state of a fresh process: no line has been finished yet.
CHILD_PROGRAM(FirstLogLine) {
    const XString path(argv[0]);
    XFile file(path);
    if (!file.Create()) return 1;
    const XLog log{0, 0, file.mHandle};
    XLog::StartUp();
    XLog::Write(XLog::kEnter, log, "First", true, nullptr);
    XLog::Write(u"second", log, nullptr, true, nullptr);
    XLog::ShutDown();
    return 0;
}

TEST_F(Log, The_first_line_of_a_process_has_no_indent) {
    const TempFolder temp;
    std::u16string line = child::CommandLine("FirstLogLine", u"\"" + (temp / u"log") + u"\"");
    XPipe output, error;
    ASSERT_TRUE(output.Create() && error.Create());
    const platform::ChildStreams streams{output.DetachWriteEnd(), error.DetachWriteEnd()};
    platform::ChildHandles handles;
    ASSERT_TRUE(platform::CreateProcessW(line.data(), platform::kCreateNoWindow, streams, &handles));
    platform::WaitForSingleObject(handles.process, platform::kInfinite);
    std::uint32_t exitCode = 99;
    EXPECT_TRUE(platform::GetExitCodeProcess(handles.process, &exitCode));
    EXPECT_EQ(exitCode, 0u);
    for (const platform::Handle handle : {streams.output, streams.error, handles.process, handles.thread})
        platform::CloseHandle(handle);
    const std::string bytes = temp.Read(u"log");
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
    EXPECT_EQ(text, u"->->  [First]\r\n  second\r\n");
}

}  // namespace
