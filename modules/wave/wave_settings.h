// The encoder's settings text.
//
//     settings = [ "-header=" ( "auto" | "plain" | "extensible" | "rf64" ) ]        blanks around it are
//     allowed
//
// Anything else is refused rather than guessed at.
#pragma once

#include "foundation/wide_string.h"

enum class WaveHeader {
    automatic,   // the record as it is given
    plain,       // an extensible record is written in its plain form
    extensible,  // a plain record is written in its extensible form
    rf64         // as automatic, with sizes of 64 bits however short the file is
};

// Empty when `text` is good, and *header then holds what it says; otherwise what is wrong with it.
XString ParseWaveSettings(const char16_t* text, WaveHeader* header);
