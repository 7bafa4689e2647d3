// Every depth, channel count and rate that FLAC has, there and back.
#include <cstring>

#include "flac/flac_file.h"
#include "foundation/id_tag_list.h"

namespace {

class FlacFormat : public Flac {
  protected:
    Decoding ThereAndBack(const QvFormatExtensible& format, const std::string& samples) {
        Decoding decoding = Decode(Encode(format, samples));
        EXPECT_EQ(decoding.errors, u"");
        EXPECT_TRUE(decoding.audio == samples);
        return decoding;
    }

    std::u16string Row(const char16_t* name) {
        clOpenFileRec record;
        EXPECT_TRUE(modules.Open(folder / u"a.flac", QV_OPEN_PROPERTY_ROWS, record));
        clIDTagList rows;
        rows.Deserialise(record.propertyData, record.propertyDataSize);
        for (std::int32_t i = 0; i < rows.Count(); ++i)
            if (rows.At(i).name == name) return rows.At(i).value.Text();
        return u"";
    }
};

void ExpectSame(const QvFormatExtensible& found, const QvFormatExtensible& expected) {
    EXPECT_EQ(std::memcmp(&found, &expected, sizeof found), 0)
        << found.Format.wBitsPerSample << " " << found.wValidBitsPerSample << " " << found.dwChannelMask;
}

}  // namespace

TEST_F(FlacFormat, Every_depth_comes_back_bit_by_bit) {
    const std::uint16_t depths[][2] = {{8, 0},  {8, 4},   {8, 7},  {16, 0}, {16, 12},
                                       {24, 0}, {24, 20}, {32, 0}, {32, 27}};
    for (const auto [bits, validBits] : depths)
        for (const std::uint16_t channels : std::initializer_list<std::uint16_t>{1, 2, 3}) {
            const std::uint32_t mask = channels == 1 ? 4 : channels == 2 ? 3 : 7;
            const bool isPlain = validBits == 0 && channels <= 2;
            const auto format = isPlain ? PcmFormat(48000, channels, bits)
                                        : PcmFormat(48000, channels, bits, validBits, mask);
            ExpectSame(ThereAndBack(format, Noise(5000, format)).Format(), format);
        }
}

TEST_F(FlacFormat, Bits_that_are_not_valid_are_lost) {
    const QvFormatExtensible format = PcmFormat(48000, 1, 16, 12, 4);
    const Decoding decoding = Decode(Encode(format, "\xFF\x7F\xEF\x80"));
    EXPECT_EQ(decoding.audio, "\xF0\x7F\xE0\x80");
}

TEST_F(FlacFormat, Loudspeakers_come_back_usual_or_not) {
    constexpr std::uint32_t kMasks[][2] = {
        {1, 4},    {1, 1},     {2, 3},    {2, 0x30},  {3, 7},     {3, 0xB},   {4, 0x33}, {4, 0x107},
        {5, 0x37}, {5, 0x607}, {6, 0x3F}, {6, 0x60F}, {7, 0x70F}, {8, 0x63F}, {8, 0xFF}, {8, 0x3}};
    for (const auto [channels, mask] : kMasks) {
        const auto format = PcmFormat(44100, static_cast<std::uint16_t>(channels), 16, 16, mask);
        const Decoding decoding = ThereAndBack(format, Noise(3000, format));
        const QvFormatExtensible found = decoding.Format();
        const bool isPlain = mask == 3 || mask == 4;
        if (!isPlain || channels > 2) ExpectSame(found, format);
        EXPECT_EQ(found.Format.wFormatTag == QV_FORMAT_PCM, isPlain && channels <= 2) << mask;
    }
}

TEST_F(FlacFormat, Loudspeakers_that_nobody_named_are_the_usual_ones) {
    const auto format = PcmFormat(44100, 6, 16);
    EXPECT_EQ(ThereAndBack(format, Noise(3000, format)).Format().dwChannelMask, 0x3Fu);
}

TEST_F(FlacFormat, Every_rate_comes_back) {
    for (const std::uint32_t rate :
         {1u, 8000u, 11111u, 44100u, 65537u, 192000u, 384000u, 655350u, 1048575u}) {
        const auto format = PcmFormat(rate, 2, 16);
        ExpectSame(ThereAndBack(format, Noise(5000, format)).Format(), format);
    }
}

TEST_F(FlacFormat, Rates_and_channels_that_FLAC_does_not_have_are_refused) {
    const std::u16string file = folder / u"b.flac";
    EXPECT_FALSE(modules.Encode(file, PcmFormat(1048576, 2, 16), audio));
    EXPECT_EQ(modules.Log().TakeErrors(), file + u": FLAC has no sample rate of 1048576 Hz\r\n");
    EXPECT_FALSE(modules.Encode(file, PcmFormat(44100, 9, 16), audio));
    EXPECT_EQ(modules.Log().TakeErrors(), file + u": 9 channels can't be encoded\r\n");
    EXPECT_FALSE(folder.Has(u"b.flac"));
}

TEST_F(FlacFormat, Float_samples_are_rounded_to_24_or_16_bits) {
    const float samples[] = {0, 1, -1, 2, -2, 0.5f, 0x1p-23f, 0x1.8p-16f, -0x1.8p-16f};
    QvFormatExtensible format = PcmFormat(44100, 1, 32);
    format.Format.wFormatTag = QV_FORMAT_FLOAT;
    const std::string bytes(reinterpret_cast<const char*>(samples), sizeof samples);
    using namespace std::string_literals;
    const std::string in24 =
        "\0\0\0\xFF\xFF\x7F\0\0\x80\xFF\xFF\x7F\0\0\x80\0\0\x40\1\0\0\xC0\0\0\x40\xFF\xFF"s;
    EXPECT_EQ(Decode(Encode(format, bytes)).audio, in24);
    EXPECT_EQ(Decode(Encode(format, bytes, u"-bits=24")).audio, in24);
    EXPECT_EQ(Decode(Encode(format, bytes, u"-bits=16")).audio,
              "\0\0\xFF\x7F\0\x80\xFF\x7F\0\x80\0\x40\0\0\1\0\xFF\xFF"s);
}

TEST_F(FlacFormat, Rows_tell_what_only_FLAC_has) {
    Encode(stereo, audio);
    EXPECT_EQ(Row(u"Codec"), u"FLAC");
    EXPECT_EQ(Row(u"Block size"), u"4096");
    EXPECT_EQ(Row(u"Compression"), u"104 %");  // it is noise, and there is room for tags
    EXPECT_EQ(Row(u"MD5").size(), 32u);
    EXPECT_TRUE(Row(u"Encoder").starts_with(u"reference libFLAC ")) << "the library's own name for itself";
    EXPECT_EQ(Row(u"Frames"), u"50001");
}
