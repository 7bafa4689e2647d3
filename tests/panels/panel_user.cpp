// Changes are made in the controls themselves; what a control would say of a change by a user it says here too.
#include "panels/panel_user.h"

using namespace platform;

platform::Window PanelUser::Control(std::size_t row, clPanelControlId part) const {
    return GetDlgItem(mPanel.Window(), static_cast<std::int32_t>(part + row));
}

void PanelUser::Command(std::size_t row, std::uint32_t notice) {
    SendMessageW(mPanel.Window(), kMessageCommand, (kPanelControl + row) | notice << 16,
                 reinterpret_cast<LongParameter>(Control(row)));
}

void PanelUser::Pick(std::size_t row, std::size_t choice) {
    SendMessageW(Control(row), kMessageComboSetCurrent, choice, 0);
    Command(row, kNoticeComboSelected);
}

void PanelUser::Tick(std::size_t row, bool isTicked) {
    SendMessageW(Control(row), kMessageButtonSetCheck, isTicked ? 1 : 0, 0);
    Command(row, kNoticeClicked);
}

void PanelUser::Type(std::size_t row, const char16_t* text) {
    SetWindowTextW(Control(row), text);
}

void PanelUser::TypeOver(std::size_t row, const char16_t* text) {
    SetWindowTextW(Control(row), text);
    Command(row, kNoticeComboEdited);
}

void PanelUser::Leave(std::size_t row) {
    Command(row, kNoticeEditFocusLost);
}

void PanelUser::LeaveOffers(std::size_t row) {
    Command(row, kNoticeComboFocusLost);
}

void PanelUser::PressArrow(std::size_t row, std::int32_t steps) {
    const StepRecord step = {{Control(row, kPanelArrows), kPanelArrows + row, kNoticeStep}, 0, steps};
    SendMessageW(mPanel.Window(), kMessageNotify, step.notice.controlId,
                 reinterpret_cast<LongParameter>(&step));
}

std::u16string PanelUser::Shown(std::size_t row) const {
    char16_t text[64] = {};
    SendMessageW(Control(row), kMessageGetText, std::size(text), reinterpret_cast<LongParameter>(text));
    return text;
}

bool PanelUser::IsTicked(std::size_t row) const {
    return SendMessageW(Control(row), kMessageButtonGetCheck, 0, 0) != 0;
}

bool PanelUser::IsEnabled(std::size_t row) const {
    return IsWindowEnabled(Control(row));
}
