// The platform's files are one file in memory, for targets that feed readers of files.
#pragma once

#include <cstdlib>
#include <string>

inline void Require(bool holds) {
    if (!holds) std::abort();
}

// The one file that is open at a time. Creating a file empties it.
extern std::string gFile;

void TakeOverFiles();
