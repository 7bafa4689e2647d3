// The way from a message to the operation of XWindow that it belongs to.
#pragma once

#include "settings/toolkit/window.h"

// A message as it came.
struct WindowMessage {
    std::uint32_t number;
    platform::WordParameter word;
    platform::LongParameter value;
};

// The rows of the router's table, and what works on them. It reaches into XWindow.
struct XWindow::Router {
    using Call = std::intptr_t (*)(XWindow& window, const WindowMessage& message);

    // What becomes of mHandled and the result behind the operation.
    enum class Afterwards { kAsItIs, kHandled, kUnhandled, kResultAtOnce };
    struct Row {
        std::uint32_t message;
        Call call;
        Afterwards afterwards = Afterwards::kAsItIs;
    };
    struct Outcome {
        std::intptr_t result = 0;
        bool atOnce = false;
    };

    static const Row kRows[];

    // Calls the operation of a message and leaves mHandled as it is to be afterwards.
    static Outcome Dispatch(XWindow& window, const WindowMessage& message);

  private:
    static const Row* Find(std::uint32_t message);
    static void Activated(XWindow& window, const WindowMessage& message);
    static void Commanded(XWindow& window, const WindowMessage& message);
    static void PressButton(XWindow& window, std::uint32_t controlId);
    static void Tick(XWindow& window, std::uintptr_t id);
};
