/* A host with a window of its own that shows settings in each way there is: the form of encoders, the form of effects,
 * and an encoder's panel on its own window, which has a button to show it and one to take it away. Below stands what
 * came back.
 *
 *     x86_64-w64-mingw32-gcc -municode -mwindows -Iinclude settings_host.c -L. -lQuavermill
 *
 * It is run where Quavermill.dll and its folders of modules are. Two things to take over from it: the window is
 * disabled while a form of the library's stands, which has no owner; and it behaves as dialogs do (IsDialogMessageW and
 * DefDlgProcW), so that Tab and mnemonics lead into the panel and the focus comes back there. */
#include <stdio.h>
#include <wchar.h>
#include <windows.h>

#include "quavermill/quavermill.h"

enum {
    ENCODER_FORM = 100,
    EFFECT_FORM,
    SHOW_PANEL,
    REMOVE_PANEL,
    REPORT,
    MARGIN = 10,
    BUTTON_WIDTH = 110,
    BUTTON_HEIGHT = 26
};
/* A module sets no bound to its text; those that come with the library stay far below this. */
enum { NAME_UNITS = 260, TEXT_UNITS = 32768 };

static QvConverter* converter;
static wchar_t encoder[NAME_UNITS] = L"FLAC", effect[NAME_UNITS] = L"Volume";
static wchar_t encoder_text[TEXT_UNITS], effect_text[TEXT_UNITS];
static int panel_stands;

/* At 96 dots per inch; the window grows with the screen's resolution as panels do. */
static int Scaled(int pixels) {
    const HDC screen = GetDC(NULL);
    const int scaled = MulDiv(pixels, GetDeviceCaps(screen, LOGPIXELSX), 96);
    ReleaseDC(NULL, screen);
    return scaled;
}

static void Report(HWND window, const wchar_t* what, int32_t result, const wchar_t* name,
                   const wchar_t* text) {
    static wchar_t line[TEXT_UNITS + NAME_UNITS + 100];
    swprintf(line, sizeof line / sizeof *line, L"%ls: %d [%ls] [%ls]", what, (int)result, name, text);
    SetDlgItemTextW(window, REPORT, line);
}

static void ShowPanel(HWND window) {
    if (panel_stands) return;
    const int32_t result =
        QACShowSettingsOnForm(converter, encoder, encoder_text, (uint64_t)(ULONG_PTR)window,
                              (uint32_t)Scaled(MARGIN), (uint32_t)Scaled(80));
    panel_stands = result == QV_DONE;
    Report(window, L"Panel", result, encoder, encoder_text);
}

/* Without a panel the call would store an empty text over what is there. */
static void RemovePanel(HWND window) {
    if (!panel_stands) return;
    const int32_t result = QACRemoveSettings(converter, (uint64_t)(ULONG_PTR)window, encoder_text);
    panel_stands = 0;
    Report(window, L"Removed", result, encoder, encoder_text);
}

/* Outputs may be the buffers of the inputs, but a Cancel empties them: what was set before is worth keeping. */
static void ShowForm(HWND window, int is_encoder) {
    static wchar_t text_out[TEXT_UNITS];
    wchar_t name_out[NAME_UNITS];
    wchar_t *const name = is_encoder ? encoder : effect, *const text =
                                                             is_encoder ? encoder_text : effect_text;
    if (is_encoder) RemovePanel(window); /* its text is stored under the name of the last call */
    EnableWindow(window, FALSE);
    const int32_t result =
        (is_encoder ? QACShowSettings : QACShowDSPSettings)(converter, name, text, name_out, text_out);
    EnableWindow(window, TRUE);
    SetForegroundWindow(window);
    Report(window, is_encoder ? L"Encoder" : L"Effect", result, name_out, text_out);
    if (!*name_out) return;
    wcscpy(name, name_out);
    wcscpy(text, text_out);
}

static void AddControl(HWND window, const wchar_t* kind, const wchar_t* text, DWORD style, int id, int column,
                       int row) {
    const HWND control = CreateWindowExW(
        0, kind, text, WS_CHILD | WS_VISIBLE | style, Scaled(MARGIN + column * (BUTTON_WIDTH + MARGIN)),
        Scaled(MARGIN + row * (BUTTON_HEIGHT + 6)), Scaled(id == REPORT ? 500 : BUTTON_WIDTH),
        Scaled(BUTTON_HEIGHT), window, (HMENU)(INT_PTR)id, NULL, NULL);
    SendMessageW(control, WM_SETFONT, (WPARAM)GetStockObject(DEFAULT_GUI_FONT), FALSE);
}

static void AddControls(HWND window) {
    static const wchar_t* const labels[] = {L"&Encoder...", L"Effec&t...", L"Sh&ow panel", L"&Remove panel"};
    for (int i = 0; i < 4; ++i) AddControl(window, L"BUTTON", labels[i], WS_TABSTOP, ENCODER_FORM + i, i, 0);
    AddControl(window, L"STATIC", L"", SS_NOPREFIX, REPORT, 0, 1);
}

static void OnButton(HWND window, int id) {
    switch (id) {
        case ENCODER_FORM:
        case EFFECT_FORM:
            ShowForm(window, id == ENCODER_FORM);
            break;
        case SHOW_PANEL:
            ShowPanel(window);
            break;
        case REMOVE_PANEL:
            RemovePanel(window);
            break;
        default:
            break;
    }
}

static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM word, LPARAM value) {
    switch (message) {
        case WM_CREATE:
            AddControls(window);
            return 0;
        case WM_COMMAND:
            OnButton(window, LOWORD(word));
            return 0;
        case WM_CLOSE: /* the window must stand until the panel is off it */
            RemovePanel(window);
            DestroyWindow(window);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefDlgProcW(window, message, word, value);
    }
}

int WINAPI wWinMain(HINSTANCE self, HINSTANCE unused, wchar_t* arguments, int how) {
    const WNDCLASSW kind = {.lpfnWndProc = Receive,
                            .cbWndExtra = DLGWINDOWEXTRA,
                            .hInstance = self,
                            .hCursor = LoadCursorW(NULL, IDC_ARROW),
                            .hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1),
                            .lpszClassName = L"SettingsHost"};
    (void)unused, (void)arguments;
    converter = QACCreate();
    RegisterClassW(&kind);
    const HWND window =
        CreateWindowExW(0, kind.lpszClassName, L"A host of settings",
                        WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX, CW_USEDEFAULT,
                        CW_USEDEFAULT, Scaled(560), Scaled(320), NULL, NULL, self, NULL);
    ShowWindow(window, how);
    MSG message;
    while (GetMessageW(&message, NULL, 0, 0) > 0) {
        if (IsDialogMessageW(window, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    QACDestroy(converter);
    return 0;
}
