// What the forms for AVX2 and wider share: four outputs of a polyphase filter run side by side and are totalled
// together. Only their sources include this, each for itself, as they are compiled for different processors.
#pragma once

#include <immintrin.h>

#include "audio/filter_sums_forms.h"

namespace {

struct Output {
    const double* from;
    const double* taps;
};

// The totals of four vectors.
__m256d Totals(__m256d a, __m256d b, __m256d c, __m256d d) {
    const __m256d ac = _mm256_add_pd(_mm256_permute2f128_pd(a, c, 0x20), _mm256_permute2f128_pd(a, c, 0x31));
    const __m256d bd = _mm256_add_pd(_mm256_permute2f128_pd(b, d, 0x20), _mm256_permute2f128_pd(b, d, 0x31));
    return _mm256_add_pd(_mm256_unpacklo_pd(ac, bd), _mm256_unpackhi_pd(ac, bd));
}

// `sums` makes of four outputs and a width what the four are. Behind the last output of all, it is done again.
template <typename Sums>
void SumInFours(const PolyphaseRows& rows, double* to, const double* from, std::size_t count,
                std::size_t phase, const Sums& sums) {
    const auto next = [&] {
        const Output output = {from, rows.taps + phase * rows.stride};
        from += rows.advance[phase];
        if (++phase == rows.phases) phase = 0;
        return output;
    };
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        const Output four[] = {next(), next(), next(), next()};
        _mm256_storeu_pd(to + i, sums(four, rows.width));
    }
    for (; i < count; ++i) {
        const Output one = next(), four[] = {one, one, one, one};
        to[i] = _mm256_cvtsd_f64(sums(four, rows.width));
    }
}

}  // namespace
