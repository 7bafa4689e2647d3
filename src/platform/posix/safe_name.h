// Any text as one file name, told apart from any other text's.
#pragma once

#include <string>

namespace platform::posix {

// Letters, digits, '-', '_' and inner dots stay, every other byte becomes its percent form. The
// result is never hidden, never "." or "..", and ends in a hash when it would be too long to be a
// file name. Empty stays empty.
std::string SafeName(const std::string& text);

}  // namespace platform::posix
