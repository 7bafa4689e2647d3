// One table of message, call and afterwards-rule: a message is looked up by its number, its parameters are
// unpacked as the row says, and the rule decides what the operation's word counts for. Two dozen rows are
// searched in order: a search costs less than the virtual call behind it.
#include "settings/toolkit/window_router.h"

#include <iterator>

#include "settings/toolkit/mutex_hold.h"

namespace {

std::uint32_t Low(std::uintptr_t value) {
    return value & 0xFFFF;
}

std::uint32_t High(std::uintptr_t value) {
    return value >> 16 & 0xFFFF;
}

// A point packed into a message's second parameter.
std::int16_t X(const WindowMessage& message) {
    return static_cast<std::int16_t>(Low(static_cast<std::uintptr_t>(message.value)));
}

std::int16_t Y(const WindowMessage& message) {
    return static_cast<std::int16_t>(High(static_cast<std::uintptr_t>(message.value)));
}

template <class Pointer>
Pointer As(std::uintptr_t parameter) {
    return reinterpret_cast<Pointer>(parameter);
}

template <class Pointer>
Pointer As(std::intptr_t parameter) {
    return reinterpret_cast<Pointer>(parameter);
}

platform::Window Control(const platform::DrawItemRecord* item) {
    return item ? item->control : nullptr;
}

}  // namespace

// A row's call for an operation without a result.
#define CALLS(expression)                                                      \
    [](XWindow& w, [[maybe_unused]] const WindowMessage& m) -> std::intptr_t { \
        expression;                                                            \
        return 0;                                                              \
    }

const XWindow::Router::Row XWindow::Router::kRows[] = {
    {platform::kMessageCreate, CALLS(w.OnInitDialog()), Afterwards::kHandled},
    {platform::kMessageDestroy, CALLS(w.OnDestroy())},
    {platform::kMessageMove, CALLS(w.OnMove(X(m), Y(m)))},
    {platform::kMessageSize, CALLS(w.OnSize(static_cast<std::uint16_t>(X(m)),
                                            static_cast<std::uint16_t>(Y(m)), m.word))},
    {platform::kMessageActivate, CALLS(Activated(w, m))},
    {platform::kMessagePaint, CALLS(w.OnPaint()), Afterwards::kUnhandled},
    {platform::kMessageClose, CALLS(w.OnClose())},
    {platform::kMessageEraseBackground,
     [](XWindow& w, const WindowMessage& m) -> std::intptr_t {
         w.OnEraseBackground(As<platform::DeviceContext>(m.word));
         return w.mHandled ? 1 : 0;
     }},
    {platform::kMessageShowWindow, CALLS(m.word ? w.OnShow(m.value) : w.OnHide(m.value))},
    {platform::kMessageDrawItem, CALLS(const auto* item = As<const platform::DrawItemRecord*>(m.value);
                                       w.OnDrawItem(Control(item), static_cast<std::int32_t>(m.word), item))},
    {platform::kMessageNotify,
     [](XWindow& w, const WindowMessage& m) {
         return w.OnNotify(As<const platform::NoticeRecord*>(m.value));
     }},
    {platform::kMessageContextMenu,
     CALLS(w.OnContextMenu(As<platform::Window>(m.word), static_cast<std::uint16_t>(X(m)),
                           static_cast<std::uint16_t>(Y(m))))},
    {platform::kMessageKeyDown, CALLS(w.OnKeyDown(m.word, m.value))},
    {platform::kMessageKeyUp, CALLS(w.OnKeyUp(m.word, m.value))},
    {platform::kMessageCharacter, CALLS(w.OnChar(static_cast<char16_t>(m.word)))},
    {platform::kMessageInitDialog, CALLS(w.OnInitDialog()), Afterwards::kHandled},
    {platform::kMessageCommand, CALLS(Commanded(w, m))},
    {platform::kMessageSystemCommand, CALLS(w.OnSysCommand(m.word & 0xFFF0)), Afterwards::kUnhandled},
    {platform::kMessageTimer, CALLS(Tick(w, m.word))},
    {platform::kMessageColourDialog,
     [](XWindow& w, const WindowMessage& m) {
         return w.OnCtlColorDialog(As<platform::DeviceContext>(m.word), As<platform::Window>(m.value));
     },
     Afterwards::kResultAtOnce},
    {platform::kMessageColourStatic,
     [](XWindow& w, const WindowMessage& m) {
         return w.OnCtlColorStatic(As<platform::DeviceContext>(m.word), As<platform::Window>(m.value));
     },
     Afterwards::kResultAtOnce},
    {platform::kMessageMouseMove, CALLS(w.OnMouseMove(X(m), Y(m), m.word))},
    {platform::kMessageLeftDown, CALLS(w.OnMouseDown(X(m), Y(m), m.number, m.word))},
    {platform::kMessageLeftUp, CALLS(w.OnMouseUp(X(m), Y(m), m.number, m.word))},
    {platform::kMessageRightDown, CALLS(w.OnMouseDown(X(m), Y(m), m.number, m.word))},
    {platform::kMessageRightUp, CALLS(w.OnMouseUp(X(m), Y(m), m.number, m.word))},
    {platform::kMessageMiddleDown, CALLS(w.OnMouseDown(X(m), Y(m), m.number, m.word))},
    {platform::kMessageMiddleUp, CALLS(w.OnMouseUp(X(m), Y(m), m.number, m.word))},
    {platform::kMessageMouseWheel,
     CALLS(w.OnMouseWheel(X(m), Y(m), static_cast<std::int16_t>(High(m.word)), Low(m.word)))},
};

#undef CALLS

XWindow::Router::Outcome XWindow::Router::Dispatch(XWindow& window, const WindowMessage& message) {
    const Row* row = Find(message.number);
    window.mHandled = row ? 1 : 0;
    if (!row) return {};
    const std::intptr_t result = row->call(window, message);
    if (row->afterwards == Afterwards::kHandled) window.mHandled = 1;
    if (row->afterwards == Afterwards::kUnhandled) window.mHandled = 0;
    return {result, row->afterwards == Afterwards::kResultAtOnce && window.mHandled};
}

const XWindow::Router::Row* XWindow::Router::Find(std::uint32_t message) {
    for (const Row& row : kRows) {
        if (row.message == message) return &row;
    }
    return nullptr;
}

void XWindow::Router::Activated(XWindow& window, const WindowMessage& message) {
    const auto other = As<platform::Window>(message.value);
    const std::uint32_t how = Low(message.word), minimised = High(message.word);
    if (how)
        window.OnActivate(other, minimised, how);
    else
        window.OnDeactivate(other, minimised);
}

void XWindow::Router::Commanded(XWindow& window, const WindowMessage& message) {
    const std::uint32_t controlId = Low(message.word), notification = High(message.word);
    if (notification == 0) PressButton(window, controlId);
    window.OnCommand(static_cast<std::int32_t>(controlId), As<platform::Window>(message.value), notification);
}

void XWindow::Router::PressButton(XWindow& window, std::uint32_t controlId) {
    using Button = void (XWindow::*)();
    static constexpr Button kButtons[] = {&XWindow::OnOK,    &XWindow::OnCancel,      &XWindow::OnAbort,
                                          &XWindow::OnRetry, &XWindow::OnIgnore,      &XWindow::OnYes,
                                          &XWindow::OnNo,    &XWindow::OnCloseButton, &XWindow::OnHelp};
    if (controlId < 1 || controlId > std::size(kButtons)) return;
    const Button button = kButtons[controlId - 1];
    (window.*button)();
}

// A message of a timer that isn't known calls nothing, and so counts as dealt with.
void XWindow::Router::Tick(XWindow& window, std::uintptr_t id) {
    const MutexHold hold(window.mLock);
    for (std::int32_t i = 0; i < window.mTimers.Count(); ++i) {
        const auto* timer = static_cast<const XWindowTimer*>(window.mTimers.At(i));
        if (timer->id != id) continue;
        window.OnTimer(timer->id, timer->value);
        return;
    }
}
