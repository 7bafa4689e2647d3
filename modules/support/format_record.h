// From what is known of a stream to the record that tells it to a host.
#pragma once

#include "modules/support/audio_stream.h"
#include "quavermill/types.h"

// A plain record wherever that says it all: up to two channels on their usual loudspeakers, every bit used.
QvFormatExtensible MakeFormatRecord(const clStreamFacts& facts);

inline std::uint32_t FrameBytes(const clStreamFacts& facts) {
    return std::uint32_t{facts.channels} * (facts.bits / 8u);
}
