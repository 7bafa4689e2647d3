// Honest files in all their shapes, and files that are shorter than they should be.
#include <gtest/gtest.h>

#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

using namespace wave_bytes;

namespace {

class WaveDecoding : public testing::Test {
  protected:
    Decoding Decode(const std::string& bytes) { return mModules.Decode(mFolder.Write(u"a.wav", bytes)); }
    std::u16string Named(const char16_t* message) const {
        return mFolder / u"a.wav" + u": " + message + u"\r\n";
    }

    WaveModules mModules;
    TempFolder mFolder;
};

const std::string kAudio = Noise(400);  // 100 frames of StereoFormat

}  // namespace

TEST_F(WaveDecoding, Chunks_of_any_kind_and_order_are_passed_over) {
    const std::string data = Chunk("data", kAudio);
    const std::string odd = Chunk("odd ", "abc");
    const struct {
        const char* what;
        std::string chunks;
    } rows[] = {
        {"plainest", StereoFormat() + data},
        {"format of 18 bytes", Chunk("fmt ", Head(1, 2, 44100, 4, 16) + U16(0)) + data},
        {"format whose cbSize claims more", Chunk("fmt ", Head(1, 2, 44100, 4, 16) + U16(65535)) + data},
        {"unknown ones before, between and behind",
         odd + StereoFormat() + odd + Chunk("none", "") + data + odd},
        {"audio before its format", odd + data + odd + StereoFormat()},
        {"two audio chunks before their format", data + Chunk("data", "zzzz") + StereoFormat()},
        {"a second audio chunk", StereoFormat() + data + Chunk("data", "zzzz")},
        {"a second format", StereoFormat() + Chunk("fmt ", Head(1, 1, 8000, 1, 8)) + data},
        {"a tail that is no chunk", StereoFormat() + data + "TAG"},
        {"a chunk behind it that claims too much", StereoFormat() + data + Claiming("LIST", 0xFFFFFFFF, "x")},
    };
    for (const auto& row : rows) {
        const Decoding decoded = Decode(Riff(row.chunks));
        EXPECT_TRUE(decoded.opened && decoded.finished) << row.what;
        EXPECT_EQ(decoded.audio, kAudio) << row.what;
        EXPECT_EQ(decoded.Format().Format.cbSize, 0) << row.what;
        EXPECT_EQ(ValueOf(decoded.record.lengthMs), 2u) << row.what;
        EXPECT_EQ(decoded.errors + decoded.information, u"") << row.what;
    }
}

TEST_F(WaveDecoding, The_size_of_the_whole_is_not_believed) {
    const std::string chunks = "WAVE" + StereoFormat() + Chunk("data", kAudio);
    for (const std::uint32_t size : {0u, 1u, 35u, 36u, 10000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        const Decoding decoded = Decode(Claiming("RIFF", size, chunks));
        EXPECT_EQ(decoded.audio, kAudio) << size;
        EXPECT_EQ(decoded.errors + decoded.information, u"") << size;
    }
}

TEST_F(WaveDecoding, A_length_that_was_left_open_runs_to_the_end_of_the_file) {
    const std::string open64 = "WAVE" + Chunk("ds64", U64(0) + U64(0) + U64(0) + U32(0)) + StereoFormat();
    const struct {
        const char* what;
        std::string bytes;
    } rows[] = {
        {"all ones",
         Claiming("RIFF", 0xFFFFFFFF, "WAVE" + StereoFormat() + Claiming("data", 0xFFFFFFFF, kAudio))},
        {"ones, whole known", Riff(StereoFormat() + Claiming("data", 0xFFFFFFFF, kAudio))},
        {"zero", Claiming("RIFF", 0, "WAVE" + StereoFormat() + Claiming("data", 0, kAudio))},
        {"zero, whole up to the audio",
         Claiming("RIFF", 36, "WAVE" + StereoFormat() + Claiming("data", 0, kAudio))},
        {"zero, whole of ones",
         Claiming("RIFF", 0xFFFFFFFF, "WAVE" + StereoFormat() + Claiming("data", 0, kAudio))},
        {"what one program writes into a pipe",
         Claiming("RIFF", 0x7FFFF024, "WAVE" + StereoFormat() + Claiming("data", 0x7FFFF000, kAudio))},
        {"the same for frames of 12 bytes",
         Claiming("RIFF", 0x7FFFF020, "WAVE" + StereoFormat() + Claiming("data", 0x7FFFEFFC, kAudio))},
        {"64 bits, all zero", Claiming("RF64", 0xFFFFFFFF, open64 + Claiming("data", 0xFFFFFFFF, kAudio))},
        {"64 bits without their sizes",
         Claiming("RF64", 0xFFFFFFFF, "WAVE" + StereoFormat() + Claiming("data", 0xFFFFFFFF, kAudio))},
    };
    for (const auto& row : rows) {
        const Decoding decoded = Decode(row.bytes);
        EXPECT_EQ(decoded.audio, kAudio) << row.what;
        EXPECT_EQ(ValueOf(decoded.record.lengthMs), 2u) << row.what;
        EXPECT_EQ(decoded.errors, u"") << row.what;
        EXPECT_EQ(decoded.information,
                  Named(u"its header leaves the length open, 400 bytes up to the end of the "
                        u"file are taken as audio"))
            << row.what;
    }
}

TEST_F(WaveDecoding, A_file_without_audio_ends_at_once) {
    for (const std::string& chunks : {StereoFormat() + Chunk("data", ""),
                                      StereoFormat() + Chunk("data", "") + Chunk("LIST", "INFOINAM")}) {
        const Decoding decoded = Decode(Riff(chunks));
        EXPECT_TRUE(decoded.opened);
        EXPECT_EQ(decoded.blocks, std::vector<std::uint32_t>{0});
        EXPECT_TRUE(decoded.finished);
        EXPECT_EQ(ValueOf(decoded.record.lengthMs), 0u);
        EXPECT_EQ(decoded.errors + decoded.information, u"");
    }
}

TEST_F(WaveDecoding, Audio_that_ends_within_a_frame_loses_that_frame) {
    const Decoding decoded = Decode(Riff(StereoFormat() + Chunk("data", kAudio + "abc")));
    EXPECT_EQ(decoded.audio, kAudio);
    EXPECT_EQ(decoded.errors, u"");
    EXPECT_EQ(decoded.information, Named(u"its last 3 bytes make no whole frame and are left out"));
}

TEST_F(WaveDecoding, A_file_that_was_cut_gives_what_it_has_and_says_what_is_missing) {
    const std::string whole = Riff(StereoFormat() + Claiming("data", 400, kAudio));
    for (std::size_t cut = 44; cut < whole.size(); ++cut) {
        const Decoding decoded = Decode(whole.substr(0, cut));
        const std::size_t here = cut - 44;
        EXPECT_TRUE(decoded.opened && decoded.finished) << cut;
        EXPECT_EQ(decoded.audio, kAudio.substr(0, here / 4 * 4)) << cut;
        const std::u16string missing = XString::FromUInt64(400 - here).Text();
        EXPECT_EQ(decoded.errors, Named((missing + u" of 400 bytes of audio are missing").c_str())) << cut;
        EXPECT_EQ(ValueOf(decoded.record.lengthMs), here / 4 * 1000 / 44100) << cut;
    }
}

TEST_F(WaveDecoding, A_file_of_a_kilobyte_that_promises_2_to_the_40_frames_has_a_kilobyte) {
    const std::string bytes =
        Riff64("RF64", std::uint64_t{1} << 42, StereoFormat() + Claiming("data", 0xFFFFFFFF, kAudio));
    const Decoding decoded = Decode(bytes);
    EXPECT_EQ(decoded.audio, kAudio);
    EXPECT_EQ(ValueOf(decoded.record.lengthMs), 2u);
    EXPECT_EQ(decoded.errors, Named(u"4398046510704 of 4398046511104 bytes of audio are missing"));
}

TEST_F(WaveDecoding, Files_with_64_bit_sizes_may_be_short) {
    for (const char* id : {"RF64", "BW64"}) {
        const Decoding decoded =
            Decode(Riff64(id, 400, StereoFormat() + Claiming("data", 0xFFFFFFFF, kAudio)));
        EXPECT_EQ(decoded.audio, kAudio) << id;
        EXPECT_EQ(decoded.errors + decoded.information, u"") << id;
        // A size that fits its own field is the size, whatever the ds64 chunk has.
        EXPECT_EQ(Decode(Riff64(id, 7777, StereoFormat() + Chunk("data", kAudio))).audio, kAudio) << id;
    }
}

TEST_F(WaveDecoding, Sizes_of_64_bits_need_no_table) {
    const std::string rest = StereoFormat() + Claiming("data", 0xFFFFFFFF, kAudio);
    for (const char* table : {"", "a", "ab", "abc"}) {
        const std::string sizes = Chunk("ds64", U64(500) + U64(400) + U64(100) + table);
        const Decoding decoded = Decode(Claiming("RF64", 0xFFFFFFFF, "WAVE" + sizes + rest));
        EXPECT_EQ(decoded.audio, kAudio);
        EXPECT_EQ(decoded.errors + decoded.information, u"");
    }
}

TEST_F(WaveDecoding, Other_large_chunks_have_their_sizes_in_the_table) {
    const std::string sizes = U64(500) + U64(400) + U64(100) + U32(1) + "big " + U64(6);
    const std::string chunks = Chunk("ds64", sizes) + StereoFormat() +
                               Claiming("big ", 0xFFFFFFFF, "abcdef") + Claiming("data", 0xFFFFFFFF, kAudio);
    const Decoding decoded = Decode(Claiming("RF64", 0xFFFFFFFF, "WAVE" + chunks));
    EXPECT_EQ(decoded.audio, kAudio);
    EXPECT_EQ(decoded.errors + decoded.information, u"");
}

TEST_F(WaveDecoding, The_last_block_is_the_finished_one) {
    const std::uint32_t block = kLargestBlock / 4 * 4;
    for (const std::uint32_t bytes : {block - 4, block, block + 4, 3 * block}) {
        const Decoding decoded = Decode(Riff(StereoFormat() + Chunk("data", Noise(bytes))));
        ASSERT_EQ(decoded.blocks.size(), (bytes + block - 1) / block);
        for (std::size_t i = 0; i + 1 < decoded.blocks.size(); ++i) EXPECT_EQ(decoded.blocks[i], block);
        EXPECT_TRUE(decoded.finished);
    }
}

TEST_F(WaveDecoding, Blocks_hold_whole_frames_of_any_size) {
    for (const std::uint16_t channels : {std::uint16_t{3}, std::uint16_t{5}, std::uint16_t{63}}) {
        const auto align = static_cast<std::uint16_t>(channels * 3);
        const std::string audio = Noise(align * 9001u);
        const Decoding decoded =
            Decode(Riff(Chunk("fmt ", Head(1, channels, 44100, align, 24)) + Chunk("data", audio)));
        EXPECT_EQ(decoded.audio, audio);
        EXPECT_EQ(decoded.blocks[0], kLargestBlock / align * align);
    }
}

TEST_F(WaveDecoding, Lengths_of_coded_data_come_from_fact_and_blocks) {
    const std::string ima = Head(0x11, 1, 8000, 256, 4) + U16(2) + U16(505);
    const std::string mp3 = Head(0x55, 2, 48000, 1, 0);
    const std::string mp3At16000 = mp3.substr(0, 8) + U32(16000) + mp3.substr(12);
    const struct {
        const char* what;
        std::string chunks;
        std::uint64_t lengthMs;
    } rows[] = {
        {"blocks alone", Chunk("fmt ", ima) + Chunk("data", Noise(2560)), 5050 / 8},
        {"fact within the last block",
         Chunk("fmt ", ima) + Chunk("fact", U32(5000)) + Chunk("data", Noise(2560)), 625},
        {"fact beyond the blocks", Chunk("fmt ", ima) + Chunk("fact", U32(6000)) + Chunk("data", Noise(2560)),
         5050 / 8},
        {"a short fact", Chunk("fmt ", ima) + Chunk("fact", "abc") + Chunk("data", Noise(2560)), 5050 / 8},
        {"byte rate alone", Chunk("fmt ", mp3At16000) + Chunk("data", Noise(8000)), 500},
        {"fact alone", Chunk("fmt ", mp3At16000) + Chunk("fact", U32(96000)) + Chunk("data", Noise(8000)),
         2000},
        {"no byte rate",
         Chunk("fmt ", mp3.substr(0, 8) + U32(0) + mp3.substr(12)) + Chunk("data", Noise(8000)), 0},
        {"fact of plain samples", StereoFormat() + Chunk("fact", U32(1000000)) + Chunk("data", kAudio), 2},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ValueOf(Decode(Riff(row.chunks)).record.lengthMs), row.lengthMs) << row.what;
}

TEST_F(WaveDecoding, Valid_bits_that_are_not_given_are_all_bits) {
    const QvFormatExtensible record = Extensible(QV_FORMAT_PCM, 2, 44100, 16, 0, 3);
    const std::string format(reinterpret_cast<const char*>(&record), sizeof record);
    const Decoding decoded = Decode(Riff(Chunk("fmt ", format) + Chunk("data", kAudio)));
    EXPECT_EQ(decoded.Format().wValidBitsPerSample, 16);
    EXPECT_EQ(decoded.audio, kAudio);
}

TEST_F(WaveDecoding, A_record_that_is_longer_than_the_contract_has_room_for_is_cut_with_its_cbSize) {
    const std::string adpcm = Head(2, 2, 22050, 1024, 4) + U16(32) + U16(1012) + U16(7) + Noise(28);
    const Decoding decoded = Decode(Riff(Chunk("fmt ", adpcm) + Chunk("data", Noise(2048))));
    EXPECT_EQ(decoded.Format().Format.cbSize, 22);
    const std::string record(reinterpret_cast<const char*>(decoded.record.format), 40);
    EXPECT_EQ(record.substr(0, 16) + record.substr(18), adpcm.substr(0, 16) + adpcm.substr(18, 22));
    EXPECT_EQ(decoded.audio, Noise(2048));
}

TEST_F(WaveDecoding, Long_paths_are_written_and_read) {
    mFolder.MakeFolder(std::u16string(120, u'd'));
    const std::u16string path =
        mFolder / (std::u16string(120, u'd') + u"/" + std::u16string(150, u'f') + u".wav");
    EXPECT_TRUE(mModules.Encode(path, Plain(1, 2, 44100, 16), kAudio));
    EXPECT_EQ(mModules.Decode(path).audio, kAudio);
}
