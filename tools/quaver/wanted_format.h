// WantedFormat: what a user wants instead of what a file has, and the way there in a conversion.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "quavermill/types.h"

struct WantedFormat {
    std::uint32_t rate = 0;  // each 0 for what the file has
    std::uint16_t channels = 0, bits = 0;
};

using EffectList = std::vector<std::pair<std::u16string, std::u16string>>;  // name and settings

// The effects that bring audio of `source` there, in the order that loses least, around those of the user's own.
EffectList EffectsTo(const WantedFormat& wanted, const QvFormat& source, EffectList own);
