// Temporary files: a random name, created exclusively and for the user alone, so that nobody can have put
// something else in its place.
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <random>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/names.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"

namespace platform {

using namespace posix;

namespace {

constexpr std::size_t kPathCount = 260;

std::uint32_t TempFolder(std::uint32_t count, char16_t* buffer) {
    const char* const variable = getenv("TMPDIR");
    std::u16string folder = variable && *variable ? Wide(variable) : std::u16string(kDefaultTempFolder);
    if (folder.back() != kPathSeparator) folder += kPathSeparator;
    const auto length = static_cast<std::uint32_t>(folder.size());
    if (length >= count) return length + 1;
    *std::copy(folder.begin(), folder.end(), buffer) = u'\0';
    return length;
}

std::uint32_t RandomNumber() {
    std::random_device source;
    std::uint32_t number = 0;
    while (number == 0) number = source();
    return number;
}

std::u16string Compose(const char16_t* folder, const char16_t* prefix, std::uint32_t number) {
    std::u16string path(folder);
    if (!path.empty() && path.back() != kPathSeparator) path += kPathSeparator;
    path += std::u16string_view(prefix).substr(0, 3);
    char digits[9];
    const int length = snprintf(digits, sizeof digits, "%X", number);
    path.append(digits, digits + length);
    return path + u".tmp";
}

bool CreateExclusively(const std::u16string& path) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    const std::string name = Narrow(path.c_str());
    return static_cast<bool>(Descriptor(Retry([&] { return open(name.c_str(), flags, 0600); })));
}

// A number that the caller gives makes a name and no file, as on Windows.
std::uint32_t TempFile(const char16_t* folder, const char16_t* prefix, std::uint32_t unique, char16_t* path) {
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const std::uint32_t number = unique ? unique : RandomNumber();
        const std::u16string name = Compose(folder, prefix, number);
        if (name.size() >= kPathCount) return Fail(kErrorFilenameTooLong);
        if (unique || CreateExclusively(name)) {
            *std::copy(name.begin(), name.end(), path) = u'\0';
            return number;
        }
        if (errno != EEXIST) return FailOnPath(Narrow(name.c_str()));
    }
    return Fail(kErrorFileExists);
}

}  // namespace

constinit Operation<std::uint32_t(std::uint32_t, char16_t*)> GetTempPathW{&TempFolder};
constinit Operation<std::uint32_t(const char16_t*, const char16_t*, std::uint32_t, char16_t*)>
    GetTempFileNameW{&TempFile};

}  // namespace platform
