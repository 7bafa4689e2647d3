// Four complex values in two vectors of 32 bytes.
#pragma once

#include <immintrin.h>

#include <cstddef>

namespace {

struct Quad {
    __m256d low, high;  // real, imaginary, ...
};

inline Quad Load(const double* from) {
    return {_mm256_loadu_pd(from), _mm256_loadu_pd(from + 4)};
}

inline void Store(double* to, Quad a) {
    _mm256_storeu_pd(to, a.low);
    _mm256_storeu_pd(to + 4, a.high);
}

inline Quad operator+(Quad a, Quad b) {
    return {a.low + b.low, a.high + b.high};
}

inline Quad operator-(Quad a, Quad b) {
    return {a.low - b.low, a.high - b.high};
}

inline Quad operator*(Quad a, Quad b) {
    return {a.low * b.low, a.high * b.high};
}

inline Quad Conjugate(Quad a) {
    const __m256d signs = _mm256_set_pd(-0.0, 0, -0.0, 0);
    return {_mm256_xor_pd(a.low, signs), _mm256_xor_pd(a.high, signs)};
}

// Real and imaginary parts exchanged.
inline __m256d Exchanged(__m256d a) {
    return __builtin_shufflevector(a, a, 1, 0, 3, 2);
}

// What i b is to the exchanged b: its signs.
inline __m256d Alternating() {
    return _mm256_set_pd(1, -1, 1, -1);
}

// a + i b, a - i b and the negative of the latter.
inline Quad PlusI(Quad a, Quad b) {
    return {_mm256_fmadd_pd(Exchanged(b.low), Alternating(), a.low),
            _mm256_fmadd_pd(Exchanged(b.high), Alternating(), a.high)};
}

inline Quad MinusI(Quad a, Quad b) {
    return {_mm256_fnmadd_pd(Exchanged(b.low), Alternating(), a.low),
            _mm256_fnmadd_pd(Exchanged(b.high), Alternating(), a.high)};
}

inline Quad NegatedMinusI(Quad a, Quad b) {
    return {_mm256_fmsub_pd(Exchanged(b.low), Alternating(), a.low),
            _mm256_fmsub_pd(Exchanged(b.high), Alternating(), a.high)};
}

// The sum and the difference with the conjugate of b.
inline Quad PlusConjugate(Quad a, Quad b) {
    return {_mm256_fnmadd_pd(b.low, Alternating(), a.low), _mm256_fnmadd_pd(b.high, Alternating(), a.high)};
}

inline Quad MinusConjugate(Quad a, Quad b) {
    return {_mm256_fmadd_pd(b.low, Alternating(), a.low), _mm256_fmadd_pd(b.high, Alternating(), a.high)};
}

// Four complex factors as vectors multiply best: every real part twice, every imaginary part twice.
struct Factor {
    Quad re, im;
};

inline Factor AsFactor(Quad a) {
    return {{_mm256_movedup_pd(a.low), _mm256_movedup_pd(a.high)},
            {_mm256_permute_pd(a.low, 0xF), _mm256_permute_pd(a.high, 0xF)}};
}

inline Quad Times(Quad a, const Factor& f) {
    return {_mm256_fmaddsub_pd(a.low, f.re.low, Exchanged(a.low) * f.im.low),
            _mm256_fmaddsub_pd(a.high, f.re.high, Exchanged(a.high) * f.im.high)};
}

inline Quad TimesConjugate(Quad a, const Factor& f) {
    return {_mm256_fmsubadd_pd(a.low, f.re.low, Exchanged(a.low) * f.im.low),
            _mm256_fmsubadd_pd(a.high, f.re.high, Exchanged(a.high) * f.im.high)};
}

// The real parts are added to what overhangs and stored, the imaginary parts overhang next.
inline void StoreOverlapped(double* to, double* overhang, Quad a) {
    const __m256d real = __builtin_shufflevector(a.low, a.high, 0, 2, 4, 6);
    const __m256d imaginary = __builtin_shufflevector(a.low, a.high, 1, 3, 5, 7);
    _mm256_storeu_pd(to, _mm256_loadu_pd(overhang) + real);
    _mm256_storeu_pd(overhang, imaginary);
}

// Four values, each twice.
inline Quad Twice(double a, double b, double c, double d) {
    return {_mm256_set_pd(b, b, a, a), _mm256_set_pd(d, d, c, c)};
}

// from[0], from[step], from[2 step] and from[3 step], each twice. A step may be negative.
inline Quad LoadTwice(const double* from, std::ptrdiff_t step) {
    return Twice(from[0], from[step], from[2 * step], from[3 * step]);
}

// Groups of the twiddle table: cosine, sine, and both of three times the angle. Two of them are kept as the pair of
// their first halves and the pair of their second halves, which takes loads instead of shuffles.
struct TwoGroups {
    __m256d one, three;
};

struct FourGroups {
    TwoGroups low, high;
};

inline __m256d LoadPair(const double* first, const double* second) {
    return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(first)), _mm_loadu_pd(second), 1);
}

inline TwoGroups LoadGroups(const double* from) {
    return {LoadPair(from, from + 4), LoadPair(from + 2, from + 6)};
}

inline TwoGroups WithFirst(TwoGroups groups, const double* group) {
    return {_mm256_insertf128_pd(groups.one, _mm_loadu_pd(group), 0),
            _mm256_insertf128_pd(groups.three, _mm_loadu_pd(group + 2), 0)};
}

inline TwoGroups WithSecond(TwoGroups groups, const double* group) {
    return {_mm256_insertf128_pd(groups.one, _mm_loadu_pd(group), 1),
            _mm256_insertf128_pd(groups.three, _mm_loadu_pd(group + 2), 1)};
}

// The groups half-way between a's and b's: the secants are of half the angle between them and of three halves.
inline TwoGroups Between(TwoGroups a, TwoGroups b, double secant, double secantOfThrice) {
    return {(a.one + b.one) * _mm256_set1_pd(secant), (a.three + b.three) * _mm256_set1_pd(secantOfThrice)};
}

// The first values of a and of b, and the second ones.
inline __m256d Firsts(__m256d a, __m256d b) {
    return __builtin_shufflevector(a, b, 0, 1, 4, 5);
}

inline __m256d Seconds(__m256d a, __m256d b) {
    return __builtin_shufflevector(a, b, 2, 3, 6, 7);
}

// The first of a, the first of b, the second of a, the second of b.
inline FourGroups Interleaved(TwoGroups a, TwoGroups b) {
    return {{Firsts(a.one, b.one), Firsts(a.three, b.three)},
            {Seconds(a.one, b.one), Seconds(a.three, b.three)}};
}

// The factors of four elements for the angle and for three times it.
struct Factors {
    Factor one, three;
};

template <int e>
inline Quad Entry(__m256d low, __m256d high) {
    return {__builtin_shufflevector(low, low, e, e, 2 + e, 2 + e),
            __builtin_shufflevector(high, high, e, e, 2 + e, 2 + e)};
}

template <int e>
inline Quad EntryBackwards(__m256d low, __m256d high) {
    return {__builtin_shufflevector(high, high, 2 + e, 2 + e, e, e),
            __builtin_shufflevector(low, low, 2 + e, 2 + e, e, e)};
}

inline Factors Straight(const FourGroups& g) {
    return {{Entry<0>(g.low.one, g.high.one), Entry<1>(g.low.one, g.high.one)},
            {Entry<0>(g.low.three, g.high.three), Entry<1>(g.low.three, g.high.three)}};
}

// Those of the complements to a quarter turn, in reverse order; that for three times the angle is negative.
inline Factors Mirrored(const FourGroups& g) {
    return {{EntryBackwards<1>(g.low.one, g.high.one), EntryBackwards<0>(g.low.one, g.high.one)},
            {EntryBackwards<1>(g.low.three, g.high.three), EntryBackwards<0>(g.low.three, g.high.three)}};
}

// The four values in reverse order.
inline Quad Reversed(Quad a) {
    return {__builtin_shufflevector(a.high, a.high, 2, 3, 0, 1),
            __builtin_shufflevector(a.low, a.low, 2, 3, 0, 1)};
}

// Rows become columns.
inline void Transpose(Quad (&rows)[4]) {
    const Quad r0 = rows[0], r1 = rows[1], r2 = rows[2], r3 = rows[3];
    rows[0] = {Firsts(r0.low, r1.low), Firsts(r2.low, r3.low)};
    rows[1] = {Seconds(r0.low, r1.low), Seconds(r2.low, r3.low)};
    rows[2] = {Firsts(r0.high, r1.high), Firsts(r2.high, r3.high)};
    rows[3] = {Seconds(r0.high, r1.high), Seconds(r2.high, r3.high)};
}

}  // namespace
