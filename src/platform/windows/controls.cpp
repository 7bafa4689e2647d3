// The system's own dialogs and controls.
#include "platform/controls.h"

#include "platform/windows/native_window.h"

#include <commctrl.h>

#include <iterator>

namespace platform {

static_assert(kMessageGetFont == WM_GETFONT && kMessageNonClientDestroy == WM_NCDESTROY &&
              kMessageEditLimitText == EM_LIMITTEXT && kMessageButtonGetCheck == BM_GETCHECK &&
              kMessageButtonSetCheck == BM_SETCHECK && kMessageComboAdd == CB_ADDSTRING &&
              kMessageComboLimitText == CB_LIMITTEXT && kMessageComboGetCount == CB_GETCOUNT &&
              kMessageUpDownSetRange == UDM_SETRANGE32);
static_assert(kNoticeClicked == BN_CLICKED && kNoticeComboSelected == CBN_SELCHANGE &&
              kNoticeComboFocusLost == CBN_KILLFOCUS && kNoticeComboEdited == CBN_EDITCHANGE &&
              kNoticeEditFocusLost == EN_KILLFOCUS && kNoticeEditChanged == EN_CHANGE &&
              kNoticeStep == UDN_DELTAPOS);
static_assert(sizeof(NoticeRecord) == sizeof(NMHDR) && sizeof(StepRecord) == sizeof(NMUPDOWN) &&
              offsetof(StepRecord, steps) == offsetof(NMUPDOWN, iDelta));
static_assert(kStyleChild == WS_CHILD && kStyleVisible == WS_VISIBLE && kStyleVerticalScroll == WS_VSCROLL &&
              kStyleTabStop == WS_TABSTOP && kExtendedStyleControlParent == WS_EX_CONTROLPARENT &&
              kStyleBorder == WS_BORDER);
static_assert(kDialogSetFont == DS_SETFONT && kDialogFixedSystem == DS_FIXEDSYS &&
              kDialogControl == DS_CONTROL && kComboDropDown == CBS_DROPDOWN &&
              kComboDropDownList == CBS_DROPDOWNLIST && kComboAutoScroll == CBS_AUTOHSCROLL &&
              kEditAutoScroll == ES_AUTOHSCROLL && kButtonAutoCheck == BS_AUTOCHECKBOX &&
              kUpDownAlignRight == UDS_ALIGNRIGHT && kUpDownAutoBuddy == UDS_AUTOBUDDY &&
              kUpDownArrowKeys == UDS_ARROWKEYS);
static_assert(kPositionKeepSize == SWP_NOSIZE && kPositionKeepOrder == SWP_NOZORDER &&
              kPositionKeepActive == SWP_NOACTIVATE && kPositionShow == SWP_SHOWWINDOW);
static_assert(kUpDownClass == ICC_UPDOWN_CLASS && sizeof(FontFace::name) == sizeof(LOGFONTW::lfFaceName));

constinit Operation<Window(ModuleHandle, const void*, Window, WindowProcedure, LongParameter)>
    CreateDialogIndirectParamW{[](ModuleHandle module, const void* dialogTemplate, Window parent,
                                  WindowProcedure procedure, LongParameter created) -> Window {
        return FromNative(::CreateDialogIndirectParamW(
            NativeModule(module), static_cast<const DLGTEMPLATE*>(dialogTemplate), Native(parent),
            NativeProcedure<DLGPROC>(procedure), created));
    }};

constinit Operation<bool(std::uint32_t)> InitCommonControlsEx{[](std::uint32_t classes) -> bool {
    const INITCOMMONCONTROLSEX wanted = {sizeof wanted, classes};
    using Entry = BOOL(WINAPI*)(const INITCOMMONCONTROLSEX*);
    static const auto entry = LateEntry<Entry>(L"comctl32.dll", "InitCommonControlsEx");
    return entry && entry(&wanted) != 0;
}};

constinit Operation<bool(Window, bool)> EnableWindow{
    [](Window window, bool isEnabled) -> bool { return ::EnableWindow(Native(window), isEnabled) != 0; }};

constinit Operation<bool(Font, FontFace*)> GetFontFace{[](Font font, FontFace* face) -> bool {
    LOGFONTW record = {};
    if (::GetObjectW(font, sizeof record, &record) == 0) return false;
    *face = {record.lfHeight, record.lfWeight, record.lfItalic != 0, record.lfCharSet, {}};
    ::lstrcpynW(Native(face->name), record.lfFaceName, static_cast<int>(std::size(face->name)));
    return true;
}};

}  // namespace platform
