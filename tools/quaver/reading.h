// Reading: how a question about one file went, for the commands that ask several.
#pragma once

#include <string>

#include "host.h"
#include "terminal.h"

struct Reading {
    bool good = false;
    std::u16string errors;  // lines, for people

    // A file that gives an answer and an error is damaged.
    ExitCode Code() const {
        if (!good) return ExitCode::kFailed;
        return errors.empty() ? ExitCode::kDone : ExitCode::kDamaged;
    }
};

// What has come of it: `good` is the library's answer. It has a reason for a failure only where a module had
// one; otherwise `excuse` takes its place. All of it is told.
inline Reading Conclude(Host& host, bool good, const std::u16string& excuse) {
    Reading reading{good, host.TakeAllErrors()};
    if (!good && reading.errors.empty()) reading.errors = excuse + u"\n";
    TellErrors(reading.errors);
    return reading;
}
