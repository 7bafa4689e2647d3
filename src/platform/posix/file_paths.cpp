// Files by path: attributes, folders, deleting and renaming.
//
// "Read-only" is a promise that Windows keeps for every caller. Here it is the owner's write bit, and the
// operations that would change or remove such a file look at it themselves, since the system would let the
// superuser, and whoever may write to the folder, pass.
#include <fcntl.h>
#include <stdio.h>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/posix/handle.h"
#include "platform/posix/native_error.h"
#include "platform/posix/native_file.h"
#include "platform/posix/native_text.h"

namespace platform {

namespace posix {

bool Look(const std::string& path, struct stat* state) {
    return stat(path.c_str(), state) == 0 || (errno == ENOENT && lstat(path.c_str(), state) == 0);
}

bool IsReadOnly(const std::string& path) {
    struct stat state;
    return stat(path.c_str(), &state) == 0 && IsReadOnly(state);
}

std::uint32_t AttributesOf(const struct stat& state) {
    std::uint32_t attributes = IsReadOnly(state) ? kAttributeReadOnly : 0;
    if (S_ISDIR(state.st_mode)) attributes |= kAttributeDirectory;
    if (!S_ISDIR(state.st_mode) && !S_ISREG(state.st_mode)) attributes |= kAttributeDevice;
    return attributes ? attributes : kAttributeNormal;
}

std::string FolderOf(const std::string& path) {
    const std::size_t end = path.find_last_not_of('/');
    const std::size_t slash = end == std::string::npos ? end : path.rfind('/', end);
    if (slash == std::string::npos) return path.starts_with('/') ? "/" : ".";
    return path.substr(0, slash + 1);
}

bool FailOnPath(const std::string& path) {
    const int number = errno;
    if (number == ENOENT && access(FolderOf(path).c_str(), F_OK) != 0) return Fail(kErrorPathNotFound);
    return Fail(ErrorOf(number));
}

}  // namespace posix

using namespace posix;

namespace {

bool MakeFolder(const char16_t* path) {
    const std::string name = Narrow(path);
    return mkdir(name.c_str(), 0777) == 0 ? true : FailOnPath(name);
}

bool RemoveFolder(const char16_t* path) {
    const std::string name = Narrow(path);
    return rmdir(name.c_str()) == 0 ? true : FailOnPath(name);
}

// A link's own mode always allows writing, so a link to a read-only file can be removed.
bool Delete(const char16_t* path) {
    const std::string name = Narrow(path);
    struct stat state;
    if (lstat(name.c_str(), &state) != 0) return FailOnPath(name);
    if (S_ISDIR(state.st_mode) || IsReadOnly(state)) return Fail(kErrorAccessDenied);
    return unlink(name.c_str()) == 0 ? true : FailOnPath(name);
}

// On file systems that can't refuse an existing name while renaming, a second name is made first: that can.
bool RenameToFree(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    return link(from.c_str(), to.c_str()) == 0 && unlink(from.c_str()) == 0;
}

bool FlushFolder(const std::string& path) {
    const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder && Retry([&] { return fsync(folder.Get()); }) == 0;
}

bool Move(const char16_t* from, const char16_t* to, std::uint32_t flags) {
    const std::string source = Narrow(from), target = Narrow(to);
    if (flags & kMoveReplaceExisting) {
        struct stat state;
        if (lstat(target.c_str(), &state) == 0 && (S_ISDIR(state.st_mode) || IsReadOnly(state))) {
            return Fail(kErrorAccessDenied);
        }
        if (rename(source.c_str(), target.c_str()) != 0) return FailOnPath(target);
    } else if (!RenameToFree(source, target)) {
        return FailOnPath(target);
    }
    const bool flushed = !(flags & kMoveWriteThrough) || FlushFolder(FolderOf(target));
    return flushed ? true : FailWithErrno();
}

std::uint32_t Attributes(const char16_t* path) {
    const std::string name = Narrow(path);
    struct stat state;
    if (Look(name, &state)) return AttributesOf(state);
    FailOnPath(name);
    return kInvalidAttributes;
}

bool SetAttributes(const char16_t* path, std::uint32_t attributes) {
    const std::string name = Narrow(path);
    struct stat state;
    if (stat(name.c_str(), &state) != 0) return FailOnPath(name);
    const bool readOnly = attributes & kAttributeReadOnly;
    if (readOnly == IsReadOnly(state)) return true;
    constexpr mode_t all = S_IWUSR | S_IWGRP | S_IWOTH;
    const mode_t mode = readOnly ? state.st_mode & ~all : state.st_mode | S_IWUSR;
    return chmod(name.c_str(), mode & 07777) == 0 ? true : FailOnPath(name);
}

std::uint32_t DriveType(const char16_t* root) {
    constexpr std::uint32_t kFixed = 3;
    struct stat state;
    return stat(Narrow(root).c_str(), &state) == 0 && S_ISDIR(state.st_mode) ? kFixed : kDriveNoRoot;
}

}  // namespace

constinit Operation<bool(const char16_t*)> CreateDirectoryW{&MakeFolder};
constinit Operation<bool(const char16_t*)> RemoveDirectoryW{&RemoveFolder};
constinit Operation<bool(const char16_t*)> DeleteFileW{&Delete};
constinit Operation<bool(const char16_t*, const char16_t*, std::uint32_t)> MoveFileExW{&Move};
constinit Operation<std::uint32_t(const char16_t*)> GetFileAttributesW{&Attributes};
constinit Operation<bool(const char16_t*, std::uint32_t)> SetFileAttributesW{&SetAttributes};
constinit Operation<std::uint32_t(const char16_t*)> GetDriveTypeW{&DriveType};

}  // namespace platform
