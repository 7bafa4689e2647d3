#include <gtest/gtest.h>

#include <limits>

#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

using namespace wave_bytes;

namespace {

class WaveSeeking : public testing::Test {
  protected:
    void Open(const std::string& bytes) {
        clOpenFileRec record;
        mModules.Decoder().Destroy();  // lets go of the file before it is written anew
        const std::u16string path = mFolder.Write(u"a.wav", bytes);
        ASSERT_TRUE(mModules.Open(path, QV_OPEN_DECODING, record));
    }
    std::string From(std::int64_t frame) {
        mModules.Decoder().SetPosition(frame);
        std::string audio;
        while (mModules.DecodeBlock(audio)) {
        }
        return audio;
    }

    WaveModules mModules;
    TempFolder mFolder;
};

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

}  // namespace

TEST_F(WaveSeeking, The_next_block_begins_at_the_frame_and_positions_are_clamped) {
    const std::string audio = Noise(600 * 1000);
    Open(Riff(Chunk("fmt ", Head(1, 2, 44100, 6, 24)) + Chunk("data", audio)));
    EXPECT_EQ(From(0), audio);
    for (const std::int64_t frame : {0, 1, 10922, 10923, 50000, 99999, 100000})
        EXPECT_EQ(From(frame), audio.substr(static_cast<std::size_t>(frame) * 6)) << frame;
    for (const std::int64_t frame : {kLowest, std::int64_t{-1}}) EXPECT_EQ(From(frame), audio) << frame;
    for (const std::int64_t frame : {std::int64_t{100001}, std::int64_t{1} << 62, kHighest})
        EXPECT_EQ(From(frame), "") << frame;
    EXPECT_EQ(mModules.Log().TakeErrors(), u"");
}

TEST_F(WaveSeeking, A_block_tells_the_frame_that_it_begins_with) {
    Open(Riff(StereoFormat() + Chunk("data", Noise(400000))));
    clBlockRec block{};
    for (const std::uint64_t frame : {0u, 16384u, 32768u}) {
        ASSERT_TRUE(mModules.Decoder().DecodeBlock(&block));
        EXPECT_EQ(ValueOf(block.timecode), frame);
    }
    mModules.Decoder().SetPosition(777);
    ASSERT_TRUE(mModules.Decoder().DecodeBlock(&block));
    EXPECT_EQ(ValueOf(block.timecode), 777u);
}

TEST_F(WaveSeeking, Coded_data_go_on_at_the_block_that_holds_the_frame) {
    const std::string audio = Noise(2560);  // ten blocks of 505 frames
    Open(Riff(Chunk("fmt ", Head(0x11, 1, 8000, 256, 4) + U16(2) + U16(505)) + Chunk("data", audio)));
    const std::pair<std::int64_t, std::size_t> rows[] = {
        {-5, 0}, {504, 0}, {505, 256}, {1009, 256}, {5049, 2304}, {5050, 2560}, {kHighest, 2560}};
    for (const auto& [frame, byte] : rows) EXPECT_EQ(From(frame), audio.substr(byte)) << frame;
}

TEST_F(WaveSeeking, Coded_data_that_count_no_frames_are_found_by_their_byte_rate) {
    const std::string audio = Noise(16000);
    const std::string head = U16(0x55) + U16(2) + U32(48000) + U32(16000) + U16(100) + U16(0);
    Open(Riff(Chunk("fmt ", head) + Chunk("data", audio)));
    const std::pair<std::int64_t, std::size_t> rows[] = {{0, 0},        {24000, 8000},  {24299, 8000},
                                                         {24300, 8100}, {47999, 15900}, {48000, 16000}};
    for (const auto& [frame, byte] : rows) EXPECT_EQ(From(frame), audio.substr(byte)) << frame;
    Open(Riff(Chunk("fmt ", head.substr(0, 8) + U32(0) + head.substr(12)) + Chunk("data", audio)));
    EXPECT_EQ(From(1), "");  // nothing is known to lie behind the beginning
    EXPECT_EQ(From(0), audio);
}

TEST_F(WaveSeeking, What_is_missing_is_told_once) {
    Open(Riff(StereoFormat() + Claiming("data", 800, Noise(400))));
    EXPECT_EQ(From(0), Noise(400));
    EXPECT_EQ(From(50), Noise(400).substr(200));
    EXPECT_EQ(mModules.Log().TakeErrors(),
              mFolder / u"a.wav" + u": 400 of 800 bytes of audio are missing\r\n");
}

TEST_F(WaveSeeking, With_nothing_open_a_block_says_so_and_ends) {
    ASSERT_TRUE(mModules.Decoder().Create(mModules.Log().Log()));
    mModules.Decoder().SetPosition(5);
    std::string audio;
    EXPECT_FALSE(mModules.DecodeBlock(audio));
    EXPECT_EQ(audio, "");
    EXPECT_EQ(mModules.Log().TakeErrors(), u"no WAVE file is open for decoding\r\n");
}
