#include "modules/support/file_reader.h"

#include <cstring>

#include "foundation/paths.h"
#include "platform/error.h"
#include "platform/file.h"

bool clFileReader::Open(const char16_t* path) {
    Close();
    mError = 0;
    const XString longPath = paths::ToLongPath(path, paths::kOtherLimit);
    mHandle = platform::CreateFileW(longPath.Text(), platform::kGenericRead,
                                    platform::kShareRead | platform::kShareDelete, platform::kOpenExisting,
                                    platform::kAttributeNormal);
    std::int64_t size = 0;
    if (!IsOpen() || !platform::GetFileSizeEx(mHandle, &size) || size < 0) {
        Fail();
        Close();
        return false;
    }
    mSize = static_cast<std::uint64_t>(size);
    return true;
}

void clFileReader::Close() {
    if (IsOpen()) platform::CloseHandle(mHandle);
    mHandle = platform::kInvalidHandle;
    mSize = mFilePosition = 0;
    mWindowFilled = 0;
}

bool clFileReader::Fail() {
    if (mError == 0) mError = platform::GetLastError();
    if (mError == 0) mError = platform::kErrorGeneral;
    mFilePosition = UINT64_MAX;  // nobody knows: the next read seeks
    return false;
}

bool clFileReader::Holds(std::uint64_t position, std::uint32_t count) const {
    return position >= mWindowPosition && position - mWindowPosition <= mWindowFilled &&
           count <= mWindowFilled - (position - mWindowPosition);
}

bool clFileReader::Fetch(std::uint64_t position, void* to, std::uint32_t count) {
    if (!Holds(position, count)) {
        mWindowFilled = 0;
        mWindowPosition = position;
        std::uint32_t got = 0;
        if (!Read(position, mWindow.data(), kWindowBytes, &got)) return false;
        mWindowFilled = got;
        if (got < count) return false;
    }
    std::memcpy(to, mWindow.data() + (position - mWindowPosition), count);
    return true;
}

bool clFileReader::Read(std::uint64_t position, void* to, std::uint32_t count, std::uint32_t* got) {
    *got = 0;
    if (position >= mSize) return true;
    if (position != mFilePosition) {
        if (!platform::SetFilePointerEx(mHandle, static_cast<std::int64_t>(position))) return Fail();
        mFilePosition = position;
    }
    while (*got < count) {
        std::uint32_t piece = 0;
        if (!platform::ReadFile(mHandle, static_cast<std::uint8_t*>(to) + *got, count - *got, &piece))
            return Fail();
        if (piece == 0) break;
        *got += piece;
        mFilePosition += piece;
    }
    return true;
}
