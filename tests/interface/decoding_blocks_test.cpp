// A stream from its first block to its last.
#include <new>
#include <random>

#include "interface/decoding.h"
#include "support/allocation_faults.h"

namespace {

using DecodingBlocks = DoubleDecoding;

Bytes Part(const Bytes& stream, std::size_t first, std::size_t count) {
    const auto begin = stream.begin() + static_cast<std::ptrdiff_t>(first);
    return Bytes(begin, begin + static_cast<std::ptrdiff_t>(count));
}

}  // namespace

TEST_F(DecodingBlocks, Come_in_the_sizes_of_the_host_whatever_those_of_the_module) {
    decoder.stream = Counted(10000);
    for (const std::vector<std::uint32_t>& sizes :
         {std::vector<std::uint32_t>{10000}, {1}, {3, 0, 7, 0, 0}, {4000, 1}, {4096}}) {
        decoder.blocks = sizes;
        for (const std::uint32_t wanted : {180u, 444u, 4096u, 9996u, 10000u, 50000u}) {
            ASSERT_EQ(Open(), QV_DONE);
            EXPECT_EQ(Walk(wanted), decoder.stream) << sizes[0] << " " << wanted;
            EXPECT_EQ(host->deliveredBytes, 10000u);
        }
    }
}

// Beside the stream itself: what was delivered so far is where the next request begins.
TEST_F(DecodingBlocks, Of_random_sizes_on_both_sides_are_the_stream) {
    std::mt19937 generator(1);
    const auto below = [&](std::uint32_t bound) { return static_cast<std::uint32_t>(generator() % bound); };
    for (int round = 0; round < 40; ++round) {
        decoder.stream = Counted(4 * below(5000) + below(4));
        decoder.blocks.assign(1 + below(5), 1 + below(300));
        for (std::uint32_t& size : decoder.blocks) size = below(2) * below(2000) + size;
        decoder.endsWithEmptyBlock = below(2) == 0;
        decoder.failsBeforeBlock = static_cast<int>(below(3));
        ASSERT_EQ(Open(), QV_DONE);
        std::size_t delivered = 0;
        for (bool ended = false; !ended;) {
            const std::uint32_t wanted = 1 + below(3000);
            const std::uint32_t whole = wanted / 4 * 4;
            const std::size_t left = decoder.stream.size() - delivered;
            const Decoded decoded = Decode(wanted);
            if (left == 0) {
                ASSERT_TRUE(decoded.IsNothing(wanted));
                break;
            }
            const std::size_t expected = std::min<std::size_t>(whole, left);
            ASSERT_EQ(decoded.bytes, expected);
            ASSERT_EQ(decoded.data, Part(decoder.stream, delivered, expected / 4 * 4));
            delivered += expected;
            ASSERT_EQ(decoded.positionMs, delivered * 1000 / 176400);
            ASSERT_EQ(decoded.finished != 0, left < whole);
            ended = decoded.finished != 0;
        }
        ASSERT_EQ(delivered, decoder.stream.size());
    }
}

TEST_F(DecodingBlocks, A_short_tail_comes_with_finished_and_behind_it_comes_nothing) {
    decoder.stream = Counted(1000);
    decoder.finishedValue = 7;
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(Decode(800).finished, 0u);
    const Decoded tail = Decode(800);
    EXPECT_EQ(tail.result, QV_DONE);
    EXPECT_EQ(tail.bytes, 200u);
    EXPECT_EQ(tail.finished, 7u) << "as the module says it";
    EXPECT_EQ(tail.positionMs, 5u);
    EXPECT_EQ(tail.data, Part(decoder.stream, 800, 200));
    for (int call = 0; call < 3; ++call) EXPECT_TRUE(Decode(800).IsNothing(800));
}

TEST_F(DecodingBlocks, A_tail_that_fills_the_last_request_exactly_ends_the_stream_without_finished) {
    for (const bool emptyBlock : {false, true}) {
        decoder.endsWithEmptyBlock = emptyBlock;
        decoder.stream = Counted(1600);
        ASSERT_EQ(Open(), QV_DONE);
        for (const std::size_t first : {0u, 800u}) {
            const Decoded decoded = Decode(800);
            EXPECT_EQ(decoded.bytes, 800u);
            EXPECT_EQ(decoded.finished, 0u);
            EXPECT_EQ(decoded.data, Part(decoder.stream, first, 800));
        }
        EXPECT_TRUE(Decode(800).IsNothing(800));
        EXPECT_NE(host->decoderFinished, 0u) << "only the host is not told";
        EXPECT_TRUE(Decode(800).IsNothing(800));
    }
}

TEST_F(DecodingBlocks, A_request_that_is_no_multiple_of_a_frame_is_rounded_down) {
    decoder.stream = Counted(100);
    decoder.blocks = {10};
    ASSERT_EQ(Open(), QV_DONE);
    const Decoded decoded = Decode(43);
    EXPECT_EQ(decoded.bytes, 40u);
    EXPECT_EQ(decoded.data, Counted(40));
    EXPECT_EQ(Decode(4).data, Part(decoder.stream, 40, 4)) << "nothing is lost between them";
}

TEST_F(DecodingBlocks, A_request_below_a_frame_gets_nothing_though_the_module_has_run) {
    decoder.stream = Counted(100);
    decoder.blocks = {10};
    ASSERT_EQ(Open(), QV_DONE);
    for (int call = 0; call < 2; ++call) {
        const Decoded decoded = Decode(3);
        EXPECT_EQ(decoded.result, QV_DONE);
        EXPECT_EQ(decoded.bytes + decoded.finished + decoded.positionMs, 0u);
        EXPECT_EQ(decoded.data, Bytes());
        EXPECT_EQ(decoder.blocksGiven, 1u);
    }
    EXPECT_EQ(Decode(8).data, Counted(8));
}

TEST_F(DecodingBlocks, A_request_for_nothing_runs_no_module) {
    decoder.stream = Counted(100);
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_TRUE(Decode(0).IsNothing(0));
    EXPECT_EQ(QADDecodeBlock(host.handle, nullptr, nullptr, nullptr, nullptr), QV_DONE);
    EXPECT_EQ(decoder.blocksGiven, 0u);
}

TEST_F(DecodingBlocks, A_null_buffer_drops_the_audio_and_changes_nothing_else) {
    decoder.stream = Counted(1000);
    decoder.blocks = {333};
    ASSERT_EQ(Open(), QV_DONE);
    std::uint32_t bytes = 400, finished = 9;
    std::uint64_t positionMs = 9;
    EXPECT_EQ(QADDecodeBlock(host.handle, nullptr, &bytes, &finished, &positionMs), QV_DONE);
    EXPECT_EQ(bytes, 400u);
    EXPECT_EQ(finished, 0u);
    EXPECT_EQ(positionMs, 2u);
    EXPECT_EQ(Decode(100).data, Part(decoder.stream, 400, 100));
    bytes = UINT32_MAX;
    EXPECT_EQ(QADDecodeBlock(host.handle, nullptr, &bytes, &finished, &positionMs), QV_DONE);
    EXPECT_EQ(bytes, 500u);
    EXPECT_EQ(finished, 1u);
    EXPECT_EQ(positionMs, 5u);
}

TEST_F(DecodingBlocks, Null_outputs_receive_nothing) {
    decoder.stream = Counted(1000);
    ASSERT_EQ(Open(), QV_DONE);
    Bytes buffer(500);
    std::uint32_t bytes = 500;
    EXPECT_EQ(QADDecodeBlock(host.handle, buffer.data(), &bytes, nullptr, nullptr), QV_DONE);
    EXPECT_EQ(buffer, Counted(500));
    EXPECT_EQ(Decode(500).data, Part(decoder.stream, 500, 500));
}

TEST_F(DecodingBlocks, A_module_that_has_none_just_now_is_asked_again) {
    decoder.stream = Counted(100);
    decoder.blocks = {10};
    decoder.failsBeforeBlock = 1000;
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(Decode(100).data, Counted(100));
    EXPECT_EQ(Errors(), u"");
}

TEST_F(DecodingBlocks, Bytes_without_data_are_no_bytes) {
    decoder.stream = Counted(100);
    decoder.lendsNull = true;
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_TRUE(Decode(100).IsNothing(100));
    EXPECT_NE(host->decoderFinished, 0u);
}

TEST_F(DecodingBlocks, The_timecode_of_the_last_block_is_kept) {
    decoder.stream = Counted(100);
    decoder.blocks = {10};
    ASSERT_EQ(Open(), QV_DONE);
    Decode(36);
    EXPECT_EQ(host->moduleTimecode, 4u);
}

TEST_F(DecodingBlocks, Nothing_of_them_shows_in_the_trace) {
    decoder.stream = Counted(100);
    ASSERT_EQ(Open(), QV_DONE);
    Trace trace(host);
    Decode(64);
    Decode(64);
    EXPECT_EQ(trace.Text(), u"");
}

TEST_F(DecodingBlocks, Another_file_begins_at_its_own_first_byte) {
    decoder.stream = Counted(1000);
    ASSERT_EQ(Open(), QV_DONE);
    Decode(400);
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(host->moduleTimecode + host->deliveredBytes + host->decoderFinished, 0u);
    const Decoded decoded = Decode(400);
    EXPECT_EQ(decoded.data, Counted(400));
    EXPECT_EQ(decoded.positionMs, 2u);
    EXPECT_EQ(Walk(400), Part(decoder.stream, 400, 600));
    ASSERT_EQ(Open(), QV_DONE) << "also behind an end";
    EXPECT_EQ(Walk(400), decoder.stream);
}

TEST_F(DecodingBlocks, Closing_drops_what_waits) {
    decoder.stream = Counted(1000);
    ASSERT_EQ(Open(), QV_DONE);
    Decode(400);
    ASSERT_EQ(QADCloseFile(host.handle), QV_DONE);
    EXPECT_TRUE(Decode(400).IsNothing(400));
    EXPECT_EQ(decoder.closedWith, &host->encoderRecord);
}

TEST_F(DecodingBlocks, Pass_with_as_many_channels_as_there_are_also_with_nine) {
    decoder.format = PlainRecord(1, 9, 44100, 16);
    decoder.stream = Counted(18 * 100);
    ASSERT_EQ(Open(Request(9, 0, 0)), QV_DONE);
    EXPECT_EQ(Walk(18 * 50), decoder.stream);
}

TEST_F(DecodingBlocks, That_can_not_be_brought_into_the_format_give_no_audio) {
    decoder.format = PlainRecord(1, 9, 44100, 16);
    decoder.stream = Counted(18 * 100);
    ASSERT_EQ(Open(Request(8, 0, 0)), QV_DONE) << "which is not noticed here";
    EXPECT_EQ(format.Format.nChannels, 8);
    EXPECT_TRUE(Decode(1600).IsNothing(1600));
    EXPECT_EQ(decoder.position, decoder.stream.size()) << "the module has run to its end";
    EXPECT_EQ(Errors(), u"");
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(Walk(1800), decoder.stream) << "the changer works on";
}

TEST_F(DecodingBlocks, A_block_alignment_that_is_not_that_of_whole_samples_delivers_less_than_it_says) {
    decoder.format = PlainRecord(1, 2, 44100, 12);  // 3 bytes, of which a sample of each channel is 2
    decoder.stream = Counted(30, 1);
    ASSERT_EQ(Open(), QV_DONE);
    const Decoded decoded = Decode(9);
    EXPECT_EQ(decoded.bytes, 9u);
    EXPECT_EQ(decoded.data, Counted(8, 1));
    EXPECT_EQ(Decode(6).data, Part(decoder.stream, 9, 6));
}

TEST_F(DecodingBlocks, A_request_that_leaves_a_block_alignment_of_0_is_delivered_byte_by_byte) {
    decoder.format = PlainRecord(1, 1, 8000, 8);
    decoder.stream = Counted(100);
    ASSERT_EQ(Open(Request(0, 4, 0)), QV_DONE);
    EXPECT_EQ(format.Format.nBlockAlign + format.Format.nAvgBytesPerSec, 0u);
    const Decoded decoded = Decode(7);
    EXPECT_EQ(decoded.data, Counted(7));
    EXPECT_EQ(decoded.positionMs, 7000u) << "one byte a second";
    EXPECT_EQ(QADSetPosition(host.handle, 20000), QV_DONE);
    EXPECT_EQ(host->deliveredBytes, 20u);
    ASSERT_EQ(Open(Request(0, 4, 0)), QV_DONE);
    std::uint32_t bytes = 1;
    EXPECT_EQ(QADDecodeBlock(host.handle, nullptr, &bytes, nullptr, nullptr), QV_DONE);
    EXPECT_EQ(QADSetPosition(host.handle, 20000), QV_DONE);
    EXPECT_EQ(host->deliveredBytes, 20u) << "whether or not the host asks for the time";
}

TEST_F(DecodingBlocks, Coded_data_without_a_depth_are_not_counted_by_a_file_before) {
    decoder.format = PlainRecord(1, 8, 44100, 32);
    decoder.stream = Counted(32 * 10);
    ASSERT_EQ(Open(), QV_DONE);
    Walk(320);
    decoder.format = PlainRecord(80, 2, 44100, 0);
    decoder.stream = Counted(50);
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(Decode(40).data, Counted(40));
}

TEST_F(DecodingBlocks, Without_memory_the_call_raises_or_a_block_is_lost_and_the_handle_works_on) {
    decoder.format = ExtensibleRecord(1, 2, 44100, 16, 3);
    decoder.stream = Counted(4000);
    decoder.blocks = {400};
    int faults = 0;
    for (bool failed = true; failed;) {
        Host fresh;
        fresh->moduleHandle = home.Self();
        ASSERT_EQ(QADOpenFile(fresh.handle, In(file.c_str()), nullptr, nullptr), QV_DONE);
        Bytes buffer(2000);
        std::uint32_t bytes = 2000;
        {
            AllocationFaults memory;
            memory.FailCall(faults + 1);
            try {
                QADDecodeBlock(fresh.handle, buffer.data(), &bytes, nullptr, nullptr);
            } catch (const std::bad_alloc&) {
            }
            failed = memory.HasFailed();
        }
        faults += failed;
        const std::uint64_t before = fresh->deliveredBytes;
        bytes = 400;
        EXPECT_EQ(QADDecodeBlock(fresh.handle, buffer.data(), &bytes, nullptr, nullptr), QV_DONE);
        EXPECT_EQ(bytes, 400u);
        EXPECT_EQ(fresh->deliveredBytes, before + 400);
        EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 4), Counted(4, buffer[0]))
            << "a block is whole or lost";
    }
    EXPECT_GE(faults, 3);
}

TEST_F(DecodingBlocks, A_queue_that_can_not_grow_raises_and_keeps_what_waits) {
    decoder.stream = Counted(4000);
    decoder.blocks = {400};
    ASSERT_EQ(Open(), QV_DONE);
    Decode(100);  // 300 wait, and another 400 do not fit
    Bytes buffer(600);
    std::uint32_t bytes = 600;
    EXPECT_TRUE(
        RaisesWithoutMemory([&] { QADDecodeBlock(host.handle, buffer.data(), &bytes, nullptr, nullptr); }));
    EXPECT_EQ(host->decodedCarry.held(), 300u);
    EXPECT_EQ(Decode(300).data, Part(decoder.stream, 100, 300));
}
