// A program of the tree, or this test program again, with both its streams on pipes.
#pragma once

#include <string>
#include <vector>

#include "foundation/pipe.h"
#include "platform/process.h"

// The arguments as one command line, quoted so that each arrives as it is.
std::u16string CommandLine(const std::vector<std::u16string>& arguments);

class Program {
  public:
    explicit Program(std::u16string commandLine);
    ~Program();  // ends one that still runs
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // Reads both streams to their ends, so until everybody who has them is gone, and then waits for the
    // program's own. The result is its exit code.
    std::uint32_t Finish();
    void Kill();
    bool HasEnded() const;

    const std::string& Output() const { return mOutput; }  // what Finish has read
    const std::string& Errors() const { return mErrors; }

  private:
    XPipe mOutputPipe, mErrorPipe;
    platform::ChildHandles mChild;
    std::string mOutput, mErrors;
};

// quaver, from the tree.
class Quaver : public Program {
  public:
    explicit Quaver(const std::vector<std::u16string>& arguments);
    static std::u16string File();
};
