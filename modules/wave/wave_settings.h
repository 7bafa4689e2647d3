// The encoder's settings text.
//
//     settings = [ "-header=" ( "auto" | "plain" | "extensible" | "rf64" ) ]
#pragma once

#include "modules/support/settings.h"

enum class WaveHeader : std::size_t {
    automatic,   // the record as it is given
    plain,       // an extensible record is written in its plain form
    extensible,  // a plain record is written in its extensible form
    rf64         // as automatic, with sizes of 64 bits however short the file is
};

inline constexpr const char16_t* kWaveHeaderWords[] = {u"auto", u"plain", u"extensible", u"rf64"};
inline constexpr clSettingRule kWaveHeader{.name = u"header", .words = kWaveHeaderWords};

// Empty when `text` is good, and *header then holds what it says; otherwise what is wrong with it.
XString ParseWaveSettings(const char16_t* text, WaveHeader* header);
