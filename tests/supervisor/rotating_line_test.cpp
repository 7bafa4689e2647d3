// The activity line: which text a poll shows, and when a blank one.
#include <gtest/gtest.h>

#include "supervisor/owner.h"

namespace {

constexpr std::u16string_view kNone = u"(none)";

struct Watcher {
    Watcher() {
        owner.Create();
        clock.Hold();
    }
    void Say(std::u16string_view key, std::u16string_view value) {
        owner.Say(u"MSGTO: qMC: " + std::u16string(key) + u": " + std::u16string(value) + u"\r\n");
    }
    std::u16string Poll(bool paused = false) {
        owner.Poll(paused);
        const std::u16string text = owner.information.Take();
        return text.empty() ? std::u16string(kNone) : text.substr(0, text.size() - 2);
    }

    TestClock clock;
    Owner owner;
};

}  // namespace

TEST(RotatingLine, shows_each_text_for_16_polls) {
    const struct {
        const char16_t *input, *output;
        std::vector<std::u16string> cycle;
    } rows[] = {{u"", u"", {u"doing"}},
                {u"in", u"", {u"doing", u"in"}},
                {u"", u"out", {u"doing", u"out"}},
                {u"in", u"out", {u"doing", u"in", u"out"}}};
    for (const auto& row : rows) {
        Watcher watcher;
        watcher.Say(u"Action", u"doing");
        watcher.Say(u"ActionInput", row.input);
        watcher.Say(u"ActionOutput", row.output);
        for (std::size_t poll = 1; poll <= 100; ++poll) {
            ASSERT_EQ(watcher.Poll(), row.cycle[poll / 16 % row.cycle.size()]) << poll;
        }
    }
}

TEST(RotatingLine, is_written_on_each_poll_though_it_has_not_changed) {
    Watcher watcher;
    watcher.Say(u"Action", u"doing");
    for (int poll = 0; poll < 5; ++poll) EXPECT_EQ(watcher.Poll(), u"doing");
}

TEST(RotatingLine, is_blank_without_an_action_whatever_is_read_and_written) {
    Watcher watcher;
    watcher.Say(u"ActionInput", u"in");
    watcher.Say(u"ActionOutput", u"out");
    for (int poll = 0; poll < 50; ++poll) EXPECT_EQ(watcher.Poll(), kNone);
    watcher.clock.Advance(2000);
    EXPECT_EQ(watcher.Poll(), u"");
}

TEST(RotatingLine, goes_blank_after_two_seconds_and_then_on_each_poll) {
    Watcher watcher;
    EXPECT_EQ(watcher.Poll(), kNone);
    watcher.clock.Advance(1999);
    EXPECT_EQ(watcher.Poll(), kNone);
    watcher.clock.Advance(1);
    EXPECT_EQ(watcher.Poll(), u"");
    EXPECT_EQ(watcher.Poll(), u"");
    watcher.clock.Advance(100000);
    EXPECT_EQ(watcher.Poll(), u"");
}

TEST(RotatingLine, gap_between_two_actions_does_not_blink) {
    Watcher watcher;
    for (const char16_t* action : {u"one", u"two"}) {
        watcher.Say(u"Action", action);
        EXPECT_EQ(watcher.Poll(), action);
        watcher.Say(u"Action", u"");
        EXPECT_EQ(watcher.Poll(), kNone);
        watcher.clock.Advance(1999);
        EXPECT_EQ(watcher.Poll(), kNone);
    }
}

TEST(RotatingLine, measures_its_two_seconds_across_the_wrap_of_the_tick) {
    Watcher watcher;
    watcher.clock.Advance(0xFFFFFFFF - 999 - watcher.clock.Now());
    EXPECT_EQ(watcher.Poll(), kNone);
    watcher.clock.Advance(1999);
    EXPECT_EQ(watcher.Poll(), kNone);
    watcher.clock.Advance(1);
    EXPECT_EQ(watcher.Poll(), u"");
}

TEST(RotatingLine, stands_still_during_a_pause) {
    Watcher watcher;
    watcher.Say(u"Action", u"doing");
    watcher.Say(u"ActionInput", u"in");
    for (int poll = 1; poll <= 15; ++poll) EXPECT_EQ(watcher.Poll(), u"doing");
    for (int poll = 0; poll < 40; ++poll) EXPECT_EQ(watcher.Poll(true), kNone);
    EXPECT_EQ(watcher.Poll(), u"in");
}

TEST(RotatingLine, action_outlives_a_start_and_the_other_two_texts_do_not) {
    Watcher watcher;
    const Launch refused;
    for (const char16_t* key : {u"Action", u"ActionInput", u"ActionOutput"}) watcher.Say(key, key);
    watcher.owner.Create();
    watcher.owner.Start();
    for (int poll = 1; poll <= 64; ++poll) EXPECT_EQ(watcher.Poll(), u"Action");
}

TEST(RotatingLine, start_begins_its_turn_anew) {
    Watcher watcher;
    const Launch refused;
    watcher.Say(u"Action", u"doing");
    for (int poll = 1; poll <= 10; ++poll) watcher.Poll();
    watcher.owner.Start();
    watcher.Say(u"ActionInput", u"in");
    for (int poll = 1; poll <= 15; ++poll) EXPECT_EQ(watcher.Poll(), u"doing");
    EXPECT_EQ(watcher.Poll(), u"in");
}

TEST(RotatingLine, preparation_begins_its_turn_and_its_two_seconds_anew) {
    Watcher watcher;
    EXPECT_EQ(watcher.Poll(), kNone);
    for (int poll = 1; poll <= 10; ++poll) watcher.Poll();
    watcher.owner.Create();
    watcher.clock.Advance(2000);
    EXPECT_EQ(watcher.Poll(), kNone);
    watcher.Say(u"Action", u"doing");
    watcher.Say(u"ActionInput", u"in");
    for (int poll = 2; poll <= 15; ++poll) EXPECT_EQ(watcher.Poll(), u"doing");
    EXPECT_EQ(watcher.Poll(), u"in");
}

TEST(RotatingLine, run_that_has_ended_leaves_the_line_blank) {
    Owner owner;
    const Launch launch("converts");
    TestClock clock;
    owner.Create();
    owner.Start();
    clock.Hold();
    ASSERT_TRUE(owner.PollUntilEnd());
    owner.information.Take();
    owner.Poll();
    EXPECT_EQ(owner.information.Take(), u"");
    clock.Advance(2000);
    owner.Poll();
    owner.Poll();
    EXPECT_EQ(owner.information.Take(), u"\r\n\r\n");
}
