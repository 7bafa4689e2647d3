// A platform of windows that only notes down what is asked of it: the same on every system.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/drawing.h"
#include "platform/window.h"
#include "support/faults.h"

// Handles that name nothing.
template <class Handle>
Handle Fake(std::uintptr_t number) {
    return reinterpret_cast<Handle>(number);
}

inline std::string Said(const char* what, std::initializer_list<std::intptr_t> numbers = {}) {
    std::string line = what;
    for (const std::intptr_t number : numbers) line += " " + std::to_string(number);
    return line;
}

class WindowStage {
  public:
    WindowStage() {
        mShow.Replace([this](platform::Window window, std::int32_t how) {
            return Note("show", {Number(window), how});
        });
        mDestroy.Replace([this](platform::Window window) { return Note("destroy", {Number(window)}); });
        mKillTimer.Replace([this](platform::Window window, std::uintptr_t timer) {
            return Note("kill timer", {Number(window), static_cast<std::intptr_t>(timer)});
        });
        mUnregister.Replace([this](const char16_t*, platform::ModuleHandle) { return Note("unregister"); });
        mCursor.Replace([this](platform::Cursor cursor) { return Note("cursor", {Number(cursor)}); });
        mIcon.Replace([this](platform::Icon icon) { return Note("icon", {Number(icon)}); });
        mSetSlot.Replace([this](platform::Window window, std::int32_t slot, std::intptr_t value) {
            slots[{window, slot}] = value;
            return std::intptr_t{0};
        });
        mGetSlot.Replace([this](platform::Window window, std::int32_t slot) {
            return slots[{window, slot}];
        });
        mDefault.Replace([this](platform::Window, std::uint32_t message, auto...) {
            Note("default", {static_cast<std::intptr_t>(message)});
            return std::intptr_t{777};
        });
        mPosition.Replace([this](platform::Window window, std::int32_t x, std::int32_t y, std::int32_t width,
                                 std::int32_t height, std::uint32_t flags) {
            return Note("position", {Number(window), x, y, width, height, static_cast<std::intptr_t>(flags)});
        });
        mRect.Replace([this](platform::Window, platform::Rect* rect) {
            *rect = rectangle;
            return true;
        });
        mClient.Replace([this](platform::Window, platform::Rect* rect) {
            *rect = desktop;
            return true;
        });
    }

    std::vector<std::string> journal;
    std::map<std::pair<platform::Window, std::int32_t>, std::intptr_t> slots;
    platform::Rect rectangle = {10, 20, 110, 70};
    platform::Rect desktop = {0, 0, 1001, 601};

    template <class Pointer>
    static std::intptr_t Number(Pointer pointer) {
        return reinterpret_cast<std::intptr_t>(pointer);
    }
    bool Note(const char* what, std::initializer_list<std::intptr_t> numbers = {}) {
        journal.push_back(Said(what, numbers));
        return true;
    }

  private:
    Faulty<platform::ShowWindow> mShow;
    Faulty<platform::DestroyWindow> mDestroy;
    Faulty<platform::KillTimer> mKillTimer;
    Faulty<platform::UnregisterClassW> mUnregister;
    Faulty<platform::DestroyCursor> mCursor;
    Faulty<platform::DestroyIcon> mIcon;
    Faulty<platform::SetWindowLongPtrW> mSetSlot;
    Faulty<platform::GetWindowLongPtrW> mGetSlot;
    Faulty<platform::DefWindowProcW> mDefault;
    Faulty<platform::SetWindowPos> mPosition;
    Faulty<platform::GetWindowRect> mRect;
    Faulty<platform::GetClientRect> mClient;
};
