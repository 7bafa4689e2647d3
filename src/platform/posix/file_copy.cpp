// Copying a file: the kernel moves what it can by itself, the loop behind it takes what is left, which is
// nothing as a rule. Whatever goes wrong, no half copy stays.
#include <fcntl.h>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"

namespace platform {

using namespace posix;

namespace {

bool CopyBytes(int from, int to) {
    constexpr std::size_t kStep = 1 << 30;
    while (copy_file_range(from, nullptr, to, nullptr, kStep, 0) > 0) {
    }
    char buffer[1 << 16];
    for (;;) {
        const ssize_t got = Retry([&] { return read(from, buffer, sizeof buffer); });
        if (got <= 0) return got == 0;
        if (!WriteAll(to, buffer, static_cast<std::size_t>(got))) return false;
    }
}

// The descriptor of a source that can be copied, its state stored; none, with the reason stored, otherwise.
Descriptor OpenSource(const std::string& path, struct stat* state) {
    Descriptor source(Retry([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (!source || fstat(source.Get(), state) != 0) {
        FailOnPath(path);
        return {};
    }
    if (S_ISDIR(state->st_mode)) {
        Fail(kErrorAccessDenied);
        return {};
    }
    return source;
}

// Before the destination is emptied it must be known to be another file than the source.
Descriptor OpenTarget(const std::string& path, bool failIfExists, const struct stat& source) {
    struct stat state;
    if (!failIfExists && stat(path.c_str(), &state) == 0) {
        const bool same = state.st_dev == source.st_dev && state.st_ino == source.st_ino;
        if (same || IsReadOnly(state)) {
            Fail(same ? kErrorSharingViolation : kErrorAccessDenied);
            return {};
        }
    }
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (failIfExists ? O_EXCL : O_TRUNC);
    Descriptor target(Retry([&] { return open(path.c_str(), flags, 0666); }));
    if (!target) errno == EEXIST ? Fail(kErrorFileExists) : FailOnPath(path);
    return target;
}

bool Copy(const char16_t* from, const char16_t* to, bool failIfExists) {
    struct stat state;
    const Descriptor source = OpenSource(Narrow(from), &state);
    if (!source) return false;
    const std::string path = Narrow(to);
    const Descriptor target = OpenTarget(path, failIfExists, state);
    if (!target) return false;
    if (CopyBytes(source.Get(), target.Get()) && fchmod(target.Get(), state.st_mode & 0777) == 0) return true;
    FailWithErrno();
    unlink(path.c_str());
    return false;
}

}  // namespace

constinit Operation<bool(const char16_t*, const char16_t*, bool)> CopyFileW{&Copy};

}  // namespace platform
