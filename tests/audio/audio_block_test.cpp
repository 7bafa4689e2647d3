#include "audio/audio_block.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "audio/format_records.h"
#include "support/allocation_faults.h"

namespace {

const QvFormat kStereo16 = Plain(1, 2, 44100, 16);
const std::uint8_t kSamples[] = {1, 2, 3, 4, 5, 6, 7, 8};

bool IsEmptied(const clAudioBlock& block) {
    return !block.data && block.capacity == 0 && block.bytes == 0 && block.store.Size() == 0 &&
           block.adopted == 0;
}

bool IsAll(const clAudioBlock& block, std::uint8_t value) {
    return std::all_of(block.data, block.data + block.capacity,
                       [&](std::uint8_t byte) { return byte == value; });
}

TEST(AudioBlock, A_new_block_has_a_format_and_no_samples) {
    const clAudioBlock block;
    EXPECT_TRUE(IsEmptied(block));
    EXPECT_EQ(block.offset, 0u);
    EXPECT_EQ(block.format, &block.inlineFormat);
    EXPECT_EQ(block.frames(), 0u);
    EXPECT_EQ(block.capacityFrames(), 0u);
}

TEST(AudioBlock, Silence_is_128_for_8_bits_and_0_for_every_other_depth) {
    const struct {
        QvFormat format;
        std::uint32_t capacity;
        std::uint8_t silence;
    } rows[] = {
        {Plain(1, 2, 44100, 8), 2 * 16384, 128}, {Plain(6, 1, 8000, 8), 16384, 128},
        {Plain(1, 2, 44100, 16), 4 * 16384, 0},  {Plain(1, 3, 44100, 24), 9 * 16384, 0},
        {Plain(3, 1, 44100, 32), 4 * 16384, 0},  {Plain(3, 8, 44100, 64), 64 * 16384, 0},
        {Plain(1, 1, 44100, 4), 16384, 0},       {Plain(1, 0, 44100, 16), 2 * 16384, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format.wBitsPerSample);
        const clAudioBlock block(&row.format);
        ASSERT_EQ(block.capacity, row.capacity);
        EXPECT_EQ(block.data, block.store.Data());
        EXPECT_EQ(block.bytes + block.offset + block.adopted, 0u);
        EXPECT_EQ(block.capacityFrames(), 16384u);
        EXPECT_TRUE(IsAll(block, row.silence));
    }
}

TEST(AudioBlock, Silence_that_no_block_can_count_is_refused) {
    const QvFormat format = Plain(1, 65535, 44100, 65528);  // 65535 * 8191 * 16384 bytes
    const clAudioBlock block(&format);
    EXPECT_TRUE(IsEmptied(block));
}

TEST(AudioBlock, reserveToWrite_is_reserveBytes_for_who_writes_it_all) {
    clAudioBlock block;
    block.setData(kSamples, 8, &kStereo16, true);
    ASSERT_TRUE(block.reserveToWrite(4));
    EXPECT_EQ(block.data, block.store.Data());
    EXPECT_EQ(block.capacity, 4u);
    EXPECT_EQ(block.bytes + block.offset + block.adopted, 0u);
    EXPECT_FALSE(block.reserveToWrite(std::uint64_t{1} << 32)) << "more than a block can count";
    EXPECT_EQ(block.data, nullptr);
    EXPECT_EQ(block.capacity, 0u);
}

TEST(AudioBlock, setData_adopts_without_a_copy) {
    clAudioBlock block;
    EXPECT_TRUE(block.setData(kSamples, 8, &kStereo16, true));
    EXPECT_EQ(block.data, kSamples);
    EXPECT_EQ(block.capacity, 8u);
    EXPECT_EQ(block.bytes, 8u);
    EXPECT_EQ(block.adopted, 1);
    EXPECT_EQ(block.frames(), 2u);
    EXPECT_EQ(block.format->nBlockAlign, 4);
    EXPECT_EQ(block.store.Data(), nullptr);
}

TEST(AudioBlock, setData_copies) {
    clAudioBlock block;
    EXPECT_TRUE(block.setData(kSamples, 8, &kStereo16, false));
    EXPECT_EQ(block.data, block.store.Data());
    EXPECT_EQ(block.capacity, 8u);
    EXPECT_EQ(block.bytes, 8u);
    EXPECT_EQ(block.adopted, 0);
    EXPECT_EQ(std::memcmp(block.data, kSamples, 8), 0);
}

TEST(AudioBlock, setData_takes_its_own_samples) {
    clAudioBlock block;
    block.setData(kSamples, 8, &kStereo16, false);
    EXPECT_TRUE(block.setData(block.data + 4, 4, block.format, false));
    EXPECT_EQ(block.bytes, 4u);
    EXPECT_EQ(std::memcmp(block.data, kSamples + 4, 4), 0);
}

TEST(AudioBlock, setData_without_a_source_makes_zeroed_room) {
    clAudioBlock block;
    block.setData(kSamples, 8, &kStereo16, false);
    EXPECT_TRUE(block.setData(nullptr, 6, &kStereo16, false));
    EXPECT_EQ(block.bytes, 6u);
    EXPECT_EQ(block.capacity, 6u);
    EXPECT_TRUE(IsAll(block, 0));
    EXPECT_TRUE(block.setData(nullptr, 4, &kStereo16, true));  // nothing there to adopt
    EXPECT_EQ(block.adopted, 0);
    EXPECT_EQ(block.data, block.store.Data());
}

TEST(AudioBlock, setData_of_no_bytes_is_a_block_without_frames) {
    clAudioBlock block;
    EXPECT_TRUE(block.setData(kSamples, 0, &kStereo16, false));
    EXPECT_NE(block.data, nullptr);
    EXPECT_EQ(block.bytes, 0u);
    EXPECT_EQ(block.frames(), 0u);
}

TEST(AudioBlock, setData_clips_the_offset_in_every_branch) {
    const struct {
        const void* source;
        bool adopt;
    } branches[] = {{kSamples, true}, {kSamples, false}, {nullptr, false}};
    for (const auto& branch : branches) {
        for (const std::uint32_t offset : {0u, 3u, 4u, 9u}) {
            clAudioBlock block;
            block.setData(kSamples, 8, &kStereo16, true);
            block.offset = offset;
            block.setData(branch.source, 4, &kStereo16, branch.adopt);
            EXPECT_EQ(block.offset, std::min(offset, 4u));
        }
    }
}

TEST(AudioBlock, Only_room_without_a_source_fails_when_memory_does) {
    clAudioBlock copied, made;
    bool copiedResult = false, madeResult = true;
    copied.offset = made.offset = 5;
    {
        AllocationFaults memory;
        memory.FailFrom(1);
        copiedResult = copied.setData(kSamples, 8, &kStereo16, false);
        madeResult = made.setData(nullptr, 8, &kStereo16, false);
    }
    EXPECT_TRUE(copiedResult);
    EXPECT_FALSE(madeResult);
    EXPECT_TRUE(IsEmptied(copied));
    EXPECT_TRUE(IsEmptied(made));
    EXPECT_EQ(copied.offset + made.offset, 0u);
    EXPECT_EQ(copied.format->nChannels, 2);
}

TEST(AudioBlock, reserveBytes_drops_an_adoption_and_writes_only_into_the_store) {
    std::uint8_t adopted[] = {9, 9, 9, 9};
    clAudioBlock block;
    block.setData(adopted, 4, &kStereo16, true);
    block.offset = 2;
    ASSERT_TRUE(block.reserveBytes(64));
    EXPECT_EQ(block.data, block.store.Data());
    EXPECT_EQ(block.capacity, 64u);
    EXPECT_EQ(block.bytes + block.offset + block.adopted, 0u);
    std::memset(block.data, 1, block.capacity);
    EXPECT_EQ(adopted[0] + adopted[1] + adopted[2] + adopted[3], 36);
}

TEST(AudioBlock, Reserved_room_holds_nothing_of_what_was_there) {
    clAudioBlock block;
    block.setData(kSamples, 8, &kStereo16, false);
    ASSERT_TRUE(block.reserveBytes(8));
    EXPECT_TRUE(IsAll(block, 0));
}

TEST(AudioBlock, reserveBytes_tells_of_memory_that_failed) {
    clAudioBlock block;
    block.setData(kSamples, 8, &kStereo16, false);
    bool result = true;
    {
        AllocationFaults memory;
        memory.FailFrom(1);
        result = block.reserveBytes(64);
    }
    EXPECT_FALSE(result);
    EXPECT_TRUE(IsEmptied(block));
    EXPECT_TRUE(block.reserveBytes(64));
    EXPECT_EQ(block.capacity, 64u);
}

TEST(AudioBlock, A_size_beyond_32_bits_is_refused_like_an_allocation) {
    clAudioBlock block;
    block.setData(kSamples, 8, &kStereo16, false);
    EXPECT_FALSE(block.reserveBytes(std::uint64_t{1} << 32));
    EXPECT_TRUE(IsEmptied(block));
    block.setData(kSamples, 8, &kStereo16, false);
    EXPECT_FALSE(block.reserveFrames(0x40000001, &kStereo16));  // 4 bytes more than 32 bits hold
    EXPECT_TRUE(IsEmptied(block));
    const QvFormat widest = Plain(1, 65535, 44100, 65535);
    EXPECT_FALSE(block.reserveFrames(0xFFFFFFFF, &widest));
    EXPECT_TRUE(IsEmptied(block));
}

TEST(AudioBlock, reserveFrames_counts_at_least_a_byte_and_a_channel) {
    const struct {
        QvFormat format;
        std::uint32_t frameBytes;
    } rows[] = {
        {Plain(1, 2, 44100, 16), 4}, {Plain(1, 6, 44100, 24), 18}, {Plain(1, 2, 44100, 4), 2},
        {Plain(1, 0, 44100, 16), 2}, {Plain(1, 0, 44100, 0), 1},   {Plain(1, 1, 44100, 12), 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.format.wBitsPerSample);
        clAudioBlock block;
        ASSERT_TRUE(block.reserveFrames(10, &row.format));
        EXPECT_EQ(block.capacity, row.frameBytes * 10);
        EXPECT_EQ(block.capacityFrames(), 10u);
        EXPECT_EQ(block.frames(), 0u);
        block.bytes = row.frameBytes * 3;
        EXPECT_EQ(block.frames(), 3u);
        EXPECT_EQ(block.format->nChannels, row.format.nChannels);
    }
}

TEST(AudioBlock, CopyFrom_takes_samples_and_record) {
    const QvFormatExtensible format = Extensible(3, 2, 48000, 32);
    clAudioBlock from, to;
    from.setData(kSamples, 8, &format.Format, true);
    ASSERT_TRUE(to.CopyFrom(from));
    EXPECT_EQ(to.data, to.store.Data());
    EXPECT_EQ(to.bytes, 8u);
    EXPECT_EQ(std::memcmp(to.data, kSamples, 8), 0);
    EXPECT_EQ(to.sampleType(), 3u);
    EXPECT_TRUE(to.CopyFrom(clAudioBlock()));
    EXPECT_EQ(to.bytes + to.format->nChannels, 0u);
}

TEST(AudioBlock, CopyFrom_fails_without_memory_for_the_samples_or_for_the_records_tail) {
    const QvFormatExtensible format = Extensible(3, 2, 48000, 32);
    clAudioBlock from;
    from.setData(kSamples, 8, &format.Format, true);
    for (const int failing : {1, 2}) {
        clAudioBlock to;
        bool copied = true;
        {
            AllocationFaults memory;
            memory.FailCall(failing);
            copied = to.CopyFrom(from);
        }
        EXPECT_FALSE(copied) << failing;
        EXPECT_TRUE(to.CopyFrom(from));
    }
}

TEST(AudioBlock, Borrow_takes_no_memory_and_gives_both_back) {
    QvFormatExtensible format = Extensible(1, 2, 48000, 16);
    clAudioBlock block;
    int calls = 0;
    {
        const AllocationFaults memory;
        block.Borrow(kSamples, 8, &format.Format);
        calls = memory.Calls();
    }
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(block.data, kSamples);
    EXPECT_EQ(block.capacity, 8u);
    EXPECT_EQ(block.frames(), 2u);
    EXPECT_EQ(block.format, &format.Format);
    block.Borrow(nullptr, 8, &format.Format);
    EXPECT_EQ(block.bytes + block.capacity, 0u) << "there are no bytes at null";
    EXPECT_TRUE(block.setData(kSamples, 4, &kStereo16, false));
    EXPECT_EQ(block.format, &block.inlineFormat);
}

}  // namespace
