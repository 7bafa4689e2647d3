// Which way a block takes through the system's codecs, and how a stream is opened and closed.
#include <cstring>

#include "audio/scripted_stream.h"

using AcmStreamWays = ScriptedStream;

TEST_F(AcmStreamWays, The_same_type_and_rate_are_a_copy_whatever_depth_and_channels) {
    for (const QvFormat& to : {kMono16, kMono24, Plain(1, 6, 8000, 8)}) {
        EXPECT_EQ(Convert(kMono16, to, Counted(8)), Counted(8));
        EXPECT_EQ(stream.output.format->wBitsPerSample, 16) << "what comes out is what came in";
    }
    EXPECT_EQ(Convert(kALaw, kALaw, {}, true), Bytes());
    EXPECT_EQ(stream.stream, nullptr);
    EXPECT_EQ(stream.ownFloat + stream.sixteenFirst + stream.startPending, 0);
    EXPECT_EQ(Journal(), "");
}

TEST_F(AcmStreamWays, A_record_told_in_another_way_is_the_same_type) {
    const QvFormatExtensible extensible = Extensible(6, 1, 8000, 8);
    EXPECT_EQ(Convert(extensible.Format, kALaw, Counted(8)), Counted(8));
    EXPECT_EQ(Convert(kALaw, extensible.Format, Counted(8)), Counted(8));
    EXPECT_EQ(Journal(), "");
}

TEST_F(AcmStreamWays, Integers_to_floats_of_the_same_rate_take_no_stream_and_have_32_bits) {
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

TEST_F(AcmStreamWays, Integers_to_floats_of_another_rate_ask_the_manager) {
    EXPECT_EQ(Convert(kMono16, Plain(3, 1, 16000, 32), Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.ownFloat, 0);
    EXPECT_EQ(Journal(), "open 1/16 3/32\nsize 8\nprepare 8 8\nconvert 20\nunprepare\n");
}

TEST_F(AcmStreamWays, The_manager_is_given_plain_records_where_there_are_such) {
    const QvFormatExtensible from = Extensible(1, 1, 8000, 16), to = Extensible(6, 1, 8000, 8);
    EXPECT_EQ(Convert(from.Format, to.Format, Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.output.format->cbSize, 0);
    EXPECT_EQ(Journal().substr(0, 14), "open 1/16 6/8\n");
    clAcmStream unknown;
    const QvFormatExtensible strange = Extensible(0x1234, 1, 8000, 16);
    EXPECT_TRUE(unknown.Open(clAudioBlock(), clFormatHolder(&strange.Format)));
    EXPECT_EQ(Journal(), "open 0/0 65534/16\n");
}

TEST_F(AcmStreamWays, More_than_16_bits_are_narrowed_at_the_first_attempt) {
    const Bytes samples = {0x01, 0x34, 0x12, 0xFF, 0x00, 0x80};
    EXPECT_EQ(Convert(kMono24, kALaw, samples), PlusOne({0x34, 0x12, 0x00, 0x80}));
    EXPECT_EQ(stream.sixteenFirst, 1);
    EXPECT_EQ(stream.sourceFormat.format->wBitsPerSample, 16);
    EXPECT_EQ(stream.sourceFormat.format->nBlockAlign, 2);
    EXPECT_EQ(stream.sourceFormat.format->nAvgBytesPerSec, 16000u);
    EXPECT_EQ(Journal(), "open 1/16 6/8\nsize 4\nprepare 4 4\nconvert 20\nunprepare\n");
    EXPECT_EQ(Convert(kMono24, kALaw, samples), PlusOne({0x34, 0x12, 0x00, 0x80})) << "and every block";
}

TEST_F(AcmStreamWays, A_refusal_of_8_bits_is_followed_by_an_attempt_with_16) {
    manager.opens = [](const QvFormat& source, const QvFormat&) { return source.wBitsPerSample == 16; };
    EXPECT_EQ(Convert(kMono8, kALaw, {0x80, 0x81, 0x00}), PlusOne({0, 0, 0, 1, 0, 0x80}));
    EXPECT_EQ(stream.sixteenFirst, 1);
    EXPECT_EQ(Journal(), "open 1/8 6/8\nopen 1/16 6/8\nsize 6\nprepare 6 6\nconvert 20\nunprepare\n");
}

TEST_F(AcmStreamWays, A_refusal_of_16_bits_is_asked_once_more_and_then_stands) {
    manager.opens = [](const QvFormat&, const QvFormat&) { return false; };
    for (int block = 0; block < 2; ++block) {
        EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
        EXPECT_EQ(Journal(), "open 1/16 6/8\nopen 1/16 6/8\n") << "for every block anew";
        EXPECT_EQ(stream.stream, nullptr);
        EXPECT_EQ(stream.carry.held(), 0u);
    }
    EXPECT_EQ(Convert(kMono16, kMono16, Counted(8)), Counted(8)) << "what needs no stream passes";
}

TEST_F(AcmStreamWays, What_an_attempt_in_vain_has_changed_does_not_meet_the_next_block) {
    manager.opens = [](const QvFormat&, const QvFormat&) { return false; };
    EXPECT_EQ(Convert(kMono8, kALaw, Counted(8)), std::nullopt);
    manager.opens = nullptr;
    Journal();
    EXPECT_EQ(Convert(kMono8, kALaw, Counted(8)), PlusOne(Counted(8)));
    EXPECT_EQ(stream.sixteenFirst, 0);
    EXPECT_EQ(Journal(), "open 1/8 6/8\nsize 8\nprepare 8 8\nconvert 20\nunprepare\n");
}

TEST_F(AcmStreamWays, A_type_that_has_no_16_bits_is_refused_behind_the_second_attempt) {
    manager.opens = [](const QvFormat& source, const QvFormat&) { return source.wBitsPerSample == 16; };
    EXPECT_EQ(Convert(kALaw, Plain(7, 1, 8000, 8), Counted(8)), std::nullopt) << "nobody narrows A-law";
    EXPECT_EQ(Journal(), "open 6/8 7/8\nopen 6/16 7/8\n");
}

TEST_F(AcmStreamWays, A_manager_that_opens_without_a_stream_is_not_believed) {
    manager.opening.Replace([](auto...) { return 0u; });
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(Journal(), "");
    EXPECT_EQ(stream.stream, nullptr);
}

TEST_F(AcmStreamWays, Another_format_midway_goes_into_the_stream_that_stands) {
    Convert(kMono16, kALaw, Counted(8));
    Journal();
    EXPECT_EQ(Convert(Plain(1, 2, 8000, 16), kALaw, Counted(10)), PlusOne(Counted(8)));
    EXPECT_EQ(Convert(Plain(1, 1, 48000, 8), kALaw, Counted(1, 10)), PlusOne(Counted(3, 8)));
    EXPECT_EQ(Journal(),
              "size 8\nprepare 8 8\nconvert 4\nunprepare\nsize 3\nprepare 3 3\nconvert 4\nunprepare\n");
    EXPECT_EQ(Convert(kALaw, kALaw, Counted(8)), Counted(8)) << "and what agrees is a copy still";
}

TEST_F(AcmStreamWays, Close_lets_go_of_the_stream_and_of_what_waits) {
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

TEST_F(AcmStreamWays, A_stream_is_closed_with_its_owner_and_one_that_was_never_opened_is_not) {
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

TEST_F(AcmStreamWays, Where_every_open_is_refused_all_passes_that_needs_no_stream) {
    manager.opening.FailAlways(platform::kAcmErrorNoDriver);
    EXPECT_EQ(Convert(kMono16, kALaw, Counted(8)), std::nullopt);
    EXPECT_EQ(Convert(kALaw, kMono16, Counted(8)), std::nullopt);
    EXPECT_EQ(Convert(kMono16, Plain(1, 1, 16000, 16), Counted(8)), std::nullopt);
    EXPECT_EQ(Convert(kMono16, kMono16, Counted(8)), Counted(8));
    EXPECT_TRUE(Convert(kMono16, kFloat32, Counted(8)));
    EXPECT_EQ(manager.sizes.Calls() + manager.conversions.Calls() + manager.closing.Calls(), 0);
}
