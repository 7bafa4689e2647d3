// The window is a dialog made as a part of another one, from a template that is put together from the rows. So the
// system itself does what a panel needs most: it makes and frees the font, turns dialog units into pixels, and leads
// the Tab key and the mnemonics from the host's dialog through the panel's controls.
//
// The sheet follows every change at once. That way nothing is lost when the host destroys the window before it asks
// for the text.
#include "modules/support/panel.h"

#include <algorithm>

#include "modules/support/dialog_template.h"

using namespace platform;

namespace {

// Dialog units. Labels and units sit on the line of the text within the control beside them.
constexpr std::int32_t kControlX = 100, kControlHeight = 12, kLabelDrop = 2, kTextHeight = 8, kGap = 4;
constexpr std::int32_t kRounding = 1;  // place and size become pixels each for itself
constexpr std::int32_t kListWidth = 130, kOffersWidth = 80, kNumberWidth = 48, kDroppedHeight = 120;
constexpr std::int32_t kMostTyped = 32;  // characters
constexpr std::int32_t kArrowsReach = 1000;
constexpr FontFace kUsualFont = {0, 400, false, 1, u"MS Shell Dlg"};
constexpr std::int32_t kUsualPoints = 8, kPointsPerInch = 72;
constexpr std::u16string_view kArrowsClass = u"msctls_updown32";

bool IsCombo(const clPanelRow& row) {
    return row.control == PanelControl::list || row.control == PanelControl::preset || !row.choices.empty();
}

bool IsEdit(const clPanelRow& row) {
    return row.control == PanelControl::number && row.choices.empty();
}

struct PointFont {
    FontFace face = kUsualFont;
    std::int32_t points = kUsualPoints;
};

// A font whose height is not that of its characters can't be said in points.
PointFont FontOf(Window window) {
    PointFont font;
    const auto handle = reinterpret_cast<Font>(SendMessageW(window, kMessageGetFont, 0, 0));
    if (!handle || !GetFontFace(handle, &font.face) || font.face.height >= 0) return {};
    const DeviceContext dc = GetDC(window);
    font.points = MulDiv(-font.face.height, kPointsPerInch, GetDeviceCaps(dc, kPixelsPerInchY));
    ReleaseDC(window, dc);
    return font.points > 0 ? font : PointFont{};
}

std::int32_t AddControl(clDialogTemplate& dialog, const clPanelRow& row, std::uint32_t index,
                        std::int32_t y) {
    const std::uint32_t id = kPanelControl + index;
    const bool isTyped = row.control == PanelControl::number;
    if (row.control == PanelControl::check) {
        dialog.Add(clDialogTemplate::kButton, id, kStyleTabStop | kButtonAutoCheck,
                   {kControlX, y, kPanelWidth - kControlX - kRounding, kControlHeight}, row.label);
        return kPanelWidth - kControlX;
    }
    if (IsCombo(row)) {
        const std::int32_t width = isTyped ? kOffersWidth : kListWidth;
        dialog.Add(clDialogTemplate::kComboBox, id,
                   kStyleTabStop | kStyleVerticalScroll | kComboAutoScroll |
                       (isTyped ? kComboDropDown : kComboDropDownList),
                   {kControlX, y, width, kDroppedHeight});
        return width;
    }
    dialog.Add(clDialogTemplate::kEdit, id, kStyleTabStop | kStyleBorder | kEditAutoScroll,
               {kControlX, y, kNumberWidth, kControlHeight});
    dialog.Add(kArrowsClass, kPanelArrows + index, kUpDownAlignRight | kUpDownAutoBuddy | kUpDownArrowKeys,
               {kControlX + kNumberWidth, y, 0, kControlHeight});
    return kNumberWidth;
}

void AddRow(clDialogTemplate& dialog, const clPanelRow& row, std::uint32_t index) {
    const std::int32_t y = static_cast<std::int32_t>(index) * kPanelRowHeight;
    if (row.control != PanelControl::check) {
        dialog.Add(clDialogTemplate::kStatic, kPanelLabel + index, 0,
                   {0, y + kLabelDrop, kControlX - kGap, kTextHeight}, row.label);
    }
    const std::int32_t unitX = kControlX + AddControl(dialog, row, index, y) + kGap;
    if (*row.unit == 0) return;
    dialog.Add(clDialogTemplate::kStatic, kPanelUnit + index, 0,
               {unitX, y + kLabelDrop, kPanelWidth - unitX - kRounding, kTextHeight}, row.unit);
}

clDialogTemplate MakeTemplate(std::span<const clPanelRow> rows, const PointFont& font) {
    const auto count = static_cast<std::int32_t>(std::max<std::size_t>(rows.size(), 1));
    clDialogTemplate dialog(kStyleChild | kDialogControl | kDialogSetFont | kDialogFixedSystem,
                            kExtendedStyleControlParent, kPanelWidth, count * kPanelRowHeight, font.face,
                            font.points);
    for (std::uint32_t i = 0; i < rows.size(); ++i) AddRow(dialog, rows[i], i);
    if (rows.empty()) {
        dialog.Add(clDialogTemplate::kStatic, kPanelLabel, 0, {0, kLabelDrop, kPanelWidth, kTextHeight},
                   u"There is nothing to set.");
    }
    return dialog;
}

std::u16string TextOf(Window control) {
    std::u16string text(kMostTyped, 0);
    const std::intptr_t length =
        SendMessageW(control, kMessageGetText, text.size() + 1, reinterpret_cast<LongParameter>(text.data()));
    text.resize(static_cast<std::size_t>(std::clamp<std::intptr_t>(length, 0, kMostTyped)));
    return text;
}

void SelectIn(Window list, std::size_t index) {
    SendMessageW(list, kMessageComboSetCurrent, index, 0);
}

void AddTo(Window list, const char16_t* text) {
    SendMessageW(list, kMessageComboAdd, 0, reinterpret_cast<LongParameter>(text));
}

}  // namespace

void clPanel::Show(platform::Window parent, std::int32_t x, std::int32_t y, const char16_t* text) {
    Close();
    mSheet.Read(text);
    mIsShown = true;
    if (!parent) return;
    InitCommonControlsEx(kUpDownClass);
    const clDialogTemplate dialog = MakeTemplate(mSheet.Rows(), FontOf(parent));
    const auto self = reinterpret_cast<LongParameter>(this);
    mIsFilling = true;
    mWindow = CreateDialogIndirectParamW(nullptr, dialog.Bytes(), parent, &clPanel::Receive, self);
    mIsFilling = false;
    if (!mWindow) return;
    SetWindowPos(mWindow, x, y, 0, 0,
                 kPositionKeepSize | kPositionKeepOrder | kPositionKeepActive | kPositionShow);
}

const char16_t* clPanel::Remove() {
    if (!mIsShown) return nullptr;
    Close();
    mText = mSheet.Text();
    return mText.c_str();
}

void clPanel::Close() {
    mIsShown = false;
    if (mWindow) DestroyWindow(mWindow);
    mWindow = nullptr;
}

// No exception may pass through the system's own code above us: what can't be had leaves the value as it was.
std::intptr_t clPanel::Receive(platform::Window window, std::uint32_t message, WordParameter word,
                               LongParameter value) {
    if (message == kMessageInitDialog) SetWindowLongPtrW(window, kSlotUserData, value);
    auto* self = reinterpret_cast<clPanel*>(GetWindowLongPtrW(window, kSlotUserData));
    if (!self) return 0;
    if (message == kMessageInitDialog) self->mWindow = window;
    try {
        return self->React(message, word, value);
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

bool clPanel::React(std::uint32_t message, WordParameter word, LongParameter value) {
    switch (message) {
        case kMessageInitDialog:
            Fill();
            return false;  // the focus stays where it is
        case kMessageCommand:
            return !mIsFilling &&
                   OnNotice((word & 0xFFFF) - kPanelControl, static_cast<std::uint32_t>(word >> 16 & 0xFFFF));
        case kMessageNotify:
            return OnStep(*reinterpret_cast<const NoticeRecord*>(value));
        case kMessageNonClientDestroy:
            mWindow = nullptr;
            return false;
        default:
            return false;
    }
}

// A row's number wraps for what is not of ours, and then is too large.
bool clPanel::OnNotice(std::size_t row, std::uint32_t notice) {
    if (row >= mSheet.Rows().size()) return false;
    const clPanelRow& its = mSheet.Rows()[row];
    if (its.control == PanelControl::check && notice == kNoticeClicked) {
        mSheet.Choose(row, SendMessageW(Control(row), kMessageButtonGetCheck, 0, 0) != 0 ? 1 : 0);
    } else if (IsCombo(its) && notice == kNoticeComboSelected) {
        mSheet.Choose(row, Selected(row));
    } else if (its.control == PanelControl::number &&
               notice == (IsEdit(its) ? kNoticeEditChanged : kNoticeComboEdited)) {
        mSheet.Type(row, TextOf(Control(row)));
    } else if (its.control == PanelControl::number &&
               notice == (IsEdit(its) ? kNoticeEditFocusLost : kNoticeComboFocusLost)) {
        ShowValue(row);
        return true;
    } else {
        return false;
    }
    ShowOthers(row);
    return true;
}

// The arrows hold no number of their own: each press is one step of the sheet's, and is refused to them.
bool clPanel::OnStep(const NoticeRecord& notice) {
    const std::size_t row = notice.controlId - kPanelArrows;
    if (notice.code != kNoticeStep || row >= mSheet.Rows().size()) return false;
    mSheet.Step(row, reinterpret_cast<const StepRecord&>(notice).steps);
    ShowValue(row);
    ShowOthers(row);
    SetWindowLongPtrW(mWindow, kSlotDialogResult, 1);
    return true;
}

void clPanel::Fill() {
    for (std::size_t i = 0; i < mSheet.Rows().size(); ++i) {
        const clPanelRow& row = mSheet.Rows()[i];
        const platform::Window control = Control(i);
        if (IsEdit(row)) {
            SendMessageW(control, kMessageEditLimitText, kMostTyped, 0);
            SendMessageW(Control(i, kPanelArrows), kMessageUpDownSetRange,
                         static_cast<WordParameter>(-kArrowsReach), kArrowsReach);
        } else if (IsCombo(row)) {
            for (const clPanelChoice& choice : row.choices) AddTo(control, choice.shown);
            if (row.control == PanelControl::preset) AddTo(control, u"As set below");
            SendMessageW(control, kMessageComboLimitText, kMostTyped, 0);
        }
    }
    for (std::size_t i = 0; i < mSheet.Rows().size(); ++i) ShowValue(i);
    for (std::size_t i = 0; i < mSheet.Rows().size(); ++i) ShowWhetherActive(i);
}

void clPanel::ShowValue(std::size_t row) {
    const clPanelRow& its = mSheet.Rows()[row];
    const bool wasFilling = mIsFilling;
    mIsFilling = true;
    const std::size_t choice = mSheet.Choice(row);
    if (its.control == PanelControl::check)
        SendMessageW(Control(row), kMessageButtonSetCheck, choice, 0);
    else if (IsCombo(its) && (its.control == PanelControl::preset || choice < its.choices.size()))
        SelectIn(Control(row), choice);
    else
        SetWindowTextW(Control(row), mSheet.Value(row).c_str());
    mIsFilling = wasFilling;
}

void clPanel::ShowWhetherActive(std::size_t row) {
    for (const auto part : {kPanelLabel, kPanelControl, kPanelArrows, kPanelUnit})
        if (const platform::Window control = Control(row, part)) EnableWindow(control, mSheet.IsActive(row));
}

// What a change in one row does to the others. A preset sets them all, and they decide which preset it is.
void clPanel::ShowOthers(std::size_t changed) {
    const bool all = mSheet.Rows()[changed].control == PanelControl::preset;
    for (std::size_t i = 0; i < mSheet.Rows().size(); ++i) {
        if (i != changed && (all || mSheet.Rows()[i].control == PanelControl::preset)) ShowValue(i);
        ShowWhetherActive(i);
    }
}

std::size_t clPanel::Selected(std::size_t row) const {
    return static_cast<std::size_t>(SendMessageW(Control(row), kMessageComboGetCurrent, 0, 0));
}

platform::Window clPanel::Control(std::size_t row, clPanelControlId part) const {
    return GetDlgItem(mWindow, static_cast<std::int32_t>(part + row));
}
