// A window side in the test's own hand: one dialog with a drop list in it, and a user who does what the test says.
//
//     ScriptedDialog dialog;
//     dialog.user = [&] { dialog.Pick(1); dialog.Click(ScriptedDialog::kOK); };
//     clSettingsFrm form(...);
//
// The dialog is born, sees its user unless it was ended at once, and dies, as the system's own does. A user who leaves
// it open has it closed. Stands before the form and outlives it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "platform/window.h"
#include "support/faults.h"

class ScriptedDialog {
  public:
    static constexpr std::uintptr_t kOK = 1, kCancel = 2, kList = 1001;
    // What the notifications of a drop list are called: its low word is kList.
    static constexpr std::uintptr_t kSelectionChanged = 1, kGotFocus = 3, kLostFocus = 4;
    // Two pixels for each of the dialog's units across, three for each down.
    static constexpr std::int32_t kPixelsX = 2, kPixelsY = 3;
    static constexpr std::uint64_t kWindow = 0x7EEEEEE0;  // the dialog's number, which panels get

    ScriptedDialog();

    bool exists = true;  // without it no dialog comes up, as where the system has none
    std::function<void()> user;
    void Pick(std::int32_t row);  // with the mouse: the selection moves, and the list says so
    void Notify(std::uintptr_t code) { Send(platform::kMessageCommand, kList | code << 16); }
    void Click(std::uintptr_t button) { Send(platform::kMessageCommand, button); }
    void Close() { Send(platform::kMessageClose, 0); }
    std::intptr_t Send(std::uint32_t message, std::uintptr_t word, std::intptr_t value = 0);

    // Of the last dialog.
    int shown = 0;  // how many there were
    std::uint16_t templateNumber = 0;
    platform::ModuleHandle module = nullptr;
    std::optional<std::intptr_t> ended;  // by EndDialog
    std::vector<std::u16string> rows;
    std::int32_t selected = -1;
    std::vector<std::u16string> icons;  // the files that were asked for
    std::intptr_t earlyAnswer = 77;     // to a message from before its birth

  private:
    std::intptr_t Run(platform::WindowProcedure procedure, platform::LongParameter created);
    std::intptr_t Answer(std::uint32_t message, platform::WordParameter word, platform::LongParameter value);

    platform::WindowProcedure mProcedure = nullptr;
    Faulty<platform::DialogBoxParamW> mDialogs;
    Faulty<platform::EndDialog> mEnds;
    Faulty<platform::MapDialogRect> mUnits;
    Faulty<platform::GetDlgItem> mControls;
    Faulty<platform::SendMessageW> mMessages;
    Faulty<platform::LoadIconFile> mIcons;
};
