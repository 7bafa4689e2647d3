/* An encoder, or with IS_EFFECT an effect, whose panel, a button, destroys its own window when it is clicked, and says
 * so in its text. Else it does nothing. */
#include <windows.h>

#ifdef IS_EFFECT
#define QV_DSP_MODULE
#define ENTRY(name) DSP_##name
#else
#define QV_ENCODER_MODULE
#define ENTRY(name) ENC_##name
#endif
#include "quavermill/module.h"

static HWND panel;
static WNDPROC button_procedure;

static LRESULT CALLBACK Click(HWND window, UINT message, WPARAM word, LPARAM value) {
    if (message != WM_LBUTTONUP) return CallWindowProcW(button_procedure, window, message, word, value);
    panel = NULL;
    DestroyWindow(window);
    return 0;
}

void QV_CALL ENTRY(ShowConfigBit)(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                                  const QvChar* settings) {
    (void)instance, (void)settings;
    panel = CreateWindowExW(0, L"BUTTON", L"Go away", WS_CHILD | WS_VISIBLE, x, y, 90, 30,
                            (HWND)(ULONG_PTR)parent, (HMENU)5000, NULL, NULL);
    button_procedure = (WNDPROC)SetWindowLongPtrW(panel, GWLP_WNDPROC, (LONG_PTR)Click);
}

const QvChar* QV_CALL ENTRY(RemoveConfigBit)(QvInstance instance, uint64_t parent) {
    (void)instance, (void)parent;
    if (!panel) return L"gone";
    DestroyWindow(panel);
    panel = NULL;
    return L"stood";
}
