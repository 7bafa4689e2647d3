// Tally: how a command over several files ends. One file that fails stops no other.
#pragma once

#include <cstddef>

#include "exit_codes.h"

class Tally {
  public:
    void Count(ExitCode code) {
        ++mFiles;
        if (code == ExitCode::kDone) return;
        ++mFailed;
        mLast = code;
    }

    // A single file's own code; of several, kFailed when all have failed and kSomeFailed when some have.
    ExitCode Result() const {
        if (mFailed == 0 || mFiles == 1) return mLast;
        return mFailed == mFiles ? ExitCode::kFailed : ExitCode::kSomeFailed;
    }

  private:
    std::size_t mFiles = 0, mFailed = 0;
    ExitCode mLast = ExitCode::kDone;
};
