// What the Opus encoder can be told.
#pragma once

#include "modules/support/settings.h"

inline constexpr clSettingRule kOpusBitrate{
    .name = u"bitrate", .least = 6, .most = 512};                // kbit/s; 0 is the library's
inline constexpr std::int64_t kOpusMostBitrateOfAChannel = 300;  // as far as the codec goes
inline constexpr const char16_t* kOpusModeWords[] = {u"vbr", u"cvbr", u"cbr"};
inline constexpr clSettingRule kOpusMode{.name = u"mode", .words = kOpusModeWords};
inline constexpr clSettingRule kOpusComplexity{.name = u"complexity", .least = 0, .most = 10, .standard = 10};
inline constexpr const char16_t* kOpusSignalWords[] = {u"auto", u"music", u"speech"};
inline constexpr clSettingRule kOpusSignal{.name = u"signal", .words = kOpusSignalWords};
