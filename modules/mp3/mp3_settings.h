// What the MP3 encoder can be told: a bit rate or a quality, and the rest.
#pragma once

#include "modules/support/settings.h"

inline constexpr clSettingRule kMp3Bitrate{
    .name = u"bitrate", .least = 8, .most = 320};  // kbit/s, in MP3's own steps
inline constexpr clSettingRule kMp3Quality{
    .name = u"quality", .isWhole = false, .least = 0, .most = 9.999, .standard = 2};
inline constexpr const char16_t* kMp3ModeWords[] = {u"joint", u"stereo"};
inline constexpr clSettingRule kMp3Mode{.name = u"mode", .words = kMp3ModeWords};
inline constexpr clSettingRule kMp3Algorithm{.name = u"algorithm", .least = 0, .most = 9, .standard = 3};
