// Texts made of several.
#pragma once

#include <initializer_list>

#include "foundation/wide_string.h"

// The pieces behind one another; a null one is empty.
inline XString Joined(std::initializer_list<const char16_t*> pieces) {
    XString text;
    for (const char16_t* piece : pieces) {
        if (piece) text.Append(piece);
    }
    return text;
}
