// Text on its way between a module and whoever loaded it.
#pragma once

#include <initializer_list>

#include "foundation/wide_string.h"
#include "quavermill/types.h"

// The contract's text unit is wchar_t on Windows; everything behind the entries speaks char16_t.
inline const char16_t* UnitsOf(const QvChar* text) {
    return reinterpret_cast<const char16_t*>(text);
}
inline const QvChar* ContractText(const char16_t* text) {
    return reinterpret_cast<const QvChar*>(text);
}

// The parts behind one another.
inline XString Join(std::initializer_list<const char16_t*> parts) {
    XString joined;
    for (const char16_t* part : parts) joined += part;
    return joined;
}
