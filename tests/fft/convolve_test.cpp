// Convolution through the transform, beside the sum that defines it and beside its three steps taken one by one.
#include <gtest/gtest.h>

#include "fft/each_form.h"
#include "fft/real_transform.h"

namespace {

// The signal is half as long as the spectrum; what stands behind it must not matter.
Values Convolved(const Values& signal, const Values& spectrum) {
    FftTables tables(spectrum.size());
    Values result = signal;
    result.resize(spectrum.size(), 1e300);
    ConvolveHalf(result.size(), result.data(), spectrum.data(), tables.index.data(), tables.table.data());
    return result;
}

Values Product(const Values& a, const Values& b) {
    Values product = {a[0] * b[0], a[1] * b[1]};
    for (std::size_t j = 2; j < a.size(); j += 2) {
        product.push_back(a[j] * b[j] - a[j + 1] * b[j + 1]);
        product.push_back(a[j] * b[j + 1] + a[j + 1] * b[j]);
    }
    return product;
}

class ConvolveInEachForm : public InEachForm {};

TEST_P(ConvolveInEachForm, Short_lengths_give_the_circular_sums_times_half_the_length) {
    for (std::size_t n = 8; n <= 1024; n *= 2) {
        const Values signal = Noise(n / 2, 3), filter = Noise(n, 4);
        const Values convolved = Convolved(signal, Forward(filter));
        for (std::size_t j = 0; j < n; ++j) {
            long double sum = 0;
            for (std::size_t k = 0; k < n / 2; ++k)
                sum += static_cast<long double>(signal[k]) * filter[(n + j - k) % n];
            const auto half = static_cast<long double>(n) / 2;
            ASSERT_NEAR(static_cast<double>(convolved[j] / half), static_cast<double>(sum),
                        ErrorBound(n) * static_cast<double>(n))
                << n << " " << j;
        }
    }
}

TEST_P(ConvolveInEachForm, Every_length_gives_what_its_three_steps_give) {
    for (std::size_t n : AllLengths()) {
        if (n < 8) continue;
        Values signal = Noise(n / 2, 5);
        const Values spectrum = Forward(Noise(n, 6)), convolved = Convolved(signal, spectrum);
        signal.resize(n);
        const Values expected = Inverse(Product(Forward(signal), spectrum));
        double largest = 0, farthest = 0;
        for (std::size_t j = 0; j < n; ++j) {
            largest = std::max(largest, std::abs(expected[j]));
            farthest = std::max(farthest, std::abs(convolved[j] - expected[j]));
        }
        EXPECT_LE(farthest, ErrorBound(n) * largest) << n;
    }
}

INSTANTIATE_TEST_SUITE_P(Form, ConvolveInEachForm, testing::ValuesIn(OfferedSets()), NameOfForm);

}  // namespace
