// Windows and dialogs of the system's own kind.
//
// Windows has them. POSIX has no window layer: there every window is null, every count and result 0, and a dialog
// never comes up (-1). A window belongs to the thread that made it.
//
// Records are laid out as on Windows; numbers have the names that stand beside them there.
#pragma once

#include <cstdint>

#include "platform/module.h"
#include "platform/operation.h"

namespace platform {

struct WindowObject;
using Window = WindowObject*;  // null for none
struct DeviceContextObject;
using DeviceContext = DeviceContextObject*;  // where one draws; null for none
struct IconObject;
using Icon = IconObject*;
struct CursorObject;
using Cursor = CursorObject*;

struct Rect {
    std::int32_t left = 0, top = 0, right = 0, bottom = 0;  // right and bottom lie outside
};

// A row of an owner-drawn list that is to be drawn.
struct DrawItemRecord {
    std::uint32_t controlType;
    std::uint32_t controlId;
    std::uint32_t itemId;  // kNoItem for none
    std::uint32_t action;
    std::uint32_t itemState;
    Window control;
    DeviceContext dc;
    Rect rect;
    std::uintptr_t itemData;
};
inline constexpr std::uint32_t kNoItem = 0xFFFFFFFF;

// A message's parameters and result, as wide as a pointer.
using WordParameter = std::uintptr_t;
using LongParameter = std::intptr_t;
using WindowProcedure = std::intptr_t (*)(Window window, std::uint32_t message, WordParameter word,
                                          LongParameter value);

// Messages, in the order of their numbers.
enum Message : std::uint32_t {
    kMessageCreate = 1,
    kMessageDestroy = 2,
    kMessageMove = 3,
    kMessageSize = 5,
    kMessageActivate = 6,
    kMessageKillFocus = 8,
    kMessageSetText = 12,
    kMessageGetText = 13,
    kMessageGetTextLength = 14,
    kMessagePaint = 15,
    kMessageClose = 16,
    kMessageEraseBackground = 20,
    kMessageShowWindow = 24,
    kMessageDrawItem = 43,
    kMessageNotify = 78,
    kMessageContextMenu = 123,
    kMessageGetDialogCode = 135,
    kMessageEditGetSelection = 176,
    kMessageEditSetSelection = 177,
    kMessageEditReplaceSelection = 194,
    kMessageKeyDown = 256,
    kMessageKeyUp = 257,
    kMessageCharacter = 258,
    kMessageInitDialog = 272,
    kMessageCommand = 273,
    kMessageSystemCommand = 274,
    kMessageTimer = 275,
    kMessageColourDialog = 310,
    kMessageColourStatic = 312,
    kMessageComboSetEditSelection = 322,
    kMessageComboGetCurrent = 327,
    kMessageComboGetText = 328,
    kMessageComboGetTextLength = 329,
    kMessageComboInsert = 330,
    kMessageComboSetCurrent = 334,
    kMessageComboSetItemHeight = 339,
    kMessageMouseMove = 512,
    kMessageLeftDown = 513,
    kMessageLeftUp = 514,
    kMessageRightDown = 516,
    kMessageRightUp = 517,
    kMessageMiddleDown = 519,
    kMessageMiddleUp = 520,
    kMessageMouseWheel = 522,
};

// Slots of a window's own numbers.
inline constexpr std::int32_t kSlotDialogResult = 0;
inline constexpr std::int32_t kSlotControlId = -12;
inline constexpr std::int32_t kSlotUserData = -21;
inline constexpr std::int32_t kSlotProcedure = -4;

// Related windows, for GetWindow.
inline constexpr std::uint32_t kRelatedNext = 2;
inline constexpr std::uint32_t kRelatedChild = 5;

inline constexpr std::int32_t kShowHidden = 0;
inline constexpr std::int32_t kShowNormal = 5;

// Runs a dialog from the module's resources until EndDialog; null is the program's own module. `created` comes
// with the first message that has a parameter. The result is EndDialog's, or -1 when there was no dialog.
extern Operation<std::intptr_t(ModuleHandle module, std::uint16_t templateNumber, Window parent,
                               WindowProcedure procedure, LongParameter created)>
    DialogBoxParamW;
extern Operation<bool(Window dialog, std::intptr_t result)> EndDialog;
// Turns a rectangle of the dialog's units into pixels.
extern Operation<bool(Window dialog, Rect* rect)> MapDialogRect;
extern Operation<Window(Window dialog, std::int32_t controlId)> GetDlgItem;

extern Operation<std::intptr_t(Window window, std::int32_t slot)> GetWindowLongPtrW;
extern Operation<std::intptr_t(Window window, std::int32_t slot, std::intptr_t value)> SetWindowLongPtrW;
extern Operation<std::intptr_t(Window window, std::uint32_t message, WordParameter word, LongParameter value)>
    DefWindowProcW;
extern Operation<std::intptr_t(WindowProcedure procedure, Window window, std::uint32_t message,
                               WordParameter word, LongParameter value)>
    CallWindowProcW;
extern Operation<std::intptr_t(Window window, std::uint32_t message, WordParameter word, LongParameter value)>
    SendMessageW;

extern Operation<bool(Window window, std::int32_t how)> ShowWindow;
extern Operation<bool(Window window)> DestroyWindow;
extern Operation<bool(const char16_t* className, ModuleHandle module)> UnregisterClassW;
extern Operation<bool(Window window, std::uintptr_t timer)> KillTimer;
extern Operation<bool(Cursor cursor)> DestroyCursor;
// Of the program, for null; a loaded module's handle otherwise.
extern Operation<ModuleHandle(const char16_t* name)> GetModuleHandleW;

extern Operation<bool(Window window, Rect* rect)> GetWindowRect;  // in the screen's coordinates
extern Operation<bool(Window window, Rect* rect)> GetClientRect;  // its own inside, from 0, 0
extern Operation<Window()> GetDesktopWindow;
extern Operation<bool(Window window, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                      std::uint32_t flags)>
    SetWindowPos;
extern Operation<Window(Window window, std::uint32_t relation)> GetWindow;
extern Operation<Window(Window window)> SetFocus;  // the one that had it
extern Operation<bool(Window window)> IsWindowEnabled;
extern Operation<bool(Window window, const char16_t* text)> SetWindowTextW;
// The key that types this character, in the low byte; -1 for none.
extern Operation<std::int16_t(char16_t character)> VkKeyScanW;

}  // namespace platform
