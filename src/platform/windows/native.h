// The casts between the seam's small types and the system's own.
#pragma once

#include <windows.h>

#include <cstdint>

#include "platform/types.h"

namespace platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t) && sizeof(DWORD) == sizeof(std::uint32_t));

inline HANDLE Native(Handle handle) {
    return reinterpret_cast<HANDLE>(handle);
}
inline const wchar_t* Native(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* Native(char16_t* text) {
    return reinterpret_cast<wchar_t*>(text);
}
inline DWORD* Native(std::uint32_t* number) {
    return reinterpret_cast<DWORD*>(number);
}

inline Handle FromNative(HANDLE handle) {
    return reinterpret_cast<Handle>(handle);
}

}  // namespace platform
