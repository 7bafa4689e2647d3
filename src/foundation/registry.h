// XRegistry: text and other values of the current user. A key path must be given: there is no base key.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"
#include "platform/types.h"

class XRegistry {
  public:
    // Opens a key, creating it; kNullHandle on failure or without a sub-key. The caller closes it with
    // RegCloseKey.
    static platform::Handle OpenKey(std::uint32_t access, const char16_t* subKey);
    // Reads a text value into `size` bytes. On any failure they are zeroed; a value of another type is one,
    // and so is a value that does not fit. `failed` may be null.
    static void ReadValue(void* buffer, std::uint32_t size, const char16_t* name, const char16_t* subKey,
                          bool* failed);
    // `size` in bytes; a text counts its NUL.
    static bool WriteValue(const void* data, std::uint32_t size, std::uint32_t type, const char16_t* name,
                           const char16_t* subKey);
    static XString ReadString(const char16_t* name, const char16_t* subKey);  // empty on any failure
    static bool WriteString(const XString& text, const char16_t* name, const char16_t* subKey);
};
