// Anonymous pipes: what one end gets, the other gives, and the end of either shows at the other.
#include "platform/pipe.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "platform/error.h"
#include "platform/file.h"

using namespace platform;

namespace {

class Pipes : public testing::Test {
  protected:
    Pipes() { EXPECT_TRUE(CreatePipe(&mReader, &mWriter)); }
    ~Pipes() override {
        if (IsOpen(mReader)) CloseReader();
        if (IsOpen(mWriter)) CloseWriter();
    }

    void CloseReader() {
        EXPECT_TRUE(CloseHandle(mReader));
        mReader = kInvalidHandle;
    }
    void CloseWriter() {
        EXPECT_TRUE(CloseHandle(mWriter));
        mWriter = kInvalidHandle;
    }
    bool Write(const std::string& bytes) {
        std::uint32_t written = 0;
        const bool done =
            WriteFile(mWriter, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written);
        EXPECT_EQ(written, done ? bytes.size() : 0);
        return done;
    }
    std::string Read(std::uint32_t most) {
        std::string bytes(most, '\0');
        std::uint32_t read = 0;
        EXPECT_TRUE(ReadFile(mReader, bytes.data(), most, &read));
        return bytes.substr(0, read);
    }
    std::uint32_t Waiting() {
        std::uint32_t available = 77;
        EXPECT_TRUE(PeekNamedPipe(mReader, &available));
        return available;
    }

    Handle mReader = kInvalidHandle, mWriter = kInvalidHandle;
};

}  // namespace

TEST_F(Pipes, have_two_ends_that_differ) {
    EXPECT_TRUE(IsOpen(mReader));
    EXPECT_TRUE(IsOpen(mWriter));
    EXPECT_NE(mReader, mWriter);
}

TEST_F(Pipes, bytes_come_out_in_the_order_they_went_in) {
    EXPECT_TRUE(Write("first "));
    EXPECT_TRUE(Write(std::string("\0second", 7)));
    EXPECT_EQ(Read(4), "firs");
    EXPECT_EQ(Read(100), std::string("t \0second", 9));
}

TEST_F(Pipes, PeekNamedPipe_tells_what_a_read_would_find_and_takes_nothing) {
    EXPECT_EQ(Waiting(), 0u);
    EXPECT_TRUE(Write("seven b"));
    EXPECT_EQ(Waiting(), 7u);
    EXPECT_EQ(Waiting(), 7u);
    EXPECT_EQ(Read(3), "sev");
    EXPECT_EQ(Waiting(), 4u);
    EXPECT_EQ(Read(100), "en b");
    EXPECT_EQ(Waiting(), 0u);
}

TEST_F(Pipes, what_the_writer_left_comes_before_the_break) {
    EXPECT_TRUE(Write("left"));
    CloseWriter();
    EXPECT_EQ(Waiting(), 4u);
    EXPECT_EQ(Read(100), "left");
    std::uint32_t count = 77;
    EXPECT_FALSE(PeekNamedPipe(mReader, &count));
    EXPECT_EQ(GetLastError(), kErrorBrokenPipe);
    EXPECT_EQ(count, 0u);
    char byte;
    count = 77;
    EXPECT_FALSE(ReadFile(mReader, &byte, 1, &count));
    EXPECT_EQ(GetLastError(), kErrorBrokenPipe);
    EXPECT_EQ(count, 0u);
}

TEST_F(Pipes, writing_without_a_reader_fails_and_does_no_harm) {
    constexpr std::uint32_t kErrorNoData = 232;  // the other number that Windows has for it
    CloseReader();
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(Write("lost"));
        EXPECT_TRUE(GetLastError() == kErrorBrokenPipe || GetLastError() == kErrorNoData) << GetLastError();
    }
}

TEST_F(Pipes, a_full_pipe_holds_its_writer_until_there_is_room) {
    std::string sent;
    for (unsigned i = 0; i < 1000000; ++i) sent += static_cast<char>(i * 7 ^ i >> 8);
    std::thread writer([&] {
        EXPECT_TRUE(Write(sent));
        CloseWriter();
    });
    std::string got, bytes(10000, '\0');
    std::uint32_t read = 0;
    while (ReadFile(mReader, bytes.data(), 10000, &read)) got.append(bytes, 0, read);
    EXPECT_EQ(GetLastError(), kErrorBrokenPipe);
    writer.join();
    EXPECT_TRUE(got == sent) << got.size();
}

TEST_F(Pipes, a_writer_held_by_a_full_pipe_is_let_go_when_the_reader_leaves) {
    std::thread writer([&] {
        const std::string much(1000000, 'x');
        std::uint32_t written = 0;
        EXPECT_FALSE(WriteFile(mWriter, much.data(), 1000000, &written));
        EXPECT_LT(written, 1000000u);
    });
    while (Waiting() == 0) std::this_thread::yield();
    CloseReader();
    writer.join();
}

TEST_F(Pipes, reading_waits_for_the_first_byte) {
    std::thread writer([&] { EXPECT_TRUE(Write("b")); });
    EXPECT_EQ(Read(1), "b");
    writer.join();
}

TEST_F(Pipes, DuplicateHandle_moves_an_end_to_a_new_handle) {
    Handle moved = kInvalidHandle;
    EXPECT_TRUE(DuplicateHandle(mWriter, &moved));
    mWriter = moved;
    EXPECT_TRUE(Write("through the new one"));
    EXPECT_EQ(Read(100), "through the new one");
    // Had the old one stayed open, the pipe would not be broken now.
    CloseWriter();
    std::uint32_t available = 0;
    EXPECT_FALSE(PeekNamedPipe(mReader, &available));
    EXPECT_EQ(GetLastError(), kErrorBrokenPipe);
}

TEST_F(Pipes, nothing_can_be_made_of_no_handle) {
    std::uint32_t available = 77;
    EXPECT_FALSE(PeekNamedPipe(kNullHandle, &available));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_EQ(available, 0u);
    Handle moved = 77;
    EXPECT_FALSE(DuplicateHandle(kNullHandle, &moved));
    EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    EXPECT_FALSE(CloseHandle(kNullHandle));
    EXPECT_FALSE(CloseHandle(kInvalidHandle));
}
