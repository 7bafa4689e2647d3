// XWindow: the base of the toolkit's windows. It turns messages into calls of virtual operations.
//
// A form derives from it, overrides what it needs and runs itself with RunDialog. Its object and its window
// find one another through gWindowTable, a table of the process.
//
// Every operation begins with mHandled set. One that leaves it set has dealt with the message; one that
// clears it leaves the message to the platform, and so does each default that clears it. The operations'
// order is part of what derived classes rely on: new ones go behind the last.
//
// Thread: messages come on the thread that owns the window, and that thread destroys the object. No platform
// failure is reported. What an operation throws ends the dialog, and RunDialog throws it on: it can't pass
// through the platform's own frames.
#pragma once

#include <cstdint>
#include <exception>

#include "foundation/mutex.h"
#include "foundation/pointer_array.h"
#include "foundation/string_list.h"
#include "foundation/wide_string.h"
#include "platform/controls.h"
#include "platform/drawing.h"
#include "platform/module.h"
#include "platform/window.h"

// A running timer of a window: the platform's number for it, and a word that OnTimer gets.
struct XWindowTimer {
    std::uintptr_t id;
    std::uintptr_t value;
};

class XWindow {
  public:
    XWindow() = default;
    XWindow(const XWindow&) = delete;
    XWindow& operator=(const XWindow&) = delete;
    virtual ~XWindow();

    // Ties the object to its window. `isDialog` says that results go through the dialog's result slot.
    void Attach(platform::Window window, bool isDialog);
    // The object of a window, the earliest attached if there are several; null for none.
    static XWindow* FindObject(platform::Window window);
    // Ends timers and window, and takes the object out of the table. The destructor does so first; a second
    // call changes nothing.
    void Destroy();

    // Runs the dialog of a module (null: the program) to its end, with this object behind it. Gives
    // EndDialog's result, or -1 when there was no dialog. Raises what an operation threw.
    std::intptr_t RunDialog(platform::ModuleHandle module, std::uint16_t templateNumber,
                            platform::Window parent);
    // The procedure of every dialog of the toolkit. The XWindow comes as the creation value.
    static std::intptr_t DialogProcedure(platform::Window window, std::uint32_t message,
                                         platform::WordParameter word, platform::LongParameter value);
    // Hands one message to the operation it belongs to. For a dialog the result goes into its result slot and
    // mHandled comes back, except for colours, which come back themselves; for any other window the result
    // comes back, the platform's own for an unhandled message.
    std::intptr_t Route(platform::Window window, std::uint32_t message, platform::WordParameter word,
                        platform::LongParameter value);

    platform::Window Handle() const { return mWindow; }

    // Moves the window and keeps its size. kLengthDefault keeps the coordinate.
    void Move(std::int32_t x, std::int32_t y);
    void CenterOnDesktop();
    // What `value` pixels of 96 to the inch are on the screen, truncated. The screen is asked once in the
    // process's life; one that gives no answer has 96.
    static std::int32_t ScaleForDPI(std::int32_t value);
    // Pixels of 17 horizontal and of 30 vertical units of a dialog: where the forms' panels begin.
    static std::int32_t DialogUnitsX(platform::Window dialog);
    static std::int32_t DialogUnitsY(platform::Window dialog);

  protected:
    virtual void OnActivate(platform::Window other, std::uint32_t minimised, std::uint32_t how);
    virtual void OnClose();
    virtual void OnContextMenu(platform::Window target, std::uint16_t x, std::uint16_t y);
    // Behind the button's own operation, if there is one. Stays handled.
    virtual void OnCommand(std::int32_t controlId, platform::Window control, std::uint32_t notification);
    virtual void OnInitDialog();  // handled whatever it does to mHandled
    virtual void OnDestroy();
    virtual void OnDeactivate(platform::Window other, std::uint32_t minimised);
    virtual void OnDrawItem(platform::Window control, std::int32_t controlId,
                            const platform::DrawItemRecord* item);
    virtual void OnEraseBackground(platform::DeviceContext dc);
    virtual void OnHide(std::intptr_t status);
    virtual void OnKeyDown(std::uintptr_t key, std::intptr_t flags);
    virtual void OnKeyUp(std::uintptr_t key, std::intptr_t flags);
    virtual void OnChar(char16_t character);
    virtual void OnMouseDown(std::int16_t x, std::int16_t y, std::uint32_t message, std::uintptr_t keys);
    virtual void OnMouseUp(std::int16_t x, std::int16_t y, std::uint32_t message, std::uintptr_t keys);
    virtual void OnMouseMove(std::int16_t x, std::int16_t y, std::uintptr_t keys);
    virtual void OnMouseWheel(std::int16_t x, std::int16_t y, std::int16_t delta, std::uint32_t keys);
    virtual void OnMove(std::int16_t x, std::int16_t y);
    virtual std::intptr_t OnNotify(const platform::NoticeRecord* notification);
    virtual void OnPaint();  // the platform paints behind it in any case
    virtual void OnShow(std::intptr_t status);
    virtual void OnSize(std::uint16_t width, std::uint16_t height, std::uintptr_t type);
    virtual void OnSysCommand(std::uint32_t command);               // the platform acts behind it in any case
    virtual void OnTimer(std::uintptr_t id, std::uintptr_t value);  // under mLock
    // Both give a brush as their result.
    virtual std::intptr_t OnCtlColorStatic(platform::DeviceContext dc, platform::Window control);
    virtual std::intptr_t OnCtlColorDialog(platform::DeviceContext dc, platform::Window dialog);
    // Sees every message first. Setting *handled claims it, with the result given. Here *handled comes in
    // cleared.
    virtual std::intptr_t PreTranslate(platform::Window window, std::uint32_t message,
                                       platform::WordParameter word, platform::LongParameter value,
                                       std::int32_t* handled);
    // The buttons of the common identifiers.
    virtual void OnOK();
    virtual void OnCancel();
    virtual void OnAbort();
    virtual void OnCloseButton();
    virtual void OnHelp();
    virtual void OnIgnore();
    virtual void OnNo();
    virtual void OnRetry();
    virtual void OnYes();

    std::int32_t mHandled = 0;
    platform::Window mWindow = nullptr;
    bool mIsDialog = false;
    platform::Cursor mCursor = nullptr;  // these three are destroyed with the object
    platform::Icon mIcon = nullptr;
    platform::Icon mIconSmall = nullptr;
    XString mClassName;     // a class registered for this window alone; empty for a dialog
    XPointerArray mTimers;  // of XWindowTimer, made by new and owned
    XStringList mTimerNames;
    XWindowTimer* mCurrentTimer = nullptr;
    XMutex mLock;  // guards mTimers

  private:
    struct Router;

    static std::int32_t DialogUnits(platform::Window dialog, std::int32_t platform::Rect::*side);
    void StopTimers();
    void Forget();
    void KeepFailure();

    std::exception_ptr mFailure;  // what ended the dialog
};

// Every attached XWindow in the order of attachment, and its lock.
extern XPointerArray gWindowTable;
extern XMutex gWindowTableLock;
