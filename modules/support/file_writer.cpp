#include "modules/support/file_writer.h"

#include "foundation/paths.h"
#include "platform/error.h"
#include "platform/file.h"

bool clFileWriter::Create(const char16_t* path) {
    Close();
    mSize = mError = 0;
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

bool clFileWriter::Write(const void* data, std::uint32_t count) {
    std::uint32_t written = 0;
    if (!platform::WriteFile(mHandle, data, count, &written)) return Check(false);
    if (written == count) return true;
    platform::SetLastError(platform::kErrorDiskFull);  // a short write that calls itself a success
    return Check(false);
}

bool clFileWriter::SeekTo(std::uint64_t position) {
    return Check(platform::SetFilePointerEx(mHandle, static_cast<std::int64_t>(position)));
}

bool clFileWriter::Append(const void* data, std::uint32_t count) {
    if (mError != 0 || !IsOpen()) return false;
    mSize += count;
    return Write(data, count);
}

bool clFileWriter::Rewrite(std::uint64_t position, const void* data, std::uint32_t count) {
    if (mError != 0 || !IsOpen() || position > mSize || count > mSize - position) return false;
    return SeekTo(position) && Write(data, count) && SeekTo(mSize);
}

bool clFileWriter::Flush() {
    return mError == 0 && IsOpen() && Check(platform::FlushFileBuffers(mHandle));
}

bool clFileWriter::Close() {
    if (!IsOpen()) return false;
    const bool closed = platform::CloseHandle(mHandle);
    mHandle = platform::kInvalidHandle;
    return Check(closed);
}
