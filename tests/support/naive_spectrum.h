// The slow twin of the real transform: every bin a sum over all values, in long double.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

class NaiveSpectrum {
  public:
    struct Bin {
        long double re, im;
    };

    explicit NaiveSpectrum(std::vector<double> values)
        : mValues(std::move(values)), mCosines(mValues.size()) {
        const long double step = 8 * std::atan(1.0L) / static_cast<long double>(mValues.size());
        for (std::size_t j = 0; j < mCosines.size(); ++j)
            mCosines[j] = std::cos(step * static_cast<long double>(j));
    }

    // The sums of the values times the cosine and times the sine of 2 pi j k / n.
    Bin At(std::size_t k) const {
        const std::size_t n = mValues.size();
        Bin bin{0, 0};
        for (std::size_t j = 0; j < n; ++j) {
            bin.re += static_cast<long double>(mValues[j]) * mCosines[j * k % n];
            bin.im += static_cast<long double>(mValues[j]) * mCosines[(j * k + n - n / 4) % n];
        }
        return bin;
    }

    // The square root of the sum of squares: what errors of a transform are measured by.
    double Norm() const {
        long double sum = 0;
        for (double value : mValues) sum += static_cast<long double>(value) * static_cast<long double>(value);
        return static_cast<double>(std::sqrt(sum));
    }

  private:
    const std::vector<double> mValues;
    std::vector<long double> mCosines;
};
