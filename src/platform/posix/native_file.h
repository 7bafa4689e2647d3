// What the file operations share: a path's state and the reason a path operation failed.
#pragma once

#include <sys/stat.h>

#include <string>

namespace platform::posix {

// What the path leads to, or the link itself where it leads nowhere. False with errno when there is neither.
bool Look(const std::string& path, struct stat* state);

// Read-only is what the mode says of the owner, whoever asks: the superuser respects it too.
inline bool IsReadOnly(const struct stat& state) {
    return (state.st_mode & S_IWUSR) == 0;
}
bool IsReadOnly(const std::string& path);

std::uint32_t AttributesOf(const struct stat& state);

// Stores errno's error; a missing file in a missing folder is a path not found. False.
bool FailOnPath(const std::string& path);

std::string FolderOf(const std::string& path);

bool WriteAll(int descriptor, const void* buffer, std::size_t count);

}  // namespace platform::posix
