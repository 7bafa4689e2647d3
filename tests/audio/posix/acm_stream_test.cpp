// Without a compression manager: what needs a stream is refused, and all else passes.
#include "audio/acm_stream.h"

#include <gtest/gtest.h>

#include <vector>

#include "audio/format_records.h"

namespace {

const QvFormat kMono16 = Plain(1, 1, 8000, 16);

bool Passes(const QvFormat& from, const QvFormat& to) {
    const std::vector<std::uint8_t> samples(64, std::uint8_t{0x11});
    clAudioBlock in;
    in.setData(samples.data(), 64, &from, true);
    clAcmStream stream;
    const bool passes = stream.Convert(in, clFormatHolder(&to), true);
    EXPECT_EQ(stream.stream, nullptr);
    EXPECT_EQ(stream.carry.held(), 0u);
    return passes;
}

}  // namespace

TEST(AcmStreamWithoutManager, Every_other_type_is_refused_both_ways) {
    for (const QvFormat& coded : {Plain(2, 1, 8000, 4), Plain(6, 1, 8000, 8), Plain(7, 1, 8000, 8),
                                  Plain(17, 1, 8000, 4), Plain(49, 1, 8000, 0), Plain(80, 1, 8000, 0)}) {
        EXPECT_FALSE(Passes(kMono16, coded)) << coded.wFormatTag;
        EXPECT_FALSE(Passes(coded, kMono16)) << coded.wFormatTag;
        EXPECT_TRUE(Passes(coded, coded)) << coded.wFormatTag;
    }
}

TEST(AcmStreamWithoutManager, Another_rate_is_refused_and_floats_are_not) {
    EXPECT_FALSE(Passes(kMono16, Plain(1, 1, 16000, 16)));
    EXPECT_FALSE(Passes(Plain(3, 1, 8000, 32), kMono16));
    EXPECT_TRUE(Passes(kMono16, Plain(3, 1, 8000, 32)));
}
