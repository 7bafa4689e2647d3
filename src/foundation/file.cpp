// One loop per operation: try, and as long as the user wants it, try again.
//
// Errors that are none are told by the last error, which is therefore cleared before the call it is asked
// about, with nothing in between.
#include "foundation/file.h"

#include "foundation/paths.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/message_box.h"

namespace {

constexpr const char16_t* kWriteTitle = u"File Write Error";
constexpr const char16_t* kReadTitle = u"File Read Error";

// True when the user wants another attempt.
bool AskForRetry(const char16_t* what, const XString& path, const char16_t* title) {
    XString text(what);
    text += path;
    text += u"'";
    return platform::MessageBoxW(text.Text(), title,
                                 platform::kBoxRetryCancel | platform::kBoxIconInformation) ==
           platform::kBoxResultRetry;
}

bool IsReadFailure(std::uint32_t error) {
    return error != platform::kErrorSuccess && error != platform::kErrorHandleEof;
}

}  // namespace

bool XFile::Create() {
    do {
        Close();
        mShowErrors = false;
        mOwnsHandle = true;
        const XString path = paths::ToLongPath(mPath, paths::kCreateLimit);
        if (!path.IsEmpty())
            mHandle = platform::CreateFileW(path.Text(), platform::kGenericWrite,
                                            platform::kShareRead | platform::kShareWrite,
                                            platform::kCreateAlways, platform::kAttributeNormal);
        // A caller can't have asked for prompts so early: the flag was cleared above. Only what stands in for
        // the platform could have set it since.
    } while (!IsOpen() && mShowErrors && AskForRetry(u"Unable to open '", mPath, kWriteTitle));
    return IsOpen();
}

std::uint32_t XFile::Read(void* buffer, std::uint32_t count, bool* failed) {
    for (;;) {
        std::uint32_t read = 0;
        bool failure = true;
        if (IsOpen()) {
            platform::SetLastError(platform::kErrorSuccess);
            const bool done = platform::ReadFile(mHandle, buffer, count, &read);
            failure = (!done || read < count) && IsReadFailure(platform::GetLastError());
        }
        if (failed) *failed = failure;
        if (!failure || !mShowErrors || !AskForRetry(u"Unable to read from '", mPath, kReadTitle))
            return read;
    }
}

bool XFile::Write(const void* buffer, std::uint32_t count) {
    if (!buffer && count == 0) return true;
    if (!buffer) {
        if (mShowErrors)
            platform::MessageBoxW(u"Error writing a NULL buffer to file", kWriteTitle,
                                  platform::kBoxIconInformation);
        return false;
    }
    do {
        std::uint32_t written = 0;
        if (IsOpen() && platform::WriteFile(mHandle, buffer, count, &written) && written == count)
            return true;
    } while (mShowErrors && AskForRetry(u"Unable to write to '", mPath, kWriteTitle));
    return false;
}

void XFile::Close() {
    if (IsOpen() && mOwnsHandle) platform::CloseHandle(mHandle);
    mHandle = platform::kInvalidHandle;
}
