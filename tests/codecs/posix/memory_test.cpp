// What a thousand loads leave in memory.
#include <fstream>

#include "codecs/codec_table.h"

namespace {

std::size_t ResidentPages() {
    std::size_t total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident;
}

class Memory : public ::testing::TestWithParam<Codec> {};

TEST_P(Memory, is_not_used_up_by_a_thousand_loads) {
    const auto round = [] {
        CodecModules modules(GetParam().decoder, GetParam().encoder);
        ASSERT_TRUE(modules.Decoder().Create(modules.Log().Log()));
        ASSERT_TRUE(modules.Encoder().Create(modules.Log().Log()));
    };
    for (int i = 0; i < 100; ++i) ASSERT_NO_FATAL_FAILURE(round());
    const std::size_t before = ResidentPages();
    for (int i = 0; i < 1000; ++i) ASSERT_NO_FATAL_FAILURE(round());
    EXPECT_LT(ResidentPages(), before + 256);  // a megabyte: one page leaked each time would be four
}

INSTANTIATE_TEST_SUITE_P(Codecs, Memory, ::testing::ValuesIn(AllCodecs()), NameOf);

}  // namespace
