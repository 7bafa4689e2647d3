// The calling thread's last error: a number that a failed operation leaves behind, as on Windows.
//
// Each thread has its own. A successful operation may leave it as it was, except where an operation's comment
// says that it stores a number on success too. POSIX maps errno to the numbers below; what has no number here
// becomes kErrorGeneral.
#pragma once

#include <cstdint>

#include "platform/operation.h"

namespace platform {

inline constexpr std::uint32_t kErrorSuccess = 0;
inline constexpr std::uint32_t kErrorFileNotFound = 2;
inline constexpr std::uint32_t kErrorPathNotFound = 3;
inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorNotEnoughMemory = 8;
inline constexpr std::uint32_t kErrorNoMoreFiles = 18;
inline constexpr std::uint32_t kErrorWriteProtected = 19;
inline constexpr std::uint32_t kErrorGeneral = 31;
inline constexpr std::uint32_t kErrorSharingViolation = 32;
inline constexpr std::uint32_t kErrorHandleEof = 38;
inline constexpr std::uint32_t kErrorNotSupported = 50;
inline constexpr std::uint32_t kErrorFileExists = 80;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorBrokenPipe = 109;
inline constexpr std::uint32_t kErrorDiskFull = 112;
inline constexpr std::uint32_t kErrorModuleNotFound = 126;
inline constexpr std::uint32_t kErrorProcNotFound = 127;
inline constexpr std::uint32_t kErrorDirectoryNotEmpty = 145;
inline constexpr std::uint32_t kErrorAlreadyExists = 183;
inline constexpr std::uint32_t kErrorFilenameTooLong = 206;

extern Operation<std::uint32_t()> GetLastError;
extern Operation<void(std::uint32_t error)> SetLastError;

}  // namespace platform
