// Where the audio of a FLAC file ends whose header leaves that open, as encoders do that write into a pipe.
#pragma once

#include <cstdint>
#include <optional>

#include "modules/support/file_reader.h"

// The number of the sample behind the file's last frame. `blockSize` is that of a stream in which all frames
// but the last have one size. None when the file does not end with a whole frame.
std::optional<std::uint64_t> FindEndOfLastFrame(clFileReader& file, std::uint32_t blockSize);
