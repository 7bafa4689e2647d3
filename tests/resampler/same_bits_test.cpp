// One form gives the same bits on every system: with the same instruction set forced, Linux and Windows hand out the
// same bytes. The digests change with the arithmetic; what counts is that both targets find the same here.
#include <gtest/gtest.h>

#include <cstring>

#include "resampler/resampled.h"
#include "support/instruction_sets.h"

namespace {

// FNV-1a over the bytes of several conversions.
std::uint64_t Digest() {
    std::uint64_t digest = 0xCBF29CE484222325u;
    for (const RatePair rates :
         {RatePair{44100, 48000}, {48000, 44100}, {22050, 44100}, {44100, 22050}, {32000, 44100}}) {
        const std::vector<double> output = Resampled(Noise(2 * 20000, 11), 2, rates, {4096});
        std::vector<std::uint8_t> bytes(output.size() * sizeof(double));
        std::memcpy(bytes.data(), output.data(), bytes.size());
        for (const std::uint8_t byte : bytes) digest = (digest ^ byte) * 0x100000001B3u;
    }
    return digest;
}

}  // namespace

TEST(ResamplerBits, are_the_same_on_every_system) {
    const std::uint64_t digests[] = {473987872626830089u, 14244335108144574078u, 582574560360908006u,
                                     15023965966972223651u};
    for (const InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        EXPECT_EQ(Digest(), digests[static_cast<std::size_t>(set)]) << NameOf(set);
    }
}
