// quaver decode: a file's audio, as a WAVE file or as bare samples.
#pragma once

#include <string>

#include "exit_codes.h"
#include "wanted_format.h"

struct DecodeOptions {
    std::u16string file;
    std::u16string output;  // empty: standard output
    bool raw = false;
    WantedFormat wanted;
    bool overwrite = false;
    bool quiet = false;
};

ExitCode RunDecode(const DecodeOptions& options);
