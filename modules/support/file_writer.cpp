#include "modules/support/file_writer.h"

#include "foundation/paths.h"
#include "platform/error.h"
#include "platform/file.h"

bool clFileWriter::Create(const char16_t* path) {
    Close();
    mError = 0;
    const XString longPath = paths::ToLongPath(path, paths::kCreateLimit);
    mHandle = platform::CreateFileW(longPath.Text(), platform::kGenericWrite, platform::kShareRead,
                                    platform::kCreateAlways, platform::kAttributeNormal);
    return Check(IsOpen());
}

bool clFileWriter::Check(bool success) {
    if (success || mError != 0) return success && mError == 0;
    mError = platform::GetLastError();
    if (mError == 0) mError = platform::kErrorGeneral;
    return false;
}

bool clFileWriter::Append(const void* data, std::uint32_t count) {
    if (mError != 0 || !IsOpen()) return false;
    std::uint32_t written = 0;
    if (!platform::WriteFile(mHandle, data, count, &written)) return Check(false);
    if (written == count) return true;
    platform::SetLastError(platform::kErrorDiskFull);  // a short write that calls itself a success
    return Check(false);
}

bool clFileWriter::Rewrite(const void* data, std::uint32_t count) {
    if (mError != 0 || !IsOpen()) return false;
    return Check(platform::SetFilePointerEx(mHandle, 0)) && Append(data, count);
}

bool clFileWriter::Close() {
    if (!IsOpen()) return false;
    const bool closed = platform::CloseHandle(mHandle);
    mHandle = platform::kInvalidHandle;
    return Check(closed);
}
