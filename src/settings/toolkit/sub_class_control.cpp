// The object stands in the control's own word for its program; without one the control's messages go the
// platform's default way. One lock of the process guards the exchange of procedures, not their calls.
#include "settings/toolkit/sub_class_control.h"

#include "settings/toolkit/mutex_hold.h"

namespace {

XMutex gSubClassLock;

}  // namespace

XSubClassCtrl::~XSubClassCtrl() {
    Release();
}

std::intptr_t XSubClassCtrl::Filter(platform::Window, std::uint32_t, platform::WordParameter,
                                    platform::LongParameter, std::int32_t*) {
    return 0;
}

void XSubClassCtrl::Replace(platform::Window control) {
    Release();
    if (!control) return;
    const MutexHold hold(gSubClassLock);
    mControl = control;
    // Everything is in place before the first message comes to Procedure.
    mProcedure = reinterpret_cast<platform::WindowProcedure>(
        platform::GetWindowLongPtrW(control, platform::kSlotProcedure));
    platform::SetWindowLongPtrW(control, platform::kSlotUserData, reinterpret_cast<std::intptr_t>(this));
    platform::SetWindowLongPtrW(control, platform::kSlotProcedure,
                                reinterpret_cast<std::intptr_t>(&Procedure));
}

void XSubClassCtrl::Release() {
    if (!mControl) return;
    const MutexHold hold(gSubClassLock);
    platform::SetWindowLongPtrW(mControl, platform::kSlotUserData, 0);
    platform::SetWindowLongPtrW(mControl, platform::kSlotProcedure,
                                reinterpret_cast<std::intptr_t>(mProcedure));
    mControl = nullptr;
}

std::intptr_t XSubClassCtrl::Procedure(platform::Window window, std::uint32_t message,
                                       platform::WordParameter word, platform::LongParameter value) {
    auto* object =
        reinterpret_cast<XSubClassCtrl*>(platform::GetWindowLongPtrW(window, platform::kSlotUserData));
    if (!object) return platform::DefWindowProcW(window, message, word, value);
    // The filter may release the object.
    const platform::WindowProcedure original = object->mProcedure;
    std::int32_t handled = 0;
    std::intptr_t result = 0;
    try {
        result = object->Filter(window, message, word, value, &handled);
    } catch (...) {  // memory: the control goes on without its filter's help, as nothing may pass its caller
        handled = 0;
    }
    return handled ? result : platform::CallWindowProcW(original, window, message, word, value);
}
