// A name that no other test program, running or killed before, gives to anything.
#pragma once

#include <random>
#include <string>

inline std::u16string UniqueName(const char* what) {
    std::random_device source;
    std::string name = std::string("qv-test-") + what;
    for (int i = 0; i < 3; ++i) name += "-" + std::to_string(source());
    return {name.begin(), name.end()};
}
