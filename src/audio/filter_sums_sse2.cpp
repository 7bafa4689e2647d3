#include <immintrin.h>

#include "audio/filter_sums_forms.h"

namespace {

void Polyphase(const PolyphaseRows& rows, double* to, const double* from, std::size_t count,
               std::size_t phase) {
    for (std::size_t i = 0; i < count; ++i) {
        const double* const taps = rows.taps + phase * rows.stride;
        __m128d even = _mm_setzero_pd(), odd = _mm_setzero_pd();
        for (std::size_t j = 0; j < rows.width; j += 4) {
            even = _mm_add_pd(even, _mm_mul_pd(_mm_loadu_pd(from + j), _mm_loadu_pd(taps + j)));
            odd = _mm_add_pd(odd, _mm_mul_pd(_mm_loadu_pd(from + j + 2), _mm_loadu_pd(taps + j + 2)));
        }
        const __m128d sum = _mm_add_pd(even, odd);
        to[i] = _mm_cvtsd_f64(_mm_add_sd(sum, _mm_unpackhi_pd(sum, sum)));
        from += rows.advance[phase];
        if (++phase == rows.phases) phase = 0;
    }
}

}  // namespace

const FilterSums kFilterSumsSse2 = {Polyphase, nullptr};
