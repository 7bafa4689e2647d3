// Beside the tools that most people use for MP3.
#include <cstdlib>

#include "mp3/mp3_file.h"

namespace {

class Mp3Tools : public Mp3 {
  protected:
    void Run(const std::string& command) {
        const std::u16string folderPath = folder.Path();
        const std::string path(folderPath.begin(), folderPath.end());
        ASSERT_EQ(std::system(("cd '" + path + "' && " + command).c_str()), 0) << command;
    }

    CodecModules wave{u"Wave", u"Wave"};
};

TEST_F(Mp3Tools, decode_to_the_same_samples) {
    Encode(u"-quality=3");
    Run("mpg123 -q -e f32 -w b.wav a.mp3");
    const Decoding ours = modules.Decode(folder / u"a.mp3");
    const Decoding theirs = wave.Decode(folder / u"b.wav");
    EXPECT_EQ(ours.audio, theirs.audio);
}

TEST_F(Mp3Tools, encode_what_reads_to_the_frame) {
    for (const std::uint32_t frames : {1u, 575u, 576u, 1151u, 1152u, 1153u, 44099u, 100001u}) {
        ASSERT_TRUE(wave.Encode(folder / u"b.wav", PcmFormat(44100, 2), Tones(frames, 2)));
        Run("lame --quiet -V 4 b.wav c.mp3");
        const Decoding decoding = modules.Decode(folder / u"c.mp3");
        EXPECT_EQ(decoding.errors, u"");
        EXPECT_EQ(decoding.audio.size(), frames * 8u);
    }
}

TEST_F(Mp3Tools, read_our_files_to_the_frame) {
    Encode(u"-bitrate=192");
    Run("lame --quiet --decode a.mp3 b.wav");
    EXPECT_EQ(wave.Decode(folder / u"b.wav").audio.size(), kFrames * 4u);
}

}  // namespace
