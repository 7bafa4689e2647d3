// The log from several threads, and channels that nobody reads while they are written to.
#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "foundation/log_channels.h"
#include "platform/file.h"
#include "support/faults.h"

namespace {

constexpr int kThreads = 4, kTurns = 200;

// The lines of a text, each counted, their line ends off.
std::map<std::u16string, int> CountLines(const std::u16string& text) {
    std::map<std::u16string, int> lines;
    std::size_t from = 0;
    for (std::size_t end; (end = text.find(u"\r\n", from)) != text.npos; from = end + 2)
        ++lines[text.substr(from, end - from)];
    EXPECT_EQ(from, text.size()) << "the last line has its end";
    return lines;
}

// All that comes through a pipe until its writers have given it up.
class Reader {
  public:
    explicit Reader(LogPipe& pipe) : mPipe(pipe), mThread([this] { Run(); }) {}
    std::u16string Finish() {
        mDone = true;
        mThread.join();
        return mText + mPipe.Take();
    }

  private:
    void Run() {
        while (!mDone) {
            mText += mPipe.Take();
            std::this_thread::yield();
        }
    }

    LogPipe& mPipe;
    std::u16string mText;
    std::atomic<bool> mDone = false;
    std::thread mThread;
};

void InThreads(void (*work)(const XLog& log, int thread), const XLog& log) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, std::cref(log), i);
    for (std::thread& thread : threads) thread.join();
}

void LogErrors(const XLog& log, int thread) {
    const char16_t message[] = {u'm', static_cast<char16_t>(u'0' + thread), 0};
    for (int turn = 0; turn < kTurns; ++turn) {
        const XTraceScope scope(log, "Scope");
        XLog::Error(message, log, "Error");
        XLog::Information(message, log);
    }
}

TEST(LogThreads, Tear_no_line_and_lose_none) {
    SettleLog();
    LogPipe errors, infos, trace;
    Reader errorReader(errors), infoReader(infos), traceReader(trace);
    InThreads(&LogErrors, {errors.End(), infos.End(), trace.End()});
    std::map<std::u16string, int> inErrors, inInfos, marks;
    for (char16_t i = u'0'; i < u'0' + kThreads; ++i) {
        inErrors[std::u16string(u"m") + i + u"  [Error]"] = kTurns;
        inInfos[std::u16string(u"m") + i] = kTurns;
    }
    EXPECT_EQ(CountLines(errorReader.Finish()), inErrors);
    EXPECT_EQ(CountLines(infoReader.Finish()), inInfos);
    for (const auto& [line, count] : CountLines(traceReader.Finish())) {
        const std::size_t depth = line.find_first_not_of(u' ');
        EXPECT_LE(depth, 2u * kThreads);
        marks[line.substr(depth, 4)] += count;
    }
    EXPECT_EQ(marks, (std::map<std::u16string, int>{{u"->->", kThreads * kTurns},
                                                    {u"<-<-", kThreads * kTurns},
                                                    {u"*** ", 2 * kThreads * kTurns}}));
}

TEST(LogThreads, Leave_the_depth_as_it_was) {
    SettleLog();
    InThreads(&LogErrors, XLog());
    LogPipe trace;
    XLog::Write(u"x", {0, 0, trace.End()}, nullptr, true, nullptr);
    EXPECT_EQ(trace.Take(), u"x\r\n");
}

TEST(LogThreads, Write_to_the_trace_one_at_a_time) {
    SettleLog();
    Faulty<platform::WriteFile> writes;
    std::atomic<int> inside = 0, most = 0;
    writes.Replace([&](platform::Handle, const void*, std::uint32_t, std::uint32_t*) {
        most = std::max(most.load(), ++inside);
        std::this_thread::yield();
        --inside;
        return true;
    });
    InThreads(
        [](const XLog& log, int) {
            for (int turn = 0; turn < kTurns; ++turn) XLog::Write(u"->->", log, "A", true, nullptr);
        },
        {0, 0, 77});
    EXPECT_EQ(most, 1);
    EXPECT_EQ(writes.Calls(), kThreads * kTurns);
    writes.Replace(nullptr);
    for (int i = 0; i < kThreads * kTurns; ++i) XLog::Write(u"<-<-", XLog(), nullptr, true, nullptr);
}

// A channel with a drain of its own: what the pipe held goes to a text.
class DrainedChannel {
  public:
    DrainedChannel() {
        XLog::SetDrain(
            mPipe.End(), [](void* self) { static_cast<DrainedChannel*>(self)->Drain(); }, this);
    }
    ~DrainedChannel() { XLog::SetDrain(mPipe.End(), nullptr, nullptr); }

    platform::Handle End() const { return mPipe.End(); }
    int Drains() const { return mDrains; }
    std::u16string Take() { return mText + mPipe.Take(); }

  private:
    void Drain() {
        ++mDrains;
        mText += mPipe.Take();
    }

    LogPipe mPipe;
    std::u16string mText;
    int mDrains = 0;
};

TEST(LogDrain, Lets_its_only_thread_write_more_than_a_pipe_holds) {
    DrainedChannel channel;
    Faulty<platform::WriteFile> writes;
    writes.Replace(
        [&](platform::Handle handle, const void* bytes, std::uint32_t count, std::uint32_t* written) {
            EXPECT_LE(count, 2048u);
            EXPECT_EQ(channel.Drains(), writes.Calls()) << "a drain before each piece";
            return writes.Native(handle, bytes, count, written);
        });
    const std::u16string message(500000, u'x');
    XLog::Error(message.c_str(), {channel.End(), 0, 0}, "A");
    EXPECT_EQ(channel.Take(), message + u"  [A]\r\n");
}

TEST(LogDrain, Lets_short_lines_come_without_an_end) {
    DrainedChannel channel;
    std::u16string expected;
    for (int i = 0; i < 20000; ++i) {
        XLog::Information(u"one of many", {0, channel.End(), 0});
        expected += u"one of many\r\n";
    }
    EXPECT_EQ(channel.Take(), expected);
}

TEST(LogDrain, Serves_several_threads) {
    DrainedChannel channel;
    InThreads(
        [](const XLog& log, int thread) {
            const std::u16string message(1500, static_cast<char16_t>(u'a' + thread));
            for (int turn = 0; turn < 50; ++turn) XLog::Error(message.c_str(), log, nullptr);
        },
        {channel.End(), 0, 0});
    const std::map<std::u16string, int> lines = CountLines(channel.Take());
    EXPECT_EQ(lines.size(), std::size_t{kThreads});
    for (const auto& [line, count] : lines) {
        EXPECT_EQ(line.size(), 1500u);
        EXPECT_EQ(count, 50);
    }
}

TEST(LogDrain, Is_called_for_its_own_channel_and_until_it_is_taken_back) {
    DrainedChannel drained;
    LogPipe plain;
    XLog::Error(u"wrong", {plain.End(), drained.End(), 0}, nullptr);
    EXPECT_EQ(drained.Drains(), 0);
    XLog::Information(u"told", {plain.End(), drained.End(), 0});
    EXPECT_EQ(drained.Drains(), 1);
    XLog::SetDrain(drained.End(), nullptr, nullptr);
    XLog::Information(u"told", {plain.End(), drained.End(), 0});
    EXPECT_EQ(drained.Drains(), 1);
    EXPECT_EQ(plain.Take(), u"wrong\r\n");
    EXPECT_EQ(drained.Take(), u"told\r\ntold\r\n");
}

TEST(LogDrain, Named_again_takes_the_place_of_the_first) {
    DrainedChannel channel;
    int others = 0;
    XLog::SetDrain(
        channel.End(), [](void* count) { ++*static_cast<int*>(count); }, &others);
    XLog::Information(u"told", {0, channel.End(), 0});
    EXPECT_EQ(channel.Drains(), 0);
    EXPECT_EQ(others, 1);
}

TEST(LogDrain, Does_not_run_once_it_has_been_taken_back) {
    struct Seen {
        LogPipe pipe;
        std::atomic<bool> isNamed = true;
        std::atomic<int> late = 0;
    };
    for (int turn = 0; turn < 50; ++turn) {
        Seen seen;
        const XLog log{0, seen.pipe.End(), 0};
        XLog::SetDrain(
            log.mInfoOut,
            [](void* user) {
                auto& self = *static_cast<Seen*>(user);
                self.pipe.Take();
                if (!self.isNamed) ++self.late;
            },
            &seen);
        std::thread writer([&] {
            for (int i = 0; i < 20; ++i) XLog::Information(u"told", log);
        });
        XLog::SetDrain(log.mInfoOut, nullptr, nullptr);
        seen.isNamed = false;
        writer.join();
        EXPECT_EQ(seen.late, 0);
    }
}

}  // namespace
