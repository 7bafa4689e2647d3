// quaver asked for another rate, other channels and other bits, on both of its ways: in its own process by decode,
// and by convert, whose effects do it in the converter.
#include <nlohmann/json.hpp>
#include <sstream>

#include "endtoend/quaver_waves.h"

using namespace wave_bytes;
using Json = nlohmann::json;

namespace {

const QvFormatExtensible kStereo = Plain(QV_FORMAT_PCM, 2, 44100, 16);

std::u16string Number(std::uint64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

// Tones that are sounds in every depth, unlike bytes of noise taken for floats.
std::string Floats(std::size_t count) {
    std::string audio;
    for (std::size_t i = 0; i < count; ++i) {
        const float value = static_cast<float>((i * i) % 2001) / 1000.0f - 1.0f;
        audio.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    return audio;
}

class QuaverFormat : public QuaverWaves {
  protected:
    WaveContents Decoded(const std::u16string& source, const Arguments& wanted) {
        return Made({u"decode", u"-f", source, u"-o", destination}, wanted);
    }
    WaveContents Converted(const std::u16string& source, const Arguments& wanted) {
        return Made({u"convert", u"-f", source, destination}, wanted);
    }
    WaveContents Made(Arguments arguments, const Arguments& wanted) {
        arguments.insert(arguments.end(), wanted.begin(), wanted.end());
        Expect(arguments, kDone);
        return WaveContents(files.Read(u"out.wav"));
    }
    void ExpectRefused(const std::u16string& source, const Arguments& wanted, const std::string& words) {
        Arguments arguments{u"convert", source, destination};
        arguments.insert(arguments.end(), wanted.begin(), wanted.end());
        ExpectNothingWritten(arguments, kFailed, words);
    }
    void ExpectOutOfReach(const std::u16string& source, const Arguments& wanted, const std::string& words) {
        Arguments arguments{u"decode", source, u"-o", destination};
        arguments.insert(arguments.end(), wanted.begin(), wanted.end());
        ExpectNothingWritten(arguments, kFailed, "can't be delivered in that format: " + words);
    }
};

}  // namespace

TEST_F(QuaverFormat, Has_the_frames_that_the_rates_ask_for) {
    const struct {
        std::uint32_t from, to;
        std::size_t frames;
    } rows[] = {{44100, 48000, 44100}, {48000, 44100, 50001}, {44100, 22050, 30001}, {22050, 44100, 12345},
                {96000, 44100, 77777}, {44100, 96000, 1},     {44100, 22050, 1},     {44100, 22050, 0},
                {192000, 44100, 9999}, {8000, 48000, 16384}};
    for (const auto& row : rows) {
        const std::u16string source = WriteWave(Plain(QV_FORMAT_PCM, 2, row.from, 16), Noise(row.frames * 4));
        const Arguments wanted{u"--rate", Number(row.to)};
        const WaveContents decoded = Decoded(source, wanted), converted = Converted(source, wanted);
        EXPECT_EQ(decoded.Frames(), std::uint64_t{row.to} * row.frames / row.from)
            << row.frames << " at " << row.from << " to " << row.to;
        EXPECT_EQ(decoded.format.nSamplesPerSec, row.to);
        EXPECT_EQ(converted.format.nSamplesPerSec, row.to);
        EXPECT_TRUE(decoded.audio == converted.audio) << row.from << " to " << row.to;
    }
}

// Also together, where the two go the same way.
TEST_F(QuaverFormat, Is_the_same_decoded_and_converted) {
    const struct {
        QvFormatExtensible from;
        Arguments wanted;
        std::uint16_t tag, channels, bits;
    } rows[] = {
        {kStereo, {u"--channels", u"1"}, QV_FORMAT_PCM, 1, 16},
        {kStereo, {u"--channels", u"6"}, QV_FORMAT_PCM, 6, 16},
        {kStereo, {u"--bits", u"8"}, QV_FORMAT_PCM, 2, 8},
        {kStereo, {u"--bits", u"24"}, QV_FORMAT_PCM, 2, 24},
        {kStereo, {u"--bits", u"32"}, QV_FORMAT_PCM, 2, 32},
        {kStereo, {u"--bits", u"24", u"--channels", u"1", u"--rate", u"48000"}, QV_FORMAT_PCM, 1, 24},
        {Plain(QV_FORMAT_FLOAT, 1, 48000, 32), {u"--bits", u"16"}, QV_FORMAT_PCM, 1, 16},
        {Plain(QV_FORMAT_FLOAT, 1, 48000, 32), {u"--bits", u"64"}, QV_FORMAT_FLOAT, 1, 64},
        {Plain(QV_FORMAT_FLOAT, 2, 48000, 32), {u"--rate", u"44100"}, QV_FORMAT_FLOAT, 2, 32},
        {Plain(QV_FORMAT_PCM, 6, 96000, 24), {u"--channels", u"2"}, QV_FORMAT_PCM, 2, 24},
        {Plain(QV_FORMAT_PCM, 6, 96000, 24), {u"--rate", u"48000"}, QV_FORMAT_PCM, 6, 24},
    };
    for (const auto& row : rows) {
        const bool isFloat = row.from.Format.wFormatTag == QV_FORMAT_FLOAT;
        const std::size_t samples = 30000u * row.from.Format.nChannels;
        const std::u16string source = WriteWave(
            row.from, isFloat ? Floats(samples) : Noise(samples * row.from.Format.wBitsPerSample / 8));
        const WaveContents decoded = Decoded(source, row.wanted), converted = Converted(source, row.wanted);
        const std::string what = testing::PrintToString(row.wanted);
        for (const WaveContents& made : {decoded, converted}) {
            EXPECT_EQ(made.format.wFormatTag, row.tag) << what;
            EXPECT_EQ(made.format.nChannels, row.channels) << what;
            EXPECT_EQ(made.format.wBitsPerSample, row.bits) << what;
        }
        EXPECT_FALSE(decoded.audio.empty());
        EXPECT_TRUE(decoded.audio == converted.audio) << what;
    }
}

TEST_F(QuaverFormat, Keeps_every_byte_where_it_is_what_the_file_has) {
    const std::u16string source = WriteWave(kStereo, Noise(40000));
    const Arguments same{u"--rate", u"44100", u"--channels", u"2", u"--bits", u"16"};
    EXPECT_TRUE(Decoded(source, same).audio == Noise(40000));
    EXPECT_TRUE(Converted(source, same).audio == Noise(40000));
}

// What was computed is cut to 8 bits once, at the end: the same as the steps one by one.
TEST_F(QuaverFormat, Is_converted_in_the_order_that_loses_least) {
    const std::u16string source = WriteWave(kStereo, Noise(80000));
    const WaveContents made = Converted(
        source, {u"--bits", u"8", u"--channels", u"1", u"--rate", u"48000", u"--effect", u"Volume=-gain=-6"});
    const WaveContents named =
        Converted(source, {u"--effect", u"Volume=-gain=-6", u"--effect", u"Channels=-channels=1", u"--effect",
                           u"Resample=-rate=48000", u"--effect", u"Depth=-bits=8"});
    EXPECT_EQ(made.Frames(), 20000u * 48000 / 44100);
    EXPECT_TRUE(made.audio == named.audio);
}

// A channel mask that no longer holds is left out of the file.
TEST_F(QuaverFormat, Names_no_loudspeakers_for_other_channels) {
    const std::u16string source =
        WriteWave(Extensible(QV_FORMAT_PCM, 6, 48000, 24, 24, 0x3F), Noise(6 * 3 * 1000));
    for (const bool isConverted : {false, true}) {
        const WaveContents made =
            isConverted ? Converted(source, {u"--channels", u"2"}) : Decoded(source, {u"--channels", u"2"});
        EXPECT_EQ(made.format.nChannels, 2);
        const std::string file = files.Read(u"out.wav");
        EXPECT_EQ(file.substr(file.find("fmt ") + 8 + 20, 4), U32(0));
    }
}

TEST_F(QuaverFormat, Reaches_every_encoder_in_a_format_that_it_takes) {
    const std::u16string source = WriteWave(Plain(QV_FORMAT_PCM, 6, 96000, 24), Noise(6 * 3 * 96000));
    std::istringstream extensions(QV_EXTENSIONS);
    for (std::string extension; extensions >> extension;) {
        const std::u16string made = files / (u"out." + std::u16string(extension.begin(), extension.end()));
        Expect({u"convert", source, made, u"--rate", u"48000", u"--channels", u"2", u"--bits", u"16"}, kDone);
        Expect({u"info", u"--json", made}, kDone);
        const Json answer = Json::parse(output).at("files").at(0);
        EXPECT_EQ(answer.at("format").at("sampleRate"), 48000) << extension;
        EXPECT_EQ(answer.at("format").at("channels"), 2) << extension;
        EXPECT_NEAR(answer.at("lengthMs").get<double>(), 1000, 60) << extension;
    }
}

TEST_F(QuaverFormat, Is_refused_in_words_where_there_is_no_way) {
    const std::u16string source = WriteWave(kStereo, Noise(40000));
    ExpectRefused(source, {u"--channels", u"9"}, "Channels: 2 channels can't be mixed to 9");
    ExpectRefused(source, {u"--bits", u"64"}, "Depth: integers have 8, 16, 24 or 32 bits");
    ExpectOutOfReach(source, {u"--channels", u"9"}, "44100 Hz, 9 channel(s), 16 bits.");
    ExpectOutOfReach(source, {u"--bits", u"64"}, "44100 Hz, 2 channel(s), 64 bits.");
    const std::u16string slow = WriteWave(Plain(QV_FORMAT_PCM, 2, 25000, 16), Noise(40000));
    ExpectRefused(slow, {u"--rate", u"30000"}, "Resample: 25000 Hz can't be brought to 30000 Hz");
    ExpectOutOfReach(slow, {u"--rate", u"30000"}, "30000 Hz, 2 channel(s), 16 bits.");
    // Less than the millisecond in which a file's length is told.
    const std::u16string shortest = WriteWave(Plain(QV_FORMAT_PCM, 2, 25000, 16), Noise(40));
    ExpectOutOfReach(shortest, {u"--rate", u"30000"}, "30000 Hz, 2 channel(s), 16 bits.");
}

// So short that not one frame is left, which is no failure.
TEST_F(QuaverFormat, May_have_nothing_of_a_file_that_is_short) {
    const std::u16string source = WriteWave(kStereo, Noise(4 * 100));
    for (const WaveContents& made :
         {Decoded(source, {u"--rate", u"300"}), Converted(source, {u"--rate", u"300"})}) {
        EXPECT_EQ(made.audio, "");
        EXPECT_EQ(made.format.nSamplesPerSec, 300u);
    }
}
