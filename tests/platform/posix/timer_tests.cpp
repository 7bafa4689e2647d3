// The one thread that all timers share.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

#include "platform/clock.h"
#include "platform/module.h"

using namespace platform;

namespace {

int CountThreads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<int>(std::distance(begin(tasks), end(tasks)));
}

struct Ticks {
    std::atomic<int> count = 0;
    std::atomic<pid_t> thread = 0;
    std::uint32_t timer = 0;

    std::uint32_t Start(TimerCallback callback, std::uint32_t periodMs = 10) {
        return timer = timeSetEvent(periodMs, 0, callback, this, kTimePeriodic);
    }
    static void Count(void* user) {
        static_cast<Ticks*>(user)->thread = gettid();
        ++static_cast<Ticks*>(user)->count;
    }
};

}  // namespace

TEST(PosixTimer, five_hundred_tick_on_one_thread_that_ends_with_the_last) {
    const int threads = CountThreads();
    std::vector<Ticks> all(500);
    for (Ticks& ticks : all) ASSERT_NE(ticks.Start(&Ticks::Count), 0u);
    for (const Ticks& ticks : all) {
        while (ticks.count < 3) Sleep(1);
        EXPECT_EQ(ticks.thread, all[0].thread);
    }
    EXPECT_EQ(CountThreads(), threads + 1);
    for (const Ticks& ticks : all) EXPECT_TRUE(timeKillEvent(ticks.timer));
    EXPECT_EQ(CountThreads(), threads);
}

TEST(PosixTimer, periods_may_differ) {
    Ticks fast, slow;
    fast.Start(&Ticks::Count, 1);
    slow.Start(&Ticks::Count, 25);
    while (slow.count < 3) Sleep(1);
    EXPECT_TRUE(timeKillEvent(slow.timer));
    EXPECT_TRUE(timeKillEvent(fast.timer));
    EXPECT_GT(fast.count, 0);
}

TEST(PosixTimer, what_makes_no_sense_is_refused) {
    EXPECT_EQ(timeSetEvent(0, 0, &Ticks::Count, nullptr, kTimePeriodic), 0u);
    EXPECT_EQ(timeSetEvent(10, 0, nullptr, nullptr, kTimePeriodic), 0u);
    EXPECT_EQ(timeSetEvent(10, 0, &Ticks::Count, nullptr, 0), 0u);
}

TEST(PosixTimer, ending_one_does_not_wait_for_the_tick_of_another) {
    struct Held {
        std::atomic<bool> inside = false, free = false;
        static void Tick(void* user) {
            Held& held = *static_cast<Held*>(user);
            held.inside = true;
            while (!held.free) Sleep(1);
        }
    } held;
    Ticks other;
    const std::uint32_t timer = timeSetEvent(10, 0, &Held::Tick, &held, kTimePeriodic);
    other.Start(&Ticks::Count);
    while (!held.inside) Sleep(1);
    EXPECT_TRUE(timeKillEvent(other.timer));  // comes back although the thread is held
    held.free = true;
    EXPECT_TRUE(timeKillEvent(timer));
}

TEST(PosixTimer, a_tick_may_start_and_end_timers_its_own_among_them) {
    struct Chain {
        std::atomic<int> links = 0;
        std::atomic<std::uint32_t> timer = 0;
        static void Tick(void* user) {
            Chain& chain = *static_cast<Chain*>(user);
            const std::uint32_t own = chain.timer;
            if (own == 0) return;  // the start has not told its number yet
            EXPECT_TRUE(timeKillEvent(own));
            chain.timer = ++chain.links < 20 ? timeSetEvent(1, 0, &Tick, user, kTimePeriodic) : 0;
        }
    } chain;
    const int threads = CountThreads();
    chain.timer = timeSetEvent(1, 0, &Chain::Tick, &chain, kTimePeriodic);
    while (chain.links < 20 || chain.timer != 0) Sleep(1);
    while (CountThreads() > threads) Sleep(1);  // with nobody to join it the thread ends by itself
    Ticks again;
    ASSERT_NE(again.Start(&Ticks::Count), 0u);
    while (again.count < 1) Sleep(1);
    EXPECT_TRUE(timeKillEvent(again.timer));
}

// The module has the seam's code, and so a timer thread, of its own.
TEST(PosixTimer, a_library_that_is_unloaded_takes_its_thread_along) {
    char16_t self[4096];
    GetModuleFileNameW(nullptr, self, 4096);
    const std::u16string path = self;
    const std::u16string module = path.substr(0, path.rfind(u'/')) + u"/modules/plain/ticking.so";
    const int threads = CountThreads();
    for (int round = 0; round < 20; ++round) {
        const ModuleHandle library = LoadLibraryW(module.c_str());
        ASSERT_TRUE(library);
        const auto start =
            reinterpret_cast<void (*)(std::atomic<int>*)>(GetProcAddress(library, "StartTicking"));
        ASSERT_TRUE(start);
        std::atomic<int> ticks = 0;
        start(&ticks);
        while (ticks < round) Sleep(1);
        EXPECT_EQ(CountThreads(), threads + 1);
        EXPECT_TRUE(FreeLibrary(library));
        EXPECT_EQ(CountThreads(), threads);
    }
}
