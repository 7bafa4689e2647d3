// quaver convert: one file into another, watched to its end.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "exit_codes.h"
#include "wanted_format.h"

struct ConvertOptions {
    std::u16string source;
    std::u16string destination;
    std::u16string encoder;   // empty: chosen by the destination's extension
    std::u16string settings;  // the encoder's own text
    WantedFormat wanted;
    EffectList effects;                                           // in the order they run
    std::vector<std::pair<std::u16string, std::u16string>> tags;  // name and value
    bool carryTags = true;                                        // the source's tags go along
    bool overwrite = false;
    bool quiet = false;
};

ExitCode RunConvert(const ConvertOptions& options);
