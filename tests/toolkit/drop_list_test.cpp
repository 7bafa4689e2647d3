// The list's rows and texts, the keys of its edit field, and how it stands before its control.
#include "settings/toolkit/drop_list.h"

#include <gtest/gtest.h>

#include "support/allocation_faults.h"
#include "support/wide_text.h"
#include "toolkit/combo_stage.h"

namespace {

using Asked = std::vector<std::string>;

constexpr std::uintptr_t kEnter = 13, kSpace = 32, kShift = 16;

struct DropListTest : testing::Test {
    DropListTest() {
        list.SetNoScale(true);
        list.Attach(ComboStage::kCombo);
        stage.asked.clear();
    }
    void Add(std::initializer_list<const char16_t*> rows) {
        for (const char16_t* row : rows) list.AddItem(row, nullptr);
    }
    std::intptr_t Key(std::uint32_t message, std::uintptr_t key) {
        std::int32_t handled = 0;
        const std::intptr_t result = list.Filter(ComboStage::kEdit, message, key, 0, &handled);
        EXPECT_EQ(handled, 0);
        return result;
    }
    void Down(std::uintptr_t key) { Key(platform::kMessageKeyDown, key); }
    void Up(std::uintptr_t key) { Key(platform::kMessageKeyUp, key); }
    void LoseFocus() { Key(platform::kMessageKillFocus, 0); }

    ComboStage stage;
    XDropList list;
};

platform::WindowProcedure ProcedureOf(ComboStage& stage) {
    return reinterpret_cast<platform::WindowProcedure>(
        stage.slots[{ComboStage::kEdit, platform::kSlotProcedure}]);
}

std::intptr_t Original(platform::Window, std::uint32_t, platform::WordParameter, platform::LongParameter) {
    return 5;
}

}  // namespace

TEST(DropList, Attach_sets_the_height_of_rows_and_reads_the_identifier) {
    ComboStage stage;
    XDropList list;
    list.SetNoScale(true);
    list.Attach(ComboStage::kCombo);
    EXPECT_EQ(stage.asked, Asked{"height 0 25"});
    EXPECT_EQ(list.ControlId(), ComboStage::kControlId);
}

TEST(DropList, the_edit_fields_procedure_is_replaced_and_comes_back) {
    ComboStage stage;
    auto& procedure = stage.slots[{ComboStage::kEdit, platform::kSlotProcedure}];
    auto& owner = stage.slots[{ComboStage::kEdit, platform::kSlotUserData}];
    procedure = reinterpret_cast<std::intptr_t>(&Original);
    Faulty<platform::CallWindowProcW> call;
    call.Replace([](platform::WindowProcedure original, platform::Window window, auto... message) {
        return original(window, message...);
    });
    {
        XDropList list;
        list.SetNoScale(true);
        list.Attach(ComboStage::kCombo);
        EXPECT_EQ(owner, reinterpret_cast<std::intptr_t>(static_cast<XSubClassCtrl*>(&list)));
        ASSERT_NE(ProcedureOf(stage), &Original);
        EXPECT_EQ(ProcedureOf(stage)(ComboStage::kEdit, platform::kMessagePaint, 0, 0), 5);
        const struct {
            platform::Window window;
            std::uint32_t message;
            platform::WordParameter word;
        } asked = {ComboStage::kEdit, platform::kMessageKeyDown, 'Q'};
        EXPECT_EQ(ProcedureOf(stage)(ComboStage::kEdit, platform::kMessageGetDialogCode, 0,
                                     reinterpret_cast<platform::LongParameter>(&asked)),
                  4);
        list.Attach(ComboStage::kCombo);  // an earlier state is released first
        EXPECT_NE(ProcedureOf(stage), &Original);
    }
    EXPECT_EQ(owner, 0);
    EXPECT_EQ(procedure, reinterpret_cast<std::intptr_t>(&Original));
}

TEST(DropList, a_control_whose_object_is_gone_goes_the_platforms_way) {
    ComboStage stage;
    XDropList list;
    list.SetNoScale(true);
    list.Attach(ComboStage::kCombo);
    const platform::WindowProcedure procedure = ProcedureOf(stage);
    list.Destroy();
    Faulty<platform::DefWindowProcW> byDefault;
    byDefault.Replace([](auto...) { return std::intptr_t{9}; });
    EXPECT_EQ(procedure(ComboStage::kEdit, platform::kMessageKeyDown, 'A', 0), 9);
}

TEST(DropList, without_an_edit_field_no_procedure_is_replaced) {
    ComboStage stage(false);
    XDropList list;
    list.SetNoScale(true);
    list.Attach(ComboStage::kCombo);
    EXPECT_EQ(stage.slots.size(), 1U) << "only the identifier was looked at";
    list.AddItem(u"a row", nullptr);
    stage.current = 0;
    EXPECT_EQ(Units(list.GetEditText(true)), u"a row");
}

TEST(SubClassControl, a_filter_claims_nothing_unless_it_is_overridden) {
    XSubClassCtrl control;
    std::int32_t handled = 0;
    EXPECT_EQ(control.Filter(nullptr, platform::kMessageKeyDown, 0, 0, &handled), 0);
    EXPECT_EQ(handled, 0);
}

TEST_F(DropListTest, rows_go_behind_the_last_and_give_their_texts) {
    Add({u"Wave", u"", u"FLAC"});
    EXPECT_EQ(stage.rows, (std::vector<std::u16string>{u"Wave", u"", u"FLAC"}));
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(Units(list.GetItemText(0)), u"Wave");
    EXPECT_EQ(Units(list.GetItemText(1)), u"");
    EXPECT_EQ(Units(list.GetItemText(2)), u"FLAC");
    EXPECT_EQ(Units(list.GetItemText(3)), u"");
    EXPECT_EQ(Units(list.GetItemText(-1)), u"");
    EXPECT_EQ(list.Item(3), nullptr);
    EXPECT_EQ(list.Item(-1), nullptr);
}

TEST_F(DropListTest, a_row_has_three_elements_and_four_with_an_icon_which_stays_the_callers) {
    Faulty<platform::DuplicateIcon> duplicate;
    Faulty<platform::DestroyIcon> destroy;
    std::vector<std::intptr_t> destroyed;
    std::uintptr_t last = 10;
    duplicate.Replace([&](platform::Icon) { return Fake<platform::Icon>(++last); });
    destroy.Replace([&](platform::Icon icon) {
        destroyed.push_back(WindowStage::Number(icon));
        return true;
    });
    {
        const XIcon icon(Fake<platform::Icon>(1));
        list.AddItem(u"without", nullptr);
        list.AddItem(u"with", &icon);
        EXPECT_EQ(list.Item(0)->drawing.Count(), 3);
        EXPECT_EQ(list.Item(1)->drawing.Count(), 4);
        EXPECT_EQ(icon.Handle(), Fake<platform::Icon>(11));
        list.Destroy();
        EXPECT_EQ(destroyed, std::vector<std::intptr_t>{12}) << "the row's own";
    }
    EXPECT_EQ(destroyed, (std::vector<std::intptr_t>{12, 11}));
}

TEST(DropList, a_row_that_there_is_no_memory_for_is_on_neither_list) {
    static int shown;
    Faulty<platform::SendMessageW> send;
    send.Replace(
        [](platform::Window, std::uint32_t message, platform::WordParameter, platform::LongParameter) {
            shown += message == platform::kMessageComboInsert;
            return std::intptr_t{0};
        });
    bool agree = true;
    const XString text(u"a row whose text is longer than a string holds by itself");
    const int allocations = FailEachAllocation([&] {
        XDropList list;
        list.SetNoScale(true);
        shown = 0;
        try {
            list.AddItem(text, nullptr);
        } catch (const std::bad_alloc&) {
            agree = agree && list.Count() == 0 && shown == 0;
            throw;
        }
        agree = agree && list.Count() == 1 && shown == 1;
    });
    EXPECT_GT(allocations, 4);
    EXPECT_TRUE(agree);
}

TEST_F(DropListTest, many_rows_come_and_go) {
    for (int i = 0; i < 100; ++i) list.AddItem(XString(i), nullptr);
    EXPECT_EQ(list.Count(), 100);
    EXPECT_EQ(Units(list.Item(99)->text), u"99");
    list.Attach(ComboStage::kCombo);
    EXPECT_EQ(list.Count(), 0);
    list.Destroy();
    list.Destroy();
    EXPECT_EQ(list.Count(), 0);
}

TEST_F(DropListTest, GetEditText_gives_the_field_or_the_selected_row) {
    Add({u"Wave", u"FLAC"});
    stage.text = u"typed";
    EXPECT_EQ(Units(list.GetEditText(true)), u"typed");
    EXPECT_EQ(Units(list.GetEditText(false)), u"") << "no row is selected";
    stage.current = 1;
    EXPECT_EQ(Units(list.GetEditText(false)), u"FLAC");
    stage.rows.push_back(u"a row of somebody else's");
    stage.current = 2;
    EXPECT_EQ(Units(list.GetEditText(false)), u"");
    stage.text.clear();
    EXPECT_EQ(Units(list.GetEditText(true)), u"");
}

TEST_F(DropListTest, AutoComplete_adds_the_rest_of_the_first_row_that_begins_so) {
    struct Row {
        const char16_t* typed;
        const char16_t* completed;  // null: nothing happens
    };
    constexpr Row kRows[] = {
        {u"w", u"wave"},    {u"W", u"Wave"},     {u"WAV", u"WAVe"},    {u"wavp", u"wavpack"},
        {u"wave", u"wave"}, {u"waves", nullptr}, {u"x", nullptr},      {u"", nullptr},
        {u"[", u"[x]"},     {u"{", nullptr},     {u"\u00E4", nullptr}, {u"\u00C4", u"\u00C4rger"},
        {u"@", u"@home"},   {u"`", nullptr},
    };
    Add({u"Wave", u"Wavpack", u"WAVER", u"[X]", u"\u00C4rger", u"@Home"});
    for (const Row& row : kRows) {
        stage.text = u"untouched";
        stage.asked.clear();
        list.AutoComplete(row.typed);
        if (!row.completed) {
            EXPECT_EQ(stage.text, u"untouched");
            EXPECT_TRUE(stage.asked.empty());
            continue;
        }
        const std::u16string typed = row.typed;
        EXPECT_EQ(stage.text.size(), std::u16string(row.completed).size());
        EXPECT_EQ(stage.text.substr(0, typed.size()), typed) << "what was typed keeps its case";
        EXPECT_EQ(Units(XString(stage.text.c_str()).ToLower()), Units(XString(row.completed).ToLower()));
        EXPECT_EQ(stage.first, typed.size());
        EXPECT_EQ(stage.end, 0xFFFFU);
        EXPECT_EQ(stage.asked, (Asked{"text", "select"}));
    }
}

TEST_F(DropListTest, the_rest_keeps_the_rows_own_case) {
    Add({u"QuaverMILL"});
    list.AutoComplete(u"qUAV");
    EXPECT_EQ(stage.text, u"qUAVerMILL");
}

TEST_F(DropListTest, typing_into_an_empty_list_changes_nothing) {
    stage.text = u"w";
    Up('W');
    EXPECT_EQ(stage.text, u"w");
    EXPECT_TRUE(stage.asked.empty());
}

TEST_F(DropListTest, a_letter_a_digit_or_space_that_comes_up_completes) {
    Add({u"w 1 more"});
    for (const std::uintptr_t key :
         {std::uintptr_t{'A'}, std::uintptr_t{'Z'}, std::uintptr_t{'0'}, std::uintptr_t{'9'}, kSpace}) {
        stage.text = u"w";
        Up(key);
        EXPECT_EQ(stage.text, u"w 1 more") << key;
    }
    for (const std::uintptr_t key :
         {std::uintptr_t{'A' - 1}, std::uintptr_t{'Z' + 1}, std::uintptr_t{'0' - 1}, std::uintptr_t{'9' + 1},
          std::uintptr_t{8}, kEnter, kShift}) {
        stage.text = u"w";
        Up(key);
        EXPECT_EQ(stage.text, u"w") << key;
    }
}

TEST_F(DropListTest, the_keyboards_layout_decides_which_keys_are_letters_and_digits) {
    Add({u"wave"});
    const std::int16_t kElsewhere[4] = {200, 210, 0x100 | 150, 0x100 | 155};
    std::copy(std::begin(kElsewhere), std::end(kElsewhere), stage.keys);
    for (const auto& [key, completes] : {std::pair<std::uintptr_t, bool>{200, true},
                                         {210, true},
                                         {199, false},
                                         {211, false},
                                         {150, true},
                                         {155, true},
                                         {149, false},
                                         {156, false},
                                         {'A', false},
                                         {'0', false}}) {
        stage.text = u"w";
        Up(key);
        EXPECT_EQ(stage.text == u"wave", completes) << key;
    }
}

TEST_F(DropListTest, the_dialog_leaves_the_fields_keys_to_it) {
    struct Asked {
        platform::Window window;
        std::uint32_t message;
        platform::WordParameter word;
    };
    struct Row {
        std::uint32_t message;
        platform::WordParameter key;
        bool claimed;
    };
    constexpr Row kRows[] = {
        {platform::kMessageKeyDown, 'A', true},    {platform::kMessageKeyUp, 'Z', true},
        {platform::kMessageKeyDown, '5', true},    {platform::kMessageKeyDown, 32, true},
        {platform::kMessageKeyDown, 13, true},     {platform::kMessageKeyUp, 13, true},
        {platform::kMessageKeyDown, 9, false},     {platform::kMessageKeyDown, 27, false},
        {platform::kMessageCharacter, 'A', false}, {0, 'A', false},
    };
    const auto ask = [&](const Asked* asked, std::int32_t* handled) {
        return list.Filter(ComboStage::kEdit, platform::kMessageGetDialogCode, 0,
                           reinterpret_cast<platform::LongParameter>(asked), handled);
    };
    for (const Row& row : kRows) {
        const Asked asked = {ComboStage::kEdit, row.message, row.key};
        std::int32_t handled = 0;
        EXPECT_EQ(ask(&asked, &handled), row.claimed ? 4 : 0) << row.message << " " << row.key;
        EXPECT_EQ(handled, row.claimed) << row.message << " " << row.key;
    }
    std::int32_t handled = 0;
    EXPECT_EQ(ask(nullptr, &handled), 0) << "asked about no message";
    EXPECT_EQ(handled, 0);
}

TEST_F(DropListTest, Enter_accepts_a_completion_and_a_second_one_moves_on) {
    Add({u"wave"});
    stage.text = u"w";
    Up('W');
    ASSERT_EQ(stage.text, u"wave");
    stage.end = 4;
    stage.asked.clear();
    Down(kEnter);
    Up(kEnter);
    EXPECT_EQ(stage.asked, Asked{"unselect -1 0"});
    EXPECT_EQ(stage.text, u"wave");
    EXPECT_EQ(stage.focus, nullptr);
    Down(kEnter);
    EXPECT_EQ(stage.focus, nullptr) << "the focus moves when the key comes up";
    Up(kEnter);
    EXPECT_EQ(stage.focus, ComboStage::kNext);
    EXPECT_EQ(stage.asked.size(), 1U);
}

TEST_F(DropListTest, Enter_on_a_text_selected_from_its_start_moves_on) {
    stage.first = 0;
    stage.end = 4;
    Down(kEnter);
    Up(kEnter);
    EXPECT_EQ(stage.focus, ComboStage::kNext);
    EXPECT_TRUE(stage.asked.empty());
}

TEST_F(DropListTest, another_key_or_the_lost_focus_forgets_Enter) {
    stage.first = stage.end = 0;
    Down(kEnter);
    Down(kShift);
    Up(kEnter);
    EXPECT_EQ(stage.focus, nullptr);
    Down(kEnter);
    LoseFocus();
    Up(kEnter);
    EXPECT_EQ(stage.focus, nullptr);
    EXPECT_TRUE(stage.asked.empty());
}

TEST_F(DropListTest, a_lost_focus_drops_what_was_completed_and_not_accepted) {
    stage.first = 1;
    stage.end = 4;
    LoseFocus();
    EXPECT_EQ(stage.asked, Asked{"replace"});
    stage.asked.clear();
    stage.first = 0;
    LoseFocus();
    EXPECT_TRUE(stage.asked.empty());
}
