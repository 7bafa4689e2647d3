// Numbers as a host shows them.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"

XString NumberText(std::uint64_t number);
XString UnitText(std::uint64_t number, const char16_t* unit);  // "44100 Hz"
XString DurationText(std::uint64_t ms);                        // h:mm:ss.mmm
