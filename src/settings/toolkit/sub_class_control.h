// XSubClassCtrl: the base of controls whose window procedure is replaced.
//
// The control's window stays the platform's own; Filter sees its messages first. The object must be released
// or destroyed while it is not filtering, on the thread of the window; a window that is gone by then does no
// harm.
#pragma once

#include <cstdint>

#include "platform/window.h"

class XSubClassCtrl {
  public:
    XSubClassCtrl() = default;
    XSubClassCtrl(const XSubClassCtrl&) = delete;
    XSubClassCtrl& operator=(const XSubClassCtrl&) = delete;
    virtual ~XSubClassCtrl();

    // Setting *handled, which comes in cleared, claims the message, with the result given.
    virtual std::intptr_t Filter(platform::Window window, std::uint32_t message, platform::WordParameter word,
                                 platform::LongParameter value, std::int32_t* handled);

  protected:
    // Puts the filter in front of the control's own procedure. An earlier control is released first.
    void Replace(platform::Window control);
    // Gives the control its own procedure back.
    void Release();

  private:
    static std::intptr_t Procedure(platform::Window window, std::uint32_t message,
                                   platform::WordParameter word, platform::LongParameter value);

    platform::WindowProcedure mProcedure = nullptr;
    platform::Window mControl = nullptr;
};
