// Decoding in the format that the host asks for.
#include <cstring>
#include <optional>

#include "audio/format_changer.h"
#include "interface/decoding.h"
#include "support/allocation_faults.h"

namespace {

class DecodingFormats : public DoubleDecoding {
  public:
    std::size_t FrameBytes() const { return format.Format.nBlockAlign; }
    bool GivesNothing() {
        const std::uint32_t wanted = 400u * std::max<std::uint32_t>(format.Format.nBlockAlign, 1);
        return Decode(wanted).IsNothing(wanted);
    }
};

template <class Sample>
Bytes Stored(const std::vector<Sample>& samples) {
    Bytes bytes(samples.size() * sizeof(Sample));
    std::memcpy(bytes.data(), samples.data(), bytes.size());
    return bytes;
}

const Bytes kFloats = Stored<float>({0, 0.5f, -1, 1});

bool IsFloat(const QvFormatExtensible& format) {
    const clFormatHolder holder(&format.Format);
    return holder.sampleType() == QV_FORMAT_FLOAT;
}

// What a changer makes of the stream as one block.
Bytes ChangedAtOnce(const DecoderDouble& decoder, const QvFormatExtensible& to) {
    clAudioBlock in;
    in.setData(decoder.stream.data(), static_cast<std::uint32_t>(decoder.stream.size()),
               &decoder.format.Format, true);
    clFormatChanger changer;
    EXPECT_TRUE(changer.ChangeFormat(in, clFormatHolder(&to.Format), true));
    return Bytes(changer.result.data, changer.result.data + changer.result.bytes);
}

}  // namespace

TEST_F(DecodingFormats, A_file_of_floats_gives_integers_where_there_is_no_float_of_the_depth) {
    const struct {
        std::uint16_t bits;
        bool isFloat;
        Bytes audio;
    } rows[] = {
        {8, false, {128, 192, 0, 255}},
        {16, false, Stored<std::int16_t>({0, 16384, -32768, 32767})},
        {24, false, {0, 0, 0, 0, 0, 0x40, 0, 0, 0x80, 0xFF, 0xFF, 0x7F}},
        {32, true, kFloats},
        {64, true, Stored<double>({0, 0.5, -1, 2147483647.0 / 2147483648.0})},
    };
    decoder.stream = kFloats;
    decoder.blocks = {4, 8};
    for (const QvFormatExtensible& own :
         {PlainRecord(3, 1, 44100, 32), ExtensibleRecord(3, 1, 44100, 32, 4)}) {
        decoder.format = own;
        for (const auto& row : rows) {
            SCOPED_TRACE(row.bits);
            ASSERT_EQ(Open(Request(0, row.bits, 0)), QV_DONE);
            QvFormatExtensible expected = own.Format.cbSize == 0
                                              ? PlainRecord(row.isFloat ? 3 : 1, 1, 44100, row.bits)
                                              : ExtensibleRecord(row.isFloat ? 3 : 1, 1, 44100, row.bits, 4);
            EXPECT_EQ(std::memcmp(&format, &expected, sizeof format), 0) << "the host is told";
            EXPECT_EQ(Walk(400), row.audio);
        }
    }
}

TEST_F(DecodingFormats, Floats_of_64_bits_are_narrowed_likewise) {
    decoder.format = PlainRecord(3, 1, 44100, 64);
    decoder.stream = Stored<double>({0, 0.5, -1, 1});
    ASSERT_EQ(Open(Request(0, 32, 0)), QV_DONE);
    EXPECT_TRUE(IsFloat(format));
    EXPECT_EQ(Walk(400), Stored<float>({0, 0.5f, -1, 1}));
    ASSERT_EQ(Open(Request(0, 16, 0)), QV_DONE);
    EXPECT_FALSE(IsFloat(format));
    EXPECT_EQ(Walk(400), Stored<std::int16_t>({0, 16384, -32768, 32767}));
}

TEST_F(DecodingFormats, A_file_of_integers_stays_one_of_integers) {
    const std::int16_t samples[] = {0x1234, -0x8000, 0x7FFF, -1};
    const struct {
        std::uint16_t bits;
        Bytes audio;
    } rows[] = {
        {8, {0x92, 0x00, 0xFF, 0x7F}},
        {16, Stored<std::int16_t>({0x1234, -0x8000, 0x7FFF, -1})},
        {24, {0, 0x34, 0x12, 0, 0, 0x80, 0, 0xFF, 0x7F, 0, 0xFF, 0xFF}},
        {32, Stored<std::int32_t>({0x12340000, INT32_MIN, 0x7FFF0000, -0x10000})},
    };
    decoder.format = PlainRecord(1, 2, 44100, 16);
    decoder.stream.assign(reinterpret_cast<const std::uint8_t*>(samples),
                          reinterpret_cast<const std::uint8_t*>(samples) + sizeof samples);
    for (const auto& row : rows) {
        ASSERT_EQ(Open(Request(0, row.bits, 0)), QV_DONE);
        EXPECT_EQ(format.Format.wFormatTag, 1);
        EXPECT_EQ(format.Format.wBitsPerSample, row.bits);
        EXPECT_EQ(Walk(400), row.audio);
    }
}

TEST_F(DecodingFormats, What_can_not_be_reached_is_answered_as_asked_and_gives_no_audio) {
    const struct {
        QvFormatExtensible own, request;
    } rows[] = {
        {PlainRecord(1, 2, 44100, 16), Request(0, 64, 0)},  // integers of 64 bits
        {PlainRecord(1, 2, 44100, 16), Request(0, 12, 0)},  // a depth that there isn't
        {PlainRecord(3, 2, 44100, 32), Request(0, 20, 0)},
        {PlainRecord(1, 2, 44100, 16), Request(9, 0, 0)},  // too many channels to mix
        {PlainRecord(1, 9, 44100, 16), Request(2, 0, 0)},
        {PlainRecord(1, 0, 44100, 16), Request(2, 0, 0)},      // none
        {PlainRecord(1, 2, 25000, 16), Request(0, 0, 30000)},  // a ratio of 5 to 6
        {PlainRecord(1, 2, 44100, 16), Request(0, 0, 0x7FFFFFFF)},
        {PlainRecord(6, 1, 8000, 8), Request(0, 16, 0)},  // a law
        {PlainRecord(80, 2, 44100, 0), Request(0, 16, 0)},
    };
    decoder.stream = Counted(2304);
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        decoder.format = row.own;
        decoder.position = 0;
        ASSERT_EQ(Open(row.request), QV_DONE);
        if (row.request.Format.wBitsPerSample) {
            EXPECT_EQ(format.Format.wBitsPerSample, row.request.Format.wBitsPerSample);
        }
        EXPECT_TRUE(GivesNothing());
        EXPECT_EQ(decoder.position, decoder.stream.size()) << "the module has run to its end";
        EXPECT_EQ(Errors(), u"");
    }
}

TEST_F(DecodingFormats, Any_channels_from_1_to_8_become_any_others_frame_by_frame) {
    for (std::uint16_t from = 1; from <= 8; ++from) {
        decoder.format = ExtensibleRecord(1, from, 48000, 16, 0x3F);
        decoder.stream = Counted(from * 2u * 501);
        decoder.blocks = {from * 2u * 100};
        for (std::uint16_t to = 1; to <= 8; ++to) {
            SCOPED_TRACE(testing::Message() << from << " to " << to);
            ASSERT_EQ(Open(Request(to, 0, 0)), QV_DONE);
            EXPECT_EQ(format.Format.nChannels, to);
            EXPECT_EQ(format.dwChannelMask, from == to ? 0x3Fu : 0u);
            const Bytes expected = ChangedAtOnce(decoder, format);
            EXPECT_EQ(expected.size(), to * 2u * 501);
            EXPECT_EQ(Walk(to * 2u * 64), expected);
        }
    }
}

TEST_F(DecodingFormats, Another_rate_gives_its_exact_length_and_the_last_request_is_told_the_end) {
    decoder.format = PlainRecord(1, 2, 44100, 16);
    decoder.stream = Counted(4 * 50021);
    decoder.blocks = {4000, 0, 4, 9996};
    for (const std::uint32_t rate : {48000u, 22050u, 96000u, 8000u}) {
        SCOPED_TRACE(rate);
        Host fresh;  // for each stream its own
        fresh->moduleHandle = home.Self();
        QvFormatExtensible asked = Request(0, 0, rate);
        std::uint64_t length = 0, positionMs = 0;
        ASSERT_EQ(QADOpenFile(fresh.handle, In(file.c_str()), &asked, &length), QV_DONE);
        EXPECT_EQ(asked.Format.nAvgBytesPerSec, rate * 4);
        const std::size_t due = std::size_t{50021} * rate / 44100 * 4;
        Bytes all, buffer(12345 * 4);
        std::uint32_t finished = 0;
        while (!finished) {
            auto bytes = static_cast<std::uint32_t>(buffer.size());
            ASSERT_EQ(QADDecodeBlock(fresh.handle, buffer.data(), &bytes, &finished, &positionMs), QV_DONE);
            ASSERT_TRUE(finished || positionMs != 0);
            all.insert(all.end(), buffer.begin(), buffer.begin() + bytes);
        }
        EXPECT_EQ(all.size(), due);
        EXPECT_EQ(positionMs, due * 1000 / (rate * 4));
        EXPECT_EQ(all, ChangedAtOnce(decoder, asked)) << "however the module and the host cut it";
    }
}

TEST_F(DecodingFormats, Channels_depth_and_rate_are_changed_at_once) {
    decoder.format = PlainRecord(1, 6, 48000, 24);
    decoder.stream = Counted(18 * 30000);
    decoder.blocks = {18 * 500};
    ASSERT_EQ(Open(Request(2, 16, 44100)), QV_DONE);
    const Bytes audio = Walk(4 * 4096);
    EXPECT_EQ(audio.size(), 30000u * 441 / 480 * 4);
    EXPECT_EQ(audio, ChangedAtOnce(decoder, format));
}

// One handle, one stream: the design and what waits in it stay. Wrong speed, but whole frames, and an end.
TEST_F(DecodingFormats,
       A_second_stream_of_another_rate_on_the_same_handle_goes_through_the_first_ones_filters) {
    decoder.format = PlainRecord(1, 2, 44100, 16);
    decoder.stream = Counted(4 * 50000);
    ASSERT_EQ(Open(Request(0, 0, 48000)), QV_DONE);
    const std::size_t first = Walk(40000).size();
    EXPECT_EQ(first, 50000u * 480 / 441 * 4);
    decoder.format = PlainRecord(1, 2, 22050, 16);
    ASSERT_EQ(Open(Request(0, 0, 48000)), QV_DONE);
    const std::size_t second = Walk(40000).size();
    EXPECT_EQ(second % 4, 0u);
    EXPECT_LT(second, first + 4 * 40000) << "at the ratio of the first";
    decoder.format = PlainRecord(1, 2, 48000, 16);
    ASSERT_EQ(Open(Request(0, 0, 0)), QV_DONE);
    EXPECT_EQ(Walk(40000), decoder.stream) << "what needs no change is not touched by it";
}

TEST_F(DecodingFormats, A_seek_takes_what_is_in_the_filters_along_and_counts_from_its_place) {
    decoder.format = PlainRecord(1, 1, 44100, 16);
    decoder.stream = Counted(2 * 200000);
    decoder.blocks = {10000};
    ASSERT_EQ(Open(Request(0, 0, 48000)), QV_DONE);
    ASSERT_EQ(Decode(20000).bytes, 20000u);
    ASSERT_EQ(QADSetPosition(host.handle, 1000), QV_DONE);
    EXPECT_EQ(decoder.seeks, std::vector<std::int64_t>{48000}) << "at the rate of the output";
    EXPECT_EQ(host->deliveredBytes, 96000u);
    EXPECT_EQ(Decode(20000).positionMs, 1000u + 208u);
    EXPECT_GT(Walk(20000).size(), 0u);
}

TEST_F(DecodingFormats, A_request_of_4_GiB_gets_what_there_is) {
    decoder.format = PlainRecord(1, 2, 44100, 16);
    decoder.stream = Counted(4 * 44100);
    ASSERT_EQ(Open(Request(1, 24, 48000)), QV_DONE);
    std::uint32_t bytes = UINT32_MAX, finished = 0;
    EXPECT_EQ(QADDecodeBlock(host.handle, nullptr, &bytes, &finished, nullptr), QV_DONE);
    EXPECT_EQ(bytes, 3u * 48000);
    EXPECT_EQ(finished, 1u);
}

TEST_F(DecodingFormats, A_file_without_channels_or_with_a_depth_that_nobody_knows_stays_within_its_bytes) {
    for (const QvFormatExtensible& own :
         {PlainRecord(1, 0, 44100, 16), PlainRecord(1, 2, 44100, 12), PlainRecord(1, 4095, 0xFFFFFFFF, 65535),
          PlainRecord(3, 1, 8000, 16)}) {
        SCOPED_TRACE(own.Format.wBitsPerSample);
        decoder.format = own;
        decoder.stream = Counted(1001);
        for (const QvFormatExtensible& request : {Request(0, 0, 0), Request(2, 0, 0), Request(0, 16, 0),
                                                  Request(0, 0, 48000), Request(65535, 65535, 1)}) {
            ASSERT_EQ(Open(request), QV_DONE);
            Decode(4096);
            Decode(1);
        }
    }
}

TEST_F(DecodingFormats, Without_memory_the_call_raises_or_a_block_is_lost_and_the_handle_works_on) {
    decoder.format = ExtensibleRecord(3, 2, 44100, 32, 3);
    decoder.stream = Counted(40000);
    decoder.blocks = {8000};
    int faults = 0;
    for (bool failed = true; failed;) {
        Host fresh;
        fresh->moduleHandle = home.Self();
        QvFormatExtensible asked = Request(1, 16, 48000);
        ASSERT_EQ(QADOpenFile(fresh.handle, In(file.c_str()), &asked, nullptr), QV_DONE);
        Bytes buffer(20000);
        std::uint32_t bytes = 20000, finished = 0;
        {
            AllocationFaults memory;
            memory.FailCall(faults + 1);
            try {
                QADDecodeBlock(fresh.handle, buffer.data(), &bytes, &finished, nullptr);
            } catch (const std::bad_alloc&) {
            }
            failed = memory.HasFailed();
        }
        faults += failed;
        ASSERT_EQ(QADOpenFile(fresh.handle, In(file.c_str()), &asked, nullptr), QV_DONE);
        bytes = 2000;
        EXPECT_EQ(QADDecodeBlock(fresh.handle, buffer.data(), &bytes, &finished, nullptr), QV_DONE);
        EXPECT_EQ(bytes, 2000u) << faults;
    }
    EXPECT_GE(faults, 15);
}
