// Text on its way to the host, and texts made of several.
#pragma once

#include <cstring>
#include <initializer_list>

#include "foundation/wide_string.h"

// The whole text with its NUL, however long: a host's buffers have no size. Null receives nothing.
inline void CopyOut(const XString& text, char16_t* buffer) {
    if (buffer) std::memcpy(buffer, text.Text(), static_cast<std::size_t>(text.Count()) * sizeof(char16_t));
}

// The pieces one behind the other; a null one is empty.
inline XString Joined(std::initializer_list<const char16_t*> pieces) {
    XString text;
    for (const char16_t* piece : pieces) {
        if (piece) text.Append(piece);
    }
    return text;
}
