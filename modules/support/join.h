// Messages out of pieces.
#pragma once

#include <initializer_list>

#include "foundation/wide_string.h"

// The parts behind one another.
inline XString Join(std::initializer_list<const char16_t*> parts) {
    XString joined;
    for (const char16_t* part : parts) joined += part;
    return joined;
}
