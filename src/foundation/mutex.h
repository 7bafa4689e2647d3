// XMutex: a recursive lock of this process. Where the platform gives none the code runs unlocked.
#pragma once

#include <atomic>

#include "platform/types.h"

class XMutex {
  public:
    XMutex();
    XMutex(const XMutex&) = delete;
    XMutex& operator=(const XMutex&) = delete;
    ~XMutex();

    void Lock();  // without a time limit; the holder may lock again and unlocks as often
    void Unlock();

    platform::Handle Handle() const { return mHandle; }
    bool IsLocked() const { return mLocked; }  // for information only
    bool AlreadyExisted() const { return mAlreadyExisted; }

  private:
    platform::Handle mHandle = platform::kNullHandle;
    std::atomic<bool> mLocked = false;
    bool mAlreadyExisted = false;
};
