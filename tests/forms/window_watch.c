/* The eyes of the tests: tells which windows stand on the screen, those of other programs too.
 *
 * For each line that it reads it writes all visible top windows and their children, a line each, and then "end":
 *
 *     depth  handle  class  id  left  top  right  bottom  visible  enabled  focused  value  needed  text
 *
 * parted by tabs, places in pixels of the screen; that of a top window is its inside, since what is around it belongs
 * to the window manager. The value is what a check box or a list has selected, else -1. Needed is how wide the text is
 * in the font of forms, of a combo box the widest of its rows. A dropped list's text is that of its rows, parted by
 * "|". The screen's dots per inch stand with "end". */
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <wchar.h>
#include <windows.h>

enum { LIST_TEXT = 4096, CANVAS_WIDTH = 1024, CANVAS_HEIGHT = 48 };

static uint32_t* canvas; /* what texts are drawn on to be measured */

static LRESULT Ask(HWND window, UINT message, WPARAM word, LPARAM value) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(window, message, word, value, SMTO_ABORTIFHUNG, 5000, &answer)
               ? (LRESULT)answer
               : -1;
}

static BOOL HasFocus(HWND window) {
    GUITHREADINFO info = {.cbSize = sizeof info};
    return GetForegroundWindow() == GetAncestor(window, GA_ROOT) &&
           GetGUIThreadInfo(GetWindowThreadProcessId(window, NULL), &info) && info.hwndFocus == window;
}

/* How far its ink goes, which is less than the font's own figure says. */
static int Width(HDC dc, const wchar_t* text) {
    RECT whole = {0, 0, CANVAS_WIDTH, CANVAS_HEIGHT};
    FillRect(dc, &whole, GetStockObject(BLACK_BRUSH));
    DrawTextW(dc, text, -1, &whole, DT_SINGLELINE);
    GdiFlush();
    int width = 0;
    for (int i = 0; i < CANVAS_WIDTH * CANVAS_HEIGHT; ++i)
        if (canvas[i] != 0 && i % CANVAS_WIDTH >= width) width = i % CANVAS_WIDTH + 1;
    return width;
}

static int WidestRow(HDC dc, HWND combo) {
    int widest = 0;
    const LRESULT rows = Ask(combo, CB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < rows; ++i) {
        wchar_t row[LIST_TEXT] = L"";
        if (Ask(combo, CB_GETLBTEXTLEN, (WPARAM)i, 0) >= LIST_TEXT) continue;
        Ask(combo, CB_GETLBTEXT, (WPARAM)i, (LPARAM)row);
        if (Width(dc, row) > widest) widest = Width(dc, row);
    }
    return widest;
}

static void AddRows(HWND list, wchar_t* text) {
    size_t used = 0;
    const LRESULT rows = Ask(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < rows; ++i) {
        const LRESULT units = Ask(list, LB_GETTEXTLEN, (WPARAM)i, 0);
        if (units < 0 || used + (size_t)units + 2 > LIST_TEXT) break;
        Ask(list, LB_GETTEXT, (WPARAM)i, (LPARAM)(text + used));
        used += (size_t)units;
        text[used++] = L'|';
        text[used] = 0;
    }
}

static void Write(const wchar_t* text) {
    char narrow[4 * LIST_TEXT];
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text, -1, narrow, (int)sizeof narrow, NULL, NULL);
    for (int i = 0; i < bytes - 1; ++i) {
        if (narrow[i] == '\n')
            fputs("\\n", stdout);
        else if (narrow[i] != '\r')
            putchar(narrow[i] == '\t' ? ' ' : narrow[i]);
    }
}

static RECT Place(HWND window, int depth) {
    RECT place = {0};
    GetWindowRect(window, &place);
    if (depth == 0) {
        GetClientRect(window, &place);
        MapWindowPoints(window, NULL, (POINT*)&place, 2);
    }
    return place;
}

static void Tell(HDC dc, HWND window, int depth) {
    wchar_t class[64] = L"", text[LIST_TEXT] = L"";
    const RECT place = Place(window, depth);
    LRESULT value = -1;
    int needed = 0;
    GetClassNameW(window, class, 64);
    if (wcscmp(class, L"ComboLBox") == 0) {
        AddRows(window, text);
        value = Ask(window, LB_GETCURSEL, 0, 0);
    } else {
        Ask(window, WM_GETTEXT, LIST_TEXT, (LPARAM)text);
        needed = Width(dc, text);
        if (wcscmp(class, L"ComboBox") == 0) {
            value = Ask(window, CB_GETCURSEL, 0, 0);
            needed = WidestRow(dc, window);
        }
        if (wcscmp(class, L"Button") == 0) value = Ask(window, BM_GETCHECK, 0, 0);
    }
    printf("%d\t%llu\t%ls\t%d\t%ld\t%ld\t%ld\t%ld\t%d\t%d\t%d\t%lld\t%d\t", depth,
           (unsigned long long)(ULONG_PTR)window, class, (int)GetWindowLongPtrW(window, GWLP_ID), place.left,
           place.top, place.right, place.bottom, IsWindowVisible(window) != 0, IsWindowEnabled(window) != 0,
           HasFocus(window) != 0, (long long)value, needed);
    Write(text);
    putchar('\n');
}

static void TellTree(HDC dc, HWND window, int depth) {
    Tell(dc, window, depth);
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        TellTree(dc, child, depth + 1);
}

static BOOL CALLBACK TellTop(HWND window, LPARAM dc) {
    if (IsWindowVisible(window)) TellTree((HDC)dc, window, 0);
    return TRUE;
}

/* White on black, in the font of forms. */
static HDC MakeCanvas(int dpi) {
    const BITMAPINFO info = {.bmiHeader = {.biSize = sizeof info.bmiHeader,
                                           .biWidth = CANVAS_WIDTH,
                                           .biHeight = -CANVAS_HEIGHT,
                                           .biPlanes = 1,
                                           .biBitCount = 32}};
    const HDC dc = CreateCompatibleDC(NULL);
    SelectObject(dc, CreateDIBSection(dc, &info, DIB_RGB_COLORS, (void**)&canvas, NULL, 0));
    SelectObject(dc, CreateFontW(-MulDiv(8, dpi, 72), 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0,
                                 0, L"MS Shell Dlg"));
    SetTextColor(dc, 0xFFFFFF);
    SetBkMode(dc, TRANSPARENT);
    return dc;
}

int main(void) {
    char line[16];
    const int dpi = GetDeviceCaps(GetDC(NULL), LOGPIXELSX);
    const HDC dc = MakeCanvas(dpi);
    while (fgets(line, sizeof line, stdin)) {
        EnumWindows(TellTop, (LPARAM)dc);
        printf("end\t%d\n", dpi);
        fflush(stdout);
    }
    return 0;
}
