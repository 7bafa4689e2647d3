// ErrorTap: the error channel that modules get, listened to.
//
// A decoder that can't read part of its file says so in its log and ends its stream like any other; an
// encoder may be equally polite. So each error line of a module is passed on to the host and counted, and a
// conversion with any is no success. A thread reads the channel, because a module may write more than a pipe
// holds within one call.
#pragma once

#include <atomic>
#include <thread>

#include "converter/reporter.h"
#include "foundation/pipe.h"

class ErrorTap {
  public:
    explicit ErrorTap(Reporter& reporter);
    ErrorTap(const ErrorTap&) = delete;
    ErrorTap& operator=(const ErrorTap&) = delete;
    ~ErrorTap() { Close(); }

    // For XLog::mErrorOut; kInvalidHandle, and so silence, when the system gives no pipe.
    platform::Handle Channel() const { return mWriteEnd; }
    // How many lines have come so far.
    int Lines() const { return mLines; }
    // Ends the channel, when no module that knows it is left, and returns how many lines came through it.
    int Close();

  private:
    void Run();
    void PassOn(std::u16string& text);

    Reporter& mReporter;
    XPipe mPipe;
    platform::Handle mWriteEnd;
    std::atomic<int> mLines = 0;
    std::thread mThread;
};
