// Four complex values in four vectors of 16 bytes. Each result is the plain form's, to the bit: the same products
// and sums, two at a time.
#pragma once

#include <immintrin.h>

#include <cstddef>

namespace {

struct Quad {
    __m128d v0, v1, v2, v3;  // real, imaginary
};

inline Quad Load(const double* from) {
    return {_mm_loadu_pd(from), _mm_loadu_pd(from + 2), _mm_loadu_pd(from + 4), _mm_loadu_pd(from + 6)};
}

inline void Store(double* to, Quad a) {
    _mm_storeu_pd(to, a.v0);
    _mm_storeu_pd(to + 2, a.v1);
    _mm_storeu_pd(to + 4, a.v2);
    _mm_storeu_pd(to + 6, a.v3);
}

inline Quad operator+(Quad a, Quad b) {
    return {a.v0 + b.v0, a.v1 + b.v1, a.v2 + b.v2, a.v3 + b.v3};
}

inline Quad operator-(Quad a, Quad b) {
    return {a.v0 - b.v0, a.v1 - b.v1, a.v2 - b.v2, a.v3 - b.v3};
}

inline Quad operator*(Quad a, Quad b) {
    return {a.v0 * b.v0, a.v1 * b.v1, a.v2 * b.v2, a.v3 * b.v3};
}

inline __m128d Conjugate(__m128d a) {
    return _mm_xor_pd(a, _mm_set_pd(-0.0, 0));
}

inline Quad Conjugate(Quad a) {
    return {Conjugate(a.v0), Conjugate(a.v1), Conjugate(a.v2), Conjugate(a.v3)};
}

// Real and imaginary parts exchanged.
inline __m128d Exchanged(__m128d a) {
    return _mm_shuffle_pd(a, a, 1);
}

inline Quad Exchanged(Quad a) {
    return {Exchanged(a.v0), Exchanged(a.v1), Exchanged(a.v2), Exchanged(a.v3)};
}

inline __m128d TimesI(__m128d a) {
    return _mm_xor_pd(Exchanged(a), _mm_set_pd(0, -0.0));
}

inline Quad TimesI(Quad a) {
    return {TimesI(a.v0), TimesI(a.v1), TimesI(a.v2), TimesI(a.v3)};
}

// a + i b, a - i b and the negative of the latter.
inline Quad PlusI(Quad a, Quad b) {
    return a + TimesI(b);
}

inline Quad MinusI(Quad a, Quad b) {
    return a - TimesI(b);
}

inline Quad NegatedMinusI(Quad a, Quad b) {
    return TimesI(b) - a;
}

// The sum and the difference with the conjugate of b.
inline Quad PlusConjugate(Quad a, Quad b) {
    return a + Conjugate(b);
}

inline Quad MinusConjugate(Quad a, Quad b) {
    return a - Conjugate(b);
}

// Four complex factors as vectors multiply best: every real part twice, every imaginary part twice.
struct Factor {
    Quad re, im;
};

inline Quad RealPartsTwice(Quad a) {
    return {_mm_unpacklo_pd(a.v0, a.v0), _mm_unpacklo_pd(a.v1, a.v1), _mm_unpacklo_pd(a.v2, a.v2),
            _mm_unpacklo_pd(a.v3, a.v3)};
}

inline Quad ImaginaryPartsTwice(Quad a) {
    return {_mm_unpackhi_pd(a.v0, a.v0), _mm_unpackhi_pd(a.v1, a.v1), _mm_unpackhi_pd(a.v2, a.v2),
            _mm_unpackhi_pd(a.v3, a.v3)};
}

inline Factor AsFactor(Quad a) {
    return {RealPartsTwice(a), ImaginaryPartsTwice(a)};
}

inline Quad Times(Quad a, const Factor& f) {
    return a * f.re - Conjugate(Exchanged(a) * f.im);
}

inline Quad TimesConjugate(Quad a, const Factor& f) {
    return a * f.re + Conjugate(Exchanged(a) * f.im);
}

// The real parts are added to what overhangs and stored, the imaginary parts overhang next.
inline void StoreOverlapped(double* to, double* overhang, Quad a) {
    _mm_storeu_pd(to, _mm_loadu_pd(overhang) + _mm_unpacklo_pd(a.v0, a.v1));
    _mm_storeu_pd(to + 2, _mm_loadu_pd(overhang + 2) + _mm_unpacklo_pd(a.v2, a.v3));
    _mm_storeu_pd(overhang, _mm_unpackhi_pd(a.v0, a.v1));
    _mm_storeu_pd(overhang + 2, _mm_unpackhi_pd(a.v2, a.v3));
}

// Four values, each twice.
inline Quad Twice(double a, double b, double c, double d) {
    return {_mm_set1_pd(a), _mm_set1_pd(b), _mm_set1_pd(c), _mm_set1_pd(d)};
}

// from[0], from[step], from[2 step] and from[3 step], each twice. A step may be negative.
inline Quad LoadTwice(const double* from, std::ptrdiff_t step) {
    return Twice(from[0], from[step], from[2 * step], from[3 * step]);
}

// Groups of the twiddle table: cosine, sine, and both of three times the angle.
struct Group {
    __m128d one, three;
};

struct TwoGroups {
    Group first, second;
};

struct FourGroups {
    TwoGroups low, high;
};

inline Group LoadGroup(const double* from) {
    return {_mm_loadu_pd(from), _mm_loadu_pd(from + 2)};
}

inline TwoGroups LoadGroups(const double* from) {
    return {LoadGroup(from), LoadGroup(from + 4)};
}

inline TwoGroups WithFirst(TwoGroups groups, const double* group) {
    return {LoadGroup(group), groups.second};
}

inline TwoGroups WithSecond(TwoGroups groups, const double* group) {
    return {groups.first, LoadGroup(group)};
}

// The groups half-way between a's and b's: the secants are of half the angle between them and of three halves.
inline TwoGroups Between(TwoGroups a, TwoGroups b, double secant, double secantOfThrice) {
    const __m128d one = _mm_set1_pd(secant);
    const __m128d three = _mm_set1_pd(secantOfThrice);
    return {{(a.first.one + b.first.one) * one, (a.first.three + b.first.three) * three},
            {(a.second.one + b.second.one) * one, (a.second.three + b.second.three) * three}};
}

// The first of a, the first of b, the second of a, the second of b.
inline FourGroups Interleaved(TwoGroups a, TwoGroups b) {
    return {{a.first, b.first}, {a.second, b.second}};
}

// The factors of four elements for the angle and for three times it.
struct Factors {
    Factor one, three;
};

inline Factors Straight(const FourGroups& g) {
    const Quad one = {g.low.first.one, g.low.second.one, g.high.first.one, g.high.second.one};
    const Quad three = {g.low.first.three, g.low.second.three, g.high.first.three, g.high.second.three};
    return {{RealPartsTwice(one), ImaginaryPartsTwice(one)},
            {RealPartsTwice(three), ImaginaryPartsTwice(three)}};
}

// Those of the complements to a quarter turn, in reverse order; that for three times the angle is negative.
inline Factors Mirrored(const FourGroups& g) {
    const Quad one = {g.high.second.one, g.high.first.one, g.low.second.one, g.low.first.one};
    const Quad three = {g.high.second.three, g.high.first.three, g.low.second.three, g.low.first.three};
    return {{ImaginaryPartsTwice(one), RealPartsTwice(one)},
            {ImaginaryPartsTwice(three), RealPartsTwice(three)}};
}

// The four values in reverse order.
inline Quad Reversed(Quad a) {
    return {a.v3, a.v2, a.v1, a.v0};
}

// Rows become columns.
inline void Transpose(Quad (&rows)[4]) {
    const Quad r0 = rows[0], r1 = rows[1], r2 = rows[2], r3 = rows[3];
    rows[0] = {r0.v0, r1.v0, r2.v0, r3.v0};
    rows[1] = {r0.v1, r1.v1, r2.v1, r3.v1};
    rows[2] = {r0.v2, r1.v2, r2.v2, r3.v2};
    rows[3] = {r0.v3, r1.v3, r2.v3, r3.v3};
}

}  // namespace
