// The library's one thread, alive while there is something for it to do: periodic timers, and children
// whose handles were closed while they ran and whose end somebody has to take notice of.
#pragma once

#include <sys/types.h>

#include <cstdint>

#include "platform/clock.h"

namespace platform::posix {

// The identifier is 0 when there is no thread to be had.
std::uint32_t AddTimer(std::uint32_t periodMs, TimerCallback callback, void* user);

// False for an unknown identifier. No tick runs any more when this returns, unless it is called from one.
bool RemoveTimer(std::uint32_t timer);

// Takes over a running child of this process until its end. Without memory to note it
// down it stays the host's.
void AdoptChild(pid_t child) noexcept;

}  // namespace platform::posix
