// The last error: one number per thread, set by the operations themselves. errno never crosses the seam.
#include "platform/error.h"

#include "platform/posix/native_error.h"

namespace platform {

namespace {

constinit thread_local std::uint32_t tLastError = kErrorSuccess;

struct Row {
    int number;
    std::uint32_t error;
};

constexpr Row kRows[] = {
    {ENOENT, kErrorFileNotFound},
    {ENOTDIR, kErrorPathNotFound},
    {ELOOP, kErrorPathNotFound},
    {EACCES, kErrorAccessDenied},
    {EPERM, kErrorAccessDenied},
    {EISDIR, kErrorAccessDenied},
    {EBADF, kErrorInvalidHandle},
    {ENOMEM, kErrorNotEnoughMemory},
    {EROFS, kErrorWriteProtected},
    {EBUSY, kErrorSharingViolation},
    {ETXTBSY, kErrorSharingViolation},
    {EEXIST, kErrorAlreadyExists},
    {ENOSYS, kErrorNotSupported},
    {EOPNOTSUPP, kErrorNotSupported},
    {EINVAL, kErrorInvalidParameter},
    {EPIPE, kErrorBrokenPipe},
    {ENOSPC, kErrorDiskFull},
    {EDQUOT, kErrorDiskFull},
    {EFBIG, kErrorDiskFull},
    {ENOTEMPTY, kErrorDirectoryNotEmpty},
    {ENAMETOOLONG, kErrorFilenameTooLong},
};

std::uint32_t Get() {
    return tLastError;
}
void Set(std::uint32_t error) {
    tLastError = error;
}

}  // namespace

constinit Operation<std::uint32_t()> GetLastError{&Get};
constinit Operation<void(std::uint32_t)> SetLastError{&Set};

namespace posix {

std::uint32_t ErrorOf(int number) {
    for (const Row& row : kRows) {
        if (row.number == number) return row.error;
    }
    return kErrorGeneral;
}

bool Fail(std::uint32_t error) {
    tLastError = error;
    return false;
}

bool FailWithErrno() {
    return Fail(ErrorOf(errno));
}

}  // namespace posix
}  // namespace platform
