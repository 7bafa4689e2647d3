// The encoder's settings text.
//
//     settings = [ "-bits=" ( "source" | "8" | "16" | "24" | "32" | "float" | "double" ) ]
//                [ "-header=" ( "auto" | "plain" | "extensible" | "rf64" ) ]
#pragma once

#include "modules/support/settings.h"

enum class WaveHeader : std::size_t {
    automatic,   // the record as it is given
    plain,       // an extensible record is written in its plain form
    extensible,  // a plain record is written in its extensible form
    rf64         // as automatic, with sizes of 64 bits however short the file is
};

enum class WaveDepth : std::size_t { source, int8, int16, int24, int32, float32, float64 };

inline constexpr const char16_t* kWaveDepthWords[] = {u"source", u"8",     u"16",    u"24",
                                                      u"32",     u"float", u"double"};
inline constexpr clSettingRule kWaveDepth{.name = u"bits", .words = kWaveDepthWords};
inline constexpr const char16_t* kWaveHeaderWords[] = {u"auto", u"plain", u"extensible", u"rf64"};
inline constexpr clSettingRule kWaveHeader{.name = u"header", .words = kWaveHeaderWords};

struct WaveSettings {
    WaveDepth depth = WaveDepth::source;
    WaveHeader header = WaveHeader::automatic;
};

// Empty when `text` is good, and *settings then hold what it says; otherwise what is wrong with it.
XString ParseWaveSettings(const char16_t* text, WaveSettings* settings);
