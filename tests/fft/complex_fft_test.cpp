// The complex transforms and the real passes by themselves.
#include <gtest/gtest.h>

#include <algorithm>

#include "fft/real_transform.h"
#include "support/instruction_sets.h"
#include "support/naive_spectrum.h"

namespace {

// Even values are real parts, odd ones imaginary: the spectrum is that of both, added up.
struct NaiveComplex {
    NaiveSpectrum re, im;

    NaiveSpectrum::Bin At(std::size_t k, bool forward) const {
        const auto a = re.At(k), b = im.At(k);
        if (forward) return {a.re - b.im, a.im + b.re};
        return {a.re + b.im, b.re - a.im};
    }
};

NaiveComplex Naive(const Values& values) {
    Values re, im;
    for (std::size_t j = 0; j < values.size(); j += 2) {
        re.push_back(values[j]);
        im.push_back(values[j + 1]);
    }
    return {NaiveSpectrum(re), NaiveSpectrum(im)};
}

Values Complex(Values values, bool forward) {
    const std::size_t n = values.size();
    FftTables tables(n);
    MakeTwiddles(n / 4, tables.index.data(), tables.table.data());
    (forward ? ForwardComplex : BackwardComplex)(n, values.data(), tables.index.data() + 2, n / 4,
                                                 tables.table.data());
    return values;
}

TEST(ComplexFft, Both_ways_give_the_sums_that_define_them) {
    for (InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        for (std::size_t n : AllLengths(2048)) {
            if (n < 8) continue;  // the twin has quarters
            const NaiveComplex expected = Naive(Noise(n));
            const double bound = ErrorBound(n) * NaiveSpectrum(Noise(n)).Norm();
            for (bool forward : {true, false}) {
                SCOPED_TRACE(testing::Message() << NameOf(set) << ", " << n << (forward ? "" : ", backward"));
                const Values spectrum = Complex(Noise(n), forward);
                for (std::size_t k = 0; k < n / 2; k += std::max<std::size_t>(1, n / 128)) {
                    const auto bin = expected.At(k, forward);
                    EXPECT_NEAR(spectrum[2 * k], static_cast<double>(bin.re), bound) << "bin " << k;
                    EXPECT_NEAR(spectrum[2 * k + 1], static_cast<double>(bin.im), bound) << "bin " << k;
                }
            }
        }
    }
}

TEST(ComplexFft, Two_values_become_their_sum_and_their_difference_both_ways) {
    for (bool forward : {true, false}) EXPECT_EQ(Complex({1, 2, 10, 20}, forward), Values({11, 22, -9, -18}));
}

TEST(ComplexFft, Forward_and_backward_give_the_input_times_half_the_length) {
    for (InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        for (std::size_t n : AllLengths(65536)) {
            SCOPED_TRACE(testing::Message() << NameOf(set) << ", " << n);
            const Values in = Noise(n);
            const Values out = Complex(Complex(in, true), false);
            for (std::size_t j = 0; j < n; ++j)
                ASSERT_NEAR(out[j] * 2 / static_cast<double>(n), in[j], ErrorBound(n)) << j;
        }
    }
}

TEST(ComplexFft, The_real_passes_undo_each_other_and_leave_the_first_two_values) {
    for (InstructionSet set : OfferedSets()) {
        const ForcedSet forced(set);
        for (std::size_t n : AllLengths(4096)) {
            for (std::size_t longer = 1; longer <= 4;
                 longer *= 2) {  // cosine tables for longer transforms serve too
                SCOPED_TRACE(testing::Message() << NameOf(set) << ", " << n << ", table times " << longer);
                FftTables tables(n * longer);
                const std::size_t nc = n * longer / 4;
                MakeCosTable(nc, tables.index.data(), tables.table.data());
                Values a = Noise(n);
                ForwardRealPost(n, a.data(), nc, tables.table.data());
                EXPECT_EQ(a == Noise(n), n == 4);
                BackwardRealPre(n, a.data(), nc, tables.table.data());
                for (std::size_t j = 0; j < n; ++j) ASSERT_NEAR(a[j], Noise(n)[j], 0x1p-51) << j;
                EXPECT_EQ(a[0], Noise(n)[0]);
                EXPECT_EQ(a[1], Noise(n)[1]);
            }
        }
    }
}

}  // namespace
