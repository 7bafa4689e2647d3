// What becomes of blocks in a stream that stands: what is told to the codec, what waits, what a codec claims, where
// room or memory fails.
#include <functional>
#include <random>

#include "audio/scripted_stream.h"
#include "support/allocation_faults.h"

using AcmStreamBlocks = ScriptedStream;

TEST_F(AcmStreamBlocks, A_block_is_sized_prepared_converted_and_unprepared) {
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.output.format->wFormatTag, 6);
    EXPECT_EQ(manager.lastHeader.cbStruct, 124u);
    EXPECT_EQ(manager.lastHeader.fdwStatus, 0u);
    EXPECT_EQ(manager.lastHeader.dwUser + manager.lastHeader.dwSrcUser + manager.lastHeader.dwDstUser, 0u);
    EXPECT_EQ(manager.lastHeader.pbDst, stream.output.data);
    EXPECT_EQ(Journal(), "open 1/16 6/8\nsize 8\nprepare 8 8\nconvert 20\nunprepare\n");
}

TEST_F(AcmStreamBlocks, The_first_conversion_begins_the_stream_and_the_last_one_ends_it) {
    for (int block = 0; block < 2; ++block) Convert(kMono16, kALaw, Counted(2));
    Convert(kMono16, kALaw, Counted(2), true);
    Convert(kMono16, kALaw, Counted(2));
    EXPECT_EQ(Journal(),
              "open 1/16 6/8\nsize 2\nprepare 2 2\nconvert 20\nunprepare\n"
              "size 2\nprepare 2 2\nconvert 4\nunprepare\n"
              "size 2\nprepare 2 2\nconvert 32\nunprepare\n"
              "size 2\nprepare 2 2\nconvert 4\nunprepare\n");
    clAcmStream other;
    clAudioBlock in;
    const Bytes samples = Counted(4);
    in.setData(samples.data(), 4, &kMono16, true);
    EXPECT_TRUE(other.Convert(in, clFormatHolder(&kALaw), true));
    EXPECT_EQ(Journal(), "open 1/16 6/8\nsize 4\nprepare 4 4\nconvert 48\nunprepare\n");
}

TEST_F(AcmStreamBlocks, The_manager_reads_where_the_stage_before_has_written) {
    const Bytes samples = Counted(8);
    clAudioBlock in;
    in.setData(samples.data(), 8, &kMono16, true);
    ASSERT_TRUE(stream.Convert(in, clFormatHolder(&kALaw), false));
    EXPECT_EQ(manager.lastHeader.pbSrc, samples.data());
    EXPECT_EQ(stream.carry.data, nullptr) << "and nothing points there any more";
}

TEST_F(AcmStreamBlocks, What_is_short_of_a_whole_block_waits) {
    const QvFormat coded = Coded(4);
    EXPECT_EQ(Convert(coded, kMono16, Counted(3)), Bytes());
    EXPECT_EQ(stream.output.format->wFormatTag, 1) << "an empty block of the target";
    EXPECT_EQ(stream.carry.held(), 3u);
    EXPECT_EQ(Journal(), "open 17/4 1/16\n");
    EXPECT_EQ(Convert(coded, kMono16, Counted(6, 3)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.carry.held(), 1u);
    EXPECT_EQ(Journal(), "size 8\nprepare 8 8\nconvert 20\nunprepare\n");
    EXPECT_EQ(Convert(coded, kMono16, {}), Bytes());
    EXPECT_EQ(Convert(coded, kMono16, Counted(3, 9), true), PlusOne(Counted(4, 8)));
    EXPECT_EQ(stream.carry.held(), 0u);
}

TEST_F(AcmStreamBlocks, Blocks_of_any_size_are_one_stream) {
    std::mt19937 generator(3);
    const QvFormat coded = Coded(7);
    Bytes fed, made;
    for (int block = 0; block < 300; ++block) {
        const Bytes part = Counted(generator() % 40, static_cast<int>(fed.size() % 251));
        manager.takesAtMost = static_cast<std::uint32_t>(generator() % 50);
        fed.insert(fed.end(), part.begin(), part.end());
        const std::optional<Bytes> out = Convert(coded, kMono8, part);
        ASSERT_TRUE(out);
        made.insert(made.end(), out->begin(), out->end());
    }
    ASSERT_GT(made.size(), 4000u);
    fed.resize(made.size());
    EXPECT_EQ(made, PlusOne(fed));
}

TEST_F(AcmStreamBlocks, Data_without_a_depth_are_taken_byte_by_byte) {
    EXPECT_EQ(Convert(Coded(65, 0), kMono8, Counted(3)), PlusOne(Counted(3)));
    EXPECT_EQ(stream.carry.format->nBlockAlign, 1);
}

TEST_F(AcmStreamBlocks, An_empty_last_block_ends_the_stream_only_where_a_block_waits) {
    EXPECT_EQ(Convert(kMono16, kALaw, {}, true), Bytes());
    EXPECT_EQ(Journal(), "open 1/16 6/8\n") << "the end is not told";
    EXPECT_EQ(stream.startPending, 1);
    manager.takesAtMost = 2;
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(6)), PlusOne(Counted(2)));
    Journal();
    EXPECT_EQ(Convert(kMono16, kALaw, {}, true), PlusOne(Counted(2, 2)));
    EXPECT_EQ(Journal(), "size 4\nprepare 4 4\nconvert 32\nunprepare\n");
}

TEST_F(AcmStreamBlocks, What_the_stream_leaves_is_offered_again_in_front_of_the_next_block) {
    manager.takesAtMost = 5;
    EXPECT_EQ(Convert(Coded(3), kMono16, Counted(7)), PlusOne(Counted(5)));
    EXPECT_EQ(stream.carry.held(), 2u);
    EXPECT_EQ(stream.carry.offset, 0u);
    manager.takesAtMost = 0;
    EXPECT_EQ(Convert(Coded(3), kMono16, Counted(4, 7)), Bytes());
    EXPECT_EQ(stream.carry.held(), 6u);
    manager.takesAtMost = 100;
    EXPECT_EQ(Convert(Coded(3), kMono16, {}), PlusOne(Counted(6, 5)));
}

TEST_F(AcmStreamBlocks, A_codec_may_swallow_what_it_reads) {
    manager.makesAtMost = 0;
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), Bytes());
    EXPECT_EQ(stream.carry.held(), 0u);
}

TEST_F(AcmStreamBlocks, A_codec_that_claims_to_have_read_more_than_it_was_given_has_read_that) {
    for (const std::uint32_t more : {1u, 1000u, 0x7FFFFFFFu, 0xFFFFFFF7u}) {
        manager.claimsTaken = more;
        EXPECT_EQ(Convert(Coded(4), kMono16, Counted(9)), PlusOne(Counted(8)));
        EXPECT_EQ(stream.carry.held(), 1u);
        manager.claimsTaken = 0;
        EXPECT_EQ(Convert(Coded(4), kMono16, Counted(3, 9)), PlusOne({8, 9, 10, 11}));
        EXPECT_EQ(stream.carry.held(), 0u);
    }
}

TEST_F(AcmStreamBlocks, A_codec_that_claims_to_have_written_more_than_there_is_room_fills_the_room) {
    manager.claimsMade = 0xFFFFFFFF - 8;
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), PlusOne(Counted(8)));
    stream.Close();
    Bytes expected = PlusOne(Counted(8));
    expected.resize(16);
    EXPECT_EQ(Convert(kMono16, kStereoALaw, Counted(8)), expected)
        << "which is twice as much for two, zeroed";
}

TEST_F(AcmStreamBlocks, There_is_room_for_what_the_codec_suggests_in_whole_samples) {
    manager.suggests = 1001;
    Convert(kMono16, Plain(7, 1, 8000, 8), Counted(8));
    EXPECT_EQ(manager.lastHeader.cbDstLength, 1001u);
    stream.Close();
    Convert(kALaw, Plain(1, 3, 8000, 16), Counted(8));
    EXPECT_EQ(manager.lastHeader.cbDstLength, 1000u);
    EXPECT_EQ(stream.output.capacity, 3000u);
    const QvFormat twelve = Plain(85, 1, 8000, 12);
    stream.Close();
    Convert(kMono16, twelve, Counted(8));
    EXPECT_EQ(manager.lastHeader.cbDstLength, 1001u);
}

TEST_F(AcmStreamBlocks, Without_room_the_conversion_is_refused) {
    const struct {
        QvFormat to;
        std::uint32_t suggests;
    } rows[] = {
        {kALaw, 0},                   // the codec sees nothing coming
        {Plain(6, 0, 8000, 8), 8},    // no channels
        {Coded(36), 8},               // samples of less than a byte
        {Plain(1, 1, 16000, 24), 2},  // less than one sample
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.to.wFormatTag);
        stream.Close();
        Journal();
        manager.suggests = row.suggests;
        EXPECT_EQ(Convert(kMono16, row.to, Counted(8)), std::nullopt);
        EXPECT_TRUE(Journal().ends_with("prepare 8 0\n"));
        EXPECT_EQ(stream.carry.held(), 0u) << "what failed is not queued for ever";
    }
}

TEST_F(AcmStreamBlocks, More_room_than_there_can_be_is_refused) {
    manager.suggests = UINT32_MAX;
    EXPECT_EQ(Convert(kMono16, kStereoALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(Journal(), "open 1/16 6/8\nsize 8\n");
    manager.suggests.reset();
    EXPECT_EQ(Convert(kMono16, kStereoALaw, Counted(8)), PlusOne(Counted(8)));
}

TEST_F(AcmStreamBlocks, A_failure_loses_what_was_taken_and_keeps_what_was_not) {
    const QvFormat coded = Coded(4);
    const struct {
        std::function<void()> fail;
        const char* journal;
        int leftPrepared;
    } rows[] = {
        {[&] { manager.sizes.FailCall(1, 1u); }, "", 0},
        {[&] { manager.preparations.FailCall(1, 1u); }, "size 8\n", 0},
        {[&] { manager.conversions.FailCall(1, 1u); }, "size 8\nprepare 8 8\n", 1},
    };
    ASSERT_EQ(Convert(coded, kMono16, {}), Bytes());
    Journal();
    for (const auto& row : rows) {
        manager.prepared = 0;
        row.fail();
        EXPECT_EQ(Convert(coded, kMono16, Counted(11)), std::nullopt);
        EXPECT_EQ(Journal(), row.journal);
        EXPECT_EQ(manager.prepared, row.leftPrepared) << "a header that failed stays as it is";
        EXPECT_EQ(stream.carry.held(), 3u);
        EXPECT_EQ(Convert(coded, kMono16, Counted(1, 11)), PlusOne(Counted(4, 8)));
        EXPECT_NE(stream.stream, nullptr);
        Journal();
    }
}

TEST_F(AcmStreamBlocks, A_failed_conversion_has_begun_its_stream) {
    manager.conversions.FailCall(1, 1u);
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(stream.startPending, 0);
    Journal();
    Convert(kMono16, kALaw, Counted(8));
    EXPECT_EQ(Journal(), "size 8\nprepare 8 8\nconvert 4\nunprepare\n");
}

TEST_F(AcmStreamBlocks, What_unprepare_answers_does_not_matter) {
    manager.unpreparations.FailAlways(1u);
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), PlusOne(Counted(8)));
}

// Each allocation of a call in turn, with bytes that wait before and behind it.
TEST_F(AcmStreamBlocks, Without_memory_a_block_is_refused_and_a_later_one_passes) {
    const QvFormatExtensible to = Extensible(1, 1, 16000, 24);
    const QvFormat law = kALaw, coded = Coded(4), wide = kMono24;
    const Bytes samples = Counted(24);
    manager.keepsJournal = false;
    manager.takesAtMost = 11;
    for (const QvFormat* from : {&law, &coded, &wide}) {
        int failing = 1;
        for (;; ++failing) {
            bool raised = false, failed = false, refused = false, later = false;
            int live = 0;
            {
                AllocationFaults memory;
                {
                    clAcmStream own;
                    clAudioBlock in;
                    in.setData(samples.data(), 23, from, true);
                    memory.FailCall(failing);
                    try {
                        const clFormatHolder target(&to.Format);
                        refused = !own.Convert(in, target, false);
                        failed = memory.HasFailed();
                        memory.FailCall(0);  // none from here on
                        later = own.Convert(in, target, true) && own.output.bytes == 11;
                    } catch (const std::bad_alloc&) {
                        raised = true;
                    }
                }
                live = memory.Live();
            }
            EXPECT_EQ(live, 0) << failing;
            EXPECT_TRUE(later || raised) << failing;
            if (!failed && !raised) break;
            EXPECT_TRUE(refused || raised || failing == 1) << failing;
        }
        EXPECT_GT(failing, 3);
    }
}
