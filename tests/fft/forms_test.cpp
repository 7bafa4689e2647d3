// The forms beside each other: what a faster one may change is the rounding, and what a system may change is nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "fft/real_transform.h"
#include "support/instruction_sets.h"
#include "support/naive_spectrum.h"

namespace {

double Farthest(const Values& a, const Values& b) {
    double farthest = 0;
    for (std::size_t j = 0; j < a.size(); ++j) farthest = std::max(farthest, std::abs(a[j] - b[j]));
    return farthest;
}

struct Results {
    Values forward, inverse, convolved;
};

Values Convolved(Values values) {
    FftTables tables(values.size());
    const Values spectrum = values;
    ConvolveHalf(values.size(), values.data(), spectrum.data(), tables.index.data(), tables.table.data());
    return values;
}

Results In(InstructionSet set, std::size_t n) {
    const ForcedSet forced(set);
    return {Forward(Noise(n)), Inverse(Noise(n)), n < 8 ? Values() : Convolved(Noise(n))};
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
    const std::uint64_t unfused = 2753727903813566142u;
    const std::uint64_t fused = 12859725250804215184u;
    const std::uint64_t digests[] = {unfused, unfused, fused, fused};
    for (InstructionSet set : OfferedSets())
        EXPECT_EQ(DigestOfAllLengths(set), digests[static_cast<int>(set)]) << NameOf(set);
}

}  // namespace
