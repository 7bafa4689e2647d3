// XNetThrottle: a place for pauses between network requests. Nothing in this library makes any.
#pragma once

#include <cstdint>

class XNetThrottle final {
  public:
    virtual void OnStart() {}
    virtual void OnStop() {}
    virtual bool Wait(std::uint32_t milliseconds);  // always true; 0 returns at once
};

extern XNetThrottle gNetThrottles[2];
