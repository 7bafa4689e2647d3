// What WaitForSingleObject can wait for.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/posix/handle.h"

namespace platform::posix {

using Clock = std::chrono::steady_clock;  // CLOCK_MONOTONIC

// The moment at which waiting ends; none for ever.
using Deadline = std::optional<Clock::time_point>;
Deadline DeadlineIn(std::uint32_t milliseconds);

class Waitable : public HandleObject {
  public:
    // One of the results of WaitForSingleObject.
    virtual std::uint32_t Wait(const Deadline& deadline) = 0;
};

}  // namespace platform::posix
