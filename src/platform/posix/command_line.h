// A command line taken apart as a Windows program would do it.
#pragma once

#include <string>
#include <vector>

namespace platform::posix {

// The program comes first: up to its closing quote, or to the first blank. Behind it quotes group, twice
// the quote inside quotes is one, and a backslash escapes a quote or, in a row that ends in a quote,
// another backslash; elsewhere it is a character like any other.
std::vector<std::u16string> SplitCommandLine(const char16_t* line);

}  // namespace platform::posix
