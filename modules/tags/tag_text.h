// Text on its way to and from TagLib, whose strings are UTF-16 units in wide characters of any size.
#pragma once

#include <taglib/tbytevector.h>
#include <taglib/tstring.h>

#include <string>

#include "modules/tags/tag_set.h"

inline TagLib::String ToTagLib(const std::u16string& text) {
    return TagLib::String(std::wstring(text.begin(), text.end()));
}

// Ends at a NUL, which no row can hold.
inline std::u16string FromTagLib(const TagLib::String& text) {
    std::u16string units;
    for (const wchar_t unit : text) {
        if (unit == 0) break;
        units += static_cast<char16_t>(unit);
    }
    return units;
}

inline std::u16string UpperFromTagLib(const TagLib::String& text) {
    return Upper(FromTagLib(text));
}

inline TagLib::ByteVector ToTagLib(const std::string& bytes) {
    return TagLib::ByteVector(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

inline std::string FromTagLib(const TagLib::ByteVector& bytes) {
    return std::string(bytes.data(), bytes.size());
}
