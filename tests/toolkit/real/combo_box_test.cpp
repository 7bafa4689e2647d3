// The drop list before a real combo box in a real dialog.
#include <gtest/gtest.h>

#include "modules/support/dialog_template.h"
#include "settings/toolkit/drop_list.h"
#include "settings/toolkit/window.h"
#include "support/wide_text.h"
#include "toolkit/real/gauge.h"

namespace {

using namespace platform;

constexpr FontFace kFont = {0, 400, false, 1, u"MS Shell Dlg"};
constexpr std::uint32_t kStyleCaption = 0x00C00000;
constexpr std::uint32_t kComboOwnRows = 0x0210;  // CBS_OWNERDRAWFIXED, with texts of its own
constexpr std::uint32_t kMessageComboGetItemHeight = 340;
constexpr std::uint32_t kListId = 1001;
constexpr WordParameter kEnter = 13;

// A dialog with a drop list, and another control behind it. It is hidden unless something has to be painted: to
// show a window takes its time where nobody manages windows.
class ListForm : public XWindow {
  public:
    explicit ListForm(std::uint32_t comboStyle, std::uint32_t dialogStyle = 0) {
        clDialogTemplate dialog(dialogStyle | kStyleCaption | kDialogSetFont | kDialogFixedSystem, 0, 335,
                                146, kFont, 8);
        dialog.Add(clDialogTemplate::kComboBox, kListId,
                   comboStyle | kComboOwnRows | kComboAutoScroll | kStyleTabStop | kStyleVerticalScroll,
                   {61, 7, 129, 132});
        dialog.Add(clDialogTemplate::kEdit, 1002, kStyleTabStop, {61, 60, 50, 14});
        mDialog = CreateDialogIndirectParamW(nullptr, dialog.Bytes(), nullptr, &DialogProcedure,
                                             reinterpret_cast<LongParameter>(this));
    }
    ~ListForm() override {
        list.Destroy();
        Destroy();
    }

    void OnInitDialog() override {
        XWindow::OnInitDialog();
        list.Attach(Combo());
        for (const char16_t* row : {u"Wave", u"FLAC", u"Vorbis"}) list.AddItem(row, nullptr);
    }
    std::intptr_t PreTranslate(Window, std::uint32_t message, WordParameter word, LongParameter value,
                               std::int32_t* handled) override {
        const std::intptr_t result = list.OnParentMessage(message, word, value, handled);
        if (*handled) ++drawn;
        return result;
    }

    Window Combo() const { return GetDlgItem(mWindow, kListId); }
    Window Edit() const { return GetWindow(Combo(), kRelatedChild); }
    std::intptr_t Send(Window window, std::uint32_t message, WordParameter word = 0,
                       LongParameter value = 0) {
        return SendMessageW(window, message, word, value);
    }
    // Selected in the edit field, from behind the high word to the low one.
    std::pair<std::intptr_t, std::intptr_t> Selected() {
        const std::intptr_t both = Send(Edit(), kMessageEditGetSelection);
        return {both & 0xFFFF, both >> 16 & 0xFFFF};
    }
    void Type(std::u16string_view text) {
        for (const char16_t unit : text) {
            const WordParameter key = static_cast<WordParameter>(VkKeyScanW(unit) & 0xFF);
            Send(Edit(), kMessageKeyDown, key);
            Send(Edit(), kMessageCharacter, unit);
            Send(Edit(), kMessageKeyUp, key);
        }
    }
    void Press(WordParameter key) {
        Send(Edit(), kMessageKeyDown, key);
        Send(Edit(), kMessageKeyUp, key);
    }

    XDropList list;
    int drawn = 0;

  private:
    Window mDialog = nullptr;
};

}  // namespace

TEST(RealDropList, rows_texts_height_and_selection_are_the_combo_boxs) {
    ListForm form(kComboDropDownList);
    ASSERT_NE(form.Combo(), nullptr);
    EXPECT_EQ(form.list.ControlId(), static_cast<std::int32_t>(kListId));
    EXPECT_EQ(form.Send(form.Combo(), kMessageComboGetCount), 3);
    EXPECT_EQ(form.Send(form.Combo(), kMessageComboGetItemHeight, 0), XWindow::ScaleForDPI(25));
    EXPECT_EQ(Units(form.list.GetItemText(1)), u"FLAC");
    EXPECT_EQ(Units(form.list.GetItemText(3)), u"");
    EXPECT_EQ(Units(form.list.GetEditText(false)), u"");
    form.Send(form.Combo(), kMessageComboSetCurrent, 2);
    EXPECT_EQ(Units(form.list.GetEditText(false)), u"Vorbis");
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"Vorbis") << "there is no field to ask";
}

TEST(RealDropList, a_combo_box_that_paints_itself_has_its_row_drawn_by_the_list) {
    ListForm form(kComboDropDownList, kStyleVisible);
    form.Send(form.Combo(), kMessageComboSetCurrent, 2);
    form.drawn = 0;
    const Canvas canvas(400, 60, 0x00FF00);
    form.list.Item(2)->drawing.AddBackground(0x123456);  // over everything, to be seen
    form.Send(form.Combo(), kMessagePaint, reinterpret_cast<WordParameter>(canvas.DC()));
    EXPECT_EQ(form.drawn, 1);
    const Rect row = canvas.BoundsOf([](Colour colour) { return colour == 0x123456; });
    EXPECT_GT(row.right - row.left, 100);
    EXPECT_GT(row.bottom - row.top, 10);
}

TEST(RealDropList, what_is_typed_is_completed_and_Enter_accepts_then_moves_on) {
    ListForm form(kComboDropDown);
    ASSERT_NE(form.Edit(), nullptr);
    SetFocus(form.Edit());
    form.Type(u"w");
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"wave");
    EXPECT_EQ(form.Selected(), std::pair(std::intptr_t{1}, std::intptr_t{4}));
    form.Type(u"A");
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"wAve");
    EXPECT_EQ(form.Selected(), std::pair(std::intptr_t{2}, std::intptr_t{4}));
    form.Press(kEnter);
    EXPECT_EQ(form.Selected().first, form.Selected().second);
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"wAve");
    EXPECT_EQ(SetFocus(form.Edit()), form.Edit()) << "the focus stayed";
    form.Press(kEnter);
    EXPECT_NE(SetFocus(form.Edit()), form.Edit()) << "the focus moved on";
}

TEST(RealDropList, a_completion_that_was_not_accepted_goes_with_the_focus) {
    ListForm form(kComboDropDown);
    SetFocus(form.Edit());
    form.Type(u"Vo");
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"Vorbis");
    SetFocus(GetDlgItem(form.Handle(), 1002));
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"Vo");
}

TEST(RealDropList, typing_what_no_row_begins_with_changes_nothing) {
    ListForm form(kComboDropDown);
    SetFocus(form.Edit());
    form.Type(u"x9");
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"x9");
}

TEST(RealDropList, the_field_gets_its_own_procedure_back) {
    ListForm form(kComboDropDown);
    const std::intptr_t replaced = GetWindowLongPtrW(form.Edit(), kSlotProcedure);
    form.list.Destroy();
    EXPECT_NE(GetWindowLongPtrW(form.Edit(), kSlotProcedure), replaced);
    EXPECT_EQ(GetWindowLongPtrW(form.Edit(), kSlotUserData), 0);
    form.Type(u"w");
    EXPECT_EQ(Units(form.list.GetEditText(true)), u"") << "nothing is attached";
    XString text;
    EXPECT_EQ(form.Send(form.Edit(), kMessageGetTextLength), 1);
}

TEST(RealWindow, moves_and_is_centred_on_the_screen) {
    ListForm form(kComboDropDownList);
    Rect before, after, desktop;
    GetWindowRect(form.Handle(), &before);
    form.Move(kLengthDefault, before.top + 9);
    GetWindowRect(form.Handle(), &after);
    EXPECT_EQ(after, (Rect{before.left, before.top + 9, before.right, before.bottom + 9}));
    form.CenterOnDesktop();
    GetWindowRect(form.Handle(), &after);
    GetClientRect(GetDesktopWindow(), &desktop);
    EXPECT_EQ(after.left, desktop.right / 2 - (after.right - after.left) / 2);
    EXPECT_EQ(after.top, desktop.bottom / 2 - (after.bottom - after.top) / 2);
    EXPECT_GT(XWindow::DialogUnitsX(form.Handle()), 17);
    EXPECT_GT(XWindow::DialogUnitsY(form.Handle()), 30);
}

TEST(RealWindow, an_object_and_its_dialog_end_together) {
    Window window = nullptr;
    {
        const ListForm form(kComboDropDownList);
        window = form.Handle();
        EXPECT_EQ(XWindow::FindObject(window), &form);
    }
    Rect rect;
    EXPECT_FALSE(GetWindowRect(window, &rect));
    EXPECT_EQ(gWindowTable.Count(), 0);
}

TEST(RealWindow, forms_leave_no_object_behind) {
    ExpectNothingLeft([] { const ListForm form(kComboDropDown); });
}
