// The depth stage: the samples of a block in another depth, or as float instead of integer.
//
// It passes audio through whose depth and type are those asked for; any other change is refused.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"

// Makes `dest` what `src` is in containers of `bits`, as float or as integer PCM. False when the change is
// refused, and `dest` is as it was, or when there is no memory.
bool ConvertDepth(clAudioBlock& dest, const clAudioBlock& src, std::uint32_t bits, bool toFloat);
