// There is no window layer here: no window, and no dialog that comes up.
#include "platform/window.h"

namespace platform {

namespace {

template <class Result, class... Arguments>
Result None(Arguments...) {
    return Result();
}

std::intptr_t NoDialog(ModuleHandle, std::uint16_t, Window, WindowProcedure, LongParameter) {
    return -1;
}

std::int16_t NoKey(char16_t) {
    return -1;
}

}  // namespace

constinit Operation<std::intptr_t(ModuleHandle, std::uint16_t, Window, WindowProcedure, LongParameter)>
    DialogBoxParamW{&NoDialog};
constinit Operation<bool(Window, std::intptr_t)> EndDialog{&None<bool, Window, std::intptr_t>};
constinit Operation<bool(Window, Rect*)> MapDialogRect{&None<bool, Window, Rect*>};
constinit Operation<Window(Window, std::int32_t)> GetDlgItem{&None<Window, Window, std::int32_t>};
constinit Operation<std::intptr_t(Window, std::int32_t)> GetWindowLongPtrW{
    &None<std::intptr_t, Window, std::int32_t>};
constinit Operation<std::intptr_t(Window, std::int32_t, std::intptr_t)> SetWindowLongPtrW{
    &None<std::intptr_t, Window, std::int32_t, std::intptr_t>};
constinit Operation<std::intptr_t(Window, std::uint32_t, WordParameter, LongParameter)> DefWindowProcW{
    &None<std::intptr_t, Window, std::uint32_t, WordParameter, LongParameter>};
constinit Operation<std::intptr_t(WindowProcedure, Window, std::uint32_t, WordParameter, LongParameter)>
    CallWindowProcW{
        &None<std::intptr_t, WindowProcedure, Window, std::uint32_t, WordParameter, LongParameter>};
constinit Operation<std::intptr_t(Window, std::uint32_t, WordParameter, LongParameter)> SendMessageW{
    &None<std::intptr_t, Window, std::uint32_t, WordParameter, LongParameter>};
constinit Operation<bool(Window, std::int32_t)> ShowWindow{&None<bool, Window, std::int32_t>};
constinit Operation<bool(Window)> DestroyWindow{&None<bool, Window>};
constinit Operation<bool(const char16_t*, ModuleHandle)> UnregisterClassW{
    &None<bool, const char16_t*, ModuleHandle>};
constinit Operation<bool(Window, std::uintptr_t)> KillTimer{&None<bool, Window, std::uintptr_t>};
constinit Operation<bool(Cursor)> DestroyCursor{&None<bool, Cursor>};
constinit Operation<ModuleHandle(const char16_t*)> GetModuleHandleW{&None<ModuleHandle, const char16_t*>};
constinit Operation<bool(Window, Rect*)> GetWindowRect{&None<bool, Window, Rect*>};
constinit Operation<bool(Window, Rect*)> GetClientRect{&None<bool, Window, Rect*>};
constinit Operation<Window()> GetDesktopWindow{&None<Window>};
constinit Operation<bool(Window, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::uint32_t)>
    SetWindowPos{&None<bool, Window, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::uint32_t>};
constinit Operation<Window(Window, std::uint32_t)> GetWindow{&None<Window, Window, std::uint32_t>};
constinit Operation<Window(Window)> SetFocus{&None<Window, Window>};
constinit Operation<bool(Window)> IsWindowEnabled{&None<bool, Window>};
constinit Operation<bool(Window, const char16_t*)> SetWindowTextW{&None<bool, Window, const char16_t*>};
constinit Operation<std::int16_t(char16_t)> VkKeyScanW{&NoKey};

}  // namespace platform
