// The files behind named events: whose they are, and that none stays.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

#include "platform/clock.h"
#include "platform/error.h"
#include "platform/owned_event.h"
#include "platform/program.h"
#include "platform/running_child.h"
#include "platform/unique_name.h"
#include "support/child.h"

using namespace platform;

namespace {

std::string FileOf(const std::u16string& name) {
    return "/dev/shm/quavermill-" + std::to_string(geteuid()) + "-" + std::string(name.begin(), name.end());
}

bool Exists(const std::string& path) {
    return access(path.c_str(), F_OK) == 0;
}

}  // namespace

TEST(PosixEvents, their_file_is_the_users_alone_and_goes_with_them) {
    const auto name = UniqueName("event");
    OwnedEvent event = Create(name);
    struct stat state {};
    ASSERT_EQ(stat(FileOf(name).c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 07777, 0600u);
    EXPECT_EQ(state.st_uid, geteuid());
    event.Close();
    EXPECT_FALSE(Exists(FileOf(name)));
}

TEST(PosixEvents, a_link_or_a_file_open_to_others_is_not_taken_for_one) {
    const auto name = UniqueName("event"), target = UniqueName("target");
    ASSERT_EQ(symlink(FileOf(target).c_str(), FileOf(name).c_str()), 0);
    EXPECT_EQ(CreateEventW(name.c_str()), kNullHandle);
    EXPECT_EQ(OpenEventW(name.c_str()), kNullHandle);
    EXPECT_FALSE(Exists(FileOf(target)));
    unlink(FileOf(name).c_str());
    std::ofstream(FileOf(name)) << "1234";
    ASSERT_EQ(chmod(FileOf(name).c_str(), 0666), 0);
    EXPECT_EQ(CreateEventW(name.c_str()), kNullHandle);
    EXPECT_EQ(GetLastError(), kErrorAccessDenied);
    unlink(FileOf(name).c_str());
}

TEST(PosixEvents, what_is_left_of_killed_processes_is_taken_over_as_new) {
    const auto name = UniqueName("event");
    std::ofstream(FileOf(name)) << "left";
    ASSERT_EQ(chmod(FileOf(name).c_str(), 0600), 0);
    {
        const OwnedEvent event = Create(name);
        ASSERT_TRUE(event);
        EXPECT_EQ(GetLastError(), kErrorSuccess);
        EXPECT_FALSE(event.IsSet());
    }
    std::ofstream(FileOf(name)) << "";
    ASSERT_EQ(chmod(FileOf(name).c_str(), 0600), 0);
    EXPECT_EQ(OpenEventW(name.c_str()), kNullHandle);
    EXPECT_EQ(GetLastError(), kErrorFileNotFound);
    EXPECT_FALSE(Exists(FileOf(name)));
}

CHILD_PROGRAM(use_any_event) {
    return Create(UniqueName("event")) ? 0 : 1;
}

TEST(PosixEvents, what_is_left_of_killed_processes_is_swept_up_by_the_next) {
    const auto name = UniqueName("left"), alive = UniqueName("alive");
    std::ofstream(FileOf(name)) << "left";
    ASSERT_EQ(chmod(FileOf(name).c_str(), 0600), 0);
    const OwnedEvent event = Create(alive);
    EXPECT_EQ(RunningChild("use_any_event").Finish(), 0u);
    EXPECT_FALSE(Exists(FileOf(name)));
    EXPECT_TRUE(Exists(FileOf(alive)));
}

TEST(PosixEvents, a_long_or_unusual_name_is_one_file_name) {
    for (const auto& name : {std::u16string(3000, u'/'), UniqueName("event") + u"/../x",
                             std::u16string(u".."), UniqueName("event") + std::u16string(230, u'y')}) {
        const OwnedEvent event = Create(name);
        EXPECT_TRUE(event) << GetLastError();
    }
}

// Threads and processes that make and drop one event over and over. `argv[0]` is its name.
CHILD_PROGRAM(churn_event) {
    const std::u16string name(argv[0], argv[0] + std::char_traits<char>::length(argv[0]));
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 400; ++round) {
                const OwnedEvent event = Create(name), again(OpenEventW(name.c_str()));
                failures += !event || !again || !SetEvent(event) || !again.IsSet();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    return failures ? 1 : 0;
}

TEST(PosixEvents, holders_that_come_and_go_always_share_the_one_that_is_there) {
    const auto name = UniqueName("event");
    {
        RunningChild one("churn_event", name), two("churn_event", name), three("churn_event", name);
        EXPECT_EQ(one.Finish(), 0u);
        EXPECT_EQ(two.Finish(), 0u);
        EXPECT_EQ(three.Finish(), 0u);
    }
    EXPECT_FALSE(Exists(FileOf(name)));
}

TEST(PosixEvents, killing_holders_at_any_moment_leaves_a_name_that_works) {
    const auto name = UniqueName("event");
    for (int round = 0; round < 20; ++round) {
        RunningChild one("churn_event", name), two("churn_event", name);
        Sleep(static_cast<std::uint32_t>(10 + round * 3));
    }
    OwnedEvent event = Create(name);
    EXPECT_EQ(GetLastError(), kErrorSuccess);
    EXPECT_FALSE(event.IsSet());
    event.Close();
    EXPECT_FALSE(Exists(FileOf(name)));
}

TEST(PosixEvents, a_set_that_is_taken_back_at_once_still_releases_who_waited) {
    const OwnedEvent event(CreateEventW(nullptr));
    for (int round = 0; round < 20; ++round) {
        std::atomic<pid_t> waiter = 0;
        std::thread thread([&] {
            waiter = gettid();
            EXPECT_EQ(WaitForSingleObject(event, kInfinite), kWaitObject);
        });
        while (waiter == 0) std::this_thread::yield();
        // Until the kernel says that the thread sleeps; it has nothing else to sleep on.
        const std::string file = "/proc/self/task/" + std::to_string(waiter) + "/stat";
        for (std::string line; line.find(") S ") == line.npos;) {
            std::ifstream stat(file);
            std::getline(stat, line);
        }
        EXPECT_TRUE(SetEvent(event));
        EXPECT_TRUE(ResetEvent(event));
        thread.join();
    }
}
