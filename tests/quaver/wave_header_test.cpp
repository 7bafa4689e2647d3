// The header before a WAVE file's audio, on both sides of what 32 bits can say.
#include "wave_header.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

QvFormatExtensible Stereo() {
    QvFormatExtensible format{};
    format.Format = {QV_FORMAT_PCM, 2, 44100, 176400, 4, 16, 0};
    return format;
}

QvFormatExtensible Floats() {
    QvFormatExtensible format{};
    format.Format = {QV_FORMAT_FLOAT, 1, 44100, 176400, 4, 32, 0};
    return format;
}

QvFormatExtensible Surround(std::uint8_t type) {
    QvFormatExtensible format{};
    format.Format = {QV_FORMAT_EXTENSIBLE, 6, 48000, 864000, 18, 24, 22};
    format.wValidBitsPerSample = 24;
    format.dwChannelMask = 0x3F;
    constexpr std::uint8_t kFamily[] = {0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
    format.SubFormat[0] = type;
    std::memcpy(format.SubFormat + 4, kFamily, sizeof kFamily);
    return format;
}

std::uint64_t Number(const std::string& header, std::size_t at, std::size_t bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = bytes; i-- > 0;) number = number << 8 | static_cast<std::uint8_t>(header[at + i]);
    return number;
}

constexpr std::uint64_t kFourGiB = 1ull << 32;

}  // namespace

TEST(WaveHeader, Is_as_long_open_as_closed) {
    for (const QvFormatExtensible& format : {Stereo(), Floats(), Surround(QV_FORMAT_PCM)}) {
        const WaveHeader header(format);
        for (const std::uint64_t bytes : {std::uint64_t{0}, std::uint64_t{36}, 3 * kFourGiB})
            EXPECT_EQ(header.Closed(bytes).size(), header.Open().size());
    }
}

TEST(WaveHeader, Says_its_sizes) {
    const std::string header = WaveHeader(Stereo()).Closed(1000);
    EXPECT_EQ(header.substr(0, 4), "RIFF");
    EXPECT_EQ(Number(header, 4, 4), header.size() - 8 + 1000);
    EXPECT_EQ(header.substr(8, 8), "WAVEJUNK");
    EXPECT_EQ(header.substr(header.size() - 8, 4), "data");
    EXPECT_EQ(Number(header, header.size() - 4, 4), 1000u);
    EXPECT_EQ(header.find("fact"), std::string::npos);
    EXPECT_EQ(Number(WaveHeader(Stereo()).Closed(1001), 4, 4), header.size() - 8 + 1002);
}

TEST(WaveHeader, Counts_the_frames_of_anything_but_integers) {
    for (const QvFormatExtensible& format : {Floats(), Surround(QV_FORMAT_FLOAT)}) {
        const std::string header = WaveHeader(format).Closed(std::uint64_t{format.Format.nBlockAlign} * 77);
        const std::size_t fact = header.find("fact");
        ASSERT_NE(fact, std::string::npos);
        EXPECT_EQ(Number(header, fact + 4, 4), 4u);
        EXPECT_EQ(Number(header, fact + 8, 4), 77u);
    }
}

TEST(WaveHeader, Becomes_RF64_once_a_size_outgrows_32_bits) {
    const WaveHeader header(Floats());
    const std::uint64_t before = header.Open().size() - 8;
    // The greatest size means that it is open, so it can't be said either.
    const std::uint64_t most = kFourGiB - 2 - before - (kFourGiB - 2 - before) % 4;
    EXPECT_EQ(header.Closed(most).substr(0, 4), "RIFF");
    EXPECT_EQ(Number(header.Closed(most), 4, 4), before + most);
    for (const std::uint64_t bytes : {most + 4, kFourGiB, 5 * kFourGiB}) {
        const std::string wide = header.Closed(bytes);
        EXPECT_EQ(wide.substr(0, 4), "RF64");
        EXPECT_EQ(Number(wide, 4, 4), 0xFFFFFFFF);
        EXPECT_EQ(wide.substr(12, 4), "ds64");
        EXPECT_EQ(Number(wide, 16, 4), 28u);
        EXPECT_EQ(Number(wide, 20, 8), before + bytes);
        EXPECT_EQ(Number(wide, 28, 8), bytes);
        EXPECT_EQ(Number(wide, 36, 8), bytes / 4);
        EXPECT_EQ(Number(wide, wide.size() - 4, 4), 0xFFFFFFFF);
    }
}

TEST(WaveHeader, Describes_samples_only) {
    const auto format = [](std::uint16_t tag, std::uint16_t bits, std::uint16_t align) {
        QvFormatExtensible record{};
        record.Format = {tag, 2, 44100, 0, align, bits, 0};
        return record;
    };
    for (const auto& [bits, align] :
         {std::pair<std::uint16_t, std::uint16_t>{8, 2}, {16, 4}, {24, 6}, {32, 8}})
        EXPECT_TRUE(WaveHeader::CanDescribe(format(QV_FORMAT_PCM, bits, align)));
    EXPECT_TRUE(WaveHeader::CanDescribe(format(QV_FORMAT_FLOAT, 32, 8)));
    EXPECT_TRUE(WaveHeader::CanDescribe(format(QV_FORMAT_FLOAT, 64, 16)));
    EXPECT_TRUE(WaveHeader::CanDescribe(format(QV_FORMAT_ALAW, 8, 2)));
    EXPECT_TRUE(WaveHeader::CanDescribe(Surround(QV_FORMAT_PCM)));
    EXPECT_FALSE(WaveHeader::CanDescribe(Surround(QV_FORMAT_ADPCM)));
    EXPECT_FALSE(WaveHeader::CanDescribe(format(QV_FORMAT_PCM, 64, 16)));
    EXPECT_FALSE(WaveHeader::CanDescribe(format(QV_FORMAT_PCM, 12, 3)));
    EXPECT_FALSE(WaveHeader::CanDescribe(format(QV_FORMAT_PCM, 16, 2)));
    EXPECT_FALSE(WaveHeader::CanDescribe(format(QV_FORMAT_FLOAT, 16, 4)));
    EXPECT_FALSE(WaveHeader::CanDescribe(format(QV_FORMAT_MPEG, 0, 1)));
}

TEST(WaveHeader, Knows_a_type_only_by_its_whole_name) {
    QvFormatExtensible strange = Surround(QV_FORMAT_PCM);
    EXPECT_EQ(SampleType(strange), std::uint32_t{QV_FORMAT_PCM});
    strange.SubFormat[15] ^= 1;
    EXPECT_EQ(SampleType(strange), std::uint32_t{QV_FORMAT_EXTENSIBLE});
    EXPECT_FALSE(WaveHeader::CanDescribe(strange));
    EXPECT_EQ(SampleType(Floats()), std::uint32_t{QV_FORMAT_FLOAT});
}
