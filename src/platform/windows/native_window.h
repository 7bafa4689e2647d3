// The casts between the seam's windows and drawing objects and the system's own.
#pragma once

#include "platform/drawing.h"
#include "platform/windows/native.h"

namespace platform {

static_assert(sizeof(Rect) == sizeof(RECT) && sizeof(Size) == sizeof(SIZE));

inline HWND Native(Window window) {
    return reinterpret_cast<HWND>(window);
}
inline HDC Native(DeviceContext dc) {
    return reinterpret_cast<HDC>(dc);
}
inline HICON Native(Icon icon) {
    return reinterpret_cast<HICON>(icon);
}
inline RECT* Native(Rect* rect) {
    return reinterpret_cast<RECT*>(rect);
}
inline const RECT* Native(const Rect* rect) {
    return reinterpret_cast<const RECT*>(rect);
}
inline HINSTANCE NativeModule(ModuleHandle module) {
    return static_cast<HINSTANCE>(module);
}
template <class Procedure>
Procedure NativeProcedure(WindowProcedure procedure) {
    return reinterpret_cast<Procedure>(procedure);
}

// An entry of a system library that is loaded once it is needed. Loaded at start it would bring half the desktop into
// programs that show nothing. Null when there is none.
template <class Entry>
Entry LateEntry(const wchar_t* library, const char* name) {
    const HMODULE module = ::LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module ? reinterpret_cast<Entry>(reinterpret_cast<void*>(::GetProcAddress(module, name)))
                  : nullptr;
}

inline Window FromNative(HWND window) {
    return reinterpret_cast<Window>(window);
}
inline DeviceContext FromNative(HDC dc) {
    return reinterpret_cast<DeviceContext>(dc);
}
inline Icon FromNative(HICON icon) {
    return reinterpret_cast<Icon>(icon);
}

}  // namespace platform
