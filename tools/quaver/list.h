// quaver list: what modules there are.
#pragma once

#include "exit_codes.h"

struct ListOptions {
    bool json = false;
};

ExitCode RunList(const ListOptions& options);
