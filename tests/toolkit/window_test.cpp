// Objects and their windows: the table, the procedure, timers, the end, and where windows stand.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <thread>

#include "toolkit/probe_window.h"

namespace {

using Calls = std::vector<std::string>;

const auto kWindow = Fake<platform::Window>(0x100);
const auto kOther = Fake<platform::Window>(0x200);

platform::LongParameter Created(XWindow& window) {
    return reinterpret_cast<platform::LongParameter>(&window);
}

std::intptr_t Send(platform::Window window, std::uint32_t message, platform::LongParameter value = 0) {
    return XWindow::DialogProcedure(window, message, 0, value);
}

void AddTimer(ProbeWindow& window, std::uintptr_t id, std::uintptr_t value) {
    auto* timer = new XWindowTimer{id, value};
    window.mTimers.Append(timer);
    window.mTimerNames.Add(u"a timer");
    window.mCurrentTimer = timer;
}

std::intptr_t SendTimer(ProbeWindow& window, std::uintptr_t id) {
    return window.Route(kWindow, platform::kMessageTimer, id, 0);
}

}  // namespace

TEST(Window, messages_before_the_dialog_is_initialised_are_ignored) {
    WindowStage stage;
    ProbeWindow window;
    for (const std::uint32_t message : {48U, 129U, 273U, 2U}) {
        EXPECT_EQ(Send(kWindow, message), 0) << message;
    }
    EXPECT_EQ(window.translated, 0);
    EXPECT_EQ(Send(kWindow, platform::kMessageInitDialog, Created(window)), 1);
    EXPECT_TRUE(window.mIsDialog);
    EXPECT_EQ(window.Handle(), kWindow);
    EXPECT_EQ(window.calls, Calls{"OnInitDialog"});
    EXPECT_EQ(Send(kWindow, platform::kMessageClose), 1);
}

TEST(Window, a_dialog_without_an_object_is_left_alone) {
    WindowStage stage;
    EXPECT_EQ(Send(kWindow, platform::kMessageInitDialog, 0), 0);
    EXPECT_EQ(Send(kWindow, platform::kMessageClose), 0);
    EXPECT_EQ(gWindowTable.Count(), 0);
}

TEST(Window, the_earlier_of_two_objects_with_one_handle_gets_the_messages) {
    WindowStage stage;
    ProbeWindow first;
    auto second = std::make_unique<ProbeWindow>();
    first.Attach(kWindow, true);
    second->Attach(kWindow, true);
    EXPECT_EQ(XWindow::FindObject(kWindow), &first);
    Send(kWindow, platform::kMessageClose);
    EXPECT_EQ(first.calls.size(), 1U);
    EXPECT_TRUE(second->calls.empty());
    first.Destroy();
    EXPECT_EQ(XWindow::FindObject(kWindow), second.get());
    second.reset();
    EXPECT_EQ(XWindow::FindObject(kWindow), nullptr);
}

TEST(Window, the_table_closes_up_behind_an_object_and_grows_beyond_its_first_room) {
    WindowStage stage;
    std::vector<std::unique_ptr<ProbeWindow>> windows;
    for (std::uintptr_t i = 0; i < 20; ++i) {
        windows.push_back(std::make_unique<ProbeWindow>());
        windows.back()->Attach(Fake<platform::Window>(i + 1), true);
    }
    windows.erase(windows.begin() + 7);
    ASSERT_EQ(gWindowTable.Count(), 19);
    for (std::int32_t i = 0; i < 19; ++i)
        EXPECT_EQ(gWindowTable.At(i), windows[static_cast<std::size_t>(i)].get()) << i;
    windows.clear();
    EXPECT_EQ(gWindowTable.Count(), 0);
}

TEST(Window, an_object_that_was_attached_twice_leaves_nothing_behind) {
    WindowStage stage;
    {
        ProbeWindow window;
        Send(kWindow, platform::kMessageInitDialog, Created(window));
        Send(kWindow, platform::kMessageInitDialog, Created(window));
        EXPECT_EQ(gWindowTable.Count(), 2);
    }
    EXPECT_EQ(gWindowTable.Count(), 0);
}

TEST(Window, the_end_goes_hiding_timers_window_class_cursor_icons) {
    WindowStage stage;
    {
        ProbeWindow window;
        window.Attach(kWindow, false);
        window.mCursor = Fake<platform::Cursor>(1);
        window.mIcon = Fake<platform::Icon>(2);
        window.mIconSmall = Fake<platform::Icon>(3);
        window.mClassName = u"a class";
        AddTimer(window, 11, 0);
        AddTimer(window, 12, 0);
    }
    EXPECT_EQ(stage.journal, (Calls{"show 256 0", "kill timer 256 11", "kill timer 256 12", "destroy 256",
                                    "unregister", "cursor 1", "icon 2", "icon 3"}));
}

TEST(Window, Destroy_leaves_an_object_without_window_timers_and_class) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, false);
    window.mClassName = u"a class";
    AddTimer(window, 11, 0);
    window.Destroy();
    EXPECT_EQ(window.mTimers.Count(), 0);
    EXPECT_EQ(window.mTimerNames.Count(), 0);
    EXPECT_EQ(window.mCurrentTimer, nullptr);
    EXPECT_TRUE(window.mClassName.IsEmpty());
    EXPECT_EQ(window.Handle(), nullptr);
    EXPECT_EQ(XWindow::FindObject(kWindow), nullptr);
    stage.journal.clear();
    window.Destroy();
    EXPECT_TRUE(stage.journal.empty());
}

TEST(Window, an_object_that_never_had_a_window_asks_nothing_of_the_platform) {
    WindowStage stage;
    { const ProbeWindow window; }
    EXPECT_TRUE(stage.journal.empty());
}

TEST(Window, no_lock_is_held_while_the_window_is_destroyed) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, true);
    Faulty<platform::DestroyWindow> destroy;
    bool free = false;
    destroy.Replace([&](platform::Window) {
        std::thread([&] {
            window.mLock.Lock();
            window.mLock.Unlock();
            free = XWindow::FindObject(kWindow) == &window;
        }).join();
        return true;
    });
    window.Destroy();
    EXPECT_TRUE(free);
}

TEST(Window, a_timer_comes_with_its_word_the_first_of_equal_ids) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, true);
    AddTimer(window, 11, 100);
    AddTimer(window, 12, 200);
    AddTimer(window, 12, 300);
    EXPECT_EQ(SendTimer(window, 12), 1);
    EXPECT_EQ(SendTimer(window, 11), 1);
    EXPECT_EQ(window.calls, (Calls{"OnTimer 12 200", "OnTimer 11 100"}));
}

TEST(Window, a_timer_nobody_knows_calls_nothing) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, true);
    AddTimer(window, 11, 100);
    SendTimer(window, 13);
    EXPECT_TRUE(window.calls.empty());
}

TEST(Window, OnTimer_runs_under_the_lock_which_is_given_back_when_it_throws) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, true);
    AddTimer(window, 11, 100);
    bool locked = false;
    window.duringOperation = [&] {
        locked = window.mLock.IsLocked();
        throw std::runtime_error("a timer that fails");
    };
    EXPECT_THROW(SendTimer(window, 11), std::runtime_error);
    EXPECT_TRUE(locked);
    EXPECT_FALSE(window.mLock.IsLocked());
}

TEST(Window, Move_keeps_the_size_and_what_is_not_given) {
    struct Row {
        std::int32_t x, y;
        const char* asked;
    };
    constexpr Row kRows[] = {
        {1, 2, "position 256 1 2 100 50 532"},
        {kLengthDefault, 2, "position 256 10 2 100 50 532"},
        {1, kLengthDefault, "position 256 1 20 100 50 532"},
        {kLengthDefault, kLengthDefault, "position 256 10 20 100 50 532"},
        {-1, 0, "position 256 -1 0 100 50 532"},
    };
    for (const Row& row : kRows) {
        WindowStage stage;
        ProbeWindow window;
        window.Attach(kWindow, true);
        window.Move(row.x, row.y);
        EXPECT_EQ(stage.journal, Calls{row.asked});
    }
}

TEST(Window, CenterOnDesktop_takes_whole_halves) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, true);
    stage.rectangle = {10, 20, 111, 71};
    window.CenterOnDesktop();
    EXPECT_EQ(stage.journal, Calls{"position 256 450 275 101 51 532"});
}

TEST(Window, dialog_units_are_those_of_the_panels_corner) {
    Faulty<platform::MapDialogRect> map;
    map.Replace([](platform::Window dialog, platform::Rect* rect) {
        EXPECT_EQ(dialog, kOther);
        EXPECT_EQ(rect->left, 0);
        EXPECT_EQ(rect->top, 0);
        rect->right *= 2;
        rect->bottom *= 3;
        return true;
    });
    EXPECT_EQ(XWindow::DialogUnitsX(kOther), 34);
    EXPECT_EQ(XWindow::DialogUnitsY(kOther), 90);
}

TEST(Window, RunDialog_gives_what_the_dialog_ended_with) {
    WindowStage stage;
    Faulty<platform::DialogBoxParamW> box;
    ProbeWindow window;
    box.Replace([&](platform::ModuleHandle module, std::uint16_t number, platform::Window parent,
                    platform::WindowProcedure procedure, platform::LongParameter created) -> std::intptr_t {
        EXPECT_EQ(module, Fake<platform::ModuleHandle>(5));
        EXPECT_EQ(number, 101);
        EXPECT_EQ(parent, kOther);
        EXPECT_EQ(created, Created(window));
        EXPECT_EQ(procedure(kWindow, platform::kMessageInitDialog, 0, created), 1);
        return 7;
    });
    EXPECT_EQ(window.RunDialog(Fake<platform::ModuleHandle>(5), 101, kOther), 7);
    EXPECT_EQ(window.calls, Calls{"OnInitDialog"});
    box.FailAlways(std::intptr_t{-1});
    EXPECT_EQ(window.RunDialog(nullptr, 101, nullptr), -1);
}

TEST(Window, what_an_operation_throws_ends_the_dialog_and_comes_out_of_RunDialog) {
    WindowStage stage;
    Faulty<platform::DialogBoxParamW> box;
    Faulty<platform::EndDialog> end;
    ProbeWindow window;
    Calls ended;
    int throws = 0;
    window.duringOperation = [&] { throw std::runtime_error(++throws == 1 ? "first" : "later"); };
    end.Replace([&](platform::Window dialog, std::intptr_t result) {
        ended.push_back(Said("end", {WindowStage::Number(dialog), result}));
        return true;
    });
    box.Replace([&](auto, auto, auto, platform::WindowProcedure procedure, platform::LongParameter created) {
        EXPECT_EQ(procedure(kWindow, platform::kMessageInitDialog, 0, created), 0);
        EXPECT_EQ(procedure(kWindow, platform::kMessageDestroy, 0, 0), 0);
        return std::intptr_t{-1};
    });
    try {
        window.RunDialog(nullptr, 101, nullptr);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "first");
    }
    EXPECT_EQ(ended, (Calls{"end 256 -1", "end 256 -1"}));
    window.duringOperation = nullptr;
    box.FailAlways(std::intptr_t{-1});
    EXPECT_EQ(window.RunDialog(nullptr, 101, nullptr), -1) << "a failure is thrown once";
}
