#include "panels/panel_stage.h"

#include "modules/support/dialog_template.h"

using namespace platform;

struct PanelStage::Side {};

namespace {

constexpr std::uint32_t kStyleCaption = 0x00C00000;  // WS_CAPTION
constexpr FontFace kFont = {0, 400, false, 1, u"MS Shell Dlg"};

std::intptr_t Nothing(Window, std::uint32_t, WordParameter, LongParameter) {
    return 0;
}

}  // namespace

// Not shown itself: Wine would wait for a window manager.
PanelStage::PanelStage(std::int32_t points) {
    clDialogTemplate dialog(kStyleCaption | kDialogSetFont | kDialogFixedSystem, 0, 335, 146, kFont, points);
    dialog.Add(clDialogTemplate::kButton, 1, kStyleTabStop, {221, 125, 50, 14}, u"OK");
    dialog.Add(clDialogTemplate::kButton, 2, kStyleTabStop, {278, 125, 50, 14}, u"Cancel");
    mParent = CreateDialogIndirectParamW(nullptr, dialog.Bytes(), nullptr, &Nothing, 0);
}

PanelStage::~PanelStage() {
    DestroyParent();
}

void PanelStage::DestroyParent() {
    if (mParent) DestroyWindow(mParent);
    mParent = nullptr;
}

std::uintptr_t PanelStage::FreshWindow() {
    const clDialogTemplate dialog(kDialogSetFont, 0, 10, 10, kFont, 8);
    const Window fresh = CreateDialogIndirectParamW(nullptr, dialog.Bytes(), nullptr, &Nothing, 0);
    DestroyWindow(fresh);
    return reinterpret_cast<std::uintptr_t>(fresh) & 0xFFFF;
}

std::uintptr_t PanelStage::FreshDrawing() {
    const Font fresh = CreateFontIndirectW(kFont.name, 11, false);
    DeleteObject(fresh);
    return reinterpret_cast<std::uintptr_t>(fresh) & 0xFFFF;
}
