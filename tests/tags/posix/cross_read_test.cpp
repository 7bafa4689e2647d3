// What is written here, other programs read: the formats' own tools, run by name.
#include <array>
#include <cstdio>

#include "tags/tag_files.h"

namespace {

// One grey pixel, and then more than fits an Ogg page.
constexpr unsigned char kPixel[] = {
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52, 0x00,
    0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00, 0x00, 0x00, 0x00, 0x3A, 0x7E, 0x9B, 0x55, 0x00,
    0x00, 0x00, 0x0A, 0x49, 0x44, 0x41, 0x54, 0x78, 0x9C, 0x63, 0x68, 0x00, 0x00, 0x00, 0x82, 0x00, 0x81,
    0x77, 0xCD, 0x72, 0xB6, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
const std::string kPicture = std::string(std::begin(kPixel), std::end(kPixel)) + std::string(70000, 'p');

const Rows kRows = {{u"ARTIST", u"One", ""},
                    {u"ARTIST", u"Other", ""},
                    {u"ALBUM", u"Grüße \U0001F3B5", ""},
                    {u"GENRE", u"Jazz", ""},
                    {u"REPLAYGAIN_TRACK_GAIN", u"-7.03 dB", ""},
                    {u"TITLE", u"A song", ""},
                    {u"TRACKNUMBER", u"3", ""},
                    {u"TRACKTOTAL", u"12", ""},
                    {u"PICTURE", u"front", kPicture}};

class CrossRead : public TagTest {
  protected:
    std::string Tagged(TagContainer container) {
        const Sound& sound = SoundOf(container);
        const std::u16string path = Put(sound);
        EXPECT_TRUE(Write(sound, kRows));
        return std::string(path.begin(), path.end());
    }

    // What a program says, on both of its streams. It has to be content.
    static std::string Ask(const std::string& command) {
        std::string text;
        std::FILE* output = popen((command + " 2>&1").c_str(), "r");
        std::array<char, 4096> part{};
        for (std::size_t got; output && (got = std::fread(part.data(), 1, part.size(), output)) > 0;)
            text.append(part.data(), got);
        EXPECT_TRUE(output && pclose(output) == 0) << command << "\n" << text;
        return text;
    }

    static void ExpectAll(const std::string& text, const std::vector<std::string>& lines) {
        for (const std::string& line : lines)
            EXPECT_NE(text.find(line), std::string::npos) << line << "\n" << text;
    }
};

TEST_F(CrossRead, ffprobe_reads_every_container) {
    for (const Sound& sound : Sounds()) {
        const std::string text =
            Ask("ffprobe -v error -show_entries format_tags:stream_tags:stream=codec_name " +
                Tagged(sound.container));
        ExpectAll(text, {"=A song\n", "=Grüße \U0001F3B5\n", "=Jazz\n"});
        EXPECT_NE(text.find("codec_name=png"), std::string::npos) << text;
    }
}

TEST_F(CrossRead, flac_s_own_tools_find_it_whole) {
    const std::string file = Tagged(TagContainer::flac);
    Ask("flac -s -t " + file);
    ExpectAll(
        Ask("metaflac --list " + file),
        {"ARTIST=One", "ARTIST=Other", "TRACKNUMBER=3", "TRACKTOTAL=12", "REPLAYGAIN_TRACK_GAIN=-7.03 dB",
         "type: 3 (Cover (front))", "MIME type: image/png", "description: front", "data length: 70067"});
}

TEST_F(CrossRead, Vorbis_s_own_tools_find_it_whole) {
    const std::string file = Tagged(TagContainer::oggVorbis);
    ExpectAll(Ask("vorbiscomment -l " + file),
              {"ARTIST=One\n", "ARTIST=Other\n", "ALBUM=Gr", "TRACKTOTAL=12\n", "METADATA_BLOCK_PICTURE="});
    const std::string report = Ask("ogginfo " + file);
    EXPECT_EQ(report.find("WARNING"), std::string::npos) << report;
}

TEST_F(CrossRead, Opus_s_own_tools_find_it_whole) {
    const std::string report = Ask("opusinfo " + Tagged(TagContainer::oggOpus));
    ExpectAll(report, {"ARTIST=One", "ARTIST=Other", "R128_TRACK_GAIN=-3080", "Playback length: 0m:00.250s"});
    EXPECT_EQ(report.find("WARNING"), std::string::npos) << report;
}

TEST_F(CrossRead, Other_decoders_hear_the_same) {
    for (const Sound& sound : Sounds()) {
        const auto hear = [&](const std::string& file) {
            const std::string text = Ask("ffmpeg -v error -i " + file + " -map 0:a -f md5 -");
            return text.substr(text.find("MD5="));
        };
        const std::string file = Tagged(sound.container);
        const std::string after = hear(file);
        Put(sound);
        EXPECT_EQ(after, hear(file));
    }
}

}  // namespace
