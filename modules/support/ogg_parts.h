// The parts of a chained Ogg file: streams that begin where those before them have ended.
#pragma once

#include <cstdint>
#include <vector>

#include "modules/support/file_reader.h"

struct clOggPart {
    std::uint64_t begin;  // in bytes
    std::uint64_t end;
};

// From the beginning of the file to its end without a gap, at least one; behind the first `most` none is
// looked for, and the last one then ends before the file does. A file that can't be read any further ends
// there.
std::vector<clOggPart> FindOggParts(clFileReader& file, std::size_t most);
