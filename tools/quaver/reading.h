// Reading: how a question about one file went, for the commands that ask several.
#pragma once

#include <string>
#include <utility>

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

// What has come of it: `good` is the library's answer, `errors` what it said. It has no reason for some failures;
// `excuse` takes its place then. All of it is told.
inline Reading Conclude(bool good, std::u16string errors, const std::u16string& excuse) {
    if (!good && errors.empty()) errors = excuse + u"\n";
    TellErrors(errors);
    return {good, std::move(errors)};
}
