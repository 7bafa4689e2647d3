#include "foundation/byte_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "support/allocation_faults.h"

namespace {

constexpr std::uint32_t kHighest = 0xFFFFFFFF;

std::string Contents(const clByteStore& store, std::uint32_t size) {
    return std::string(reinterpret_cast<const char*>(store.Data()), size);
}

void ExpectEmpty(const clByteStore& store) {
    EXPECT_EQ(store.Data(), nullptr);
    EXPECT_EQ(store.Size(), 0u);
    EXPECT_EQ(store.Capacity(), 0u);
    EXPECT_EQ(store.Cursor(), 0u);
    EXPECT_EQ(store.Cursor2(), 0u);
}

TEST(ByteStore, A_new_store_is_empty) {
    const clByteStore store;
    ExpectEmpty(store);
}

TEST(ByteStore, Resize_counts_the_slack_only_into_a_new_block) {
    clByteStore store;
    EXPECT_TRUE(store.Resize(100, false, 50));
    EXPECT_EQ(store.Size(), 150u);
    EXPECT_EQ(store.Capacity(), 150u);
    const std::uint8_t* const block = store.Data();
    EXPECT_TRUE(store.Resize(120, false, 50));
    EXPECT_EQ(store.Size(), 120u);
    EXPECT_EQ(store.Capacity(), 150u);
    EXPECT_EQ(store.Data(), block);
}

TEST(ByteStore, Resize_to_nothing_still_takes_a_block) {
    clByteStore store;
    EXPECT_TRUE(store.Resize(0, false, 0));
    EXPECT_NE(store.Data(), nullptr);
    EXPECT_EQ(store.Size(), 0u);
    EXPECT_EQ(store.Capacity(), 1u);
    EXPECT_TRUE(store.Resize(1, false, 9));
    EXPECT_EQ(store.Size(), 1u);  // the one byte is enough
}

TEST(ByteStore, Resize_to_less_lowers_the_cursors_and_keeps_the_block) {
    clByteStore store;
    store.Resize(100, false, 0);
    store.SetCursor(90);
    store.SetCursor2(30);
    const std::uint8_t* const block = store.Data();
    EXPECT_TRUE(store.Resize(40, false, 0));
    EXPECT_EQ(store.Data(), block);
    EXPECT_EQ(store.Cursor(), 40u);
    EXPECT_EQ(store.Cursor2(), 30u);
    EXPECT_TRUE(store.Resize(20, false, 0));
    EXPECT_EQ(store.Cursor2(), 20u);
    EXPECT_TRUE(store.Resize(200, false, 0));
    EXPECT_EQ(store.Cursor(), 20u);
}

TEST(ByteStore, Resize_keeps_the_old_bytes_when_asked) {
    clByteStore store;
    store.Assign("abcdef", 6, 0);
    EXPECT_TRUE(store.Resize(10, true, 5));
    EXPECT_EQ(Contents(store, 6), "abcdef");
    EXPECT_EQ(store.Size(), 15u);
    store.Resize(3, true, 0);
    store.Resize(20, true, 0);
    EXPECT_EQ(Contents(store, 4), std::string("abc\0", 4));  // what the logical size left out is gone
}

TEST(ByteStore, A_new_block_is_zeroed) {
    clByteStore store;
    for (const bool keep : {false, true}) {
        store.Resize(store.Capacity() + 1000, keep, 24);
        EXPECT_TRUE(std::all_of(store.Data(), store.Data() + store.Size(),
                                [](std::uint8_t byte) { return byte == 0; }));
        if (!keep) store.Resize(0, false, 0);
    }
    store.Assign(nullptr, 5000, 0);
    EXPECT_TRUE(
        std::all_of(store.Data(), store.Data() + store.Size(), [](std::uint8_t byte) { return byte == 0; }));
}

TEST(ByteStore, What_is_not_written_of_a_new_block_is_zeroed) {
    const auto isZero = [](std::uint8_t byte) { return byte == 0; };
    clByteStore store;
    store.Assign("abc", 3, 2000);
    EXPECT_EQ(Contents(store, 3), "abc");
    EXPECT_TRUE(std::all_of(store.Data() + 3, store.Data() + store.Size(), isZero));
    store.Resize(3, false, 0);
    store.Resize(9000, true, 50);
    EXPECT_EQ(Contents(store, 3), "abc");
    EXPECT_TRUE(std::all_of(store.Data() + 3, store.Data() + store.Size(), isZero));
}

TEST(ByteStore, ResizeToWrite_makes_room_without_slack_and_keeps_a_block_that_is_large_enough) {
    clByteStore store;
    EXPECT_TRUE(store.ResizeToWrite(100));
    EXPECT_EQ(store.Size(), 100u);
    EXPECT_EQ(store.Capacity(), 100u);
    std::fill(store.Data(), store.Data() + 100, std::uint8_t{7});
    store.SetCursor(90);
    store.SetCursor2(60);
    const std::uint8_t* const block = store.Data();
    EXPECT_TRUE(store.ResizeToWrite(50));
    EXPECT_EQ(store.Data(), block);
    EXPECT_EQ(store.Size(), 50u);
    EXPECT_EQ(store.Cursor() + store.Cursor2(), 100u);
    EXPECT_TRUE(store.ResizeToWrite(200));
    EXPECT_EQ(store.Capacity(), 200u);
}

TEST(ByteStore, ResizeToWrite_of_nothing_leaves_a_block_of_1_byte) {
    clByteStore store;
    EXPECT_TRUE(store.ResizeToWrite(0));
    EXPECT_EQ(store.Capacity(), 1u);
    EXPECT_EQ(store.Size(), 0u);
}

TEST(ByteStore, ResizeToWrite_without_memory_leaves_the_store_empty) {
    clByteStore store;
    store.Assign("abc", 3, 0);
    bool done = true;
    {
        AllocationFaults memory;
        memory.FailCall(1);
        done = store.ResizeToWrite(10);
    }
    EXPECT_FALSE(done);
    ExpectEmpty(store);
}

TEST(ByteStore, Assign_counts_the_slack_into_either_block) {
    clByteStore store;
    EXPECT_TRUE(store.Assign("abc", 3, 4));
    EXPECT_EQ(store.Size(), 7u);
    EXPECT_EQ(store.Capacity(), 7u);
    EXPECT_EQ(store.Cursor(), 3u);
    EXPECT_EQ(Contents(store, 3), "abc");
    const std::uint8_t* const block = store.Data();
    EXPECT_TRUE(store.Assign("xy", 2, 1));
    EXPECT_EQ(store.Data(), block);
    EXPECT_EQ(store.Size(), 3u);
    EXPECT_EQ(store.Capacity(), 7u);
    EXPECT_EQ(store.Cursor(), 2u);
    EXPECT_EQ(Contents(store, 2), "xy");
}

TEST(ByteStore, Assign_of_null_makes_room_and_copies_nothing) {
    clByteStore store;
    store.Assign("abc", 3, 0);
    EXPECT_TRUE(store.Assign(nullptr, 2, 0));
    EXPECT_EQ(Contents(store, 2), "ab");
    EXPECT_EQ(store.Cursor(), 2u);
    EXPECT_TRUE(store.Assign(nullptr, 0, 0));
    EXPECT_EQ(store.Size(), 0u);
    EXPECT_EQ(store.Capacity(), 3u);
}

TEST(ByteStore, Assign_of_nothing_leaves_a_block_of_1_byte) {
    clByteStore store;
    EXPECT_TRUE(store.Assign("", 0, 0));
    EXPECT_EQ(store.Capacity(), 1u);
    EXPECT_EQ(store.Size(), 0u);
}

TEST(ByteStore, Assign_may_take_bytes_of_its_own) {
    clByteStore store;
    store.Assign("abcdef", 6, 0);
    store.Assign(store.Data() + 2, 3, 0);
    EXPECT_EQ(Contents(store, 3), "cde");
    store.Assign(store.Data(), 3, 100);
    EXPECT_EQ(Contents(store, 3), "cde");
}

TEST(ByteStore, Assign_lowers_the_second_cursor) {
    clByteStore store;
    store.Assign("abcdef", 6, 0);
    store.SetCursor2(5);
    store.Assign("ab", 2, 1);
    EXPECT_EQ(store.Cursor2(), 3u);
}

TEST(ByteStore, Cursors_stay_at_or_below_the_size) {
    clByteStore store;
    store.SetCursor(1);
    store.SetCursor2(1);
    ExpectEmpty(store);
    store.Resize(10, false, 0);
    store.SetCursor(10);
    store.SetCursor2(kHighest);
    EXPECT_EQ(store.Cursor(), 10u);
    EXPECT_EQ(store.Cursor2(), 10u);
}

TEST(ByteStore, Without_memory_it_answers_false_and_is_empty) {
    for (const bool assigns : {false, true}) {
        clByteStore store;
        store.Assign("abc", 3, 0);
        store.SetCursor2(2);
        bool done = true;
        int live = 0;
        {
            AllocationFaults memory;
            memory.FailFrom(1);
            done = assigns ? store.Assign("abcdefgh", 8, 0) : store.Resize(8, true, 0);
            live = memory.Live();
        }
        EXPECT_FALSE(done);
        EXPECT_EQ(live, -1);  // the old block is given back
        ExpectEmpty(store);
        EXPECT_TRUE(store.Resize(8, true, 0));
    }
}

TEST(ByteStore, A_size_beyond_32_bits_is_refused_like_missing_memory) {
    clByteStore store;
    store.Resize(10, false, 0);
    EXPECT_FALSE(store.Resize(kHighest, false, 1));
    ExpectEmpty(store);
    EXPECT_FALSE(store.Resize(20, true, kHighest));
    store.Resize(10, false, 0);
    EXPECT_FALSE(store.Assign("abc", 3, kHighest));
    ExpectEmpty(store);
    EXPECT_FALSE(store.Assign(nullptr, kHighest, kHighest));
    ExpectEmpty(store);
}

TEST(ByteStore, Swap_exchanges_all_there_is) {
    clByteStore first, second;
    first.Assign("abcd", 4, 2);
    first.SetCursor2(1);
    const std::uint8_t* const data = first.Data();
    first.Swap(second);
    ExpectEmpty(first);
    EXPECT_EQ(second.Data(), data);
    EXPECT_EQ(second.Size(), 6u);
    EXPECT_EQ(second.Capacity(), 6u);
    EXPECT_EQ(second.Cursor(), 4u);
    EXPECT_EQ(second.Cursor2(), 1u);
}

}  // namespace
