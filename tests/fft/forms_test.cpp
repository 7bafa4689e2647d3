// The forms beside each other: what a faster one may change is the rounding, and what a system may change is nothing.
#include <gtest/gtest.h>

#include <cstring>

#include "fft/convolved.h"
#include "fft/real_transform.h"
#include "support/instruction_sets.h"
#include "support/naive_spectrum.h"

namespace {

struct Results {
    Values forward, inverse, convolved;
};

// The spectrum, and twice what it makes: the second time the first overhangs.
Values Convolved(std::size_t n) {
    Convolution convolution(Noise(n / 2));
    Values all = convolution.spectrum;
    for (std::uint64_t state : {2u, 3u})
        for (double value : convolution.Apply(Noise(n / 2, state))) all.push_back(value);
    return all;
}

Results In(InstructionSet set, std::size_t n) {
    const ForcedSet forced(set);
    return {Forward(Noise(n)), Inverse(Noise(n)), n < 256 ? Values() : Convolved(n)};
}

TEST(FftForms, Each_is_as_near_to_the_plain_one_as_that_is_to_the_truth) {
    for (std::size_t n : AllLengths()) {
        const Results plain = In(InstructionSet::Plain, n);
        const double bound = ErrorBound(n) * NaiveSpectrum(Noise(n)).Norm();
        for (InstructionSet set : OfferedSets()) {
            SCOPED_TRACE(testing::Message() << NameOf(set) << ", " << n);
            const Results other = In(set, n);
            EXPECT_LE(Farthest(plain.forward, other.forward), bound);
            EXPECT_LE(Farthest(plain.inverse, other.inverse), bound);
            EXPECT_LE(Farthest(plain.convolved, other.convolved), ErrorBound(n) * Largest(plain.convolved));
        }
    }
}

TEST(FftForms, That_for_SSE2_gives_the_bits_of_the_plain_one) {
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        const Results sse2 = In(InstructionSet::Sse2, n), plain = In(InstructionSet::Plain, n);
        EXPECT_EQ(sse2.forward, plain.forward);
        EXPECT_EQ(sse2.inverse, plain.inverse);
        EXPECT_EQ(sse2.convolved, plain.convolved);
    }
}

// FNV-1a over the bytes, a zero's sign included.
std::uint64_t Digest(std::uint64_t digest, const Values& values) {
    for (double value : values) {
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        for (int byte = 0; byte < 8; ++byte) digest = (digest ^ (bits >> 8 * byte & 0xFF)) * 0x100000001B3u;
    }
    return digest;
}

std::uint64_t DigestOfAllLengths(InstructionSet set) {
    std::uint64_t digest = 0xCBF29CE484222325u;
    for (std::size_t n : AllLengths(65536)) {
        const Results results = In(set, n);
        digest = Digest(Digest(Digest(digest, results.forward), results.inverse), results.convolved);
    }
    return digest;
}

TEST(FftForms, Each_gives_the_same_bits_on_every_system) {
    const std::uint64_t unfused = 17954299410915230074u;
    const std::uint64_t fused = 9507480880089159306u;
    const std::uint64_t digests[] = {unfused, unfused, fused, fused};
    for (InstructionSet set : OfferedSets())
        EXPECT_EQ(DigestOfAllLengths(set), digests[static_cast<int>(set)]) << NameOf(set);
}

}  // namespace
