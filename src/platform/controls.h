// Dialogs made from memory, and the system's own controls in them.
//
// Windows has them. POSIX has no window layer: there no dialog comes up and every call refuses.
//
// Records are laid out as on Windows; numbers have the names that stand beside them there.
#pragma once

#include <cstdint>

#include "platform/drawing.h"
#include "platform/operation.h"
#include "platform/window.h"

namespace platform {

// Messages to and from controls, in the order of their numbers.
enum ControlMessage : std::uint32_t {
    kMessageGetFont = 49,
    kMessageNonClientDestroy = 130,
    kMessageEditLimitText = 197,
    kMessageButtonGetCheck = 240,
    kMessageButtonSetCheck = 241,
    kMessageComboLimitText = 321,
    kMessageComboAdd = 323,
    kMessageComboGetCount = 326,
    kMessageUpDownSetRange = 1135,  // UDM_SETRANGE32
};

// What a control says of itself, in the high word of a command.
enum ControlNotice : std::uint32_t {
    kNoticeClicked = 0,          // BN_CLICKED
    kNoticeComboSelected = 1,    // CBN_SELCHANGE
    kNoticeComboFocusLost = 4,   // CBN_KILLFOCUS
    kNoticeComboEdited = 5,      // CBN_EDITCHANGE
    kNoticeEditFocusLost = 512,  // EN_KILLFOCUS
    kNoticeEditChanged = 768,    // EN_CHANGE
};

// What comes with a notification (kMessageNotify).
struct NoticeRecord {
    Window from;
    std::uintptr_t controlId;
    std::uint32_t code;
};
inline constexpr std::uint32_t kNoticeStep = static_cast<std::uint32_t>(-722);  // UDN_DELTAPOS
struct StepRecord {
    NoticeRecord notice;
    std::int32_t position;
    std::int32_t steps;
};

// Styles of windows, dialogs and controls.
inline constexpr std::uint32_t kStyleChild = 0x40000000;
inline constexpr std::uint32_t kStyleVisible = 0x10000000;
inline constexpr std::uint32_t kStyleBorder = 0x00800000;
inline constexpr std::uint32_t kStyleVerticalScroll = 0x00200000;
inline constexpr std::uint32_t kStyleTabStop = 0x00010000;
inline constexpr std::uint32_t kExtendedStyleControlParent = 0x00010000;
inline constexpr std::uint32_t kDialogSetFont = 0x40;
inline constexpr std::uint32_t kDialogFixedSystem =
    0x08;  // with kDialogSetFont: the face "MS Shell Dlg" is mapped
inline constexpr std::uint32_t kDialogControl = 0x0400;  // a part of another dialog
inline constexpr std::uint32_t kComboDropDown = 0x0002;  // with an edit field
inline constexpr std::uint32_t kComboDropDownList = 0x0003;
inline constexpr std::uint32_t kComboAutoScroll = 0x0040;
inline constexpr std::uint32_t kEditAutoScroll = 0x0080;
inline constexpr std::uint32_t kButtonAutoCheck = 0x0003;
inline constexpr std::uint32_t kUpDownAlignRight = 0x0004;
inline constexpr std::uint32_t kUpDownAutoBuddy = 0x0010;
inline constexpr std::uint32_t kUpDownArrowKeys = 0x0020;

// For SetWindowPos.
inline constexpr std::uint32_t kPositionKeepSize = 0x01;
inline constexpr std::uint32_t kPositionKeepOrder = 0x04;
inline constexpr std::uint32_t kPositionKeepActive = 0x10;
inline constexpr std::uint32_t kPositionShow = 0x40;

inline constexpr std::uint32_t kUpDownClass = 0x10;  // "msctls_updown32", for InitCommonControlsEx

struct FontFace {
    std::int32_t height = 0;  // below 0: of the characters, in pixels
    std::int32_t weight = 0;
    bool isItalic = false;
    std::uint8_t characterSet = 0;
    char16_t name[32] = {};
};

// A dialog that doesn't wait, from a template in memory; null when there is none. `created` comes with
// kMessageInitDialog.
extern Operation<Window(ModuleHandle module, const void* dialogTemplate, Window parent,
                        WindowProcedure procedure, LongParameter created)>
    CreateDialogIndirectParamW;
// Makes these classes of controls known to the process.
extern Operation<bool(std::uint32_t classes)> InitCommonControlsEx;
extern Operation<bool(Window window, bool isEnabled)> EnableWindow;  // true when it was disabled
extern Operation<bool(Font font, FontFace* face)> GetFontFace;       // by GetObjectW

}  // namespace platform
