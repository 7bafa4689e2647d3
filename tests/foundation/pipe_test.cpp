#include "foundation/pipe.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/file.h"
#include "platform/pipe.h"
#include "support/allocation_faults.h"
#include "support/faults.h"

namespace {

void Send(platform::Handle end, const std::string& bytes) {
    std::uint32_t written = 0;
    ASSERT_TRUE(platform::WriteFile(end, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written));
    ASSERT_EQ(written, bytes.size());
}

std::string Drain(XPipe& pipe, bool expectFailure = false) {
    bool failed = !expectFailure;
    const clByteStore* store = pipe.ReadAvailable(&failed);
    EXPECT_EQ(failed, expectFailure);
    return std::string(reinterpret_cast<const char*>(store->Data()), store->Cursor());
}

TEST(Pipe, A_new_one_is_closed) {
    XPipe pipe;
    EXPECT_EQ(pipe.ReadHandle(), platform::kInvalidHandle);
    EXPECT_EQ(pipe.WriteHandle(), platform::kInvalidHandle);
    EXPECT_EQ(pipe.DetachWriteEnd(), platform::kInvalidHandle);
    EXPECT_EQ(Drain(pipe, true), "");
}

TEST(Pipe, ReadAvailable_returns_at_once_from_an_empty_one) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    bool failed = true;
    int allocations = 0;
    const clByteStore* store = nullptr;
    {
        const AllocationFaults memory;
        store = pipe.ReadAvailable(&failed);
        allocations = memory.Calls();
    }
    EXPECT_FALSE(failed);
    EXPECT_EQ(store->Cursor(), 0u);
    EXPECT_EQ(allocations, 0);
}

TEST(Pipe, ReadAvailable_takes_all_that_waits_and_forgets_what_it_gave_before) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Send(pipe.WriteHandle(), "one");
    Send(pipe.WriteHandle(), "two");
    EXPECT_EQ(Drain(pipe), "onetwo");
    EXPECT_EQ(Drain(pipe), "");
    Send(pipe.WriteHandle(), std::string(3000, 'x'));
    EXPECT_EQ(Drain(pipe), std::string(3000, 'x'));
}

TEST(Pipe, A_new_block_takes_three_times_what_waits_and_a_large_one_stays) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    bool failed = true;
    Send(pipe.WriteHandle(), std::string(100, 'x'));
    const clByteStore* store = pipe.ReadAvailable(&failed);
    EXPECT_EQ(store->Size(), 300u);
    EXPECT_EQ(store->Capacity(), 300u);
    Send(pipe.WriteHandle(), std::string(250, 'y'));
    pipe.ReadAvailable(&failed);
    EXPECT_EQ(store->Size(), 250u);
    EXPECT_EQ(store->Capacity(), 300u);
    Send(pipe.WriteHandle(), std::string(301, 'z'));
    pipe.ReadAvailable(&failed);
    EXPECT_EQ(store->Capacity(), 903u);
}

TEST(Pipe, What_comes_while_it_is_drained_is_taken_too) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Send(pipe.WriteHandle(), std::string(10, 'a'));
    Faulty<platform::PeekNamedPipe> peeks;
    peeks.Replace([&](platform::Handle end, std::uint32_t* available) {
        if (peeks.Calls() == 2) Send(pipe.WriteHandle(), std::string(15, 'b'));
        if (peeks.Calls() == 3) Send(pipe.WriteHandle(), std::string(500, 'c'));
        return peeks.Native(end, available);
    });
    EXPECT_EQ(Drain(pipe), std::string(10, 'a') + std::string(15, 'b') + std::string(500, 'c'));
    EXPECT_EQ(peeks.Calls(), 4);
}

TEST(Pipe, What_its_writers_left_comes_with_the_news_that_they_are_gone) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    const platform::Handle end = pipe.DetachWriteEnd();
    Send(end, "last words");
    ASSERT_TRUE(platform::CloseHandle(end));
    EXPECT_EQ(Drain(pipe, true), "last words");
    EXPECT_EQ(Drain(pipe, true), "");
}

TEST(Pipe, Is_written_through_its_writer_which_asks_nothing_of_the_user) {
    XPipe pipe;
    EXPECT_FALSE(pipe.Writer().IsOpen());
    ASSERT_TRUE(pipe.Create());
    EXPECT_TRUE(pipe.Writer().Write("text", 4));
    EXPECT_FALSE(pipe.Writer().mShowErrors);
    EXPECT_FALSE(pipe.Writer().mOwnsHandle);
    EXPECT_EQ(Drain(pipe), "text");
    pipe.Close();
    EXPECT_FALSE(pipe.Writer().IsOpen());
}

TEST(Pipe, DetachWriteEnd_gives_the_end_away_once) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    const platform::Handle end = pipe.DetachWriteEnd();
    ASSERT_NE(end, platform::kInvalidHandle);
    EXPECT_EQ(pipe.WriteHandle(), platform::kInvalidHandle);
    EXPECT_FALSE(pipe.Writer().IsOpen());
    EXPECT_EQ(pipe.DetachWriteEnd(), platform::kInvalidHandle);
    Send(end, "text");
    EXPECT_EQ(Drain(pipe), "text");
    EXPECT_TRUE(platform::CloseHandle(end));
}

// The platform closes the source of a duplication in any case.
TEST(Pipe, DetachWriteEnd_has_lost_the_end_also_when_it_fails) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Faulty<platform::DuplicateHandle> duplications;
    duplications.Replace([](platform::Handle source, platform::Handle*) {
        platform::CloseHandle(source);
        return false;
    });
    EXPECT_EQ(pipe.DetachWriteEnd(), platform::kInvalidHandle);
    EXPECT_EQ(pipe.WriteHandle(), platform::kInvalidHandle);
    EXPECT_EQ(pipe.DetachWriteEnd(), platform::kInvalidHandle);
    EXPECT_EQ(duplications.Calls(), 1);
    EXPECT_EQ(Drain(pipe, true), "");
    Faulty<platform::CloseHandle> closes;
    pipe.Close();
    EXPECT_EQ(closes.Calls(), 1) << "the read end alone";
}

TEST(Pipe, Create_closes_what_was_held_before) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Send(pipe.WriteHandle(), "old");
    Faulty<platform::CloseHandle> closes;
    ASSERT_TRUE(pipe.Create());
    EXPECT_EQ(closes.Calls(), 2);
    EXPECT_EQ(Drain(pipe), "");
    pipe.Close();
    EXPECT_EQ(closes.Calls(), 4);
    pipe.Close();
    EXPECT_EQ(closes.Calls(), 4);
    EXPECT_EQ(Drain(pipe, true), "");
}

TEST(Pipe, A_refused_one_stays_closed) {
    Faulty<platform::CreatePipe> creations;
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    creations.FailCall(1);
    EXPECT_FALSE(pipe.Create());
    EXPECT_EQ(pipe.ReadHandle(), platform::kInvalidHandle);
    EXPECT_EQ(pipe.WriteHandle(), platform::kInvalidHandle);
    EXPECT_EQ(pipe.DetachWriteEnd(), platform::kInvalidHandle);
    EXPECT_EQ(Drain(pipe, true), "");
}

TEST(Pipe, A_read_that_fails_is_told_and_keeps_what_came_before) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Send(pipe.WriteHandle(), "first");
    Faulty<platform::PeekNamedPipe> peeks;
    peeks.Replace([&](platform::Handle end, std::uint32_t* available) {
        if (peeks.Calls() == 2) Send(pipe.WriteHandle(), "second");
        return peeks.Native(end, available);
    });
    Faulty<platform::ReadFile> reads;
    reads.FailCall(2, false, platform::kErrorAccessDenied);
    EXPECT_EQ(Drain(pipe, true), "first");
}

TEST(Pipe, A_look_that_fails_is_told) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Send(pipe.WriteHandle(), "text");
    Faulty<platform::PeekNamedPipe> peeks;
    peeks.FailCall(1);
    EXPECT_EQ(Drain(pipe, true), "");
    EXPECT_EQ(Drain(pipe), "text");
}

TEST(Pipe, Without_memory_it_fails_and_what_waits_goes_on_waiting) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Send(pipe.WriteHandle(), "text");
    bool failed = false;
    std::uint32_t cursor = 1;
    {
        AllocationFaults memory;
        memory.FailFrom(1);
        cursor = pipe.ReadAvailable(&failed)->Cursor();
    }
    EXPECT_TRUE(failed);
    EXPECT_EQ(cursor, 0u);
    EXPECT_EQ(Drain(pipe), "text");
}

TEST(Pipe, A_platform_that_promises_too_much_is_not_believed) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Faulty<platform::PeekNamedPipe> peeks;
    peeks.Replace([&](platform::Handle, std::uint32_t* available) {
        *available = peeks.Calls() == 1 ? 0xFFFFFFFF : 0;
        return true;
    });
    Faulty<platform::ReadFile> reads;
    reads.Replace([](platform::Handle, void* buffer, std::uint32_t count, std::uint32_t* read) {
        EXPECT_EQ(count, 0x100000u);
        *static_cast<char*>(buffer) = 'x';
        *read = 1;
        return true;
    });
    EXPECT_EQ(Drain(pipe), "x");
}

TEST(Pipe, A_platform_that_promises_and_gives_nothing_ends_the_drain) {
    XPipe pipe;
    ASSERT_TRUE(pipe.Create());
    Send(pipe.WriteHandle(), "text");
    Faulty<platform::ReadFile> reads;
    reads.Replace([](platform::Handle, void*, std::uint32_t, std::uint32_t* read) {
        *read = 0;
        return true;
    });
    EXPECT_EQ(Drain(pipe), "");
    EXPECT_EQ(reads.Calls(), 1);
}

}  // namespace
