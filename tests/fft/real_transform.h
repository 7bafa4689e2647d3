// Transforms of vectors, with tables of exactly the size that is asked for, so that a sanitizer sees what goes
// beyond them.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "audio/fft/fft.h"

using Values = std::vector<double>;

inline constexpr std::size_t kLongest = 262144;

inline std::vector<std::size_t> AllLengths(std::size_t longest = kLongest) {
    std::vector<std::size_t> lengths;
    for (std::size_t n = 4; n <= longest; n *= 2) lengths.push_back(n);
    return lengths;
}

// Multiples of 2^-31 from -1/2 up to 1/2: the same everywhere.
inline Values Noise(std::size_t n, std::uint64_t state = 1) {
    Values values(n);
    for (double& value : values) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        value = static_cast<double>(state >> 33) / 2147483648.0 - 0.5;
    }
    return values;
}

struct FftTables {
    explicit FftTables(std::size_t n)
        : index(static_cast<std::size_t>(std::sqrt(static_cast<double>(n)) + 2)), table(n / 2) {}

    std::vector<std::int32_t> index;
    Values table;
};

inline Values Transformed(Values values, FftDirection direction, FftTables& tables) {
    RealFft(values.size(), direction, values.data(), tables.index.data(), tables.table.data());
    return values;
}

inline Values Transformed(const Values& values, FftDirection direction) {
    FftTables tables(values.size());
    return Transformed(values, direction, tables);
}

inline Values Forward(const Values& values) {
    return Transformed(values, FftDirection::Forward);
}

inline Values Inverse(const Values& values) {
    return Transformed(values, FftDirection::Inverse);
}

inline double RealPart(const Values& spectrum, std::size_t k) {
    return k == spectrum.size() / 2 ? spectrum[1] : spectrum[2 * k];
}

inline double ImaginaryPart(const Values& spectrum, std::size_t k) {
    return k == 0 || k == spectrum.size() / 2 ? 0 : spectrum[2 * k + 1];
}

// How far a bin may be off for values of norm 1: one rounding of a double for each of the log2 n levels.
inline double ErrorBound(std::size_t n) {
    return std::log2(static_cast<double>(n)) * 0x1p-52;
}

inline double Largest(const Values& values) {
    double largest = 0;
    for (double value : values) largest = std::max(largest, std::abs(value));
    return largest;
}

inline double Farthest(const Values& a, const Values& b) {
    double farthest = 0;
    for (std::size_t j = 0; j < a.size(); ++j) farthest = std::max(farthest, std::abs(a[j] - b[j]));
    return farthest;
}
