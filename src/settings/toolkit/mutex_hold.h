// Holds an XMutex to the end of the scope.
#pragma once

#include "foundation/mutex.h"

class MutexHold {
  public:
    explicit MutexHold(XMutex& mutex) : mMutex(mutex) { mMutex.Lock(); }
    ~MutexHold() { mMutex.Unlock(); }
    MutexHold(const MutexHold&) = delete;
    MutexHold& operator=(const MutexHold&) = delete;

  private:
    XMutex& mMutex;
};
