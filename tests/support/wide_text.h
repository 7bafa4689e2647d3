// XString as tests see it: the units for a comparison that prints them, and the state every operation has to
// leave.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "foundation/wide_string.h"

inline std::u16string Units(const XString& text) {
    return text.Text();
}

// For the messages of a failed expectation.
inline std::string Narrow(const XString& text) {
    return XString(text).ToNarrow();
}

inline std::u16string Repeated(char16_t unit, int times) {
    return std::u16string(static_cast<std::size_t>(times), unit);
}

inline bool IsSound(const XString& text) {
    return text.Text() && text.Count() >= 1 && text.Capacity() >= text.Count() &&
           text.Text()[text.Length()] == 0 && text.Length() == static_cast<int>(Units(text).size());
}
