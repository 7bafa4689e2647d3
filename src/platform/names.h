// How this system spells paths and the names of what the library ships.
#pragma once

#include <cstdint>

namespace platform {

// The one character that separates the parts of a path.
extern const char16_t kPathSeparator;

// Put before a path that has reached an operation's limit; empty where no such prefix exists.
extern const char16_t* const kLongPathPrefix;

// A path's root ends behind its first separator at this 1-based position or later: 3 lets "C:\" and
// "\\server\" be roots, 1 lets "/" be one.
extern const std::int32_t kFirstRootSeparator;

extern const char16_t* const kModuleExtension;  // ".dll", ".so": what module files are looked for by
extern const char16_t* const
    kNamedModuleExtension;                        // ".DLL", ".so": behind the name a module is asked for by
extern const char16_t* const kConverterFileName;  // "Quavercore.exe", "Quavercore"
extern const char16_t* const kDefaultTempFolder;  // taken when the system names none, no trailing separator

}  // namespace platform
