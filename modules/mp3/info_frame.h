// The first frame of most MP3 files holds no sound but a description of the file: how many frames and bytes
// there are, which program wrote them, and how many samples at both ends were never in the original.
#pragma once

#include <cstdint>
#include <optional>

#include "foundation/wide_string.h"
#include "modules/support/file_reader.h"

struct clInfoFrame {
    std::uint64_t position = 0;  // of the frame in the file
    bool isVariable = false;     // the bit rate: "Xing" rather than "Info"
    std::uint32_t frames = 0;    // of sound; 0 when not told
    std::uint32_t bytes = 0;     // from this frame to the end of the last; 0 when not told
    XString encoder;             // "LAME3.100", empty when not told
    std::uint32_t delay = 0;     // samples in front,
    std::uint32_t padding = 0;   // and behind the sound
};

// Reads it; none when the file has none.
std::optional<clInfoFrame> ReadInfoFrame(clFileReader& file);
