#include "audio/filter_sums_fours.h"

namespace {

__m256d Times(const Output& output, std::size_t j, __m256d sum) {
    return _mm256_fmadd_pd(_mm256_loadu_pd(output.from + j), _mm256_loadu_pd(output.taps + j), sum);
}

void Polyphase(const PolyphaseRows& rows, double* to, const double* from, std::size_t count,
               std::size_t phase) {
    SumInFours(rows, to, from, count, phase, [](const Output(&four)[4], std::size_t width) {
        __m256d a = _mm256_setzero_pd(), b = a, c = a, d = a;
        for (std::size_t j = 0; j < width; j += 4) {
            a = Times(four[0], j, a);
            b = Times(four[1], j, b);
            c = Times(four[2], j, c);
            d = Times(four[3], j, d);
        }
        return Totals(a, b, c, d);
    });
}

void Groups(const PolyphaseGroups& groups, double* to, const double* from, std::size_t count,
            std::size_t group) {
    for (std::size_t i = 0; i < count; i += PolyphaseGroups::kOutputs) {
        const double* taps = groups.taps + group * groups.span * PolyphaseGroups::kOutputs;
        __m256d low = _mm256_setzero_pd(), high = _mm256_setzero_pd();
        for (std::size_t j = 0; j < groups.span; ++j, taps += PolyphaseGroups::kOutputs) {
            const __m256d sample = _mm256_broadcast_sd(from + j);
            low = _mm256_fmadd_pd(sample, _mm256_loadu_pd(taps), low);
            high = _mm256_fmadd_pd(sample, _mm256_loadu_pd(taps + 4), high);
        }
        _mm256_storeu_pd(to + i, low);
        _mm256_storeu_pd(to + i + 4, high);
        from += groups.advance[group];
        if (++group == groups.groups) group = 0;
    }
}

}  // namespace

const FilterSums kFilterSumsAvx2 = {Polyphase, Groups};
