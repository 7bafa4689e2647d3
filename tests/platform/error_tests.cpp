#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/error.h"

TEST(LastError, is_what_was_set) {
    platform::SetLastError(platform::kErrorDiskFull);
    EXPECT_EQ(platform::GetLastError(), platform::kErrorDiskFull);
    platform::SetLastError(platform::kErrorSuccess);
    EXPECT_EQ(platform::GetLastError(), platform::kErrorSuccess);
}

// Nothing but atomics stands between setting and asking: whatever else is called may set an error of its own.
TEST(LastError, belongs_to_its_thread) {
    std::atomic<bool> mineIsSet = false, theirsIsSet = false;
    std::thread other([&] {
        while (!mineIsSet) std::this_thread::yield();
        platform::SetLastError(platform::kErrorHandleEof);
        theirsIsSet = true;
    });
    platform::SetLastError(platform::kErrorDiskFull);
    mineIsSet = true;
    while (!theirsIsSet) std::this_thread::yield();
    EXPECT_EQ(platform::GetLastError(), platform::kErrorDiskFull);
    other.join();
}
