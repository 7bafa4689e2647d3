// Files, folders and paths.
//
// A bool result is true on success; false leaves the reason in GetLastError. Paths are NUL-terminated 16-bit
// text and never null. Any operation may be called from any thread; two threads must not use one handle at
// once.
#pragma once

#include <cstdint>

#include "platform/operation.h"
#include "platform/types.h"

namespace platform {

inline constexpr std::uint32_t kGenericRead = 0x80000000;
inline constexpr std::uint32_t kGenericWrite = 0x40000000;

inline constexpr std::uint32_t kShareRead = 1;
inline constexpr std::uint32_t kShareWrite = 2;
inline constexpr std::uint32_t kShareDelete = 4;

inline constexpr std::uint32_t kCreateNew = 1;     // fails with kErrorFileExists where the file exists
inline constexpr std::uint32_t kCreateAlways = 2;  // truncates an existing file
inline constexpr std::uint32_t kOpenExisting = 3;  // fails with kErrorFileNotFound where it does not

inline constexpr std::uint32_t kAttributeReadOnly = 1;
inline constexpr std::uint32_t kAttributeDirectory = 16;
inline constexpr std::uint32_t kAttributeDevice = 64;  // on POSIX also a pipe or socket
inline constexpr std::uint32_t kAttributeNormal = 128;

// Opens or creates a file; kInvalidHandle on failure. A folder is refused with kErrorAccessDenied. POSIX
// ignores `share` and `attributes`; the descriptor is never inherited by a child and never a terminal's
// controlling one.
extern Operation<Handle(const char16_t* path, std::uint32_t access, std::uint32_t share,
                        std::uint32_t disposition, std::uint32_t attributes)>
    CreateFileW;

// Reads up to `count` bytes from a file or pipe. *read is set in every case, 0 on failure. At the end of a
// file the call succeeds with *read 0. A pipe without data blocks; one whose writers are all gone fails with
// kErrorBrokenPipe.
extern Operation<bool(Handle file, void* buffer, std::uint32_t count, std::uint32_t* read)> ReadFile;

// Writes `count` bytes. *written is set in every case. Success means all of them on a file; a full pipe
// blocks until its reader has made room. A pipe whose reader is gone fails with kErrorBrokenPipe (Windows may
// say 232) and raises no signal.
extern Operation<bool(Handle file, const void* buffer, std::uint32_t count, std::uint32_t* written)>
    WriteFile;

// Moves the file position to `distance` bytes from the start.
extern Operation<bool(Handle file, std::int64_t distance)> SetFilePointerEx;

// Stores the file's size; *size is left alone on failure.
extern Operation<bool(Handle file, std::int64_t* size)> GetFileSizeEx;

// Waits until what was written has reached the disk.
extern Operation<bool(Handle file)> FlushFileBuffers;

// Gives up a handle of any kind. Closing kNullHandle or kInvalidHandle fails and does nothing.
extern Operation<bool(Handle handle)> CloseHandle;

extern Operation<bool(const char16_t* path)>
    CreateDirectoryW;  // kErrorAlreadyExists where something has the name
extern Operation<bool(const char16_t* path)> RemoveDirectoryW;
extern Operation<bool(const char16_t* path)> DeleteFileW;  // a read-only file is refused: kErrorAccessDenied
extern Operation<bool(const char16_t* from, const char16_t* to, bool failIfExists)> CopyFileW;

inline constexpr std::uint32_t kMoveReplaceExisting = 1;
inline constexpr std::uint32_t kMoveWriteThrough = 8;

// Renames a file. With kMoveReplaceExisting a file under the new name is replaced in one step: whoever looks
// sees the old or the new one. With kMoveWriteThrough the call returns once the rename is on the disk.
extern Operation<bool(const char16_t* from, const char16_t* to, std::uint32_t flags)> MoveFileExW;

inline constexpr std::uint32_t kInvalidAttributes = 0xFFFFFFFF;

// The attribute bits above for an existing entry (read-only means that its owner may not write);
// kInvalidAttributes on failure.
extern Operation<std::uint32_t(const char16_t* path)> GetFileAttributesW;
extern Operation<bool(const char16_t* path, std::uint32_t attributes)> SetFileAttributesW;

inline constexpr std::uint32_t kDriveNoRoot = 1;

// kDriveNoRoot unless `root` is an existing folder or drive.
extern Operation<std::uint32_t(const char16_t* root)> GetDriveTypeW;

// One entry of a folder. The name is its own, without the folder.
struct FindData {
    std::uint32_t attributes = 0;
    std::uint64_t size = 0;
    char16_t name[260] = {};
};

// Starts a walk over the entries that match `pattern`: a path whose last part may hold the wildcards * and ?.
// Returns a search handle with the first entry in *data, or kInvalidHandle. "." and ".." are reported like
// any other entry. Matching folds ASCII case on Windows only. POSIX passes over a name that needs more than
// 259 units.
extern Operation<Handle(const char16_t* pattern, FindData* data)> FindFirstFileW;
extern Operation<bool(Handle search, FindData* data)> FindNextFileW;  // ends with kErrorNoMoreFiles
extern Operation<bool(Handle search)> FindClose;

// Stores the folder for temporary files with its trailing separator. The result is its length without the
// NUL, or the count needed when `count` is too small, or 0 on failure.
extern Operation<std::uint32_t(std::uint32_t count, char16_t* buffer)> GetTempPathW;

// Creates an empty file of a new name in `folder`, beginning with up to three units of `prefix`, and stores
// its path, at most 260 units with its NUL. POSIX creates it exclusively with mode 0600. The result is 0 on
// failure.
extern Operation<std::uint32_t(const char16_t* folder, const char16_t* prefix, std::uint32_t unique,
                               char16_t* path)>
    GetTempFileNameW;

}  // namespace platform
