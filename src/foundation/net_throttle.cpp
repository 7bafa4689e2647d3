#include "foundation/net_throttle.h"

#include "platform/clock.h"

XNetThrottle gNetThrottles[2];

bool XNetThrottle::Wait(std::uint32_t milliseconds) {
    if (milliseconds != 0) platform::Sleep(milliseconds);
    return true;
}
