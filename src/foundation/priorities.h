// The four priorities of a run, and what each asks of the system.
//
// "High" lifts the child's main thread within the normal class and never the class itself: a conversion shall
// not starve the program that asked for it.
#pragma once

#include <cstdint>

#include "platform/process.h"

struct PriorityLevel {
    const char16_t* name;  // as the converter's own switch has it; null for the level that needs no switch
    std::int32_t thread;
    std::uint32_t processClass;
};

inline constexpr PriorityLevel kPriorityLevels[] = {
    {nullptr, platform::kThreadPriorityNormal, platform::kNormalPriorityClass},
    {u"low", platform::kThreadPriorityBelowNormal, platform::kNormalPriorityClass},
    {u"idle", platform::kThreadPriorityIdle, platform::kIdlePriorityClass},
    {u"high", platform::kThreadPriorityAboveNormal, platform::kNormalPriorityClass},
};

// Any number that is no level's counts as level 0.
inline const PriorityLevel& LevelOf(std::uint32_t priority) {
    return kPriorityLevels[priority < 4 ? priority : 0];
}
