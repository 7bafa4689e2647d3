// The read end is looked at before it is read, so that a drain takes what waits and never blocks.
#include "foundation/pipe.h"

#include <algorithm>

#include "platform/file.h"
#include "platform/pipe.h"

namespace {

// A drain ends here even when its writer is faster: it must not hold up its caller, nor what the caller gathers
// grow without end. What is left waits for the next one.
constexpr std::uint32_t kLargestDrain = 0x400000;
constexpr std::uint32_t kLargestRead = 0x100000;

void CloseEnd(platform::Handle& handle) {
    if (handle != platform::kInvalidHandle) platform::CloseHandle(handle);
    handle = platform::kInvalidHandle;
}

// The file is a view of the end: it neither closes it nor asks the user anything.
void View(XFile& file, platform::Handle handle) {
    file.Close();
    file.mHandle = handle;
    file.mShowErrors = false;
    file.mOwnsHandle = false;
}

}  // namespace

bool XPipe::Create() {
    Close();
    if (!platform::CreatePipe(&mReadHandle, &mWriteHandle)) return false;
    View(mReader, mReadHandle);
    View(mWriter, mWriteHandle);
    return true;
}

platform::Handle XPipe::DetachWriteEnd() {
    if (mWriteHandle == platform::kInvalidHandle) return platform::kInvalidHandle;
    platform::Handle duplicate = platform::kInvalidHandle;
    const bool done = platform::DuplicateHandle(mWriteHandle, &duplicate);
    // The source is closed by a call that fails, too: keeping it would close somebody else's handle later.
    mWriteHandle = platform::kInvalidHandle;
    mWriter.Close();
    return done ? duplicate : platform::kInvalidHandle;
}

clByteStore* XPipe::ReadAvailable(bool* failed) {
    mBuffer.SetCursor(0);
    while (mBuffer.Cursor() < kLargestDrain && ReadOnce(failed)) {
    }
    return &mBuffer;
}

// True while there may be more.
bool XPipe::ReadOnce(bool* failed) {
    std::uint32_t waiting = 0;
    *failed = !mReader.IsOpen() || !platform::PeekNamedPipe(mReader.mHandle, &waiting);
    if (*failed || waiting == 0) return false;
    waiting = std::min(waiting, kLargestRead);
    // A new block takes three times what waits; one that is large enough stays.
    const std::uint32_t held = mBuffer.Cursor();
    *failed = !mBuffer.Resize(held + waiting, true, 2 * waiting);
    if (*failed) return false;
    const std::uint32_t read = mReader.Read(mBuffer.Data() + held, waiting, failed);
    mBuffer.SetCursor(held + read);
    return !*failed && read > 0;
}

void XPipe::Close() {
    mReader.Close();
    mWriter.Close();
    CloseEnd(mReadHandle);
    CloseEnd(mWriteHandle);
}
