// Convolution beside the sum that defines it, beside the transforms that would do it, and block after block.
#include "audio/fft/convolution.h"

#include <gtest/gtest.h>

#include <limits>

#include "fft/convolved.h"
#include "fft/each_form.h"
#include "fft/guarded.h"
#include "fft/real_transform.h"

namespace {

// All of it, by the sum.
Values Summed(const Values& signal, const Values& taps) {
    Values sums(signal.size() + taps.size());
    for (std::size_t j = 0; j < sums.size(); ++j) {
        long double sum = 0;
        for (std::size_t k = j < taps.size() ? 0 : j - taps.size() + 1; k <= j && k < signal.size(); ++k)
            sum += static_cast<long double>(signal[k]) * taps[j - k];
        sums[j] = static_cast<double>(sum);
    }
    return sums;
}

// The same by a real transform, a product of spectra and an inverse, times half the length.
Values ByTransforms(Values signal, Values taps) {
    const std::size_t n = 2 * signal.size();
    signal.resize(n);
    taps.resize(n);
    const Values a = Forward(signal), b = Forward(taps);
    Values product = {a[0] * b[0], a[1] * b[1]};
    for (std::size_t j = 2; j < n; j += 2) {
        product.push_back(a[j] * b[j] - a[j + 1] * b[j + 1]);
        product.push_back(a[j] * b[j + 1] + a[j + 1] * b[j]);
    }
    return Inverse(product);
}

class ConvolveInEachForm : public InEachForm {};

TEST_P(ConvolveInEachForm, Short_lengths_give_the_sums_times_half_the_length) {
    for (std::size_t n = 256; n <= 2048; n *= 2) {
        const Values signal = Noise(n / 2, 3), taps = Noise(n / 2, 4), sums = Summed(signal, taps);
        Convolution convolution(taps);
        const Values convolved = convolution.Apply(signal);
        for (std::size_t j = 0; j < n; ++j)
            ASSERT_NEAR(convolved[j] / static_cast<double>(n / 2), sums[j], ErrorBound(n) * Largest(sums))
                << n << " " << j;
    }
}

TEST_P(ConvolveInEachForm, Every_length_gives_what_the_real_transforms_give) {
    for (std::size_t n : AllLengths()) {
        if (n < 256) continue;
        const Values signal = Noise(n / 2, 5), taps = Noise(n / 2, 6), expected = ByTransforms(signal, taps);
        Convolution convolution(taps);
        EXPECT_LE(Farthest(convolution.Apply(signal), expected), ErrorBound(n) * Largest(expected)) << n;
    }
}

TEST_P(ConvolveInEachForm, Blocks_one_after_another_give_the_whole) {
    const std::size_t half = 256;
    const Values signal = Noise(5 * half, 7), taps = Noise(half, 8), sums = Summed(signal, taps);
    Convolution convolution(taps);
    for (std::size_t at = 0; at < signal.size(); at += half) {
        const auto begin = signal.begin() + static_cast<std::ptrdiff_t>(at);
        const Values out = convolution.Apply(Values(begin, begin + static_cast<std::ptrdiff_t>(half)));
        for (std::size_t j = 0; j < half; ++j)
            ASSERT_NEAR(out[j] / static_cast<double>(half), sums[at + j],
                        ErrorBound(2 * half) * Largest(sums))
                << at + j;
    }
}

TEST_P(ConvolveInEachForm, Tables_for_a_longer_length_serve_a_shorter_one) {
    for (std::size_t n : {256u, 512u, 4096u, 8192u}) {
        const Values signal = Noise(n / 2, 9), taps = Noise(n / 2, 10);
        Convolution own(taps);
        const Values expected = own.Apply(signal);
        for (std::size_t longer : {2 * n, 16 * n}) {
            Convolution shared(taps, longer);
            EXPECT_EQ(shared.Apply(signal), expected) << n << " of " << longer;
        }
    }
}

TEST_P(ConvolveInEachForm, Tables_for_a_shorter_length_are_made_anew) {
    const Values signal = Noise(512, 11), taps = Noise(512, 12);
    Convolution own(taps), renewed(taps, 256);
    EXPECT_EQ(renewed.Apply(signal), own.Apply(signal));
}

TEST_P(ConvolveInEachForm, Nothing_beside_the_arrays_is_touched_and_they_need_no_alignment) {
    for (std::size_t n : {256u, 512u, 1024u, 32768u, 65536u}) {
        SCOPED_TRACE(n);
        const Values taps = Noise(n / 2, 13), signal = Noise(n / 2, 14);
        Convolution expected(taps);
        Guarded<double> samples(n / 2), overhang(n / 2), spectrum(n), work(n), table(n / 2);
        Guarded<std::int32_t> index(expected.tables.index.size());
        index.data()[0] = 0;
        std::fill_n(overhang.data(), n / 2, 0.0);
        std::copy(taps.begin(), taps.end(), samples.data());
        MakeSpectrum(n, samples.data(), spectrum.data(), index.data(), table.data());
        std::copy(signal.begin(), signal.end(), samples.data());
        Convolve(n, samples.data(), overhang.data(), spectrum.data(), work.data(), index.data(),
                 table.data());
        Values all(samples.data(), samples.data() + n / 2);
        all.insert(all.end(), overhang.data(), overhang.data() + n / 2);
        EXPECT_EQ(all, expected.Apply(signal));
        for (const Guarded<double>* array : {&samples, &overhang, &spectrum, &work, &table})
            EXPECT_TRUE(array->IsWhole());
        EXPECT_TRUE(index.IsWhole());
    }
}

TEST_P(ConvolveInEachForm, What_is_not_finite_spoils_its_own_block_and_the_next) {
    Convolution convolution(Noise(128, 15)), untouched(Noise(128, 15));
    Values signal = Noise(128, 16);
    signal[5] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(std::isnan(convolution.Apply(signal)[0]));
    convolution.Apply(Noise(128, 17));
    untouched.Apply(Noise(128, 17));
    EXPECT_EQ(convolution.Apply(Noise(128, 18)), untouched.Apply(Noise(128, 18)));
}

INSTANTIATE_TEST_SUITE_P(Form, ConvolveInEachForm, testing::ValuesIn(OfferedSets()), NameOfForm);

}  // namespace
