// The way to the system's codecs, with a manager that does what the test says. What the system's own makes of
// it stands in tests/platform.
#include "audio/acm_stream.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <optional>
#include <random>
#include <vector>

#include "audio/format_records.h"
#include "audio/scripted_manager.h"
#include "support/allocation_faults.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const QvFormat kMono8 = Plain(1, 1, 8000, 8), kMono16 = Plain(1, 1, 8000, 16),
               kMono24 = Plain(1, 1, 8000, 24), kFloat32 = Plain(3, 1, 8000, 32),
               kALaw = Plain(6, 1, 8000, 8), kStereoALaw = Plain(6, 2, 8000, 8);

// Coded blocks of this many bytes.
QvFormat Coded(std::uint16_t blockAlign, std::uint16_t bits = 4) {
    QvFormat format = Plain(17, 1, 8000, bits);
    format.nBlockAlign = blockAlign;
    format.nAvgBytesPerSec = 4000;
    return format;
}

Bytes Counted(std::size_t count, int first = 0) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(first));
    return bytes;
}

Bytes PlusOne(Bytes bytes) {
    for (std::uint8_t& byte : bytes) ++byte;
    return bytes;
}

Bytes BytesOf(const clAudioBlock& block) {
    return Bytes(block.data, block.data + block.bytes);
}

class AcmStream : public testing::Test {
  public:
    // From a block that is overwritten and gone when the call is over.
    std::optional<Bytes> Convert(const QvFormat& from, const QvFormat& to, const Bytes& bytes,
                                 bool final = false) {
        const auto samples = std::make_unique<std::uint8_t[]>(bytes.size() + 1);
        std::copy(bytes.begin(), bytes.end(), samples.get());
        clAudioBlock in;
        in.setData(samples.get(), static_cast<std::uint32_t>(bytes.size()), &from, true);
        const bool done = stream.Convert(in, clFormatHolder(&to), final);
        std::fill_n(samples.get(), bytes.size(), std::uint8_t{0xEE});
        EXPECT_EQ(stream.carry.adopted, 0) << "the block is about to go";
        EXPECT_LE(stream.output.bytes, stream.output.capacity);
        return done ? std::optional(BytesOf(stream.output)) : std::nullopt;
    }
    std::string Journal() { return manager.TakeJournal(); }

    ScriptedManager manager;
    clAcmStream stream;
};

}  // namespace

TEST_F(AcmStream, The_same_type_and_rate_are_a_copy_whatever_depth_and_channels) {
    for (const QvFormat& to : {kMono16, kMono24, Plain(1, 6, 8000, 8)}) {
        EXPECT_EQ(Convert(kMono16, to, Counted(8)), Counted(8));
        EXPECT_EQ(stream.output.format->wBitsPerSample, 16) << "what comes out is what came in";
    }
    EXPECT_EQ(Convert(kALaw, kALaw, {}, true), Bytes());
    EXPECT_EQ(stream.stream, nullptr);
    EXPECT_EQ(stream.ownFloat + stream.sixteenFirst + stream.startPending, 0);
    EXPECT_EQ(Journal(), "");
}

TEST_F(AcmStream, A_record_told_in_another_way_is_the_same_type) {
    const QvFormatExtensible extensible = Extensible(6, 1, 8000, 8);
    EXPECT_EQ(Convert(extensible.Format, kALaw, Counted(8)), Counted(8));
    EXPECT_EQ(Convert(kALaw, extensible.Format, Counted(8)), Counted(8));
    EXPECT_EQ(Journal(), "");
}

TEST_F(AcmStream, Integers_to_floats_of_the_same_rate_take_no_stream_and_have_32_bits) {
    const Bytes samples = {0x00, 0x80, 0x00, 0x00, 0x00, 0x40, 0xFF, 0x7F};
    const float expected[] = {-1.0f, 0.0f, 0.5f, 32767.0f / 32768.0f};
    for (const std::uint16_t bits : {std::uint16_t{32}, std::uint16_t{64}, std::uint16_t{0}}) {
        const QvFormat to = Plain(3, 1, 8000, bits);
        const std::optional<Bytes> floats = Convert(kMono16, to, samples);
        ASSERT_TRUE(floats);
        ASSERT_EQ(floats->size(), sizeof expected);
        EXPECT_EQ(std::memcmp(floats->data(), expected, sizeof expected), 0);
        EXPECT_EQ(stream.ownFloat, 1);
        EXPECT_EQ(stream.stream, nullptr);
        EXPECT_EQ(stream.output.format->wFormatTag, 3);
        EXPECT_EQ(stream.output.format->wBitsPerSample, 32);
    }
    EXPECT_EQ(Convert(kMono16, kFloat32, {}, true), Bytes());
    EXPECT_EQ(Journal(), "");
}

TEST_F(AcmStream, Integers_to_floats_of_another_rate_ask_the_manager) {
    EXPECT_EQ(Convert(kMono16, Plain(3, 1, 16000, 32), Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.ownFloat, 0);
    EXPECT_EQ(Journal(), "open 1/16 3/32\nsize 8\nprepare 8 8\nconvert 20\nunprepare\n");
}

TEST_F(AcmStream, A_block_is_sized_prepared_converted_and_unprepared) {
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.output.format->wFormatTag, 6);
    EXPECT_EQ(manager.lastHeader.cbStruct, 124u);
    EXPECT_EQ(manager.lastHeader.fdwStatus, 0u);
    EXPECT_EQ(manager.lastHeader.dwUser + manager.lastHeader.dwSrcUser + manager.lastHeader.dwDstUser, 0u);
    EXPECT_EQ(manager.lastHeader.pbDst, stream.output.data);
    EXPECT_EQ(Journal(), "open 1/16 6/8\nsize 8\nprepare 8 8\nconvert 20\nunprepare\n");
}

TEST_F(AcmStream, The_first_conversion_begins_the_stream_and_the_last_one_ends_it) {
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

TEST_F(AcmStream, The_manager_reads_where_the_stage_before_has_written) {
    const Bytes samples = Counted(8);
    clAudioBlock in;
    in.setData(samples.data(), 8, &kMono16, true);
    ASSERT_TRUE(stream.Convert(in, clFormatHolder(&kALaw), false));
    EXPECT_EQ(manager.lastHeader.pbSrc, samples.data());
    EXPECT_EQ(stream.carry.data, nullptr) << "and nothing points there any more";
}

TEST_F(AcmStream, The_manager_is_given_plain_records_where_there_are_such) {
    const QvFormatExtensible from = Extensible(1, 1, 8000, 16), to = Extensible(6, 1, 8000, 8);
    EXPECT_EQ(Convert(from.Format, to.Format, Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.output.format->cbSize, 0);
    EXPECT_EQ(Journal().substr(0, 14), "open 1/16 6/8\n");
    clAcmStream unknown;
    const QvFormatExtensible strange = Extensible(0x1234, 1, 8000, 16);
    EXPECT_TRUE(unknown.Open(clAudioBlock(), clFormatHolder(&strange.Format)));
    EXPECT_EQ(Journal(), "open 0/0 65534/16\n");
}

TEST_F(AcmStream, More_than_16_bits_are_narrowed_at_the_first_attempt) {
    const Bytes samples = {0x01, 0x34, 0x12, 0xFF, 0x00, 0x80};
    EXPECT_EQ(Convert(kMono24, kALaw, samples), PlusOne({0x34, 0x12, 0x00, 0x80}));
    EXPECT_EQ(stream.sixteenFirst, 1);
    EXPECT_EQ(stream.sourceFormat.format->wBitsPerSample, 16);
    EXPECT_EQ(stream.sourceFormat.format->nBlockAlign, 2);
    EXPECT_EQ(stream.sourceFormat.format->nAvgBytesPerSec, 16000u);
    EXPECT_EQ(Journal(), "open 1/16 6/8\nsize 4\nprepare 4 4\nconvert 20\nunprepare\n");
    EXPECT_EQ(Convert(kMono24, kALaw, samples), PlusOne({0x34, 0x12, 0x00, 0x80})) << "and every block";
}

TEST_F(AcmStream, A_refusal_of_8_bits_is_followed_by_an_attempt_with_16) {
    manager.opens = [](const QvFormat& source, const QvFormat&) { return source.wBitsPerSample == 16; };
    EXPECT_EQ(Convert(kMono8, kALaw, {0x80, 0x81, 0x00}), PlusOne({0, 0, 0, 1, 0, 0x80}));
    EXPECT_EQ(stream.sixteenFirst, 1);
    EXPECT_EQ(Journal(), "open 1/8 6/8\nopen 1/16 6/8\nsize 6\nprepare 6 6\nconvert 20\nunprepare\n");
}

TEST_F(AcmStream, A_refusal_of_16_bits_is_asked_once_more_and_then_stands) {
    manager.opens = [](const QvFormat&, const QvFormat&) { return false; };
    for (int block = 0; block < 2; ++block) {
        EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
        EXPECT_EQ(Journal(), "open 1/16 6/8\nopen 1/16 6/8\n") << "for every block anew";
        EXPECT_EQ(stream.stream, nullptr);
        EXPECT_EQ(stream.carry.held(), 0u);
    }
    EXPECT_EQ(Convert(kMono16, kMono16, Counted(8)), Counted(8)) << "what needs no stream passes";
}

TEST_F(AcmStream, What_an_attempt_in_vain_has_changed_does_not_meet_the_next_block) {
    manager.opens = [](const QvFormat&, const QvFormat&) { return false; };
    EXPECT_EQ(Convert(kMono8, kALaw, Counted(8)), std::nullopt);
    manager.opens = nullptr;
    Journal();
    EXPECT_EQ(Convert(kMono8, kALaw, Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.sixteenFirst, 0);
    EXPECT_EQ(Journal(), "open 1/8 6/8\nsize 8\nprepare 8 8\nconvert 20\nunprepare\n");
}

TEST_F(AcmStream, A_type_that_has_no_16_bits_is_refused_behind_the_second_attempt) {
    manager.opens = [](const QvFormat& source, const QvFormat&) { return source.wBitsPerSample == 16; };
    EXPECT_EQ(Convert(kALaw, Plain(7, 1, 8000, 8), Counted(8)), std::nullopt) << "nobody narrows A-law";
    EXPECT_EQ(Journal(), "open 6/8 7/8\nopen 6/16 7/8\n");
}

TEST_F(AcmStream, A_manager_that_opens_without_a_stream_is_not_believed) {
    manager.opening.Replace([](auto...) { return 0u; });
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(Journal(), "");
    EXPECT_EQ(stream.stream, nullptr);
}

TEST_F(AcmStream, What_is_short_of_a_whole_block_waits) {
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

TEST_F(AcmStream, Blocks_of_any_size_are_one_stream) {
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

TEST_F(AcmStream, Data_without_a_depth_are_taken_byte_by_byte) {
    EXPECT_EQ(Convert(Coded(65, 0), kMono8, Counted(3)), PlusOne(Counted(3)));
    EXPECT_EQ(stream.carry.format->nBlockAlign, 1);
}

TEST_F(AcmStream, An_empty_last_block_ends_the_stream_only_where_a_block_waits) {
    EXPECT_EQ(Convert(kMono16, kALaw, {}, true), Bytes());
    EXPECT_EQ(Journal(), "open 1/16 6/8\n") << "the end is not told";
    EXPECT_EQ(stream.startPending, 1);
    manager.takesAtMost = 2;
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(6)), PlusOne(Counted(2)));
    Journal();
    EXPECT_EQ(Convert(kMono16, kALaw, {}, true), PlusOne(Counted(2, 2)));
    EXPECT_EQ(Journal(), "size 4\nprepare 4 4\nconvert 32\nunprepare\n");
}

TEST_F(AcmStream, What_the_stream_leaves_is_offered_again_in_front_of_the_next_block) {
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

TEST_F(AcmStream, A_codec_may_swallow_what_it_reads) {
    manager.makesAtMost = 0;
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), Bytes());
    EXPECT_EQ(stream.carry.held(), 0u);
}

TEST_F(AcmStream, A_codec_that_claims_to_have_read_more_than_it_was_given_has_read_that) {
    for (const std::uint32_t more : {1u, 1000u, 0x7FFFFFFFu, 0xFFFFFFF7u}) {
        manager.claimsTaken = more;
        EXPECT_EQ(Convert(Coded(4), kMono16, Counted(9)), PlusOne(Counted(8)));
        EXPECT_EQ(stream.carry.held(), 1u);
        manager.claimsTaken = 0;
        EXPECT_EQ(Convert(Coded(4), kMono16, Counted(3, 9)), PlusOne({8, 9, 10, 11}));
        EXPECT_EQ(stream.carry.held(), 0u);
    }
}

TEST_F(AcmStream, A_codec_that_claims_to_have_written_more_than_there_is_room_fills_the_room) {
    manager.claimsMade = 0xFFFFFFFF - 8;
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), PlusOne(Counted(8)));
    stream.Close();
    Bytes expected = PlusOne(Counted(8));
    expected.resize(16);
    EXPECT_EQ(Convert(kMono16, kStereoALaw, Counted(8)), expected)
        << "which is twice as much for two, zeroed";
}

TEST_F(AcmStream, There_is_room_for_what_the_codec_suggests_in_whole_samples) {
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

TEST_F(AcmStream, Without_room_the_conversion_is_refused) {
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

TEST_F(AcmStream, More_room_than_there_can_be_is_refused) {
    manager.suggests = UINT32_MAX;
    EXPECT_EQ(Convert(kMono16, kStereoALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(Journal(), "open 1/16 6/8\nsize 8\n");
    manager.suggests.reset();
    EXPECT_EQ(Convert(kMono16, kStereoALaw, Counted(8)), PlusOne(Counted(8)));
}

TEST_F(AcmStream, A_failure_loses_what_was_taken_and_keeps_what_was_not) {
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

TEST_F(AcmStream, A_failed_conversion_has_begun_its_stream) {
    manager.conversions.FailCall(1, 1u);
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(stream.startPending, 0);
    Journal();
    Convert(kMono16, kALaw, Counted(8));
    EXPECT_EQ(Journal(), "size 8\nprepare 8 8\nconvert 4\nunprepare\n");
}

TEST_F(AcmStream, What_unprepare_answers_does_not_matter) {
    manager.unpreparations.FailAlways(1u);
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), PlusOne(Counted(8)));
}

TEST_F(AcmStream, Another_format_midway_goes_into_the_stream_that_stands) {
    Convert(kMono16, kALaw, Counted(8));
    Journal();
    EXPECT_EQ(Convert(Plain(1, 2, 8000, 16), kALaw, Counted(10)), PlusOne(Counted(8)));
    EXPECT_EQ(Convert(Plain(1, 1, 48000, 8), kALaw, Counted(1, 10)), PlusOne(Counted(3, 8)));
    EXPECT_EQ(Journal(),
              "size 8\nprepare 8 8\nconvert 4\nunprepare\nsize 3\nprepare 3 3\nconvert 4\nunprepare\n");
    EXPECT_EQ(Convert(kALaw, kALaw, Counted(8)), Counted(8)) << "and what agrees is a copy still";
}

TEST_F(AcmStream, Close_lets_go_of_the_stream_and_of_what_waits) {
    Convert(Coded(4), kMono16, Counted(7));
    EXPECT_EQ(manager.streams, 1);
    stream.Close();
    stream.Close();
    EXPECT_EQ(manager.streams, 0);
    EXPECT_EQ(stream.stream, nullptr);
    EXPECT_EQ(stream.carry.held(), 0u);
    Journal();
    EXPECT_EQ(Convert(Coded(4), kMono16, Counted(4, 100)), PlusOne(Counted(4, 100)));
    EXPECT_EQ(Journal(), "open 17/4 1/16\nsize 4\nprepare 4 4\nconvert 20\nunprepare\n");
    Convert(kMono24, kFloat32, Counted(3));
    stream.Close();
    EXPECT_EQ(stream.ownFloat + stream.sixteenFirst, 0);
}

TEST_F(AcmStream, A_stream_is_closed_with_its_owner_and_one_that_was_never_opened_is_not) {
    {
        clAcmStream passing;
        clAudioBlock in;
        const Bytes samples = Counted(4);
        in.setData(samples.data(), 4, &kMono16, true);
        EXPECT_TRUE(passing.Convert(in, clFormatHolder(&kALaw), false));
        EXPECT_EQ(manager.streams, 1);
        const clAcmStream idle;
    }
    EXPECT_EQ(manager.streams, 0);
    EXPECT_EQ(manager.closing.Calls(), 1);
}

TEST_F(AcmStream, Where_every_open_is_refused_all_passes_that_needs_no_stream) {
    manager.opening.FailAlways(platform::kAcmErrorNoDriver);
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(Convert(kALaw, kMono16, Counted(8)), std::nullopt);
    EXPECT_EQ(Convert(kMono16, Plain(1, 1, 16000, 16), Counted(8)), std::nullopt);
    EXPECT_EQ(Convert(kMono16, kMono16, Counted(8)), Counted(8));
    EXPECT_TRUE(Convert(kMono16, kFloat32, Counted(8)));
    EXPECT_EQ(manager.sizes.Calls() + manager.conversions.Calls() + manager.closing.Calls(), 0);
}

// Each allocation of a call in turn, with bytes that wait before and behind it.
TEST_F(AcmStream, Without_memory_a_block_is_refused_and_a_later_one_passes) {
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
