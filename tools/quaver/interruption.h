// Interruption: Ctrl-C and requests to end, as something a loop can look at.
#pragma once

namespace interruption {

// From here on the first interruption only raises the flag; the second ends the program at once, and its
// converter with it.
void Watch();
bool Raised();

}  // namespace interruption
