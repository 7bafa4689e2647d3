// What quaver makes of a request, as another program reads it.
#include <array>
#include <cstdio>
#include <filesystem>

#include "endtoend/quaver_waves.h"

using namespace wave_bytes;

namespace {

class QuaverFormatTools : public QuaverWaves {
  protected:
    // Codec, rate, channels, frames.
    std::string Seen(const std::u16string& file) const {
        const std::string command =
            "ffprobe -v error -show_entries stream=codec_name,sample_rate,channels,duration_ts -of csv=p=0 "
            "'" +
            std::filesystem::path(file).string() + "'";
        std::string text;
        std::FILE* said = popen(command.c_str(), "r");
        std::array<char, 256> part{};
        for (std::size_t got; said && (got = std::fread(part.data(), 1, part.size(), said)) > 0;)
            text.append(part.data(), got);
        EXPECT_TRUE(said && pclose(said) == 0) << command;
        return text;
    }
};

}  // namespace

TEST_F(QuaverFormatTools, Read_the_format_and_every_frame) {
    const struct {
        QvFormatExtensible from;
        std::size_t frames;
        Arguments wanted;
        std::string seen;
    } rows[] = {
        {Plain(QV_FORMAT_PCM, 2, 44100, 16), 44101, {u"--rate", u"48000"}, "pcm_s16le,48000,2,48001\n"},
        {Plain(QV_FORMAT_PCM, 2, 48000, 24), 48001, {u"--rate", u"44100"}, "pcm_s24le,44100,2,44100\n"},
        {Plain(QV_FORMAT_PCM, 1, 96000, 32), 77777, {u"--rate", u"44100"}, "pcm_s32le,44100,1,35728\n"},
        {Plain(QV_FORMAT_PCM, 2, 44100, 16), 12345, {u"--rate", u"22050"}, "pcm_s16le,22050,2,6172\n"},
        {Plain(QV_FORMAT_PCM, 6, 48000, 16), 4321, {u"--channels", u"2"}, "pcm_s16le,48000,2,4321\n"},
        {Plain(QV_FORMAT_PCM, 2, 44100, 24), 999, {u"--bits", u"8"}, "pcm_u8,44100,2,999\n"},
        {Plain(QV_FORMAT_PCM, 1, 8000, 8),
         8000,
         {u"--rate", u"48000", u"--channels", u"2", u"--bits", u"24"},
         "pcm_s24le,48000,2,48000\n"},
    };
    for (const auto& row : rows) {
        const std::u16string source = WriteWave(row.from, Noise(row.frames * row.from.Format.nBlockAlign));
        for (const Arguments& way : {Arguments{u"decode", u"-f", source, u"-o", destination},
                                     Arguments{u"convert", u"-f", source, destination}}) {
            Arguments arguments = way;
            arguments.insert(arguments.end(), row.wanted.begin(), row.wanted.end());
            Expect(arguments, kDone);
            EXPECT_EQ(Seen(destination), row.seen);
        }
    }
}
