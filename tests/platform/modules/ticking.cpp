// A module that has timers and does not end them.
#include <atomic>

#include "platform/clock.h"

extern "C" __attribute__((visibility("default"))) void StartTicking(std::atomic<int>* ticks);

void StartTicking(std::atomic<int>* ticks) {
    for (int i = 0; i < 10; ++i) {
        platform::timeSetEvent(
            1, 0, [](void* user) { ++*static_cast<std::atomic<int>*>(user); }, ticks,
            platform::kTimePeriodic);
    }
}
