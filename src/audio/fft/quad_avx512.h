// Four complex values in one vector of 64 bytes.
#pragma once

#include <immintrin.h>

#include <cstddef>

namespace {

struct Quad {
    __m512d v;  // real, imaginary, ...
};

inline Quad Load(const double* from) {
    return {_mm512_loadu_pd(from)};
}

inline void Store(double* to, Quad a) {
    _mm512_storeu_pd(to, a.v);
}

inline Quad operator+(Quad a, Quad b) {
    return {a.v + b.v};
}

inline Quad operator-(Quad a, Quad b) {
    return {a.v - b.v};
}

inline Quad operator*(Quad a, Quad b) {
    return {a.v * b.v};
}

inline Quad Conjugate(Quad a) {
    const __m512d signs = _mm512_set_pd(-0.0, 0, -0.0, 0, -0.0, 0, -0.0, 0);
    return {_mm512_xor_pd(a.v, signs)};
}

// Real and imaginary parts exchanged.
inline __m512d Exchanged(Quad a) {
    return __builtin_shufflevector(a.v, a.v, 1, 0, 3, 2, 5, 4, 7, 6);
}

// What i b is to the exchanged b: its signs.
inline __m512d Alternating() {
    return _mm512_set_pd(1, -1, 1, -1, 1, -1, 1, -1);
}

// a + i b, a - i b and the negative of the latter.
inline Quad PlusI(Quad a, Quad b) {
    return {_mm512_fmadd_pd(Exchanged(b), Alternating(), a.v)};
}

inline Quad MinusI(Quad a, Quad b) {
    return {_mm512_fnmadd_pd(Exchanged(b), Alternating(), a.v)};
}

inline Quad NegatedMinusI(Quad a, Quad b) {
    return {_mm512_fmsub_pd(Exchanged(b), Alternating(), a.v)};
}

// The sum and the difference with the conjugate of b.
inline Quad PlusConjugate(Quad a, Quad b) {
    return {_mm512_fnmadd_pd(b.v, Alternating(), a.v)};
}

inline Quad MinusConjugate(Quad a, Quad b) {
    return {_mm512_fmadd_pd(b.v, Alternating(), a.v)};
}

// Four complex factors as vectors multiply best: every real part twice, every imaginary part twice.
struct Factor {
    Quad re, im;
};

inline Factor AsFactor(Quad a) {
    return {{_mm512_movedup_pd(a.v)}, {_mm512_permute_pd(a.v, 0xFF)}};
}

inline Quad Times(Quad a, const Factor& f) {
    return {_mm512_fmaddsub_pd(a.v, f.re.v, _mm512_mul_pd(Exchanged(a), f.im.v))};
}

inline Quad TimesConjugate(Quad a, const Factor& f) {
    return {_mm512_fmsubadd_pd(a.v, f.re.v, _mm512_mul_pd(Exchanged(a), f.im.v))};
}

// The real parts are added to what overhangs and stored, the imaginary parts overhang next.
inline void StoreOverlapped(double* to, double* overhang, Quad a) {
    const __m512d parts = __builtin_shufflevector(a.v, a.v, 0, 2, 4, 6, 1, 3, 5, 7);
    _mm256_storeu_pd(to, _mm256_loadu_pd(overhang) + _mm512_castpd512_pd256(parts));
    _mm256_storeu_pd(overhang, _mm512_extractf64x4_pd(parts, 1));
}

// Four values, each twice.
inline Quad Twice(double a, double b, double c, double d) {
    return {_mm512_set_pd(d, d, c, c, b, b, a, a)};
}

// from[0], from[step], from[2 step] and from[3 step], each twice. A step may be negative.
inline Quad LoadTwice(const double* from, std::ptrdiff_t step) {
    if (step == 1) {
        const __m256d in = _mm256_loadu_pd(from);
        return {__builtin_shufflevector(in, in, 0, 0, 1, 1, 2, 2, 3, 3)};
    }
    if (step == -1) {
        const __m256d in = _mm256_loadu_pd(from - 3);
        return {__builtin_shufflevector(in, in, 3, 3, 2, 2, 1, 1, 0, 0)};
    }
    return Twice(from[0], from[step], from[2 * step], from[3 * step]);
}

// Groups of the twiddle table: cosine, sine, and both of three times the angle.
struct TwoGroups {
    __m512d v;
};

struct FourGroups {
    TwoGroups low, high;
};

inline TwoGroups LoadGroups(const double* from) {
    return {_mm512_loadu_pd(from)};
}

inline TwoGroups WithFirst(TwoGroups groups, const double* group) {
    return {_mm512_mask_broadcast_f64x4(groups.v, 0x0F, _mm256_loadu_pd(group))};
}

inline TwoGroups WithSecond(TwoGroups groups, const double* group) {
    return {_mm512_mask_broadcast_f64x4(groups.v, 0xF0, _mm256_loadu_pd(group))};
}

// The groups half-way between a's and b's: the secants are of half the angle between them and of three halves.
inline TwoGroups Between(TwoGroups a, TwoGroups b, double secant, double secantOfThrice) {
    const __m512d secants =
        _mm512_mask_blend_pd(0xCC, _mm512_set1_pd(secant), _mm512_set1_pd(secantOfThrice));
    return {(a.v + b.v) * secants};
}

// The first of a, the first of b, the second of a, the second of b.
inline FourGroups Interleaved(TwoGroups a, TwoGroups b) {
    return {{__builtin_shufflevector(a.v, b.v, 0, 1, 2, 3, 8, 9, 10, 11)},
            {__builtin_shufflevector(a.v, b.v, 4, 5, 6, 7, 12, 13, 14, 15)}};
}

// The factors of four elements for the angle and for three times it.
struct Factors {
    Factor one, three;
};

template <int e>
inline Quad Entry(const FourGroups& groups) {
    return {__builtin_shufflevector(groups.low.v, groups.high.v, e, e, 4 + e, 4 + e, 8 + e, 8 + e, 12 + e,
                                    12 + e)};
}

template <int e>
inline Quad EntryBackwards(const FourGroups& groups) {
    return {__builtin_shufflevector(groups.low.v, groups.high.v, 12 + e, 12 + e, 8 + e, 8 + e, 4 + e, 4 + e,
                                    e, e)};
}

inline Factors Straight(const FourGroups& groups) {
    return {{Entry<0>(groups), Entry<1>(groups)}, {Entry<2>(groups), Entry<3>(groups)}};
}

// Those of the complements to a quarter turn, in reverse order; that for three times the angle is negative.
inline Factors Mirrored(const FourGroups& groups) {
    return {{EntryBackwards<1>(groups), EntryBackwards<0>(groups)},
            {EntryBackwards<3>(groups), EntryBackwards<2>(groups)}};
}

// The four values in reverse order.
inline Quad Reversed(Quad a) {
    return {__builtin_shufflevector(a.v, a.v, 6, 7, 4, 5, 2, 3, 0, 1)};
}

// The even values of a and of b, and the odd ones.
inline __m512d Evens(__m512d a, __m512d b) {
    return __builtin_shufflevector(a, b, 0, 1, 4, 5, 8, 9, 12, 13);
}

inline __m512d Odds(__m512d a, __m512d b) {
    return __builtin_shufflevector(a, b, 2, 3, 6, 7, 10, 11, 14, 15);
}

// Rows become columns.
inline void Transpose(Quad (&rows)[4]) {
    const __m512d evenTop = Evens(rows[0].v, rows[1].v);
    const __m512d oddTop = Odds(rows[0].v, rows[1].v);
    const __m512d evenBottom = Evens(rows[2].v, rows[3].v);
    const __m512d oddBottom = Odds(rows[2].v, rows[3].v);
    rows[0].v = Evens(evenTop, evenBottom);
    rows[1].v = Evens(oddTop, oddBottom);
    rows[2].v = Odds(evenTop, evenBottom);
    rows[3].v = Odds(oddTop, oddBottom);
}

}  // namespace
