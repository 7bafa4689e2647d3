// What the operations of XWindow do when nobody overrides them: nearly all leave the message to the platform.
#include "settings/toolkit/window.h"

void XWindow::OnActivate(platform::Window, std::uint32_t, std::uint32_t) {
    mHandled = 0;
}
void XWindow::OnClose() {
    mHandled = 0;
}
void XWindow::OnContextMenu(platform::Window, std::uint16_t, std::uint16_t) {
    mHandled = 0;
}
void XWindow::OnCommand(std::int32_t, platform::Window, std::uint32_t) {}
void XWindow::OnInitDialog() {
    mHandled = 0;
}
void XWindow::OnDestroy() {
    mHandled = 0;
}
void XWindow::OnDeactivate(platform::Window, std::uint32_t) {
    mHandled = 0;
}
void XWindow::OnDrawItem(platform::Window, std::int32_t, const platform::DrawItemRecord*) {
    mHandled = 0;
}
void XWindow::OnEraseBackground(platform::DeviceContext) {
    mHandled = 0;
}
void XWindow::OnHide(std::intptr_t) {
    mHandled = 0;
}
void XWindow::OnKeyDown(std::uintptr_t, std::intptr_t) {
    mHandled = 0;
}
void XWindow::OnKeyUp(std::uintptr_t, std::intptr_t) {
    mHandled = 0;
}
void XWindow::OnChar(char16_t) {
    mHandled = 0;
}
void XWindow::OnMouseDown(std::int16_t, std::int16_t, std::uint32_t, std::uintptr_t) {
    mHandled = 0;
}
void XWindow::OnMouseUp(std::int16_t, std::int16_t, std::uint32_t, std::uintptr_t) {
    mHandled = 0;
}
void XWindow::OnMouseMove(std::int16_t, std::int16_t, std::uintptr_t) {
    mHandled = 0;
}
void XWindow::OnMouseWheel(std::int16_t, std::int16_t, std::int16_t, std::uint32_t) {
    mHandled = 0;
}
void XWindow::OnMove(std::int16_t, std::int16_t) {
    mHandled = 0;
}
std::intptr_t XWindow::OnNotify(const platform::NoticeRecord*) {
    mHandled = 0;
    return 0;
}
void XWindow::OnPaint() {
    mHandled = 0;
}
void XWindow::OnShow(std::intptr_t) {
    mHandled = 0;
}
void XWindow::OnSize(std::uint16_t, std::uint16_t, std::uintptr_t) {
    mHandled = 0;
}
void XWindow::OnSysCommand(std::uint32_t) {}
void XWindow::OnTimer(std::uintptr_t, std::uintptr_t) {
    mHandled = 0;
}
std::intptr_t XWindow::OnCtlColorStatic(platform::DeviceContext, platform::Window) {
    mHandled = 0;
    return 0;
}
std::intptr_t XWindow::OnCtlColorDialog(platform::DeviceContext, platform::Window) {
    mHandled = 0;
    return 0;
}
std::intptr_t XWindow::PreTranslate(platform::Window, std::uint32_t, platform::WordParameter,
                                    platform::LongParameter, std::int32_t*) {
    return 0;
}
void XWindow::OnOK() {}
void XWindow::OnCancel() {}
void XWindow::OnAbort() {}
void XWindow::OnCloseButton() {}
void XWindow::OnHelp() {}
void XWindow::OnIgnore() {}
void XWindow::OnNo() {}
void XWindow::OnRetry() {}
void XWindow::OnYes() {}
