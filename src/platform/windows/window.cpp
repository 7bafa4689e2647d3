// The system's own windows.
#include "platform/window.h"

#include "platform/windows/native_window.h"

namespace platform {

static_assert(sizeof(DrawItemRecord) == sizeof(DRAWITEMSTRUCT) &&
              offsetof(DrawItemRecord, rect) == offsetof(DRAWITEMSTRUCT, rcItem) &&
              offsetof(DrawItemRecord, itemData) == offsetof(DRAWITEMSTRUCT, itemData));
static_assert(kMessageInitDialog == WM_INITDIALOG && kMessageGetDialogCode == WM_GETDLGCODE &&
              kMessageEditReplaceSelection == EM_REPLACESEL &&
              kMessageComboSetItemHeight == CB_SETITEMHEIGHT && kMessageColourStatic == WM_CTLCOLORSTATIC &&
              kMessageMouseWheel == WM_MOUSEWHEEL);
static_assert(kSlotDialogResult == DWLP_MSGRESULT && kSlotControlId == GWLP_ID &&
              kSlotUserData == GWLP_USERDATA && kSlotProcedure == GWLP_WNDPROC);
static_assert(kRelatedNext == GW_HWNDNEXT && kRelatedChild == GW_CHILD && kShowHidden == SW_HIDE &&
              kShowNormal == SW_SHOW);

constinit Operation<std::intptr_t(ModuleHandle, std::uint16_t, Window, WindowProcedure, LongParameter)>
    DialogBoxParamW{[](ModuleHandle module, std::uint16_t templateNumber, Window parent,
                       WindowProcedure procedure, LongParameter created) -> std::intptr_t {
        return ::DialogBoxParamW(NativeModule(module), MAKEINTRESOURCEW(templateNumber), Native(parent),
                                 NativeProcedure<DLGPROC>(procedure), created);
    }};

constinit Operation<bool(Window, std::intptr_t)> EndDialog{
    [](Window dialog, std::intptr_t result) -> bool { return ::EndDialog(Native(dialog), result) != 0; }};

constinit Operation<bool(Window, Rect*)> MapDialogRect{
    [](Window dialog, Rect* rect) -> bool { return ::MapDialogRect(Native(dialog), Native(rect)) != 0; }};

constinit Operation<Window(Window, std::int32_t)> GetDlgItem{
    [](Window dialog, std::int32_t controlId) -> Window {
        return FromNative(::GetDlgItem(Native(dialog), controlId));
    }};

constinit Operation<std::intptr_t(Window, std::int32_t)> GetWindowLongPtrW{
    [](Window window, std::int32_t slot) -> std::intptr_t {
        return ::GetWindowLongPtrW(Native(window), slot);
    }};

constinit Operation<std::intptr_t(Window, std::int32_t, std::intptr_t)> SetWindowLongPtrW{
    [](Window window, std::int32_t slot, std::intptr_t value) -> std::intptr_t {
        return ::SetWindowLongPtrW(Native(window), slot, value);
    }};

constinit Operation<std::intptr_t(Window, std::uint32_t, WordParameter, LongParameter)> DefWindowProcW{
    [](Window window, std::uint32_t message, WordParameter word, LongParameter value) -> std::intptr_t {
        return ::DefWindowProcW(Native(window), message, word, value);
    }};

constinit Operation<std::intptr_t(WindowProcedure, Window, std::uint32_t, WordParameter, LongParameter)>
    CallWindowProcW{[](WindowProcedure procedure, Window window, std::uint32_t message, WordParameter word,
                       LongParameter value) -> std::intptr_t {
        return ::CallWindowProcW(NativeProcedure<WNDPROC>(procedure), Native(window), message, word, value);
    }};

constinit Operation<std::intptr_t(Window, std::uint32_t, WordParameter, LongParameter)> SendMessageW{
    [](Window window, std::uint32_t message, WordParameter word, LongParameter value) -> std::intptr_t {
        return ::SendMessageW(Native(window), message, word, value);
    }};

constinit Operation<bool(Window, std::int32_t)> ShowWindow{
    [](Window window, std::int32_t how) -> bool { return ::ShowWindow(Native(window), how) != 0; }};

constinit Operation<bool(Window)> DestroyWindow{
    [](Window window) -> bool { return ::DestroyWindow(Native(window)) != 0; }};

constinit Operation<bool(const char16_t*, ModuleHandle)> UnregisterClassW{
    [](const char16_t* className, ModuleHandle module) -> bool {
        return ::UnregisterClassW(Native(className), NativeModule(module)) != 0;
    }};

constinit Operation<bool(Window, std::uintptr_t)> KillTimer{
    [](Window window, std::uintptr_t timer) -> bool { return ::KillTimer(Native(window), timer) != 0; }};

constinit Operation<bool(Cursor)> DestroyCursor{
    [](Cursor cursor) -> bool { return ::DestroyCursor(reinterpret_cast<HCURSOR>(cursor)) != 0; }};

constinit Operation<ModuleHandle(const char16_t*)> GetModuleHandleW{
    [](const char16_t* name) -> ModuleHandle { return ::GetModuleHandleW(Native(name)); }};

constinit Operation<bool(Window, Rect*)> GetWindowRect{
    [](Window window, Rect* rect) -> bool { return ::GetWindowRect(Native(window), Native(rect)) != 0; }};

constinit Operation<bool(Window, Rect*)> GetClientRect{
    [](Window window, Rect* rect) -> bool { return ::GetClientRect(Native(window), Native(rect)) != 0; }};

constinit Operation<Window()> GetDesktopWindow{[]() -> Window { return FromNative(::GetDesktopWindow()); }};

constinit Operation<bool(Window, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::uint32_t)>
    SetWindowPos{[](Window window, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                    std::uint32_t flags) -> bool {
        return ::SetWindowPos(Native(window), nullptr, x, y, width, height, flags) != 0;
    }};

constinit Operation<Window(Window, std::uint32_t)> GetWindow{
    [](Window window, std::uint32_t relation) -> Window {
        return FromNative(::GetWindow(Native(window), relation));
    }};

constinit Operation<Window(Window)> SetFocus{
    [](Window window) -> Window { return FromNative(::SetFocus(Native(window))); }};

constinit Operation<bool(Window)> IsWindowEnabled{
    [](Window window) -> bool { return ::IsWindowEnabled(Native(window)) != 0; }};

constinit Operation<bool(Window, const char16_t*)> SetWindowTextW{
    [](Window window, const char16_t* text) -> bool {
        return ::SetWindowTextW(Native(window), Native(text)) != 0;
    }};

constinit Operation<std::int16_t(char16_t)> VkKeyScanW{
    [](char16_t character) -> std::int16_t { return ::VkKeyScanW(static_cast<wchar_t>(character)); }};

}  // namespace platform
