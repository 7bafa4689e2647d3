// Events, alone and between processes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "owned_event.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/program.h"
#include "platform/synchronisation.h"
#include "running_child.h"
#include "support/child.h"
#include "unique_name.h"

using namespace platform;

namespace {

std::u16string Wide(const char* argument) {
    return {argument, argument + std::strlen(argument)};
}

// Whether the name is free. One who was just killed may hold it a moment longer.
bool BecomesFree(const std::u16string& name) {
    for (;; Sleep(1)) {
        const OwnedEvent event = Create(name);
        if (!event) return false;
        if (GetLastError() == kErrorSuccess) return true;
    }
}

}  // namespace

TEST(Events, begin_unset_and_stay_as_they_are_put) {
    const OwnedEvent event(CreateEventW(nullptr));
    ASSERT_TRUE(event);
    EXPECT_FALSE(event.IsSet());
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(SetEvent(event));
        EXPECT_TRUE(SetEvent(event));
        EXPECT_TRUE(event.IsSet());
        EXPECT_TRUE(event.IsSet());  // looking takes nothing away
        EXPECT_TRUE(ResetEvent(event));
        EXPECT_TRUE(ResetEvent(event));
        EXPECT_FALSE(event.IsSet());
    }
}

TEST(Events, without_a_name_have_nothing_in_common) {
    const OwnedEvent one(CreateEventW(nullptr)), other(CreateEventW(nullptr));
    EXPECT_TRUE(SetEvent(one));
    EXPECT_FALSE(other.IsSet());
}

TEST(Events, a_wait_ends_with_its_time) {
    const OwnedEvent event(CreateEventW(nullptr));
    for (const std::uint32_t milliseconds : {0u, 1u, 20u}) {
        EXPECT_EQ(WaitForSingleObject(event, milliseconds), kWaitTimeout);
    }
}

TEST(Events, setting_releases_all_who_wait) {
    const OwnedEvent event(CreateEventW(nullptr));
    std::vector<std::thread> threads;
    for (const std::uint32_t milliseconds : {kInfinite, kInfinite, 600000u, 0xFFFFFFFEu}) {
        threads.emplace_back(
            [&event, milliseconds] { EXPECT_EQ(WaitForSingleObject(event, milliseconds), kWaitObject); });
    }
    EXPECT_TRUE(SetEvent(event));
    for (std::thread& thread : threads) thread.join();
}

TEST(Events, that_are_none_are_refused) {
    EXPECT_FALSE(SetEvent(kNullHandle));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_FALSE(ResetEvent(kNullHandle));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_EQ(WaitForSingleObject(kNullHandle, 0), kWaitFailed);
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    const OwnedEvent mutex(CreateMutexW());
    EXPECT_FALSE(SetEvent(mutex));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
}

TEST(NamedEvents, the_second_creation_finds_the_first_as_it_is) {
    const auto name = UniqueName("event");
    SetLastError(77);
    const OwnedEvent first = Create(name);
    EXPECT_EQ(GetLastError(), kErrorSuccess);
    EXPECT_TRUE(SetEvent(first));
    const OwnedEvent second = Create(name);
    EXPECT_EQ(GetLastError(), kErrorAlreadyExists);
    EXPECT_NE(first, second);
    EXPECT_TRUE(second.IsSet());
    EXPECT_TRUE(ResetEvent(second));
    EXPECT_FALSE(first.IsSet());
}

TEST(NamedEvents, opening_needs_an_existing_one) {
    const auto name = UniqueName("event");
    EXPECT_EQ(OpenEventW(name.c_str()), kNullHandle);
    EXPECT_EQ(GetLastError(), kErrorFileNotFound);
    const OwnedEvent created = Create(name), opened(OpenEventW(name.c_str()));
    ASSERT_TRUE(opened);
    EXPECT_TRUE(SetEvent(opened));
    EXPECT_TRUE(created.IsSet());
}

TEST(NamedEvents, vanish_with_the_last_handle) {
    const auto name = UniqueName("event");
    OwnedEvent first = Create(name), second = Create(name);
    EXPECT_TRUE(SetEvent(first));
    first.Close();
    EXPECT_TRUE(OwnedEvent(OpenEventW(name.c_str())).IsSet());
    second.Close();
    EXPECT_EQ(OpenEventW(name.c_str()), kNullHandle);
    const OwnedEvent again = Create(name);
    EXPECT_EQ(GetLastError(), kErrorSuccess);
    EXPECT_FALSE(again.IsSet());
}

TEST(NamedEvents, are_told_apart_by_their_whole_name) {
    const auto base = UniqueName("event");
    std::vector<std::u16string> names{base,         base + u" ",      base + u".",      base + u"%20",
                                      base + u"/x", base + u"\u00E9", base + u"e\u0301"};
    names.push_back(base + std::u16string(150, u'x') + u"1");
    names.push_back(base + std::u16string(150, u'x') + u"2");
    std::vector<std::unique_ptr<OwnedEvent>> events;
    for (const auto& name : names) {
        events.push_back(std::make_unique<OwnedEvent>(CreateEventW(name.c_str())));
        EXPECT_TRUE(*events.back());
        EXPECT_EQ(GetLastError(), kErrorSuccess);
    }
    for (const auto& name : names) EXPECT_TRUE(OwnedEvent(OpenEventW(name.c_str())));
}

TEST(NamedEvents, threads_that_create_one_together_make_one) {
    for (std::size_t round = 0; round < 100; ++round) {
        const auto name = UniqueName("event");
        std::array<Handle, 8> events{};
        std::atomic<int> creators = 0;
        std::vector<std::thread> threads;
        for (Handle& event : events) {
            threads.emplace_back([&] {
                event = CreateEventW(name.c_str());
                if (GetLastError() == kErrorSuccess) ++creators;
            });
        }
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(creators, 1);
        EXPECT_TRUE(SetEvent(events[round % 8]));
        for (const Handle event : events) EXPECT_TRUE(OwnedEvent(event).IsSet());
    }
}

// Opens the events in its arguments; sets the second once the first is set.
CHILD_PROGRAM(answer_event) {
    const OwnedEvent asked = OpenByArgument(argv[0]), answer = OpenByArgument(argv[1]);
    if (!asked || !answer) return 1;
    if (WaitForSingleObject(asked, kInfinite) != kWaitObject) return 2;
    return SetEvent(answer) ? 0 : 3;
}

TEST(NamedEvents, reach_from_process_to_process) {
    const auto asked = UniqueName("asked"), answered = UniqueName("answered");
    const OwnedEvent question = Create(asked), answer = Create(answered);
    RunningChild child("answer_event", asked + u" " + answered);
    EXPECT_TRUE(SetEvent(question));
    EXPECT_EQ(WaitForSingleObject(answer, kInfinite), kWaitObject);
    EXPECT_EQ(child.Finish(), 0u);
}

TEST(NamedEvents, stay_set_for_a_process_that_opens_them_later) {
    const auto asked = UniqueName("asked"), answered = UniqueName("answered");
    const OwnedEvent question = Create(asked), answer = Create(answered);
    EXPECT_TRUE(SetEvent(question));
    RunningChild child("answer_event", asked + u" " + answered);
    EXPECT_EQ(child.Finish(), 0u);
    EXPECT_TRUE(answer.IsSet());
}

// Creates the event in its argument, says so, and holds it for ever.
CHILD_PROGRAM(hold_event) {
    const OwnedEvent event = Create(Wide(argv[0]));
    SetEvent(event);
    WriteToStream(kStdOutput, GetLastError() == kErrorSuccess ? "n" : "e");
    const OwnedEvent never(CreateEventW(nullptr));
    WaitForSingleObject(never, kInfinite);
    return 0;
}

TEST(NamedEvents, of_a_killed_holder_are_new_again) {
    const auto name = UniqueName("event");
    RunningChild child("hold_event", name);
    ASSERT_TRUE(child.ReadOutput(1));
    EXPECT_EQ(child.Output(), "n");
    EXPECT_TRUE(OwnedEvent(OpenEventW(name.c_str())).IsSet());
    EXPECT_TRUE(TerminateProcess(child.Process()));
    EXPECT_EQ(WaitForSingleObject(child.Process(), kInfinite), kWaitObject);
    ASSERT_TRUE(BecomesFree(name));
    EXPECT_EQ(OpenEventW(name.c_str()), kNullHandle);
    EXPECT_FALSE(Create(name).IsSet());
}

TEST(NamedEvents, outlive_one_of_two_holders) {
    const auto name = UniqueName("event");
    const OwnedEvent mine = Create(name);
    {
        RunningChild child("hold_event", name);
        ASSERT_TRUE(child.ReadOutput(1));
        EXPECT_EQ(child.Output(), "e");
    }
    EXPECT_TRUE(mine.IsSet());
    EXPECT_TRUE(OwnedEvent(OpenEventW(name.c_str())).IsSet());
}

namespace {
constexpr int kContested = 60;

std::u16string Contested(const std::u16string& base, int i) {
    const std::string number = std::to_string(i);
    return base + u"-" + std::u16string(number.begin(), number.end());
}
}  // namespace

// Creates the contested events once told to; writes for each whether it was the first; holds them until told.
CHILD_PROGRAM(contest_events) {
    const auto base = Wide(argv[0]);
    const OwnedEvent start(OpenEventW((base + u"-start").c_str())), end(OpenEventW((base + u"-end").c_str()));
    WriteToStream(kStdOutput, "r");
    WaitForSingleObject(start, kInfinite);
    std::vector<std::unique_ptr<OwnedEvent>> events;
    std::string firsts;
    for (int i = 0; i < kContested; ++i) {
        events.push_back(std::make_unique<OwnedEvent>(CreateEventW(Contested(base, i).c_str())));
        firsts += GetLastError() == kErrorSuccess ? 'n' : 'e';
    }
    WriteToStream(kStdOutput, firsts);
    return WaitForSingleObject(end, kInfinite) == kWaitObject ? 0 : 1;
}

TEST(NamedEvents, processes_that_create_one_together_make_one) {
    const auto base = UniqueName("event");
    const OwnedEvent start = Create(base + u"-start"), end = Create(base + u"-end");
    std::array<std::unique_ptr<RunningChild>, 4> children;
    for (auto& child : children) child = std::make_unique<RunningChild>("contest_events", base);
    for (auto& child : children) ASSERT_TRUE(child->ReadOutput(1));
    EXPECT_TRUE(SetEvent(start));
    for (auto& child : children) ASSERT_TRUE(child->ReadOutput(1 + kContested));
    EXPECT_TRUE(SetEvent(end));
    for (std::size_t i = 1; i <= kContested; ++i) {
        std::string firsts;
        for (auto& child : children) firsts += child->Output()[i];
        EXPECT_EQ(std::count(firsts.begin(), firsts.end(), 'n'), 1) << firsts;
    }
    for (auto& child : children) EXPECT_EQ(child->Finish(), 0u);
}
