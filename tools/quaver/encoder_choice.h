// Which encoder makes a file of a name's kind.
#pragma once

#include <string>

#include "host.h"

// The encoder whose extension the destination has; failing that, the encoder of the same name as a decoder that
// reads such files. Empty for none.
std::u16string EncoderFor(Host& host, const std::u16string& destination);
