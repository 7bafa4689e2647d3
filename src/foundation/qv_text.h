// Text on its way to and from modules and hosts: QvChar is char16_t where that is the system's unit, and
// wchar_t of the same 16 bits on Windows. The type's name changes and nothing else.
#pragma once

#include "quavermill/types.h"

static_assert(sizeof(QvChar) == sizeof(char16_t));

inline const QvChar* ToQvText(const char16_t* text) {
    return reinterpret_cast<const QvChar*>(text);
}
inline const char16_t* FromQvText(const QvChar* text) {
    return reinterpret_cast<const char16_t*>(text);
}
inline char16_t* FromQvText(QvChar* buffer) {
    return reinterpret_cast<char16_t*>(buffer);
}
