#include "foundation/mutex.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/file.h"
#include "platform/synchronisation.h"
#include "support/faults.h"

namespace {

// What another thread finds: it takes the mutex when it is free, and gives it back.
bool IsFreeForOthers(const XMutex& mutex) {
    bool isFree = false;
    std::thread([&] {
        isFree = platform::WaitForSingleObject(mutex.Handle(), 0) == platform::kWaitObject;
        if (isFree) platform::ReleaseMutex(mutex.Handle());
    }).join();
    return isFree;
}

TEST(Mutex, Keeps_threads_apart) {
    XMutex mutex;
    int count = 0;  // no atomic: the mutex is all that keeps it
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int turn = 0; turn < 500; ++turn) {
                mutex.Lock();
                ++count;
                mutex.Unlock();
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(count, 2000);
}

TEST(Mutex, Is_released_as_often_as_its_holder_took_it) {
    XMutex mutex;
    EXPECT_FALSE(mutex.IsLocked());
    mutex.Lock();
    mutex.Lock();
    EXPECT_TRUE(mutex.IsLocked());
    EXPECT_FALSE(IsFreeForOthers(mutex));
    mutex.Unlock();
    EXPECT_FALSE(IsFreeForOthers(mutex));
    mutex.Unlock();
    EXPECT_FALSE(mutex.IsLocked());
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(Mutex, Waits_without_a_limit) {
    XMutex mutex;
    Faulty<platform::WaitForSingleObject> waits;
    waits.Replace([&](platform::Handle handle, std::uint32_t milliseconds) {
        EXPECT_EQ(handle, mutex.Handle());
        EXPECT_EQ(milliseconds, platform::kInfinite);
        return waits.Native(handle, milliseconds);
    });
    mutex.Lock();
    mutex.Unlock();
    EXPECT_EQ(waits.Calls(), 1);
}

TEST(Mutex, Runs_unlocked_where_the_platform_gives_none) {
    Faulty<platform::CreateMutexW> makings;
    makings.FailAlways();
    Faulty<platform::WaitForSingleObject> waits;
    Faulty<platform::ReleaseMutex> releases;
    Faulty<platform::CloseHandle> closes;
    {
        XMutex mutex;
        EXPECT_EQ(mutex.Handle(), platform::kNullHandle);
        mutex.Lock();
        EXPECT_FALSE(mutex.IsLocked());
        mutex.Unlock();
    }
    EXPECT_EQ(waits.Calls() + releases.Calls() + closes.Calls(), 0);
}

TEST(Mutex, Notes_that_it_existed_before_and_ignores_an_older_error) {
    platform::SetLastError(platform::kErrorAlreadyExists);
    const XMutex fresh;
    EXPECT_FALSE(fresh.AlreadyExisted());
    Faulty<platform::CreateMutexW> makings;
    makings.Replace([&] {
        const platform::Handle handle = makings.Native();
        platform::SetLastError(platform::kErrorAlreadyExists);
        return handle;
    });
    const XMutex known;
    EXPECT_TRUE(known.AlreadyExisted());
}

TEST(Mutex, Closes_its_handle_once) {
    Faulty<platform::CloseHandle> closes;
    { const XMutex mutex; }
    EXPECT_EQ(closes.Calls(), 1);
}

}  // namespace
