// quaver decode: a file's audio, as a WAVE file or as bare samples.
#pragma once

#include <cstdint>
#include <string>

#include "exit_codes.h"

struct DecodeOptions {
    std::u16string file;
    std::u16string output;  // empty: standard output
    bool raw = false;
    std::uint32_t rate = 0;  // each 0 for what the file has
    std::uint16_t channels = 0, bits = 0;
    bool overwrite = false;
    bool quiet = false;
};

ExitCode RunDecode(const DecodeOptions& options);
