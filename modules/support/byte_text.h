// Text in audio files that don't say how it is coded.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/wide_string.h"

// `size` bytes, or those before the first NUL, as text: UTF-8 where all of it is valid UTF-8, Windows-1252
// otherwise. Blanks and control characters at both ends are dropped.
XString TextFromBytes(const std::uint8_t* bytes, std::size_t size);
