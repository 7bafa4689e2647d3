// Pipes beside the host's own signals and descriptors.
#include "platform/pipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "platform/error.h"
#include "platform/file.h"
#include "platform/running_child.h"
#include "support/child.h"

using namespace platform;

namespace {

std::atomic<int> gSignals = 0;

bool IsPending(int number) {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, number) == 1;
}

bool IsBlocked(int number) {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return sigismember(&blocked, number) == 1;
}

void Block(int how) {
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(how, &pipe, nullptr);
}

// The host's own way with SIGPIPE for the length of a scope.
class HostHandler {
  public:
    HostHandler() {
        struct sigaction action {};
        action.sa_handler = [](int) { ++gSignals; };
        sigaction(SIGPIPE, &action, &mFormer);
        gSignals = 0;
    }
    ~HostHandler() { sigaction(SIGPIPE, &mFormer, nullptr); }
    HostHandler(const HostHandler&) = delete;
    HostHandler& operator=(const HostHandler&) = delete;

  private:
    struct sigaction mFormer {};
};

void WriteWithoutReader() {
    Handle reader = kInvalidHandle, writer = kInvalidHandle;
    ASSERT_TRUE(CreatePipe(&reader, &writer));
    EXPECT_TRUE(CloseHandle(reader));
    std::uint32_t written = 77;
    EXPECT_FALSE(WriteFile(writer, "x", 1, &written));
    EXPECT_EQ(GetLastError(), kErrorBrokenPipe);
    EXPECT_EQ(written, 0u);
    EXPECT_TRUE(CloseHandle(writer));
}

}  // namespace

TEST(PosixPipes, a_broken_one_raises_no_signal_in_the_host) {
    const HostHandler handler;
    WriteWithoutReader();
    EXPECT_EQ(gSignals, 0);
    EXPECT_FALSE(IsBlocked(SIGPIPE));
    EXPECT_FALSE(IsPending(SIGPIPE));
    raise(SIGPIPE);
    EXPECT_EQ(gSignals, 1) << "the host's handler is still its own";
}

TEST(PosixPipes, a_broken_one_leaves_no_signal_behind_where_the_host_blocks_it) {
    Block(SIG_BLOCK);
    WriteWithoutReader();
    EXPECT_TRUE(IsBlocked(SIGPIPE));
    EXPECT_FALSE(IsPending(SIGPIPE));
    Block(SIG_UNBLOCK);
}

TEST(PosixPipes, a_signal_that_waited_before_still_waits_after) {
    const HostHandler handler;
    Block(SIG_BLOCK);
    raise(SIGPIPE);
    WriteWithoutReader();
    EXPECT_TRUE(IsPending(SIGPIPE));
    Block(SIG_UNBLOCK);
    EXPECT_EQ(gSignals, 1);
}

TEST(PosixPipes, a_signal_of_the_host_interrupts_neither_reading_nor_writing) {
    Handle reader = kInvalidHandle, writer = kInvalidHandle;
    ASSERT_TRUE(CreatePipe(&reader, &writer));
    struct sigaction action {
    }, former{};
    action.sa_handler = [](int) { ++gSignals; };  // without SA_RESTART
    sigaction(SIGUSR1, &action, &former);
    gSignals = 0;
    std::string got;
    std::thread readerThread([&] {
        char bytes[1000];
        std::uint32_t read = 0;
        while (ReadFile(reader, bytes, sizeof bytes, &read)) got.append(bytes, read);
    });
    std::thread writerThread([&] {
        const std::string much(1 << 20, 'x');
        std::uint32_t written = 0;
        EXPECT_TRUE(WriteFile(writer, much.data(), 1 << 20, &written));
        while (gSignals < 100) std::this_thread::yield();
        EXPECT_TRUE(CloseHandle(writer));
    });
    while (gSignals < 100) {
        pthread_kill(readerThread.native_handle(), SIGUSR1);
        pthread_kill(writerThread.native_handle(), SIGUSR1);
        std::this_thread::yield();
    }
    writerThread.join();
    readerThread.join();
    EXPECT_EQ(got.size(), 1u << 20);
    EXPECT_TRUE(CloseHandle(reader));
    sigaction(SIGUSR1, &former, nullptr);
}

TEST(PosixPipes, a_non_blocking_end_waits_like_any_other) {
    Handle reader = kInvalidHandle, writer = kInvalidHandle;
    ASSERT_TRUE(CreatePipe(&reader, &writer));
    for (const Handle end : {reader, writer}) fcntl(static_cast<int>(end), F_SETFL, O_NONBLOCK);
    std::thread thread([&, much = std::string(1 << 20, 'x')] {
        std::uint32_t written = 0;
        EXPECT_TRUE(WriteFile(writer, much.data(), 1 << 20, &written));
        EXPECT_TRUE(CloseHandle(writer));
    });
    std::size_t total = 0;
    char bytes[1000];
    std::uint32_t read = 0;
    while (ReadFile(reader, bytes, sizeof bytes, &read)) total += read;
    thread.join();
    EXPECT_EQ(total, 1u << 20);
    EXPECT_TRUE(CloseHandle(reader));
}

TEST(PosixPipes, no_end_survives_an_exec) {
    Handle reader = kInvalidHandle, writer = kInvalidHandle, moved = kInvalidHandle;
    ASSERT_TRUE(CreatePipe(&reader, &writer));
    ASSERT_TRUE(DuplicateHandle(writer, &moved));
    for (const Handle end : {reader, moved}) {
        EXPECT_EQ(fcntl(static_cast<int>(end), F_GETFD), FD_CLOEXEC);
        EXPECT_TRUE(CloseHandle(end));
    }
}

// Without its standard streams it still gives none of their numbers away.
CHILD_PROGRAM(make_handles_without_streams) {
    const int report = fcntl(2, F_DUPFD, 50);
    for (int number = 0; number < 10; ++number) close(number);
    Handle reader = 0, writer = 0;
    CreatePipe(&reader, &writer);
    const Handle file = CreateFileW(u"/dev/null", kGenericRead, 0, kOpenExisting, 0);
    const bool free = reader > 2 && writer > 2 && file > 2 && fcntl(0, F_GETFD) < 0 &&
                      fcntl(1, F_GETFD) < 0 && fcntl(2, F_GETFD) < 0;
    if (write(report, free ? "free" : "taken", free ? 4 : 5) < 0) return 1;
    _exit(0);
}

TEST(PosixPipes, the_three_standard_numbers_are_never_a_handle) {
    RunningChild child("make_handles_without_streams");
    EXPECT_EQ(child.Finish(), 0u);
    EXPECT_EQ(child.Errors(), "free");
}

TEST(PosixPipes, the_programs_own_streams_can_not_be_closed) {
    EXPECT_FALSE(CloseHandle(1));
    EXPECT_FALSE(CloseHandle(2));
    EXPECT_GE(fcntl(1, F_GETFD), 0);
    EXPECT_GE(fcntl(2, F_GETFD), 0);
}
