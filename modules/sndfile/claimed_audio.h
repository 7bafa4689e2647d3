// How much audio a file says it has.
//
// libsndfile takes what is there and keeps quiet about the rest, so a file that was cut looks like a shorter
// one. The headers are therefore read once more, only as far as the size of the audio.
#pragma once

#include <cstdint>
#include <optional>

#include "modules/support/file_reader.h"

struct clClaimedAudio {
    std::uint64_t end = 0;                // where the audio ends, which may be behind the file's end
    std::optional<std::uint64_t> frames;  // where the file counts them beside: AIFF does
};

// Of AIFF, AU, CAF and Wave64 files. None when the file leaves it open, can't be read that far, or is of
// another type.
std::optional<clClaimedAudio> ReadClaimedAudio(clFileReader& file);
