// The Wave modules.
#pragma once

#include "support/codec/codec_modules.h"

inline constexpr std::uint32_t kLargestBlock = 65536;

struct WaveModules : CodecModules {
    WaveModules() : CodecModules(u"Wave", u"Wave") {}
};
