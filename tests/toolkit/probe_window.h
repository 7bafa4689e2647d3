// A window that notes down each operation that is called, with its arguments, and then does what it is told.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "settings/toolkit/window.h"
#include "toolkit/window_stage.h"

class ProbeWindow : public XWindow {
  public:
    using XWindow::mClassName;
    using XWindow::mCurrentTimer;
    using XWindow::mCursor;
    using XWindow::mHandled;
    using XWindow::mIcon;
    using XWindow::mIconSmall;
    using XWindow::mIsDialog;
    using XWindow::mLock;
    using XWindow::mTimerNames;
    using XWindow::mTimers;
    using XWindow::mWindow;

    std::vector<std::string> calls;
    bool useDefaults = false;
    std::intptr_t result = 0;  // of operations that give one
    bool claims = false;       // what PreTranslate does
    std::function<void()> duringOperation;

#define PROBE(name, parameters, arguments, numbers) \
    void name parameters override {                 \
        Called(#name, numbers);                     \
        if (useDefaults) XWindow::name arguments;   \
    }
#define NUMBERS(...) {__VA_ARGS__}
    PROBE(OnActivate, (platform::Window other, std::uint32_t high, std::uint32_t low), (other, high, low),
          NUMBERS(P(other), high, low))
    PROBE(OnClose, (), (), NUMBERS())
    PROBE(OnContextMenu, (platform::Window target, std::uint16_t x, std::uint16_t y), (target, x, y),
          NUMBERS(P(target), x, y))
    PROBE(OnCommand, (std::int32_t id, platform::Window control, std::uint32_t code), (id, control, code),
          NUMBERS(id, P(control), code))
    PROBE(OnInitDialog, (), (), NUMBERS())
    PROBE(OnDestroy, (), (), NUMBERS())
    PROBE(OnDeactivate, (platform::Window other, std::uint32_t high), (other, high), NUMBERS(P(other), high))
    PROBE(OnDrawItem, (platform::Window control, std::int32_t id, const platform::DrawItemRecord* item),
          (control, id, item), NUMBERS(P(control), id, item ? std::intptr_t{item->itemId} : -1))
    PROBE(OnEraseBackground, (platform::DeviceContext dc), (dc), NUMBERS(P(dc)))
    PROBE(OnHide, (std::intptr_t status), (status), NUMBERS(status))
    PROBE(OnKeyDown, (std::uintptr_t key, std::intptr_t flags), (key, flags), NUMBERS(I(key), flags))
    PROBE(OnKeyUp, (std::uintptr_t key, std::intptr_t flags), (key, flags), NUMBERS(I(key), flags))
    PROBE(OnChar, (char16_t character), (character), NUMBERS(character))
    PROBE(OnMouseDown, (std::int16_t x, std::int16_t y, std::uint32_t message, std::uintptr_t keys),
          (x, y, message, keys), NUMBERS(x, y, message, I(keys)))
    PROBE(OnMouseUp, (std::int16_t x, std::int16_t y, std::uint32_t message, std::uintptr_t keys),
          (x, y, message, keys), NUMBERS(x, y, message, I(keys)))
    PROBE(OnMouseMove, (std::int16_t x, std::int16_t y, std::uintptr_t keys), (x, y, keys),
          NUMBERS(x, y, I(keys)))
    PROBE(OnMouseWheel, (std::int16_t x, std::int16_t y, std::int16_t delta, std::uint32_t keys),
          (x, y, delta, keys), NUMBERS(x, y, delta, keys))
    PROBE(OnMove, (std::int16_t x, std::int16_t y), (x, y), NUMBERS(x, y))
    PROBE(OnPaint, (), (), NUMBERS())
    PROBE(OnShow, (std::intptr_t status), (status), NUMBERS(status))
    PROBE(OnSize, (std::uint16_t width, std::uint16_t height, std::uintptr_t type), (width, height, type),
          NUMBERS(width, height, I(type)))
    PROBE(OnSysCommand, (std::uint32_t command), (command), NUMBERS(command))
    PROBE(OnTimer, (std::uintptr_t id, std::uintptr_t value), (id, value), NUMBERS(I(id), I(value)))
    PROBE(OnOK, (), (), NUMBERS())
    PROBE(OnCancel, (), (), NUMBERS())
    PROBE(OnAbort, (), (), NUMBERS())
    PROBE(OnCloseButton, (), (), NUMBERS())
    PROBE(OnHelp, (), (), NUMBERS())
    PROBE(OnIgnore, (), (), NUMBERS())
    PROBE(OnNo, (), (), NUMBERS())
    PROBE(OnRetry, (), (), NUMBERS())
    PROBE(OnYes, (), (), NUMBERS())
#undef PROBE
#undef NUMBERS

    std::intptr_t OnNotify(const platform::NoticeRecord* record) override {
        Called("OnNotify", {P(record)});
        return useDefaults ? XWindow::OnNotify(record) : result;
    }
    std::intptr_t OnCtlColorStatic(platform::DeviceContext dc, platform::Window control) override {
        Called("OnCtlColorStatic", {P(dc), P(control)});
        return useDefaults ? XWindow::OnCtlColorStatic(dc, control) : result;
    }
    std::intptr_t OnCtlColorDialog(platform::DeviceContext dc, platform::Window dialog) override {
        Called("OnCtlColorDialog", {P(dc), P(dialog)});
        return useDefaults ? XWindow::OnCtlColorDialog(dc, dialog) : result;
    }
    std::intptr_t PreTranslate(platform::Window window, std::uint32_t message, platform::WordParameter word,
                               platform::LongParameter value, std::int32_t* handled) override {
        ++translated;
        seenHandled = *handled;
        if (useDefaults) return XWindow::PreTranslate(window, message, word, value, handled);
        if (claims) *handled = 1;
        return claims ? result : 0;
    }
    int translated = 0;
    std::int32_t seenHandled = -1;

    // The place of every operation in the table of the class, in the order in which they are named.
    static std::vector<std::ptrdiff_t> Slots();

  private:
    template <class Pointer>
    static std::intptr_t P(Pointer pointer) {
        return reinterpret_cast<std::intptr_t>(pointer);
    }
    static std::intptr_t I(std::uintptr_t number) {
        return static_cast<std::intptr_t>(number);
    }
    void Called(const char* name, std::initializer_list<std::intptr_t> numbers) {
        calls.push_back(Said(name, numbers));
        if (duringOperation) duringOperation();
    }
};
