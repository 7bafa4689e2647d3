// Seeking in a stream.
#include "interface/decoding.h"

namespace {

using DecodingSeek = DoubleDecoding;

const QvFormatExtensible kStereo = PlainRecord(1, 2, 44100, 16);

}  // namespace

TEST_F(DecodingSeek, The_next_block_begins_at_the_time) {
    decoder.stream = Counted(176400);
    ASSERT_EQ(Open(), QV_DONE);
    Decode(400);  // of a larger block, whose rest waits
    for (const std::int64_t ms : {500, 0, 250, 999}) {
        ASSERT_EQ(QADSetPosition(host.handle, ms), QV_DONE);
        const auto first = static_cast<std::size_t>(ms * 44100 / 1000 * 4);
        EXPECT_EQ(host->decodedCarry.held(), 0u);
        EXPECT_EQ(decoder.position, first);
        const Decoded decoded = Decode(176);
        EXPECT_EQ(decoded.data, Counted(176, first));
        EXPECT_EQ(decoded.positionMs, (host->deliveredBytes * 1000) / 176400);
    }
}

TEST_F(DecodingSeek, The_module_gets_a_frame_and_the_position_is_one_of_whole_blocks) {
    const struct {
        QvFormatExtensible own, request;
        std::int64_t ms, frame, bytes;
    } rows[] = {
        {kStereo, {}, 0, 0, 0},
        {kStereo, {}, 1000, 44100, 176400},
        {kStereo, {}, 1, 44, 176},
        {kStereo, {}, 3, 132, 528},  // 529.2 bytes
        {kStereo, {}, -1, -44, -176},
        {kStereo, {}, -3, -132, -528},  // toward zero
        {kStereo, {}, 86400000, 3810240000, 15240960000},
        {PlainRecord(1, 1, 11025, 24), {}, 7, 77, 231},
        {PlainRecord(1, 2, 0xFFFFFFFF, 16), {}, 1000, 0xFFFFFFFF, 0xFFFFFFFC},
        // The frame is told at the rate of the output, not of the file.
        {kStereo, Request(0, 0, 88200), 1000, 88200, 352800},
        {kStereo, Request(0, 0, 22050), 1000, 22050, 88200},
        {kStereo, Request(1, 8, 0), 1000, 44100, 44100},
        // More than 64 bits could hold.
        {kStereo, {}, INT64_MAX, INT64_MAX, INT64_MAX - 3},
        {kStereo, {}, INT64_MIN, INT64_MIN, INT64_MIN},
        {PlainRecord(1, 3, 44100, 8), {}, INT64_MIN, INT64_MIN, INT64_MIN + 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.ms);
        decoder.format = row.own;
        decoder.seeks.clear();
        ASSERT_EQ(Open(row.request), QV_DONE);
        EXPECT_EQ(QADSetPosition(host.handle, row.ms), QV_DONE);
        EXPECT_EQ(decoder.seeks, std::vector<std::int64_t>{row.frame});
        EXPECT_EQ(static_cast<std::int64_t>(host->deliveredBytes), row.bytes);
    }
}

TEST_F(DecodingSeek, A_time_before_the_stream_counts_from_there) {
    decoder.stream = Counted(176400);
    ASSERT_EQ(Open(), QV_DONE);
    ASSERT_EQ(QADSetPosition(host.handle, -500), QV_DONE);
    const Decoded first = Decode(88200);
    EXPECT_EQ(first.data, Counted(88200)) << "decoders begin at the nearest end";
    EXPECT_EQ(first.positionMs, 0u);
    EXPECT_EQ(Decode(88200).positionMs, 500u);
}

TEST_F(DecodingSeek, Behind_the_end_nothing_comes_any_more) {
    decoder.stream = Counted(1000);
    ASSERT_EQ(Open(), QV_DONE);
    ASSERT_NE(Decode(2000).finished, 0u);
    EXPECT_EQ(QADSetPosition(host.handle, 1), QV_DONE);
    EXPECT_EQ(decoder.seeks, std::vector<std::int64_t>{44}) << "the module is sent there";
    EXPECT_EQ(host->deliveredBytes, 176u) << "and the position counts from there";
    EXPECT_TRUE(Decode(400).IsNothing(400));
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(Decode(400).data, Counted(400));
}

TEST_F(DecodingSeek, It_ends_a_stream_whose_module_had_ended_while_audio_waited) {
    decoder.stream = Counted(1000);
    ASSERT_EQ(Open(), QV_DONE);
    Decode(400);  // the module's only block
    EXPECT_EQ(QADSetPosition(host.handle, 0), QV_DONE);
    EXPECT_TRUE(Decode(400).IsNothing(400));
}

TEST_F(DecodingSeek, Without_a_file_it_does_nothing_but_shows_in_the_trace) {
    Trace trace(host);
    EXPECT_EQ(QADSetPosition(host.handle, -12345), QV_NOTHING);
    EXPECT_EQ(trace.OwnLines(), Enter("clConverter::DecoderSetPosition") +
                                    u"Setting decoder position: -12345\r\n" +
                                    Leave("clConverter::DecoderSetPosition"));
    EXPECT_EQ(Errors() + Info(), u"");
    EXPECT_TRUE(decoder.seeks.empty());
}

TEST_F(DecodingSeek, It_shows_in_the_trace) {
    ASSERT_EQ(Open(), QV_DONE);
    Trace trace(host);
    EXPECT_EQ(QADSetPosition(host.handle, 60000), QV_DONE);
    EXPECT_EQ(trace.OwnLines(), Enter("clConverter::DecoderSetPosition") +
                                    u"Setting decoder position: 60000\r\n" +
                                    Leave("clConverter::DecoderSetPosition"));
}

TEST_F(DecodingSeek, Does_not_work_behind_a_close) {
    ASSERT_EQ(Open(), QV_DONE);
    QADCloseFile(host.handle);
    EXPECT_EQ(QADSetPosition(host.handle, 0), QV_NOTHING);
}
