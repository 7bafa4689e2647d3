// A disk that is full, as the system offers one for trying.
#include "codecs/codec_table.h"

namespace {

class FullDisk : public CodecTest {};

TEST_P(FullDisk, makes_the_encoding_fail_in_words) {
    EXPECT_FALSE(modules.Encode(u"/dev/full", StereoFormat(GetParam().rate), MakeAudio(200000, 3), {65536},
                                GetParam().settings));
    EXPECT_NE(modules.Log().TakeErrors().find(u"/dev/full: can't be written"), std::u16string::npos);
}

INSTANTIATE_TEST_SUITE_P(Codecs, FullDisk, ::testing::ValuesIn(AllCodecs()), NameOf);

}  // namespace
