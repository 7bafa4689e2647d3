#include "audio/filter_sums_fours.h"

namespace {

__m512d Times(const Output& output, std::size_t j, __m512d sum) {
    return _mm512_fmadd_pd(_mm512_loadu_pd(output.from + j), _mm512_loadu_pd(output.taps + j), sum);
}

// Both halves added, and four taps more where the row has them: of a last vector of four taps or fewer only the
// lower half is worth reading.
__m256d Half(const Output& output, std::size_t j, std::size_t width, __m512d sum) {
    const __m256d half = _mm256_add_pd(_mm512_castpd512_pd256(sum), _mm512_extractf64x4_pd(sum, 1));
    if (j >= width) return half;
    return _mm256_fmadd_pd(_mm256_loadu_pd(output.from + j), _mm256_loadu_pd(output.taps + j), half);
}

void Polyphase(const PolyphaseRows& rows, double* to, const double* from, std::size_t count,
               std::size_t phase) {
    SumInFours(rows, to, from, count, phase, [](const Output(&four)[4], std::size_t width) {
        __m512d a = _mm512_setzero_pd(), b = a, c = a, d = a;
        std::size_t j = 0;
        for (; j + 4 < width; j += 8) {
            a = Times(four[0], j, a);
            b = Times(four[1], j, b);
            c = Times(four[2], j, c);
            d = Times(four[3], j, d);
        }
        return Totals(Half(four[0], j, width, a), Half(four[1], j, width, b), Half(four[2], j, width, c),
                      Half(four[3], j, width, d));
    });
}

void Groups(const PolyphaseGroups& groups, double* to, const double* from, std::size_t count,
            std::size_t group) {
    for (std::size_t i = 0; i < count; i += PolyphaseGroups::kOutputs) {
        const double* taps = groups.taps + group * groups.span * PolyphaseGroups::kOutputs;
        __m512d sums = _mm512_setzero_pd();
        for (std::size_t j = 0; j < groups.span; ++j, taps += PolyphaseGroups::kOutputs)
            sums = _mm512_fmadd_pd(_mm512_set1_pd(from[j]), _mm512_loadu_pd(taps), sums);
        _mm512_storeu_pd(to + i, sums);
        from += groups.advance[group];
        if (++group == groups.groups) group = 0;
    }
}

}  // namespace

const FilterSums kFilterSumsAvx512 = {Polyphase, Groups};
