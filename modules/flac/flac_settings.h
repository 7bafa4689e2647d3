// What the FLAC encoder can be told.
#pragma once

#include "modules/support/settings.h"

inline constexpr clSettingRule kFlacLevel{.name = u"compression-level", .least = 0, .most = 8, .standard = 5};
inline constexpr const char16_t* kFlacBitsWords[] = {u"24", u"16"};
inline constexpr clSettingRule kFlacBits{.name = u"bits", .words = kFlacBitsWords};
inline constexpr const char16_t* kFlacVerifyWords[] = {u"no", u"yes"};
inline constexpr clSettingRule kFlacVerify{.name = u"verify", .words = kFlacVerifyWords};
