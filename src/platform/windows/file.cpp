// Files and folders, forwarded. The constants of the contract are the system's own numbers.
#include "platform/file.h"

#include <algorithm>
#include <iterator>

#include "platform/windows/native.h"

namespace platform {

namespace {

static_assert(kGenericRead == GENERIC_READ && kGenericWrite == GENERIC_WRITE);
static_assert(kShareRead == FILE_SHARE_READ && kShareWrite == FILE_SHARE_WRITE &&
              kShareDelete == FILE_SHARE_DELETE);
static_assert(kCreateNew == CREATE_NEW && kCreateAlways == CREATE_ALWAYS && kOpenExisting == OPEN_EXISTING);
static_assert(kAttributeReadOnly == FILE_ATTRIBUTE_READONLY &&
              kAttributeDirectory == FILE_ATTRIBUTE_DIRECTORY && kAttributeDevice == FILE_ATTRIBUTE_DEVICE &&
              kAttributeNormal == FILE_ATTRIBUTE_NORMAL && kInvalidAttributes == INVALID_FILE_ATTRIBUTES);
static_assert(kMoveReplaceExisting == MOVEFILE_REPLACE_EXISTING &&
              kMoveWriteThrough == MOVEFILE_WRITE_THROUGH);
static_assert(kDriveNoRoot == DRIVE_NO_ROOT_DIR);

void Store(const WIN32_FIND_DATAW& found, FindData* data) {
    data->attributes = found.dwFileAttributes;
    data->size = static_cast<std::uint64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
    static_assert(sizeof data->name == sizeof found.cFileName);
    std::copy(std::begin(found.cFileName), std::end(found.cFileName), data->name);
}

}  // namespace

constinit Operation<Handle(const char16_t*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t)>
    CreateFileW{[](const char16_t* path, std::uint32_t access, std::uint32_t share, std::uint32_t disposition,
                   std::uint32_t attributes) {
        return FromNative(
            ::CreateFileW(Native(path), access, share, nullptr, disposition, attributes, nullptr));
    }};

constinit Operation<bool(Handle, void*, std::uint32_t, std::uint32_t*)> ReadFile{
    [](Handle file, void* buffer, std::uint32_t count, std::uint32_t* read) {
        *read = 0;
        return ::ReadFile(Native(file), buffer, count, Native(read), nullptr) != 0;
    }};

constinit Operation<bool(Handle, const void*, std::uint32_t, std::uint32_t*)> WriteFile{
    [](Handle file, const void* buffer, std::uint32_t count, std::uint32_t* written) {
        *written = 0;
        return ::WriteFile(Native(file), buffer, count, Native(written), nullptr) != 0;
    }};

constinit Operation<bool(Handle, std::int64_t)> SetFilePointerEx{[](Handle file, std::int64_t distance) {
    LARGE_INTEGER target;
    target.QuadPart = distance;
    return ::SetFilePointerEx(Native(file), target, nullptr, FILE_BEGIN) != 0;
}};

constinit Operation<bool(Handle, std::int64_t*)> GetFileSizeEx{[](Handle file, std::int64_t* size) {
    LARGE_INTEGER found;
    if (!::GetFileSizeEx(Native(file), &found)) return false;
    *size = found.QuadPart;
    return true;
}};

constinit Operation<bool(Handle)> FlushFileBuffers{
    [](Handle file) { return ::FlushFileBuffers(Native(file)) != 0; }};

// The system itself takes -1 for the process's own handle and would call closing it a success.
constinit Operation<bool(Handle)> CloseHandle{[](Handle handle) {
    if (IsOpen(handle)) return ::CloseHandle(Native(handle)) != 0;
    ::SetLastError(ERROR_INVALID_HANDLE);
    return false;
}};

constinit Operation<bool(const char16_t*)> CreateDirectoryW{
    [](const char16_t* path) { return ::CreateDirectoryW(Native(path), nullptr) != 0; }};

constinit Operation<bool(const char16_t*)> RemoveDirectoryW{
    [](const char16_t* path) { return ::RemoveDirectoryW(Native(path)) != 0; }};

constinit Operation<bool(const char16_t*)> DeleteFileW{
    [](const char16_t* path) { return ::DeleteFileW(Native(path)) != 0; }};

constinit Operation<bool(const char16_t*, const char16_t*, bool)> CopyFileW{
    [](const char16_t* from, const char16_t* to, bool failIfExists) {
        return ::CopyFileW(Native(from), Native(to), failIfExists) != 0;
    }};

constinit Operation<bool(const char16_t*, const char16_t*, std::uint32_t)> MoveFileExW{
    [](const char16_t* from, const char16_t* to, std::uint32_t flags) {
        return ::MoveFileExW(Native(from), Native(to), flags) != 0;
    }};

constinit Operation<std::uint32_t(const char16_t*)> GetFileAttributesW{
    [](const char16_t* path) -> std::uint32_t { return ::GetFileAttributesW(Native(path)); }};

constinit Operation<bool(const char16_t*, std::uint32_t)> SetFileAttributesW{
    [](const char16_t* path, std::uint32_t attributes) {
        return ::SetFileAttributesW(Native(path), attributes) != 0;
    }};

constinit Operation<std::uint32_t(const char16_t*)> GetDriveTypeW{
    [](const char16_t* root) -> std::uint32_t { return ::GetDriveTypeW(Native(root)); }};

constinit Operation<Handle(const char16_t*, FindData*)> FindFirstFileW{
    [](const char16_t* pattern, FindData* data) {
        WIN32_FIND_DATAW found;
        const HANDLE search = ::FindFirstFileW(Native(pattern), &found);
        if (search != INVALID_HANDLE_VALUE) Store(found, data);
        return FromNative(search);
    }};

constinit Operation<bool(Handle, FindData*)> FindNextFileW{[](Handle search, FindData* data) {
    WIN32_FIND_DATAW found;
    if (!::FindNextFileW(Native(search), &found)) return false;
    Store(found, data);
    return true;
}};

constinit Operation<bool(Handle)> FindClose{[](Handle search) { return ::FindClose(Native(search)) != 0; }};

constinit Operation<std::uint32_t(std::uint32_t, char16_t*)> GetTempPathW{
    [](std::uint32_t count, char16_t* buffer) -> std::uint32_t {
        return ::GetTempPathW(count, Native(buffer));
    }};

constinit Operation<std::uint32_t(const char16_t*, const char16_t*, std::uint32_t, char16_t*)>
    GetTempFileNameW{[](const char16_t* folder, const char16_t* prefix, std::uint32_t unique,
                        char16_t* path) -> std::uint32_t {
        return ::GetTempFileNameW(Native(folder), Native(prefix), unique, Native(path));
    }};

}  // namespace platform
