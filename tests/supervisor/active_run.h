// A run under way: its clock stands at the moment of its start, and its child, one of converter_double.cpp,
// is there.
#pragma once

#include <gtest/gtest.h>

#include "platform/file.h"
#include "platform/synchronisation.h"
#include "supervisor/owner.h"

// A named event as it stands now. One that is auto-reset is left reset.
inline bool IsSet(const std::u16string& event) {
    const platform::Handle handle = platform::OpenEventW(event.c_str());
    const bool set = platform::WaitForSingleObject.Native()(handle, 0) == platform::kWaitObject;
    platform::CloseHandle(handle);
    return set;
}

struct ActiveRun {
    explicit ActiveRun(const char* child, std::uint32_t startTick = TestClock::Somewhere())
        : clock(startTick),
          launch(child,
                 ready.As("ready") + u" " + go.As("go") + u" " + bye.As("bye") + u" " + gone.As("gone")) {
        owner.Create();
        owner.Start();
        clock.Hold();
        EXPECT_EQ(owner.encoder.Running(), 1u);
        EXPECT_FALSE(owner.encoder.Finished());
    }
    // Whatever a test leaves undone, its child does not outlive it for long.
    ~ActiveRun() {
        if (IsRunning()) platform::ResumeThread.Native()(launch.child.thread);
        bye.Set();
        go.Set();
    }

    bool IsRunning() const { return owner.encoder.Running() == 1; }
    bool CancelUntilEnd() {
        return owner.PollUntil([this] { return owner.encoder.Finished(); }, false, true);
    }
    platform::Handle OpenWatchdog() const {
        return platform::OpenEventW(launch.Value(u" -evtwatchdog").c_str());
    }
    void SignLife() const {
        const platform::Handle event = OpenWatchdog();
        EXPECT_TRUE(platform::SetEvent(event));
        platform::CloseHandle(event);
    }

    TestClock clock;
    Signal ready, go, bye, gone;
    Launch launch;
    Owner owner;
};
