// A window's object is found by a search through the table of all: there are one or two at a time, and the
// platform's own slot for a word of the program's is left to the dialog's class.
//
// Two locks, never both: a window's mLock is released before the table's is taken, so a timer's operation may
// do with windows what it likes.
#include "settings/toolkit/window.h"

#include <utility>

#include "settings/toolkit/mutex_hold.h"
#include "settings/toolkit/window_router.h"

XPointerArray gWindowTable;
XMutex gWindowTableLock;

namespace {

constexpr std::uint32_t kMoveFlags = 532;  // not activated, its place in the order kept, its owner's too
constexpr std::int32_t kUsualPixelsPerInch = 96;
constexpr platform::Rect kPanelOrigin = {0, 0, 17, 30};

std::int32_t ScreenPixelsPerInch() {
    const platform::DeviceContext screen = platform::GetDC(nullptr);
    const std::int32_t pixels = platform::GetDeviceCaps(screen, platform::kPixelsPerInchX);
    if (screen) platform::ReleaseDC(nullptr, screen);
    return pixels > 0 ? pixels : kUsualPixelsPerInch;
}

}  // namespace

XWindow::~XWindow() {
    Destroy();
    if (mCursor) platform::DestroyCursor(mCursor);
    if (mIcon) platform::DestroyIcon(mIcon);
    if (mIconSmall) platform::DestroyIcon(mIconSmall);
}

void XWindow::Attach(platform::Window window, bool isDialog) {
    mWindow = window;
    mIsDialog = isDialog;
    const MutexHold hold(gWindowTableLock);
    gWindowTable.Append(this);
}

XWindow* XWindow::FindObject(platform::Window window) {
    const MutexHold hold(gWindowTableLock);
    for (std::int32_t i = 0; i < gWindowTable.Count(); ++i) {
        auto* object = static_cast<XWindow*>(gWindowTable.At(i));
        if (object->mWindow == window) return object;
    }
    return nullptr;
}

void XWindow::Destroy() {
    if (mWindow) {
        platform::ShowWindow(mWindow, platform::kShowHidden);
        StopTimers();
        platform::DestroyWindow(mWindow);
    }
    if (!mClassName.IsEmpty()) {
        platform::UnregisterClassW(mClassName.Text(), platform::GetModuleHandleW(nullptr));
        mClassName = u"";
    }
    Forget();
    mWindow = nullptr;
}

void XWindow::StopTimers() {
    const MutexHold hold(mLock);
    for (std::int32_t i = 0; i < mTimers.Count(); ++i) {
        auto* timer = static_cast<XWindowTimer*>(mTimers.At(i));
        platform::KillTimer(mWindow, timer->id);
        delete timer;
    }
    mTimers.Clear();
    mTimerNames.Clear();
    mCurrentTimer = nullptr;
}

// Takes out every entry: an object that was attached twice stands there twice.
void XWindow::Forget() {
    const MutexHold hold(gWindowTableLock);
    for (std::int32_t i = gWindowTable.Count() - 1; i >= 0; --i) {
        if (gWindowTable.At(i) == this) gWindowTable.RemoveAt(i);
    }
}

std::intptr_t XWindow::RunDialog(platform::ModuleHandle module, std::uint16_t templateNumber,
                                 platform::Window parent) {
    const std::intptr_t result = platform::DialogBoxParamW(module, templateNumber, parent, &DialogProcedure,
                                                           reinterpret_cast<std::intptr_t>(this));
    if (mFailure) std::rethrow_exception(std::exchange(mFailure, nullptr));
    return result;
}

std::intptr_t XWindow::DialogProcedure(platform::Window window, std::uint32_t message,
                                       platform::WordParameter word, platform::LongParameter value) {
    XWindow* object = nullptr;
    try {
        if (message == platform::kMessageInitDialog) {
            object = reinterpret_cast<XWindow*>(value);
            if (object) object->Attach(window, true);
        }
        object = FindObject(window);
        return object ? object->Route(window, message, word, value) : 0;
    } catch (...) {
        if (object) object->KeepFailure();
        platform::EndDialog(window, -1);
        return 0;
    }
}

// The first one counts: what fails behind it is most likely its consequence.
void XWindow::KeepFailure() {
    if (!mFailure) mFailure = std::current_exception();
}

std::intptr_t XWindow::Route(platform::Window window, std::uint32_t message, platform::WordParameter word,
                             platform::LongParameter value) {
    mHandled = 0;
    if (!mWindow) return 0;
    Router::Outcome outcome = {PreTranslate(window, message, word, value, &mHandled)};
    if (mHandled && !mIsDialog) return outcome.result;
    if (!mHandled) outcome = Router::Dispatch(*this, {message, word, value});
    if (outcome.atOnce) return outcome.result;
    if (mIsDialog) {
        platform::SetWindowLongPtrW(window, platform::kSlotDialogResult, outcome.result);
        return mHandled;
    }
    return mHandled ? outcome.result : platform::DefWindowProcW(window, message, word, value);
}

void XWindow::Move(std::int32_t x, std::int32_t y) {
    platform::Rect now;
    platform::GetWindowRect(mWindow, &now);
    platform::SetWindowPos(mWindow, x == kLengthDefault ? now.left : x, y == kLengthDefault ? now.top : y,
                           now.right - now.left, now.bottom - now.top, kMoveFlags);
}

void XWindow::CenterOnDesktop() {
    platform::Rect desktop, now;
    platform::GetClientRect(platform::GetDesktopWindow(), &desktop);
    platform::GetWindowRect(mWindow, &now);
    Move(desktop.right / 2 - (now.right - now.left) / 2, desktop.bottom / 2 - (now.bottom - now.top) / 2);
}

std::int32_t XWindow::ScaleForDPI(std::int32_t value) {
    static const std::int32_t pixelsPerInch = ScreenPixelsPerInch();
    return static_cast<std::int32_t>(std::int64_t{value} * pixelsPerInch / kUsualPixelsPerInch);
}

std::int32_t XWindow::DialogUnits(platform::Window dialog, std::int32_t platform::Rect::*side) {
    platform::Rect rect = kPanelOrigin;
    platform::MapDialogRect(dialog, &rect);
    return rect.*side;
}

std::int32_t XWindow::DialogUnitsX(platform::Window dialog) {
    return DialogUnits(dialog, &platform::Rect::right);
}

std::int32_t XWindow::DialogUnitsY(platform::Window dialog) {
    return DialogUnits(dialog, &platform::Rect::bottom);
}
