// Time, and the periodic timer.
#include "platform/clock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

using namespace platform;

namespace {

using namespace std::chrono;

sys_time<milliseconds> Now() {
    return floor<milliseconds>(system_clock::now());
}

sys_time<milliseconds> TimeOf(const SystemTime& time) {
    const sys_days date = year(time.year) / month(time.month) / day(time.day);
    return date + hours(time.hour) + minutes(time.minute) + seconds(time.second) +
           milliseconds(time.millisecond);
}

struct Ticks {
    std::atomic<int> count = 0;
    std::atomic<bool> inside = false;

    static void Count(void* user) { ++static_cast<Ticks*>(user)->count; }
    // A tick that takes a while.
    static void Dwell(void* user) {
        Ticks& ticks = *static_cast<Ticks*>(user);
        ticks.inside = true;
        for (int i = 0; i < 3; ++i) Sleep(1);
        ++ticks.count;
        ticks.inside = false;
    }

    std::uint32_t Start(TimerCallback callback) { return timeSetEvent(10, 0, callback, this, kTimePeriodic); }
    // Until there were `more` ticks from here on.
    void Await(int more) const {
        for (const int end = count + more; count < end;) Sleep(1);
    }
};

}  // namespace

TEST(Time, the_tick_count_moves_on_and_wraps_like_any_unsigned) {
    const std::uint32_t start = GetTickCount();
    while (GetTickCount() == start) Sleep(1);
    EXPECT_LT(GetTickCount() - start, 0x80000000u);
}

TEST(Time, the_fine_counter_never_goes_back) {
    std::int64_t former = 0;
    ASSERT_TRUE(QueryPerformanceCounter(&former));
    for (int moves = 0; moves < 100;) {
        std::int64_t next = 0;
        ASSERT_TRUE(QueryPerformanceCounter(&next));
        ASSERT_GE(next, former);
        moves += next > former;
        former = next;
    }
}

TEST(Time, the_time_of_day_is_in_UTC_and_goes_to_milliseconds) {
    const auto before = Now();
    SystemTime time;
    GetSystemTime(&time);
    const auto after = Now();
    EXPECT_GE(TimeOf(time), before - 20ms);  // Windows may move its two clocks in different steps
    EXPECT_LE(TimeOf(time), after + 20ms);
}

TEST(Time, Sleep_comes_back) {
    for (const std::uint32_t milliseconds : {0u, 1u, 20u}) Sleep(milliseconds);
}

TEST(Timer, ticks_until_it_is_ended) {
    Ticks ticks, other;
    const std::uint32_t timer = ticks.Start(&Ticks::Count);
    ASSERT_NE(timer, 0u);
    ticks.Await(3);
    EXPECT_TRUE(timeKillEvent(timer));
    const int count = ticks.count;
    const std::uint32_t otherTimer = other.Start(&Ticks::Count);
    other.Await(5);
    EXPECT_TRUE(timeKillEvent(otherTimer));
    EXPECT_EQ(ticks.count, count);
}

TEST(Timer, many_tick_side_by_side) {
    std::vector<Ticks> all(100);
    std::vector<std::uint32_t> timers;
    // Windows has room for a handful in one process; those that it grants must tick.
    for (Ticks& ticks : all) timers.push_back(ticks.Start(&Ticks::Count));
    EXPECT_NE(timers.front(), 0u);
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (timers[i]) all[i].Await(2);
    }
    for (const std::uint32_t timer : timers) EXPECT_EQ(timeKillEvent(timer), timer != 0);
}

TEST(Timer, ending_it_waits_for_the_tick_that_runs) {
    for (int round = 0; round < 20; ++round) {
        Ticks ticks;
        const std::uint32_t timer = ticks.Start(&Ticks::Dwell);
        while (!ticks.inside) std::this_thread::yield();
        EXPECT_TRUE(timeKillEvent(timer));
        EXPECT_FALSE(ticks.inside);
    }
}

TEST(Timer, two_that_end_it_at_once_do_no_harm) {
    for (int round = 0; round < 20; ++round) {
        Ticks ticks;
        const std::uint32_t timer = ticks.Start(&Ticks::Dwell);
        ticks.Await(1);
        std::atomic<int> ended = 0;
        std::thread other([&] { ended += timeKillEvent(timer); });
        ended += timeKillEvent(timer);
        other.join();
        EXPECT_EQ(ended, 1);
        EXPECT_FALSE(ticks.inside);
    }
}

TEST(Timer, one_that_is_not_there_can_not_be_ended) {
    Ticks ticks;
    const std::uint32_t timer = ticks.Start(&Ticks::Count);
    EXPECT_TRUE(timeKillEvent(timer));
    EXPECT_FALSE(timeKillEvent(timer));
    EXPECT_FALSE(timeKillEvent(0));
}

TEST(Timer, threads_may_start_and_end_their_own_all_at_once) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 50; ++round) {
                Ticks ticks;
                const std::uint32_t timer = ticks.Start(&Ticks::Count);
                if (timer && round % 5 == 0) ticks.Await(1);
                EXPECT_EQ(timeKillEvent(timer), timer != 0);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}
