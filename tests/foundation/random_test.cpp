#include "foundation/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <thread>
#include <vector>

#include "platform/clock.h"
#include "support/faults.h"

namespace {

constexpr std::uint32_t kSeeds[] = {0, 1, 5489, 0x80000000, 0xFFFFFFFF};

TEST(Random, Draws_the_words_of_the_standard_generator) {
    for (const std::uint32_t seed : kSeeds) {
        XRandom random(seed);
        std::mt19937 twin(seed);
        for (int i = 0; i < 3000; ++i) ASSERT_EQ(random.Next(0), twin()) << "seed " << seed << ", word " << i;
    }
}

// Below 2^21 the product of word and limit has no more bits than a float holds, so nothing is rounded.
TEST(Random, Scales_a_word_to_the_limit) {
    for (const std::uint32_t limit : {1u, 2u, 3u, 1000u, 9999u, 65536u, 0x1FFFFFu}) {
        XRandom random(limit);
        std::mt19937 twin(limit);
        for (int i = 0; i < 2000; ++i) ASSERT_EQ(random.Next(limit), (std::uint64_t{twin()} * limit) >> 32);
    }
}

TEST(Random, Never_reaches_the_limit) {
    for (const std::uint32_t limit : {1u, 2u, 9999u, 0x80000001u, 0xFFFFFFFFu}) {
        XRandom random(7);
        for (int i = 0; i < 20000; ++i) ASSERT_LT(random.Next(limit), limit);
    }
}

TEST(Random, Reaches_every_number_below_a_small_limit) {
    XRandom random(1);
    std::vector<int> counts(10);
    for (int i = 0; i < 1000; ++i) ++counts[random.Next(10)];
    EXPECT_EQ(std::count(counts.begin(), counts.end(), 0), 0);
}

// The year and the parts of the time of day, squared; the counter's halves; the ticks.
TEST(Random, Is_seeded_from_the_clock) {
    Faulty<platform::GetSystemTime> times;
    times.Replace([](platform::SystemTime* time) { *time = {2031, 12, 31, 23, 59, 58, 999}; });
    Faulty<platform::GetTickCount> ticks;
    ticks.Replace([] { return 0xFFFFFFF0u; });
    Faulty<platform::QueryPerformanceCounter> counters;
    counters.Replace([](std::int64_t* counter) {
        *counter = 0x0000001234567891;
        return true;
    });
    const std::uint32_t date = 2031 * 2031 + 23 * 23 + 59 * 59 + 58 * 58 + 999 * 999;
    XRandom random;
    std::mt19937 twin(date * 0x34567891u + 0x12 + 0xFFFFFFF0u);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(random.Next(0), twin());
    counters.FailAlways(false);
    XRandom plain;
    twin.seed(date + 0xFFFFFFF0u);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(plain.Next(0), twin());
}

TEST(Random, Gives_each_word_to_one_thread) {
    constexpr std::size_t kThreads = 4, kWords = 5000;
    XRandom random(99);
    std::vector<std::vector<std::uint32_t>> drawn(kThreads);
    std::vector<std::thread> threads;
    for (auto& words : drawn)
        threads.emplace_back([&] {
            for (std::size_t i = 0; i < kWords; ++i) words.push_back(random.Next(0));
        });
    for (std::thread& thread : threads) thread.join();
    std::vector<std::uint32_t> all, expected(kThreads * kWords);
    for (const auto& words : drawn) all.insert(all.end(), words.begin(), words.end());
    std::mt19937 twin(99);
    std::generate(expected.begin(), expected.end(), std::ref(twin));
    std::sort(all.begin(), all.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(all, expected);
}

TEST(Random, The_shared_one_is_one) {
    EXPECT_EQ(&XRandom::Shared(), &XRandom::Shared());
    EXPECT_LT(XRandom::Shared().Next(9999), 9999u);
}

}  // namespace
