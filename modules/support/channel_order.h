// Which loudspeaker a channel is for, and in which order codecs put them.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "foundation/wide_string.h"

// Bits of a channel mask, in the order of WAVE files.
enum : std::uint32_t {
    kFrontLeft = 0x1,
    kFrontRight = 0x2,
    kFrontCentre = 0x4,
    kLowFrequency = 0x8,
    kBackLeft = 0x10,
    kBackRight = 0x20,
    kBackCentre = 0x100,
    kSideLeft = 0x200,
    kSideRight = 0x400
};

// The loudspeakers that so many channels stand for in FLAC, Vorbis and Opus alike when nothing else is said:
// mono, stereo, 3.0, quadraphonic, 5.0, 5.1, 6.1 and 7.1. 0 for other counts.
std::uint32_t UsualMask(std::uint32_t channels);

// Vorbis and Opus put 1 to 8 channels in an order of their own: place[i] is where their channel i stands in
// the order of WAVE files. Empty for other counts.
std::span<const std::uint8_t> VorbisOrder(std::uint32_t channels);

// "FL FR FC LFE"; a bit without a name gives "?".
XString LayoutText(std::uint32_t mask);
