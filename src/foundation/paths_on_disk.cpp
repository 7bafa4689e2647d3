// The small file operations that take a path. Each hands the platform the long form of it, and an empty path
// never reaches the platform.
#include "foundation/find_file.h"
#include "foundation/paths.h"
#include "foundation/string_list.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/names.h"

namespace paths {

namespace {

XString LongPath(const XString& path) {
    return ToLongPath(path, kOtherLimit);
}

// The reason is asked for at once: nothing may come between it and the call.
bool DeleteOnce(const XString& longPath, bool* denied) {
    platform::SetLastError(platform::kErrorSuccess);
    const bool deleted = platform::DeleteFileW(longPath.Text());
    *denied = !deleted && platform::GetLastError() == platform::kErrorAccessDenied;
    return deleted;
}

bool CreateLevel(const XString& path) {
    platform::SetLastError(platform::kErrorSuccess);
    return platform::CreateDirectoryW(path.Text()) ||
           platform::GetLastError() == platform::kErrorAlreadyExists;
}

}  // namespace

bool Exists(const XString& path) {
    if (path.IsEmpty()) return false;
    if (XFindFile(path).Next()) return true;
    XString root(path);  // a walk does not find a drive
    AddTrailingSeparator(root);
    return platform::GetDriveTypeW(root.Text()) != platform::kDriveNoRoot;
}

bool MakeWritable(const XString& path) {
    XFindFile entry(path);
    return entry.Next() &&
           platform::SetFileAttributesW(LongPath(path).Text(),
                                        entry.Data().attributes & ~platform::kAttributeReadOnly);
}

bool CopyFile(const XString& from, const XString& to) {
    return !from.IsEmpty() && !to.IsEmpty() &&
           platform::CopyFileW(LongPath(from).Text(), LongPath(to).Text(), false);
}

bool DeleteFile(const XString& path) {
    if (path.IsEmpty()) return false;
    const XString longPath = LongPath(path);
    bool denied = false;
    if (DeleteOnce(longPath, &denied)) return true;
    if (!denied) return false;
    MakeWritable(path);
    return DeleteOnce(longPath, &denied);
}

bool CreateFolder(const XString& path) {
    if (path.IsEmpty()) return false;
    XString level = LongPath(path);
    XStringList parts;
    for (;;) {
        const XString part = SplitLastFolder(level);
        if (part.IsEmpty()) break;
        parts.Add(part.Text());
    }
    bool exists = parts.Count() > 0 || Exists(level);  // a bare root can't be created, only be there
    for (std::int32_t i = parts.Count() - 1; i >= 0 && exists; --i) {
        level += parts.At(i);
        exists = CreateLevel(level);
        AddTrailingSeparator(level);
    }
    return exists;
}

XString GetModulePath(platform::ModuleHandle module) {
    constexpr std::uint32_t kUnits = 1000;
    char16_t name[kUnits + 1] = {};
    const std::uint32_t length = platform::GetModuleFileNameW(module, name, kUnits);
    if (length == 0 || length >= kUnits) return XString();  // a path that was cut names something else
    const XString path(name);
    if (path.GetAt(1) != u'"') return path;
    const std::int32_t closing = path.Find(u'"', 2);
    return path.Mid(2, closing > 0 ? closing - 1 : path.Length());
}

XString GetModuleFolder(platform::ModuleHandle module) {
    return GetFolder(GetModulePath(module));
}

XString GetTempFolder() {
    constexpr std::uint32_t kUnits = 260;
    char16_t name[kUnits + 1] = {};
    const std::uint32_t length = platform::GetTempPathW(kUnits, name);
    XString folder(length > 0 && length < kUnits ? name : platform::kDefaultTempFolder);
    AddTrailingSeparator(folder);
    return folder;
}

}  // namespace paths
