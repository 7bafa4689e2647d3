// Between the spectrum Z of n/2 = N complex values and the spectrum X of the n real ones they were made of. After a
// quad header.
//
// With E and O the spectra of the even and the odd real values, Z[k] = E[k] + i O[k], and since those are real,
// the conjugate of Z[N - k] is E[k] - i O[k]. Wanted is X[k] = E[k] + u O[k] with u = e^(2 pi i k / n). With d the
// difference of the two, and w = (1 + i u) / 2, that is
//
//     X[k] = Z[k] - w d     X[N - k] = Z[N - k] + conjugate of w d
//
// and the way back is the same with w conjugated. The bin N/2 in the middle needs nothing.
#pragma once

#include <cstddef>

#include "audio/fft/form.h"
#include "audio/fft/passes.h"

namespace {

// w for k to k + 3: 1/2 - sin/2 and cos/2. `step` is the distance in the cosine table from one k to the next.
inline Factor LoadWeights(const double* cosines, std::size_t nc, std::size_t k, std::size_t step) {
    const auto signedStep = static_cast<std::ptrdiff_t>(step);
    return {Twice(0.5, 0.5, 0.5, 0.5) - LoadTwice(cosines + nc - k * step, -signedStep),
            LoadTwice(cosines + k * step, signedStep)};
}

// Four pairs: the bins from `front` on, and backwards those up to `back`.
template <Quad Weighted(Quad, const Factor&)>
inline void JoinPairs(double* front, double* back, const Factor& w) {
    const Quad z = Load(front);
    const Quad mirrored = Reversed(Load(back - 6));
    const Quad y = Weighted(MinusConjugate(z, mirrored), w);
    Store(front, z - y);
    Store(back - 6, Reversed(PlusConjugate(mirrored, y)));
}

// The first three pairs singly: then quads begin at multiples of four, and none is left over.
template <Quad Weighted(Quad, const Factor&)>
inline void JoinRest(std::size_t n, double* a, std::size_t nc, const double* cosines) {
    const std::size_t step = 4 * nc / n;
    for (std::size_t k = 4; k < n >> 2; k += 4)
        JoinPairs<Weighted>(a + 2 * k, a + n - 2 * k, LoadWeights(cosines, nc, k, step));
}

void RealPost(std::size_t n, double* a, std::size_t nc, const double* cosines) {
    JoinFirstPairs(n, a, nc, cosines, 1);
    JoinRest<Times>(n, a, nc, cosines);
}

void RealPre(std::size_t n, double* a, std::size_t nc, const double* cosines) {
    JoinFirstPairs(n, a, nc, cosines, -1);
    JoinRest<TimesConjugate>(n, a, nc, cosines);
}

}  // namespace
