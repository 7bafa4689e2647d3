// Between 8-bit and 16-bit text.
//
// The 8-bit side is the ANSI code page on Windows and UTF-8 on POSIX. There a byte that is no part of valid
// UTF-8 becomes the lone low surrogate 0xDC00 + byte and turns back into that byte, so a file name survives
// the way to 16-bit text and back whatever its bytes are. Any other lone surrogate becomes the three bytes
// that UTF-8 would give its number.
#pragma once

#include <cstdint>

#include "platform/operation.h"

namespace platform {

// Converts the NUL-terminated `narrow` and stores at most `wideCount` units, the NUL among them.
// With wideCount 0 nothing is stored and the result is the count needed. The result is the count of units
// stored, NUL included; 0 when the text does not fit or can't be converted.
extern Operation<std::int32_t(const char* narrow, char16_t* wide, std::int32_t wideCount)>
    MultiByteToWideChar;

// The other way, with no default character: counts are bytes, NUL included.
extern Operation<std::int32_t(const char16_t* wide, char* narrow, std::int32_t narrowCount)>
    WideCharToMultiByte;

}  // namespace platform
