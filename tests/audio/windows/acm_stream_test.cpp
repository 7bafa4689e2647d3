// The stage with the system's own codecs, beside what they have to give.
#include "audio/acm_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>

#include "audio/format_records.h"
#include "platform/codec_formats.h"
#include "platform/codec_run.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Samples = std::vector<std::int16_t>;

std::optional<Bytes> Converted(clAcmStream& stream, const QvFormat& from, const QvFormat& to, Bytes bytes,
                               bool final = false) {
    clAudioBlock in;
    in.setData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &from, true);
    if (!stream.Convert(in, clFormatHolder(&to), final)) return std::nullopt;
    return Bytes(stream.output.data, stream.output.data + stream.output.bytes);
}

Samples Decoded(const QvFormat& from, const Bytes& bytes) {
    clAcmStream stream;
    const std::optional<Bytes> decoded = Converted(stream, from, kPcm16, bytes, true);
    EXPECT_TRUE(decoded) << from.wFormatTag;
    return decoded ? AsSamples(*decoded) : Samples();
}

// In pieces of any size.
Bytes ConvertedInPieces(const QvFormat& from, const QvFormat& to, const Bytes& bytes) {
    clAcmStream stream;
    std::mt19937 generator(5);
    Bytes all;
    for (std::size_t done = 0; done < bytes.size();) {
        const std::size_t count = std::min<std::size_t>(1 + generator() % 700, bytes.size() - done);
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(done);
        done += count;
        const std::optional<Bytes> piece = Converted(
            stream, from, to, Bytes(begin, begin + static_cast<std::ptrdiff_t>(count)), done == bytes.size());
        EXPECT_TRUE(piece);
        if (piece) all.insert(all.end(), piece->begin(), piece->end());
    }
    return all;
}

Bytes AllCodes() {
    Bytes codes(256);
    for (std::size_t code = 0; code < 256; ++code) codes[code] = static_cast<std::uint8_t>(code);
    return codes;
}

Bytes Random(std::size_t count) {
    std::mt19937 generator(6);
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(generator());
    return bytes;
}

// ITU-T G.711, as values of 16 bits.
int OfALaw(std::uint8_t code) {
    const int bits = code ^ 0x55, segment = bits >> 4 & 7, place = (bits & 15) * 16 + 8;
    const int size = segment == 0 ? place : (place + 256) << (segment - 1);
    return bits & 0x80 ? size : -size;
}
int OfMuLaw(std::uint8_t code) {
    const int bits = ~code & 0xFF;
    const int size = ((bits & 15) * 8 + 132) << (bits >> 4 & 7);
    return bits & 0x80 ? 132 - size : size - 132;
}

const struct Law {
    QvFormat format;
    int (*of)(std::uint8_t);
} kLaws[] = {{kALawFormat, &OfALaw}, {kMuLawFormat, &OfMuLaw}};

// IMA ADPCM: a block begins with its first sample and the place in the table of steps.
Samples OfIma(const Bytes& blocks, std::size_t blockBytes) {
    constexpr int kPlaces[] = {-1, -1, -1, -1, 2, 4, 6, 8};
    constexpr int kSteps[] = {
        7,    8,     9,     10,    11,    12,    13,    14,    16,    17,    19,    21,    23,    25,   28,
        31,   34,    37,    41,    45,    50,    55,    60,    66,    73,    80,    88,    97,    107,  118,
        130,  143,   157,   173,   190,   209,   230,   253,   279,   307,   337,   371,   408,   449,  494,
        544,  598,   658,   724,   796,   876,   963,   1060,  1166,  1282,  1411,  1552,  1707,  1878, 2066,
        2272, 2499,  2749,  3024,  3327,  3660,  4026,  4428,  4871,  5358,  5894,  6484,  7132,  7845, 8630,
        9493, 10442, 11487, 12635, 13899, 15289, 16818, 18500, 20350, 22385, 24623, 27086, 29794, 32767};
    Samples samples;
    for (std::size_t block = 0; block + blockBytes <= blocks.size(); block += blockBytes) {
        int value = static_cast<std::int16_t>(blocks[block] | blocks[block + 1] << 8);
        int place = blocks[block + 2];
        samples.push_back(static_cast<std::int16_t>(value));
        for (std::size_t index = 8; index < blockBytes * 2; ++index) {
            const int code = blocks[block + index / 2] >> (index % 2 * 4) & 15;
            const int step = kSteps[place];
            const int change =
                step / 8 + (code & 4 ? step : 0) + (code & 2 ? step / 2 : 0) + (code & 1 ? step / 4 : 0);
            value = std::clamp(code & 8 ? value - change : value + change, -32768, 32767);
            place = std::clamp(place + kPlaces[code & 7], 0, 88);
            samples.push_back(static_cast<std::int16_t>(value));
        }
    }
    return samples;
}

// MS ADPCM: a block begins with its pair of coefficients, the first step, and the first two samples, the
// later one first.
Samples OfMsAdpcm(const Bytes& blocks, std::size_t blockBytes) {
    constexpr int kAdaption[] = {230, 230, 230, 230, 307, 409, 512, 614,
                                 768, 614, 512, 409, 307, 230, 230, 230};
    const MsAdpcmFormat format;
    Samples samples;
    for (std::size_t block = 0; block + blockBytes <= blocks.size(); block += blockBytes) {
        const auto word = [&](std::size_t at) {
            return static_cast<std::int16_t>(blocks[block + at] | blocks[block + at + 1] << 8);
        };
        const std::int16_t* pair = format.pairs[blocks[block]];
        int step = word(1), last = word(3), before = word(5);
        samples.push_back(static_cast<std::int16_t>(before));
        samples.push_back(static_cast<std::int16_t>(last));
        for (std::size_t index = 14; index < blockBytes * 2; ++index) {
            const int code = blocks[block + index / 2] >> (index % 2 == 0 ? 4 : 0) & 15;
            const int predicted = (last * pair[0] + before * pair[1]) / 256;
            const int value = std::clamp(predicted + (code >= 8 ? code - 16 : code) * step, -32768, 32767);
            step = std::max(kAdaption[code] * step / 256, 16);
            before = last;
            last = value;
            samples.push_back(static_cast<std::int16_t>(value));
        }
    }
    return samples;
}

// Blocks of random samples behind heads that can be.
Bytes CodedBlocks(std::size_t blocks, std::size_t blockBytes, const Bytes& head) {
    Bytes bytes = Random(blocks * blockBytes);
    for (std::size_t block = 0; block < blocks; ++block)
        std::copy(head.begin(), head.end(), bytes.begin() + static_cast<std::ptrdiff_t>(block * blockBytes));
    return bytes;
}

}  // namespace

TEST(AcmStreamOfSystem, Expands_every_code_of_both_laws) {
    for (const Law& law : kLaws) {
        const Samples samples = Decoded(law.format, AllCodes());
        ASSERT_EQ(samples.size(), 256u);
        for (std::size_t code = 0; code < 256; ++code)
            EXPECT_EQ(samples[code], law.of(static_cast<std::uint8_t>(code))) << law.format.wFormatTag;
    }
}

// Every sample there is becomes a code whose value is less than one step away, and codes' own values stay.
TEST(AcmStreamOfSystem, Compresses_to_both_laws_within_their_steps) {
    Samples samples;
    for (int value = -32768; value <= 32767; ++value) samples.push_back(static_cast<std::int16_t>(value));
    for (const Law& law : kLaws) {
        clAcmStream stream;
        const std::optional<Bytes> codes = Converted(stream, kPcm16, law.format, AsBytes(samples), true);
        ASSERT_TRUE(codes);
        ASSERT_EQ(codes->size(), samples.size());
        EXPECT_EQ(stream.sixteenFirst, 0);
        for (std::size_t index = 0; index < samples.size(); ++index) {
            const int value = samples[index], step = std::max(16, (std::abs(value) + 132) / 16);
            ASSERT_LE(std::abs(law.of((*codes)[index]) - value), step) << value;
        }
        for (const std::uint8_t code : AllCodes()) {
            const int value = law.of(code);
            EXPECT_EQ(law.of((*codes)[static_cast<std::size_t>(value + 32768)]), value);
        }
    }
}

TEST(AcmStreamOfSystem, Other_depths_are_narrowed_or_widened_to_16_bits_for_a_codec) {
    const Samples samples = {0, 100, -100, 20000, -20000, 32767, -32768};
    Bytes expected, wide, narrow, ofNarrow;
    for (const std::int16_t sample : samples) {
        wide.push_back(0x7F);
        for (const std::uint8_t byte : AsBytes({sample})) wide.push_back(byte);
        narrow.push_back(static_cast<std::uint8_t>((sample >> 8) + 128));
    }
    clAcmStream sixteen, twentyFour, eight;
    const QvFormat pcm24 = Plain(1, 1, 8000, 24), pcm8 = Plain(1, 1, 8000, 8);
    const std::optional<Bytes> codes = Converted(sixteen, kPcm16, kALawFormat, AsBytes(samples));
    ASSERT_TRUE(codes);
    EXPECT_EQ(Converted(twentyFour, pcm24, kALawFormat, wide), codes);
    EXPECT_EQ(twentyFour.sixteenFirst, 1);
    const std::optional<Bytes> ofEight = Converted(eight, pcm8, kALawFormat, narrow);
    ASSERT_TRUE(ofEight);
    EXPECT_EQ(eight.sixteenFirst, 1);
    for (std::size_t index = 0; index < samples.size(); ++index)
        EXPECT_LE(std::abs(OfALaw((*ofEight)[index]) - (samples[index] >> 8) * 256), 1024);
}

TEST(AcmStreamOfSystem, Decodes_IMA_ADPCM_in_blocks_of_any_size) {
    const ImaFormat format;
    const Bytes coded = CodedBlocks(20, 256, {0x34, 0x12, 40, 0});
    const Samples expected = OfIma(coded, 256);
    EXPECT_EQ(Decoded(format.head, coded), expected);
    EXPECT_EQ(AsSamples(ConvertedInPieces(format.head, kPcm16, coded)), expected);
}

TEST(AcmStreamOfSystem, Decodes_MS_ADPCM_in_blocks_of_any_size) {
    const MsAdpcmFormat format;
    for (std::uint8_t pair = 0; pair < 7; ++pair) {
        const Bytes coded = CodedBlocks(20, 256, {pair, 40, 0, 0x34, 0x12, 0xCC, 0xED});
        const Samples expected = OfMsAdpcm(coded, 256);
        EXPECT_EQ(Decoded(format.head, coded), expected) << int{pair};
        EXPECT_EQ(AsSamples(ConvertedInPieces(format.head, kPcm16, coded)), expected) << int{pair};
    }
}

// A block of GSM names no depth, so that nothing says how long it is: it must come whole.
TEST(AcmStreamOfSystem, Decodes_GSM_that_comes_in_whole_blocks) {
    const GsmFormat format;
    const Bytes coded = Random(65 * 8);
    const CodecRun whole = RunCodec(&format.head, &kPcm16, coded);
    ASSERT_TRUE(whole.done);
    ASSERT_EQ(whole.made.size(), 640u * 8);
    clAcmStream stream;
    Bytes all;
    std::size_t begin = 0;
    for (const std::size_t blocks : {std::size_t{1}, std::size_t{3}, std::size_t{4}}) {
        const auto first = coded.begin() + static_cast<std::ptrdiff_t>(begin * 65);
        begin += blocks;
        const std::optional<Bytes> piece = Converted(
            stream, format.head, kPcm16, Bytes(first, first + static_cast<std::ptrdiff_t>(blocks * 65)));
        ASSERT_TRUE(piece);
        all.insert(all.end(), piece->begin(), piece->end());
    }
    EXPECT_EQ(all, whole.made);
    EXPECT_EQ(Converted(stream, format.head, kPcm16, Bytes(30)), std::nullopt);
}

TEST(AcmStreamOfSystem, Targets_of_less_than_a_byte_and_unknown_types_are_refused) {
    const ImaFormat ima;
    const GsmFormat gsm;
    const QvFormat unknown = Plain(0x4711, 1, 8000, 8);
    for (const QvFormat* to : {&ima.head, &gsm.head, &unknown}) {
        clAcmStream stream;
        for (int block = 0; block < 3; ++block)
            EXPECT_EQ(Converted(stream, kPcm16, *to, Bytes(2020)), std::nullopt) << to->wFormatTag;
        EXPECT_EQ(stream.carry.held(), 0u) << "nothing piles up";
    }
}

TEST(AcmStreamOfSystem, Streams_begin_anew_behind_Close) {
    const ImaFormat format;
    const Bytes coded = CodedBlocks(2, 256, {0x34, 0x12, 40, 0});
    clAcmStream stream;
    for (int round = 0; round < 2; ++round) {
        const std::optional<Bytes> decoded = Converted(stream, format.head, kPcm16, coded);
        ASSERT_TRUE(decoded);
        EXPECT_EQ(AsSamples(*decoded), OfIma(coded, 256));
        stream.Close();
    }
}
