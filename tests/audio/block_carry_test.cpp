#include "audio/block_carry.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include "audio/format_records.h"
#include "support/allocation_faults.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const QvFormat kStereo16 = Plain(1, 2, 44100, 16);

// Counted up from `first`.
Bytes Counted(std::size_t count, int first = 0) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(first));
    return bytes;
}

// A block in memory of its own, which is overwritten before it goes.
class PassingBlock {
  public:
    explicit PassingBlock(Bytes bytes, const QvFormat& format = kStereo16) : mBytes(std::move(bytes)) {
        block.setData(mBytes.data(), static_cast<std::uint32_t>(mBytes.size()), &format, true);
    }
    ~PassingBlock() { std::fill(mBytes.begin(), mBytes.end(), std::uint8_t{0xEE}); }

    clAudioBlock block;

  private:
    Bytes mBytes;
};

void Append(clBlockCarry& carry, const Bytes& bytes) {
    EXPECT_TRUE(carry.Append(PassingBlock(bytes).block, false));
}

Bytes Taken(clBlockCarry& carry, std::uint32_t count) {
    const clAudioBlock& view = carry.Take(count);
    EXPECT_EQ(view.offset, 0u);
    return view.data ? Bytes(view.data, view.data + view.bytes) : Bytes();
}

Bytes operator+(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST(BlockCarry, A_new_one_holds_nothing_and_gives_nothing) {
    clBlockCarry carry;
    EXPECT_EQ(carry.held(), 0u);
    EXPECT_EQ(Taken(carry, 10), Bytes());
    carry.Compact(100);
    EXPECT_EQ(carry.store.Capacity(), 0u) << "there is nothing to be compacted";
}

TEST(BlockCarry, Gives_the_bytes_in_their_order_in_whatever_pieces) {
    clBlockCarry carry;
    Append(carry, Counted(10));
    Append(carry, Counted(5, 10));
    EXPECT_EQ(carry.held(), 15u);
    EXPECT_EQ(Taken(carry, 4), Counted(4));
    EXPECT_EQ(Taken(carry, 0), Bytes());
    EXPECT_EQ(Taken(carry, 9), Counted(9, 4));
    EXPECT_EQ(carry.held(), 2u);
}

TEST(BlockCarry, Take_of_more_than_is_held_gives_what_is_held) {
    clBlockCarry carry;
    Append(carry, Counted(6));
    EXPECT_EQ(Taken(carry, 7), Counted(6));
    EXPECT_EQ(carry.held(), 0u);
    EXPECT_EQ(Taken(carry, UINT32_MAX), Bytes());
}

TEST(BlockCarry, What_is_given_back_is_taken_again_before_the_rest) {
    clBlockCarry carry;
    const PassingBlock in(Counted(10));
    ASSERT_TRUE(carry.Append(in.block, true));
    carry.Take(6);
    carry.GiveBack(4);
    EXPECT_EQ(carry.held(), 8u);
    EXPECT_EQ(Taken(carry, 3), Counted(3, 2));
    carry.Take(100);
    carry.GiveBack(1);
    carry.Compact(0);
    EXPECT_EQ(Taken(carry, 100), Counted(1, 9));
    carry.GiveBack(100);
    EXPECT_EQ(carry.held(), 1u) << "never more than was taken";
}

TEST(BlockCarry, Take_gives_a_view_under_the_carrys_format_that_copies_nothing) {
    clBlockCarry carry;
    Append(carry, Counted(8));
    const clAudioBlock& view = carry.Take(4);
    EXPECT_EQ(view.data, carry.store.Data());
    EXPECT_EQ(view.capacity, 4u);
    EXPECT_EQ(view.adopted, 1);
    EXPECT_EQ(view.format->nChannels, 2);
    EXPECT_EQ(view.frames(), 1u);
}

TEST(BlockCarry, Adopts_without_a_copy) {
    clBlockCarry carry;
    const PassingBlock in(Counted(8));
    ASSERT_TRUE(carry.Append(in.block, true));
    EXPECT_EQ(carry.store.Capacity(), 0u);
    EXPECT_EQ(carry.Take(3).data, in.block.data);
    EXPECT_EQ(carry.Take(3).data, in.block.data + 3);
}

TEST(BlockCarry, Compact_keeps_adopted_bytes_beyond_their_block) {
    clBlockCarry carry;
    {
        const PassingBlock in(Counted(20));
        ASSERT_TRUE(carry.Append(in.block, true));
        carry.Take(7);
        carry.Compact(0);
    }
    EXPECT_EQ(carry.held(), 13u);
    EXPECT_EQ(carry.offset, 0u);
    EXPECT_EQ(carry.adopted, 0);
    EXPECT_EQ(Taken(carry, 13), Counted(13, 7));
}

TEST(BlockCarry, Compact_of_adopted_bytes_beyond_the_capacity_grows_the_store_by_a_tenth) {
    clBlockCarry carry;
    const PassingBlock in(Counted(205));
    ASSERT_TRUE(carry.Append(in.block, true));
    carry.Compact(0);
    EXPECT_EQ(carry.store.Size(), 225u);
    EXPECT_EQ(carry.store.Capacity(), 225u);
}

TEST(BlockCarry, Compact_of_adopted_bytes_makes_the_extra_room) {
    clBlockCarry carry;
    const PassingBlock in(Counted(100));
    ASSERT_TRUE(carry.Append(in.block, true));
    carry.Compact(50);
    EXPECT_EQ(carry.store.Capacity(), 165u);
    const std::uint8_t* const home = carry.store.Data();
    Append(carry, Counted(50, 100));
    EXPECT_EQ(carry.store.Data(), home);
    EXPECT_EQ(Taken(carry, 150), Counted(150));
}

TEST(BlockCarry, Compact_brings_bytes_of_its_own_to_the_start) {
    clBlockCarry carry;
    Append(carry, Counted(100));
    carry.Take(30);
    carry.Compact(1000);
    EXPECT_EQ(carry.offset, 0u);
    EXPECT_EQ(carry.store.Capacity(), 110u) << "extra is for adopted blocks only";
    EXPECT_EQ(Taken(carry, 70), Counted(70, 30));
}

TEST(BlockCarry, Append_behind_an_adopted_block_takes_both_in) {
    clBlockCarry carry;
    {
        const PassingBlock first(Counted(9));
        ASSERT_TRUE(carry.Append(first.block, true));
        carry.Take(2);
        const PassingBlock second(Counted(4, 9));
        ASSERT_TRUE(carry.Append(second.block, true));
    }
    EXPECT_EQ(carry.adopted, 0);
    EXPECT_EQ(Taken(carry, 100), Counted(11, 2));
}

TEST(BlockCarry, A_blocks_offset_shortens_what_is_read_from_its_start) {
    for (const bool adopt : {false, true}) {
        clBlockCarry carry;
        PassingBlock in(Counted(10));
        in.block.offset = 4;
        ASSERT_TRUE(carry.Append(in.block, adopt));
        EXPECT_EQ(Taken(carry, 10), Counted(6));
    }
}

TEST(BlockCarry, The_format_is_that_of_the_last_block_that_knows_its_depth) {
    clBlockCarry carry;
    EXPECT_TRUE(carry.Append(PassingBlock(Counted(8), Plain(1, 2, 44100, 16)).block, false));
    EXPECT_TRUE(carry.Append(PassingBlock(Counted(8), Plain(80, 1, 8000, 0)).block, false));
    EXPECT_EQ(carry.format->nSamplesPerSec, 44100u);
    EXPECT_TRUE(carry.Append(PassingBlock({}, Plain(3, 1, 8000, 32)).block, false));
    EXPECT_EQ(carry.format->nSamplesPerSec, 8000u);
    EXPECT_EQ(carry.sampleType(), 3u);
    EXPECT_EQ(carry.held(), 16u);
}

TEST(BlockCarry, Blocks_without_bytes_add_nothing) {
    clBlockCarry carry;
    for (const bool adopt : {false, true}) {
        EXPECT_TRUE(carry.Append(clAudioBlock(), adopt));
        EXPECT_TRUE(carry.Append(PassingBlock({}).block, adopt));
        EXPECT_EQ(carry.held(), 0u);
    }
    Append(carry, Counted(3));
    EXPECT_TRUE(carry.Append(clAudioBlock(), true));
    EXPECT_EQ(Taken(carry, 9), Counted(3));
}

TEST(BlockCarry, Clear_drops_what_waits) {
    for (const bool adopt : {false, true}) {
        clBlockCarry carry;
        const PassingBlock in(Counted(8));
        ASSERT_TRUE(carry.Append(in.block, adopt));
        carry.Take(2);
        carry.Clear();
        EXPECT_EQ(carry.held() + carry.offset + carry.adopted, 0u);
        EXPECT_EQ(Taken(carry, 8), Bytes());
        Append(carry, Counted(2, 50));
        EXPECT_EQ(Taken(carry, 8), Counted(2, 50));
    }
}

TEST(BlockCarry, Bytes_that_stand_in_the_middle_of_the_store_survive_its_growth) {
    clBlockCarry carry;
    Append(carry, Counted(100));
    carry.Take(60);
    Append(carry, Counted(100, 100));
    EXPECT_EQ(Taken(carry, 200), Counted(140, 60));
}

TEST(BlockCarry, An_append_without_memory_leaves_what_waits) {
    for (const bool adopted : {false, true}) {
        clBlockCarry carry;
        const PassingBlock first(Counted(10)), second(Counted(100, 10));
        ASSERT_TRUE(carry.Append(first.block, adopted));
        carry.Take(3);
        bool taken = true;
        {
            AllocationFaults memory;
            memory.FailFrom(1);
            taken = carry.Append(second.block, false);
        }
        EXPECT_FALSE(taken);
        EXPECT_EQ(carry.held(), 7u);
        EXPECT_TRUE(carry.Append(second.block, false));
        EXPECT_EQ(Taken(carry, 200), Counted(107, 3));
    }
}

TEST(BlockCarry, An_empty_one_without_memory_takes_no_copy_but_adopts) {
    clBlockCarry carry;
    const PassingBlock in(Counted(10));
    bool copied = true, adopted = false;
    {
        AllocationFaults memory;
        memory.FailFrom(1);
        copied = carry.Append(in.block, false);
        adopted = carry.Append(in.block, true);
    }
    EXPECT_FALSE(copied);
    EXPECT_TRUE(adopted);
    EXPECT_EQ(Taken(carry, 10), Counted(10));
}

TEST(BlockCarry, Compact_without_memory_lets_go_of_a_block_that_is_about_to_go) {
    clBlockCarry carry;
    {
        const PassingBlock in(Counted(10));
        ASSERT_TRUE(carry.Append(in.block, true));
        AllocationFaults memory;
        memory.FailFrom(1);
        carry.Compact(0);
    }
    EXPECT_EQ(carry.held(), 0u);
    EXPECT_EQ(Taken(carry, 10), Bytes());
    Append(carry, Counted(5));
    EXPECT_EQ(Taken(carry, 10), Counted(5));
}

TEST(BlockCarry, More_than_32_bits_can_count_is_refused_and_what_waits_stays) {
    clBlockCarry carry;
    Append(carry, Counted(16));
    PassingBlock in(Counted(16));
    in.block.bytes = in.block.capacity = UINT32_MAX - 8;  // never read: it is refused by its size
    EXPECT_FALSE(carry.Append(in.block, false));
    EXPECT_EQ(Taken(carry, 100), Counted(16));
}

// Beside a plain vector from whose front bytes are erased.
TEST(BlockCarry, Does_as_a_plain_queue_in_any_order_of_calls) {
    std::mt19937 generator(1);
    const auto below = [&](std::uint32_t bound) { return static_cast<std::uint32_t>(generator() % bound); };
    for (int round = 0; round < 200; ++round) {
        clBlockCarry carry;
        Bytes twin;
        int next = 0;
        for (int step = 0; step < 60; ++step) {
            const std::uint32_t count = below(200);
            const PassingBlock in(Counted(count, next));
            next += static_cast<int>(count);
            ASSERT_TRUE(carry.Append(in.block, below(2) == 0));
            twin = twin + Counted(count, next - static_cast<int>(count));
            for (std::uint32_t takes = below(4); takes > 0; --takes) {
                const std::uint32_t wanted = below(150);
                const auto given = static_cast<std::ptrdiff_t>(std::min<std::size_t>(wanted, twin.size()));
                ASSERT_EQ(Taken(carry, wanted), Bytes(twin.begin(), twin.begin() + given));
                twin.erase(twin.begin(), twin.begin() + given);
            }
            carry.Compact(below(50));
            ASSERT_EQ(carry.held(), twin.size());
        }
        ASSERT_EQ(Taken(carry, UINT32_MAX), twin);
    }
}

}  // namespace
