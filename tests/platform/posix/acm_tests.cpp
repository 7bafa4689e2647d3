// No compression manager: everything is refused, and nothing is written.
#include "platform/acm.h"

#include <gtest/gtest.h>

#include <cstring>

namespace platform {

TEST(Acm, every_open_is_refused) {
    const QvFormat pcm = {QV_FORMAT_PCM, 1, 8000, 16000, 2, 16, 0};
    for (const std::uint16_t tag : {QV_FORMAT_PCM, QV_FORMAT_ADPCM, QV_FORMAT_ALAW, QV_FORMAT_MULAW}) {
        const QvFormat coded = {tag, 1, 8000, 8000, 1, 8, 0};
        int mark = 0;
        AcmStream stream = &mark;
        EXPECT_EQ(acmStreamOpen(&stream, &pcm, &coded, kAcmOpenNonRealTime), kAcmErrorNoDriver);
        EXPECT_EQ(acmStreamOpen(&stream, &coded, &pcm, kAcmOpenNonRealTime), kAcmErrorNoDriver);
        EXPECT_EQ(stream, &mark);
    }
}

TEST(Acm, no_stream_does_anything) {
    int mark = 0;
    for (const AcmStream stream : {AcmStream(nullptr), AcmStream(&mark)}) {
        AcmStreamHeader header = {}, untouched = {};
        std::uint32_t suggested = 4711;
        EXPECT_EQ(acmStreamSize(stream, 8, &suggested, kAcmSizeSource), kAcmErrorInvalidHandle);
        EXPECT_EQ(suggested, 4711u);
        EXPECT_EQ(acmStreamPrepareHeader(stream, &header), kAcmErrorInvalidHandle);
        EXPECT_EQ(acmStreamConvert(stream, &header, kAcmConvertStart), kAcmErrorInvalidHandle);
        EXPECT_EQ(acmStreamUnprepareHeader(stream, &header), kAcmErrorInvalidHandle);
        EXPECT_EQ(std::memcmp(&header, &untouched, sizeof header), 0);
        EXPECT_EQ(acmStreamClose(stream), kAcmErrorInvalidHandle);
    }
}

}  // namespace platform
