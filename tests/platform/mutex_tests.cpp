// The recursive mutex.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

using namespace platform;

namespace {

class Mutexes : public testing::Test {
  protected:
    Mutexes() { EXPECT_TRUE(mMutex); }
    ~Mutexes() override { EXPECT_TRUE(CloseHandle(mMutex)); }

    // Runs in a thread of its own, to its end.
    template <class Work>
    static void Elsewhere(Work work) {
        std::thread(work).join();
    }

    const Handle mMutex = CreateMutexW();
};

}  // namespace

TEST_F(Mutexes, nobody_holds_a_new_one) {
    EXPECT_FALSE(ReleaseMutex(mMutex));
    Elsewhere([this] {
        EXPECT_EQ(WaitForSingleObject(mMutex, 0), kWaitObject);
        EXPECT_TRUE(ReleaseMutex(mMutex));
    });
}

TEST_F(Mutexes, the_holder_may_take_it_again_and_releases_as_often) {
    const auto heldFor = [this](std::uint32_t milliseconds) {
        Elsewhere([=, this] { EXPECT_EQ(WaitForSingleObject(mMutex, milliseconds), kWaitTimeout); });
    };
    for (const std::uint32_t milliseconds : {0u, 1000u, kInfinite}) {
        EXPECT_EQ(WaitForSingleObject(mMutex, milliseconds), kWaitObject);
    }
    heldFor(0);
    EXPECT_TRUE(ReleaseMutex(mMutex));
    heldFor(5);
    EXPECT_TRUE(ReleaseMutex(mMutex));
    heldFor(0);
    EXPECT_TRUE(ReleaseMutex(mMutex));
    EXPECT_FALSE(ReleaseMutex(mMutex));
    Elsewhere([this] {
        EXPECT_EQ(WaitForSingleObject(mMutex, 0), kWaitObject);
        EXPECT_TRUE(ReleaseMutex(mMutex));
    });
}

TEST_F(Mutexes, only_the_holder_releases) {
    EXPECT_EQ(WaitForSingleObject(mMutex, 0), kWaitObject);
    Elsewhere([this] { EXPECT_FALSE(ReleaseMutex(mMutex)); });
    Elsewhere([this] { EXPECT_EQ(WaitForSingleObject(mMutex, 0), kWaitTimeout); });
    EXPECT_TRUE(ReleaseMutex(mMutex));
}

TEST_F(Mutexes, whoever_waits_gets_it_when_it_is_free) {
    EXPECT_EQ(WaitForSingleObject(mMutex, 0), kWaitObject);
    std::thread other([this] {
        EXPECT_EQ(WaitForSingleObject(mMutex, kInfinite), kWaitObject);
        EXPECT_TRUE(ReleaseMutex(mMutex));
    });
    EXPECT_TRUE(ReleaseMutex(mMutex));
    other.join();
}

TEST_F(Mutexes, one_holds_it_at_a_time) {
    int count = 0;  // plain on purpose
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 2000; ++round) {
                WaitForSingleObject(mMutex, kInfinite);
                ++count;
                ReleaseMutex(mMutex);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(count, 8000);
}

TEST_F(Mutexes, that_are_none_are_refused) {
    EXPECT_FALSE(ReleaseMutex(kNullHandle));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    const Handle event = CreateEventW(nullptr);
    EXPECT_FALSE(ReleaseMutex(event));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_TRUE(CloseHandle(event));
}
