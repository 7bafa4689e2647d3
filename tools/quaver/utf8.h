// Between the library's UTF-16 and the UTF-8 of terminals and argument parsing. Lone surrogates, which file
// names may hold, take the three bytes that UTF-8 would give their number, and come back from them: nothing
// is lost on the way.
#pragma once

#include <string>
#include <string_view>

std::string ToUtf8(std::u16string_view text);
std::u16string FromUtf8(std::string_view text);  // a byte that fits nowhere becomes U+FFFD
