#include "foundation/mutex.h"

#include "platform/error.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

XMutex::XMutex() {
    platform::SetLastError(platform::kErrorSuccess);
    mHandle = platform::CreateMutexW();
    mAlreadyExisted = platform::GetLastError() == platform::kErrorAlreadyExists;
}

XMutex::~XMutex() {
    if (mHandle != platform::kNullHandle) platform::CloseHandle(mHandle);
}

void XMutex::Lock() {
    if (mHandle == platform::kNullHandle) return;
    platform::WaitForSingleObject(mHandle, platform::kInfinite);
    mLocked = true;
}

void XMutex::Unlock() {
    if (mHandle == platform::kNullHandle) return;
    platform::ReleaseMutex(mHandle);
    mLocked = false;
}
