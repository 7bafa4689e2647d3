// A child program of this test program, its two streams and its end.
#pragma once

#include <string>

#include "platform/process.h"

class RunningChild {
  public:
    explicit RunningChild(const char* name, const std::u16string& arguments = u"");
    ~RunningChild();  // ends one that still runs
    RunningChild(const RunningChild&) = delete;
    RunningChild& operator=(const RunningChild&) = delete;

    bool Started() const { return mStarted; }
    platform::Handle Process() const { return mChild.process; }
    platform::Handle Thread() const { return mChild.thread; }
    platform::Handle OutputPipe() const { return mOutputPipe; }

    // Reads both streams as they fill, until both are broken.
    void ReadToEnd();
    const std::string& Output() const { return mOutput; }  // what has been read
    const std::string& Errors() const { return mErrors; }

    // ReadToEnd, then waits for the end. The result is the exit code.
    std::uint32_t Finish();

    // Reads standard output until it holds as many bytes; false when the stream ends before.
    bool ReadOutput(std::size_t bytes);

    // Closes the two handles of the child, which goes on.
    void LetGo();

  private:
    bool mStarted = false;
    platform::ChildHandles mChild;
    platform::Handle mOutputPipe = platform::kInvalidHandle, mErrorPipe = platform::kInvalidHandle;
    std::string mOutput, mErrors;
};

// In a child: writes bytes as they are to one of its streams (kStdOutput, kStdError); false when that failed.
bool WriteToStream(std::uint32_t which, const std::string& bytes);
