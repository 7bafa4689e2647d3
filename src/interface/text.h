// Text on its way to the host.
#pragma once

#include <cstring>

#include "foundation/id_tag_list.h"
#include "foundation/wide_string.h"

// The whole text with its NUL, however long: a host's buffers have no size. Null receives nothing.
inline void CopyOut(const XString& text, char16_t* buffer) {
    if (buffer) std::memcpy(buffer, text.Text(), static_cast<std::size_t>(text.Count()) * sizeof(char16_t));
}

// A row's two texts; empty ones where there is no row.
inline void CopyOut(const IDTagRow* row, char16_t* name, char16_t* value) {
    CopyOut(row ? row->name : XString(), name);
    CopyOut(row ? row->value : XString(), value);
}
