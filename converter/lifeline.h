// Lifeline: the two events that tie Quavercore to its host.
//
// The host gives a converter up that shows no sign of life for a minute. A thread of its own therefore
// signals the watchdog twice a second, but only while the work has come by within the last 20 seconds: a
// module that hangs must not be kept alive by a thread that does not know of it.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "platform/types.h"

class Lifeline {
  public:
    Lifeline() = default;
    Lifeline(const Lifeline&) = delete;
    Lifeline& operator=(const Lifeline&) = delete;
    ~Lifeline();

    // Opens both events and begins to signal. False when one is missing; *missing is then its name.
    bool Start(const std::u16string& cancelEvent, const std::u16string& watchdogEvent,
               std::u16string* missing);

    // The work comes by: before and after whatever may take long, and between blocks.
    void Beat();
    // True once the host has asked for the end.
    bool Cancelled() const;

  private:
    void Run();

    platform::Handle mCancel = platform::kNullHandle;
    platform::Handle mWatchdog = platform::kNullHandle;
    std::atomic<std::uint32_t> mLastBeat = 0;
    std::mutex mLock;
    std::condition_variable mWake;
    bool mEnding = false;
    std::thread mThread;
};
