// What the Vorbis encoder can be told: one of the two.
#pragma once

#include "modules/support/settings.h"

inline constexpr clSettingRule kVorbisQuality{
    .name = u"quality", .isWhole = false, .least = -1, .most = 10, .standard = 5};
inline constexpr clSettingRule kVorbisBitrate{
    .name = u"bitrate", .least = 32, .most = 500};  // kbit/s on average
