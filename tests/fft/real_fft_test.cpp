// The transform by what it means, in every form.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "fft/each_form.h"
#include "fft/guarded.h"
#include "fft/real_transform.h"
#include "support/effort.h"
#include "support/naive_spectrum.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

class RealFftInEachForm : public InEachForm {};

INSTANTIATE_TEST_SUITE_P(Form, RealFftInEachForm, testing::ValuesIn(OfferedSets()), NameOfForm);

// All bins of short transforms, first, last and some in between of long ones.
std::vector<std::size_t> SomeBins(std::size_t n) {
    const std::size_t all = n / 2 + 1;
    const auto most = static_cast<std::size_t>(Times(600, 60, 100));
    const std::size_t step = all <= most ? 1 : n >= 8192 ? n / 16 + 1 : all / most + 1;
    std::vector<std::size_t> bins;
    for (std::size_t k = 0; k < all; k += step) bins.push_back(k);
    if (bins.back() != n / 2) bins.push_back(n / 2);
    return bins;
}

TEST_P(RealFftInEachForm, Every_length_gives_the_sums_that_define_it) {
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        const NaiveSpectrum expected(Noise(n));
        const Values spectrum = Forward(Noise(n));
        const double bound = ErrorBound(n) * expected.Norm();
        for (std::size_t k : SomeBins(n)) {
            const auto bin = expected.At(k);
            EXPECT_NEAR(RealPart(spectrum, k), static_cast<double>(bin.re), bound) << "bin " << k;
            EXPECT_NEAR(ImaginaryPart(spectrum, k), static_cast<double>(bin.im), bound) << "bin " << k;
        }
    }
}

TEST_P(RealFftInEachForm, Forward_and_inverse_give_the_input_times_half_the_length) {
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        const Values in = Noise(n);
        const Values out = Inverse(Forward(in));
        double worst = 0;
        for (std::size_t j = 0; j < n; ++j)
            worst = std::max(worst, std::abs(out[j] * 2 / static_cast<double>(n) - in[j]));
        EXPECT_LE(worst, ErrorBound(n));
    }
}

TEST_P(RealFftInEachForm, Both_ends_of_the_spectrum_share_the_first_two_places) {
    for (std::size_t n : AllLengths(1024)) {
        SCOPED_TRACE(n);
        Values steady(n, 1.0);
        EXPECT_EQ(Forward(steady)[0], static_cast<double>(n));
        EXPECT_EQ(Forward(steady)[1], 0.0);
        for (std::size_t j = 1; j < n; j += 2) steady[j] = -1.0;
        EXPECT_EQ(Forward(steady)[0], 0.0);
        EXPECT_EQ(Forward(steady)[1], static_cast<double>(n));
    }
}

TEST_P(RealFftInEachForm, An_impulse_has_every_frequency_alike) {
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        Values impulse(n);
        impulse[0] = 1;
        const Values spectrum = Forward(impulse);
        Values expected(n);
        for (std::size_t j = 0; j < n; j += 2) expected[j] = 1;
        expected[1] = 1;
        EXPECT_EQ(spectrum, expected);
    }
}

TEST_P(RealFftInEachForm, A_cosine_is_one_real_bin_and_a_sine_one_positive_imaginary_bin) {
    for (std::size_t n : AllLengths(16384)) {
        for (std::size_t k : {std::size_t{1}, n / 4, n / 2 - 1}) {
            SCOPED_TRACE(testing::Message() << n << ", bin " << k);
            Values cosine(n), sine(n), expected(n);
            for (std::size_t j = 0; j < n; ++j) {
                const double angle = 2 * kPi * static_cast<double>(j * k % n) / static_cast<double>(n);
                cosine[j] = std::cos(angle);
                sine[j] = std::sin(angle);
            }
            const Values ofCosine = Forward(cosine);
            const Values ofSine = Forward(sine);
            const double half = static_cast<double>(n) / 2;
            const double bound = 2 * half * ErrorBound(n);
            for (std::size_t at = 0; at < n; ++at) {
                ASSERT_NEAR(ofCosine[at], at == 2 * k ? half : 0, bound) << at;
                ASSERT_NEAR(ofSine[at], at == 2 * k + 1 ? half : 0, bound) << at;
            }
        }
    }
}

TEST_P(RealFftInEachForm, A_single_bin_comes_back_as_its_wave) {
    for (std::size_t n : AllLengths(4096)) {
        SCOPED_TRACE(n);
        Values real(n), imaginary(n);
        real[2] = 1;
        imaginary[3] = 1;
        const Values cosine = Inverse(real);
        const Values sine = Inverse(imaginary);
        for (std::size_t j = 0; j < n; ++j) {
            const double angle = 2 * kPi * static_cast<double>(j) / static_cast<double>(n);
            ASSERT_NEAR(cosine[j], std::cos(angle), 2 * ErrorBound(n)) << j;
            ASSERT_NEAR(sine[j], std::sin(angle), 2 * ErrorBound(n)) << j;
        }
    }
}

TEST_P(RealFftInEachForm, The_spectrum_holds_the_energy_of_the_input) {
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        const Values in = Noise(n, 7);
        const Values spectrum = Forward(in);
        const double energy = std::inner_product(in.begin(), in.end(), in.begin(), 0.0);
        const double ends = spectrum[0] * spectrum[0] + spectrum[1] * spectrum[1];
        const double middle =
            std::inner_product(spectrum.begin() + 2, spectrum.end(), spectrum.begin() + 2, 0.0);
        EXPECT_NEAR((ends + 2 * middle) / static_cast<double>(n) / energy, 1,
                    static_cast<double>(n) * 0x1p-53);
    }
}

TEST_P(RealFftInEachForm, The_spectrum_of_a_sum_is_the_sum_of_the_spectra) {
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        const Values a = Noise(n, 2), b = Noise(n, 3);
        Values sum(n);
        for (std::size_t j = 0; j < n; ++j) sum[j] = a[j] + 2 * b[j];
        const Values ofA = Forward(a), ofB = Forward(b), ofSum = Forward(sum);
        double worst = 0;
        for (std::size_t j = 0; j < n; ++j) worst = std::max(worst, std::abs(ofA[j] + 2 * ofB[j] - ofSum[j]));
        EXPECT_LE(worst, 3 * ErrorBound(n) * NaiveSpectrum(sum).Norm());
    }
}

TEST_P(RealFftInEachForm, Shorter_transforms_use_the_tables_of_a_longer_one_and_give_the_same_bits) {
    FftTables tables(kLongest);
    Transformed(Noise(kLongest), FftDirection::Forward, tables);
    const FftTables before = tables;
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        const Values spectrum = Transformed(Noise(n), FftDirection::Forward, tables);
        EXPECT_EQ(spectrum, Forward(Noise(n)));
        EXPECT_EQ(Transformed(spectrum, FftDirection::Inverse, tables), Inverse(spectrum));
    }
    EXPECT_EQ(tables.table, before.table);
    EXPECT_EQ(tables.index[0], static_cast<std::int32_t>(kLongest / 4));
    EXPECT_EQ(tables.index[1], static_cast<std::int32_t>(kLongest / 4));
}

TEST_P(RealFftInEachForm, A_longer_transform_makes_the_tables_anew) {
    FftTables tables(kLongest);
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        EXPECT_EQ(Transformed(Noise(n), FftDirection::Forward, tables), Forward(Noise(n)));
        EXPECT_EQ(tables.index[0], static_cast<std::int32_t>(n / 4));
    }
}

TEST_P(RealFftInEachForm, Empty_tables_are_known_by_their_first_entry_alone) {
    for (std::size_t n : AllLengths(1024)) {
        SCOPED_TRACE(n);
        FftTables tables(n);
        for (auto& entry : tables.index) entry = 1 << 30;
        for (auto& entry : tables.table) entry = 1e300;
        tables.index[0] = 0;
        EXPECT_EQ(Transformed(Noise(n), FftDirection::Forward, tables), Forward(Noise(n)));
    }
}

TEST_P(RealFftInEachForm, Nothing_beside_the_arrays_is_touched_and_they_need_no_alignment) {
    for (std::size_t n : AllLengths()) {
        SCOPED_TRACE(n);
        const FftTables sizes(n);
        Guarded<double> a(n), table(n / 2);
        Guarded<std::int32_t> index(sizes.index.size());
        index.data()[0] = 0;
        const Values in = Noise(n);
        std::copy(in.begin(), in.end(), a.data());
        RealFft(n, FftDirection::Forward, a.data(), index.data(), table.data());
        EXPECT_EQ(Values(a.data(), a.data() + n), Forward(in));
        RealFft(n, FftDirection::Inverse, a.data(), index.data(), table.data());
        EXPECT_TRUE(a.IsWhole());
        EXPECT_TRUE(table.IsWhole());
        EXPECT_TRUE(index.IsWhole());
    }
}

}  // namespace
