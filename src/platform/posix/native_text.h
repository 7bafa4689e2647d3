// Text on its way to and from the system's own 8-bit form.
#pragma once

#include <string>

namespace platform::posix {

std::string Narrow(const char16_t* wide);
std::u16string Wide(const char* narrow);

}  // namespace platform::posix
