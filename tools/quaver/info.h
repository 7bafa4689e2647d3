// quaver info: what audio files hold.
#pragma once

#include <string>
#include <vector>

#include "exit_codes.h"

struct InfoOptions {
    std::vector<std::u16string> files;
    bool json = false;
};

ExitCode RunInfo(const InfoOptions& options);
