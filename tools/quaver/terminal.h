// What quaver says: its answers on standard output, everything else on standard error.
#pragma once

#include <string>

#include "exit_codes.h"

// Answers, as they stand. False when not all of it could be written.
bool Say(const std::u16string& text);

// One line for the person who waits.
void Tell(const std::u16string& line);

// Text of the library, whose lines have their ends already.
void TellErrors(const std::u16string& errors);

// Ends a command whose answers are complete: with `code`, or with kOutput, and a line that says so, when they
// could not be written.
ExitCode Concluded(ExitCode code, bool said);
