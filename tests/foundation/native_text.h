// Paths are written with backslashes here and turned into the platform's own, so that one table serves all.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/names.h"
#include "support/wide_text.h"

inline std::u16string Native(std::u16string_view path) {
    std::u16string native(path);
    std::replace(native.begin(), native.end(), u'\\', platform::kPathSeparator);
    return native;
}

// A path of `length` units in one level below a root.
inline std::u16string PathOfLength(std::size_t length) {
    const std::u16string root = Native(u"C:\\");
    return root + std::u16string(length - root.size(), u'x');
}

// What the platform is to see of a path that has reached the limit.
inline std::u16string LongForm(const std::u16string& path) {
    return platform::kLongPathPrefix + path;
}
