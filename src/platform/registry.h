// The current user's settings store.
//
// On Windows the registry below HKEY_CURRENT_USER. On POSIX a folder tree under $XDG_CONFIG_HOME/quavermill
// (default
// ~/.config/quavermill) with the same key paths and value names, where every write is atomic: a crash or two
// writers leave the old or the new value. Key paths use backslashes on both; keys and value names know no
// ASCII case.
#pragma once

#include <cstdint>

#include "platform/operation.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t kKeyQueryValue = 1;
inline constexpr std::uint32_t kKeyWrite = 0x20006;

inline constexpr std::uint32_t kRegString = 1;
inline constexpr std::uint32_t kRegExpandString = 2;
inline constexpr std::uint32_t kRegDword = 4;

// These return 0 on success and an error number otherwise, as on Windows; the last error is not touched.

// Opens the key, creating it and those above it; *key is kNullHandle on failure.
extern Operation<std::uint32_t(const char16_t* path, std::uint32_t access, Handle* key)> RegCreateKeyExW;

// Reads a value. `type` and `data` may be null; *size holds the bytes at `data` and receives the value's
// size. A value larger than that gives 234 and leaves what `data` holds undefined; one that does not exist
// gives 2.
extern Operation<std::uint32_t(Handle key, const char16_t* name, std::uint32_t* type, void* data,
                               std::uint32_t* size)>
    RegQueryValueExW;
extern Operation<std::uint32_t(Handle key, const char16_t* name, std::uint32_t type, const void* data,
                               std::uint32_t size)>
    RegSetValueExW;
extern Operation<std::uint32_t(Handle key)> RegCloseKey;

}  // namespace platform
