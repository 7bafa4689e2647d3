// The depth stage: the samples of a block in another depth, or as float instead of integer.
//
// Every sample goes through a signed 32-bit integer: integers are brought to its upper end, floats multiplied
// by 2^31 and truncated toward zero. From there a narrower integer takes the upper bits, dropping the rest, and
// a float is the integer divided by 2^31. There is no rounding and no dither. Float is the only source that is
// limited, to [-1, 1 - 2^-31], and keeps at most 31 bits of fraction, also on the way from float to float. NaN
// becomes 0.
//
// The mixer and the resampler need more than that; sample_values.h is their way.
#pragma once

#include <cstdint>

#include "audio/audio_block.h"

// Whether the samples of `src` can be brought into containers of `bits`. Says nothing of the type that is
// wanted: any depth stays, integer and float PCM become 8, 16, 24 or 32 bits, and float alone 64.
bool CanConvertDepth(const clAudioBlock& src, std::uint32_t bits);

// Makes `dest` what `src` is in containers of `bits`, as float or as integer PCM; a depth that nobody knows
// reads and comes out as silence. False when the change is refused, and `dest` is as it was: what
// CanConvertDepth says no to, and float in other containers than 32 and 64 bits on either side. False too when
// there is no memory: then `dest` is not to be read.
bool ConvertDepth(clAudioBlock& dest, const clAudioBlock& src, std::uint32_t bits, bool toFloat);
