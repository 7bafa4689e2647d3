// The system's manager and its codecs, through the seam.
#include "platform/acm.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/codec_formats.h"
#include "platform/codec_run.h"

namespace platform {

namespace {

using Bytes = std::vector<std::uint8_t>;

// Two tones well inside of what a telephone carries.
std::vector<std::int16_t> Voice(std::size_t count) {
    std::vector<std::int16_t> samples(count);
    for (std::size_t index = 0; index < count; ++index) {
        const double t = static_cast<double>(index) / 8000;
        samples[index] = static_cast<std::int16_t>(6000 * std::sin(6.283185307 * 440 * t) +
                                                   3000 * std::sin(6.283185307 * 900 * t));
    }
    return samples;
}

// Of the signal to what differs from it, as powers.
double Ratio(const std::vector<std::int16_t>& original, const std::vector<std::int16_t>& decoded,
             std::size_t first) {
    double signal = 0, noise = 0;
    for (std::size_t index = first; index < original.size(); ++index) {
        const double difference = original[index] - decoded[index];
        signal += static_cast<double>(original[index]) * original[index];
        noise += difference * difference;
    }
    return signal / noise;
}

}  // namespace

TEST(Acm, a_header_has_the_systems_own_size_and_no_other_is_taken) {
    AcmStream stream = nullptr;
    ASSERT_EQ(acmStreamOpen(&stream, &kPcm16, &kALawFormat, kAcmOpenNonRealTime), 0u);
    std::uint8_t source[8] = {}, target[4] = {};
    for (const std::uint32_t size : {0u, 104u, 123u, 124u}) {
        AcmStreamHeader header = {};
        header.cbStruct = size;
        header.pbSrc = source;
        header.cbSrcLength = sizeof source;
        header.pbDst = target;
        header.cbDstLength = sizeof target;
        EXPECT_EQ(acmStreamPrepareHeader(stream, &header), size == 124 ? 0u : kAcmErrorInvalidParameter);
        if (size == 124) {
            EXPECT_EQ(acmStreamUnprepareHeader(stream, &header), 0u);
        }
    }
    EXPECT_EQ(acmStreamClose(stream), 0u);
}

TEST(Acm, a_destination_without_room_is_refused) {
    AcmStream stream = nullptr;
    ASSERT_EQ(acmStreamOpen(&stream, &kPcm16, &kALawFormat, kAcmOpenNonRealTime), 0u);
    std::uint8_t source[8] = {}, target[4] = {};
    AcmStreamHeader header = {};
    header.cbStruct = sizeof header;
    header.pbSrc = source;
    header.cbSrcLength = sizeof source;
    header.pbDst = target;
    EXPECT_EQ(acmStreamPrepareHeader(stream, &header), kAcmErrorInvalidParameter);
    EXPECT_EQ(acmStreamClose(stream), 0u);
}

TEST(Acm, what_no_codec_does_is_refused) {
    AcmStream stream = nullptr;
    const QvFormat unknown = {0x4711, 1, 8000, 8000, 1, 8, 0};
    EXPECT_EQ(acmStreamOpen(&stream, &kPcm16, &unknown, kAcmOpenNonRealTime), kAcmErrorNotPossible);
    EXPECT_EQ(acmStreamOpen(&stream, &unknown, &kPcm16, kAcmOpenNonRealTime), kAcmErrorNotPossible);
    EXPECT_EQ(acmStreamClose(nullptr), kAcmErrorInvalidHandle);
}

TEST(Acm, coded_speech_comes_back_nearly_as_it_was) {
    const ImaFormat ima;
    const GsmFormat gsm;
    const struct {
        const QvFormat* coded;
        std::size_t samples, bytes;
        double ratio;  // at least
    } rows[] = {
        {&kALawFormat, 4000, 4000, 1000.0},
        {&kMuLawFormat, 4000, 4000, 1000.0},
        {&ima.head, 505 * 8, 256 * 8, 300.0},
        {&gsm.head, 320 * 12, 65 * 12, 4.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.coded->wFormatTag);
        const std::vector<std::int16_t> voice = Voice(row.samples);
        const CodecRun coded = RunCodec(&kPcm16, row.coded, AsBytes(voice));
        ASSERT_TRUE(coded.done);
        EXPECT_EQ(coded.taken, voice.size() * 2);
        ASSERT_EQ(coded.made.size(), row.bytes);
        const CodecRun decoded = RunCodec(row.coded, &kPcm16, coded.made);
        ASSERT_TRUE(decoded.done);
        EXPECT_EQ(decoded.taken, row.bytes);
        ASSERT_EQ(decoded.made.size(), voice.size() * 2);
        EXPECT_GT(Ratio(voice, AsSamples(decoded.made), 1000), row.ratio);
    }
}

TEST(Acm, a_block_that_is_not_whole_is_left) {
    const ImaFormat ima;
    const CodecRun run = RunCodec(&ima.head, &kPcm16, Bytes(256 + 100));
    ASSERT_TRUE(run.done);
    EXPECT_EQ(run.taken, 256u);
    EXPECT_EQ(run.made.size(), 1010u);
}

}  // namespace platform
