#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "support/codec/codec_modules.h"

namespace {

QvFormatExtensible Format(std::uint16_t bits, bool isFloat, std::uint16_t channels) {
    const auto align = static_cast<std::uint16_t>(bits / 8 * channels);
    QvFormatExtensible format{};
    format.Format = {static_cast<std::uint16_t>(isFloat ? QV_FORMAT_FLOAT : QV_FORMAT_PCM),
                     channels,
                     44100,
                     44100u * align,
                     align,
                     bits,
                     0};
    return format;
}

std::string Noise(std::size_t bytes, bool isFloat) {
    std::mt19937 random(8);
    std::string audio;
    while (audio.size() < bytes) {
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        const float sample = static_cast<float>(static_cast<std::int32_t>(bits)) * 0x1p-31f;
        audio.append(isFloat ? reinterpret_cast<const char*>(&sample) : reinterpret_cast<const char*>(&bits),
                     4);
    }
    return audio.substr(0, bytes);
}

class Aiff : public ::testing::Test {
  protected:
    static std::string BigEndian(std::uint32_t number) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
        return bytes;
    }

    TempFolder folder;
    CodecModules modules{u"AIFF and others", u"AIFF"};
};

TEST_F(Aiff, keeps_every_bit_of_every_depth) {
    const struct {
        std::uint16_t bits;
        bool isFloat;
    } depths[] = {{8, false}, {16, false}, {24, false}, {32, false}, {32, true}};
    for (const auto& depth : depths) {
        for (const std::uint16_t channels : {std::uint16_t{1}, std::uint16_t{2}, std::uint16_t{5}}) {
            const QvFormatExtensible format = Format(depth.bits, depth.isFloat, channels);
            const std::string audio = Noise(std::size_t{10001} * format.Format.nBlockAlign, depth.isFloat);
            ASSERT_TRUE(modules.Encode(folder / u"a.aiff", format, audio, {60000, 7}));
            const Decoding decoding = modules.Decode(folder / u"a.aiff");
            EXPECT_EQ(decoding.errors, u"");
            EXPECT_EQ(decoding.Format().Format.wBitsPerSample, depth.bits);
            EXPECT_TRUE(decoding.audio == audio) << depth.bits << " " << channels;
        }
    }
}

TEST_F(Aiff, refuses_float_of_64_bits) {
    EXPECT_FALSE(modules.Encode(folder / u"a.aiff", Format(64, true, 2), std::string(160, '\0')));
    EXPECT_NE(modules.Log().TakeErrors().find(u"float samples of 64 bits can't be encoded"),
              std::u16string::npos);
}

// A file of Sun's, the simplest there is: a header of six numbers.
TEST_F(Aiff, and_other_formats_tell_when_they_are_cut) {
    const std::string audio(1000, '\1');
    const std::string header =
        ".snd" + BigEndian(24) + BigEndian(1000) + BigEndian(3) + BigEndian(8000) + BigEndian(1);
    const Decoding whole = modules.Decode(folder.Write(u"a.au", header + audio));
    EXPECT_EQ(whole.errors, u"");
    EXPECT_EQ(whole.audio.size(), 1000u);
    const Decoding cut = modules.Decode(folder.Write(u"a.au", header + audio.substr(100)));
    EXPECT_NE(cut.errors.find(u"the last 100 bytes of its audio are missing"), std::u16string::npos);
    const std::string open =
        ".snd" + BigEndian(24) + BigEndian(0xFFFFFFFF) + BigEndian(3) + BigEndian(8000) + BigEndian(1);
    EXPECT_EQ(modules.Decode(folder.Write(u"a.au", open + audio)).errors, u"");
}

TEST_F(Aiff, tells_a_cut_file_also_when_only_a_byte_is_gone) {
    ASSERT_TRUE(modules.Encode(folder / u"a.aiff", Format(16, false, 2), Noise(4000, false)));
    const std::string good = folder.Read(u"a.aiff");
    EXPECT_NE(modules.Decode(folder.Write(u"b.aiff", good.substr(0, good.size() - 1))).errors, u"");
}

TEST_F(Aiff, reads_coded_audio_as_16_bits) {
    const std::string header =
        ".snd" + BigEndian(24) + BigEndian(4) + BigEndian(1) + BigEndian(8000) + BigEndian(1);
    const Decoding decoding =
        modules.Decode(folder.Write(u"a.au", header + std::string("\xFF\x7F\x80\x00", 4)));
    EXPECT_EQ(decoding.Format().Format.wBitsPerSample, 16);
    ASSERT_EQ(decoding.audio.size(), 8u);
    std::int16_t samples[4];
    std::memcpy(samples, decoding.audio.data(), sizeof samples);
    EXPECT_EQ(samples[0], 0);
    EXPECT_EQ(samples[1], 0);
    EXPECT_EQ(samples[2], 32124);  // the loudest that mu-law has
}

}  // namespace
