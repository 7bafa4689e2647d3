// How many handles and threads this process has, as far as a leak shows.
//
// Both systems give a new handle the lowest number that is free, so the number of a freshly made one stands
// higher after a leak. Threads are counted where the system shows them as a folder (the kernel does, under
// Wine too).
#pragma once

#include <cstddef>

#include "platform/types.h"

struct HandleGauge {
    HandleGauge();  // as things are now

    bool operator==(const HandleGauge&) const = default;

    platform::Handle freshest = 0;
    std::size_t threads = 0;
};
