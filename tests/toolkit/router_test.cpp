// Messages and the operations they come to, row by row.
#include <gtest/gtest.h>

#include <cstring>

#include "toolkit/probe_window.h"

namespace {

using Calls = std::vector<std::string>;

const auto kWindow = Fake<platform::Window>(0x100);

platform::LongParameter Point(std::int32_t x, std::int32_t y) {
    return static_cast<platform::LongParameter>(static_cast<std::uint32_t>(y & 0xFFFF) << 16 |
                                                static_cast<std::uint32_t>(x & 0xFFFF));
}

platform::WordParameter Words(std::uint32_t high, std::uint32_t low) {
    return high << 16 | low;
}

struct Row {
    std::uint32_t message;
    platform::WordParameter word;
    platform::LongParameter value;
    Calls calls;
    // Whether a default, and an override that leaves everything as it is, count the message as dealt with.
    bool byDefault, byOverride;
    std::intptr_t result = 0;
};

platform::DrawItemRecord Item() {
    platform::DrawItemRecord item = {};
    item.itemId = 3;
    item.control = Fake<platform::Window>(0x55);
    return item;
}
const platform::DrawItemRecord kItem = Item();

const Row kRows[] = {
    {1, 0, 0, {"OnInitDialog"}, true, true},
    {2, 0, 0, {"OnDestroy"}, false, true},
    {3, 0, Point(-5, 7), {"OnMove -5 7"}, false, true},
    {5, 2, Point(0xFFFF, 480), {"OnSize 65535 480 2"}, false, true},
    {6, Words(1, 2), 9, {"OnActivate 9 1 2"}, false, true},
    {6, Words(1, 0), 9, {"OnDeactivate 9 1"}, false, true},
    {15, 0, 0, {"OnPaint"}, false, false},
    {16, 0, 0, {"OnClose"}, false, true},
    {20, 0x77, 0, {"OnEraseBackground 119"}, false, true, 1},
    {24, 0, 4, {"OnHide 4"}, false, true},
    {24, 1, 4, {"OnShow 4"}, false, true},
    {43, 12, reinterpret_cast<platform::LongParameter>(&kItem), {"OnDrawItem 85 12 3"}, false, true},
    {43, 12, 0, {"OnDrawItem 0 12 -1"}, false, true},
    {78, 0, 0x200, {"OnNotify 512"}, false, true, 42},
    {123, 0x88, Point(-1, 2), {"OnContextMenu 136 65535 2"}, false, true},
    {256, 65, 5, {"OnKeyDown 65 5"}, false, true},
    {257, 65, 5, {"OnKeyUp 65 5"}, false, true},
    {258, 0x12345, 0, {"OnChar 9029"}, false, true},
    {272, 0, 0, {"OnInitDialog"}, true, true},
    {273, Words(0, 1), 8, {"OnOK", "OnCommand 1 8 0"}, true, true},
    {273, Words(0, 2), 8, {"OnCancel", "OnCommand 2 8 0"}, true, true},
    {273, Words(0, 3), 8, {"OnAbort", "OnCommand 3 8 0"}, true, true},
    {273, Words(0, 4), 8, {"OnRetry", "OnCommand 4 8 0"}, true, true},
    {273, Words(0, 5), 8, {"OnIgnore", "OnCommand 5 8 0"}, true, true},
    {273, Words(0, 6), 8, {"OnYes", "OnCommand 6 8 0"}, true, true},
    {273, Words(0, 7), 8, {"OnNo", "OnCommand 7 8 0"}, true, true},
    {273, Words(0, 8), 8, {"OnCloseButton", "OnCommand 8 8 0"}, true, true},
    {273, Words(0, 9), 8, {"OnHelp", "OnCommand 9 8 0"}, true, true},
    {273, Words(0, 0), 8, {"OnCommand 0 8 0"}, true, true},
    {273, Words(0, 10), 8, {"OnCommand 10 8 0"}, true, true},
    {273, Words(1, 1), 8, {"OnCommand 1 8 1"}, true, true},
    {274, 0xF063, 0, {"OnSysCommand 61536"}, false, false},
    {310, 3, 4, {"OnCtlColorDialog 3 4"}, false, true, 42},
    {312, 3, 4, {"OnCtlColorStatic 3 4"}, false, true, 42},
    {512, 1, Point(-2, 3), {"OnMouseMove -2 3 1"}, false, true},
    {513, 1, Point(-2, 3), {"OnMouseDown -2 3 513 1"}, false, true},
    {516, 2, Point(-2, 3), {"OnMouseDown -2 3 516 2"}, false, true},
    {519, 4, Point(-2, 3), {"OnMouseDown -2 3 519 4"}, false, true},
    {514, 0, Point(-2, 3), {"OnMouseUp -2 3 514 0"}, false, true},
    {517, 0, Point(-2, 3), {"OnMouseUp -2 3 517 0"}, false, true},
    {520, 0, Point(-2, 3), {"OnMouseUp -2 3 520 0"}, false, true},
    {522, Words(0xFF88, 5), Point(-2, 3), {"OnMouseWheel -2 3 -120 5"}, false, true},
    {275, 99, 0, {}, true, true},
    {4, 1, 2, {}, false, false},
    {0, 1, 2, {}, false, false},
    {1024, 1, 2, {}, false, false},
};

bool GivesItsResultAtOnce(std::uint32_t message) {
    return message == platform::kMessageColourDialog || message == platform::kMessageColourStatic;
}

std::string Name(const Row& row) {
    return Said("message", {static_cast<std::intptr_t>(row.message), static_cast<std::intptr_t>(row.word)});
}

}  // namespace

// The members' own representation: the byte offset of the slot, plus 1.
template <class... Members>
std::vector<std::ptrdiff_t> SlotsOf(Members... members) {
    const auto slot = [](auto member) {
        std::ptrdiff_t offset;
        std::memcpy(&offset, &member, sizeof offset);
        return (offset - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
    };
    return {slot(members)...};
}

std::vector<std::ptrdiff_t> ProbeWindow::Slots() {
    using P = ProbeWindow;
    return SlotsOf(&P::OnActivate, &P::OnClose, &P::OnContextMenu, &P::OnCommand, &P::OnInitDialog,
                   &P::OnDestroy, &P::OnDeactivate, &P::OnDrawItem, &P::OnEraseBackground, &P::OnHide,
                   &P::OnKeyDown, &P::OnKeyUp, &P::OnChar, &P::OnMouseDown, &P::OnMouseUp, &P::OnMouseMove,
                   &P::OnMouseWheel, &P::OnMove, &P::OnNotify, &P::OnPaint, &P::OnShow, &P::OnSize,
                   &P::OnSysCommand, &P::OnTimer, &P::OnCtlColorStatic, &P::OnCtlColorDialog,
                   &P::PreTranslate, &P::OnOK, &P::OnCancel, &P::OnAbort, &P::OnCloseButton, &P::OnHelp,
                   &P::OnIgnore, &P::OnNo, &P::OnRetry, &P::OnYes);
}

TEST(Router, the_operations_stand_in_their_order_behind_the_destructor) {
    const std::vector<std::ptrdiff_t> slots = ProbeWindow::Slots();
    ASSERT_EQ(slots.size(), 36U);
    // The destructor takes two places in the table: for objects on the stack and on the heap.
    for (std::size_t i = 0; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], static_cast<std::ptrdiff_t>(i) + 2) << i;
}

TEST(Router, every_message_comes_to_its_operation_with_its_arguments) {
    for (const Row& row : kRows) {
        WindowStage stage;
        ProbeWindow window;
        window.Attach(kWindow, true);
        window.result = 42;
        const std::intptr_t answer = window.Route(kWindow, row.message, row.word, row.value);
        EXPECT_EQ(window.calls, row.calls) << Name(row);
        EXPECT_EQ(window.mHandled != 0, row.byOverride) << Name(row);
        EXPECT_EQ(window.translated, 1) << Name(row);
        EXPECT_EQ(window.seenHandled, 0) << Name(row);
        if (GivesItsResultAtOnce(row.message)) {
            EXPECT_EQ(answer, row.result) << Name(row);
            EXPECT_TRUE(stage.slots.empty()) << Name(row);
            continue;
        }
        EXPECT_EQ(answer, row.byOverride) << Name(row);
        EXPECT_EQ((stage.slots.at({kWindow, 0})), row.result) << Name(row);
    }
}

TEST(Router, the_defaults_leave_to_the_platform_what_they_do_not_do) {
    for (const Row& row : kRows) {
        WindowStage stage;
        ProbeWindow window;
        window.Attach(kWindow, true);
        window.useDefaults = true;
        window.mHandled = 1;
        EXPECT_EQ(window.Route(kWindow, row.message, row.word, row.value), row.byDefault) << Name(row);
        EXPECT_EQ(window.calls, row.calls) << Name(row);
        EXPECT_EQ(window.mHandled != 0, row.byDefault) << Name(row);
        EXPECT_EQ((stage.slots.at({kWindow, 0})), 0) << Name(row);
    }
}

TEST(Router, a_window_that_is_no_dialog_gives_its_result_or_the_platforms_own) {
    for (const Row& row : kRows) {
        WindowStage stage;
        ProbeWindow window;
        window.Attach(kWindow, false);
        window.result = 42;
        EXPECT_EQ(window.Route(kWindow, row.message, row.word, row.value), row.byOverride ? row.result : 777)
            << Name(row);
        EXPECT_TRUE(stage.slots.empty()) << Name(row);
        EXPECT_EQ(stage.journal.size(), row.byOverride ? 0U : 1U) << Name(row);
    }
}

TEST(Router, OnSysCommand_and_OnPaint_are_followed_by_the_platform_even_if_they_claim_the_message) {
    for (const std::uint32_t message : {platform::kMessagePaint, platform::kMessageSystemCommand}) {
        WindowStage stage;
        ProbeWindow window;
        window.Attach(kWindow, true);
        window.duringOperation = [&] { window.mHandled = 1; };
        EXPECT_EQ(window.Route(kWindow, message, 0, 0), 0) << message;
        EXPECT_EQ(window.mHandled, 0) << message;
    }
}

TEST(Router, OnInitDialog_is_dealt_with_whatever_it_says) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, true);
    window.duringOperation = [&] { window.mHandled = 0; };
    EXPECT_EQ(window.Route(kWindow, platform::kMessageInitDialog, 0, 0), 1);
}

TEST(Router, a_background_that_is_not_erased_has_the_result_0) {
    WindowStage stage;
    ProbeWindow window;
    window.Attach(kWindow, true);
    window.duringOperation = [&] { window.mHandled = 0; };
    EXPECT_EQ(window.Route(kWindow, platform::kMessageEraseBackground, 0, 0), 0);
    EXPECT_EQ((stage.slots.at({kWindow, 0})), 0);
}

TEST(Router, PreTranslate_can_claim_any_message) {
    for (const bool isDialog : {true, false}) {
        WindowStage stage;
        ProbeWindow window;
        window.Attach(kWindow, isDialog);
        window.claims = true;
        window.result = 42;
        EXPECT_EQ(window.Route(kWindow, platform::kMessageColourDialog, 0, 0), isDialog ? 1 : 42);
        EXPECT_TRUE(window.calls.empty());
        EXPECT_TRUE(stage.journal.empty());
        EXPECT_EQ(stage.slots.size(), isDialog ? 1U : 0U);
        for (const auto& [slot, value] : stage.slots) EXPECT_EQ(value, 42);
    }
}

TEST(Router, an_object_without_a_window_gets_nothing) {
    WindowStage stage;
    ProbeWindow window;
    window.mHandled = 1;
    EXPECT_EQ(window.Route(nullptr, platform::kMessageClose, 0, 0), 0);
    EXPECT_EQ(window.mHandled, 0);
    EXPECT_EQ(window.translated, 0);
    EXPECT_TRUE(stage.journal.empty() && stage.slots.empty());
}
