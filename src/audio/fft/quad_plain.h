// Four complex values side by side, in ordinary C++. The other quads do the same with vectors.
#pragma once

#include <cstddef>

namespace {

struct Quad {
    double v[8];  // real, imaginary, ...
};

inline Quad Load(const double* from) {
    Quad a;
    for (int i = 0; i < 8; ++i) a.v[i] = from[i];
    return a;
}

inline void Store(double* to, Quad a) {
    for (int i = 0; i < 8; ++i) to[i] = a.v[i];
}

inline Quad operator+(Quad a, Quad b) {
    for (int i = 0; i < 8; ++i) a.v[i] += b.v[i];
    return a;
}

inline Quad operator-(Quad a, Quad b) {
    for (int i = 0; i < 8; ++i) a.v[i] -= b.v[i];
    return a;
}

inline Quad operator*(Quad a, Quad b) {
    for (int i = 0; i < 8; ++i) a.v[i] *= b.v[i];
    return a;
}

inline Quad Conjugate(Quad a) {
    for (int i = 1; i < 8; i += 2) a.v[i] = -a.v[i];
    return a;
}

// a + i b, a - i b and the negative of the latter.
inline Quad PlusI(Quad a, Quad b) {
    for (int i = 0; i < 8; i += 2) {
        a.v[i] -= b.v[i + 1];
        a.v[i + 1] += b.v[i];
    }
    return a;
}

inline Quad MinusI(Quad a, Quad b) {
    for (int i = 0; i < 8; i += 2) {
        a.v[i] += b.v[i + 1];
        a.v[i + 1] -= b.v[i];
    }
    return a;
}

inline Quad NegatedMinusI(Quad a, Quad b) {
    for (int i = 0; i < 8; i += 2) {
        a.v[i] = -b.v[i + 1] - a.v[i];
        a.v[i + 1] = b.v[i] - a.v[i + 1];
    }
    return a;
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

inline Factor AsFactor(Quad a) {
    Factor f;
    for (int i = 0; i < 8; ++i) {
        f.re.v[i] = a.v[i / 2 * 2];
        f.im.v[i] = a.v[i / 2 * 2 + 1];
    }
    return f;
}

inline Quad Times(Quad a, const Factor& f) {
    Quad product;
    for (int i = 0; i < 8; i += 2) {
        product.v[i] = a.v[i] * f.re.v[i] - a.v[i + 1] * f.im.v[i];
        product.v[i + 1] = a.v[i + 1] * f.re.v[i] + a.v[i] * f.im.v[i];
    }
    return product;
}

inline Quad TimesConjugate(Quad a, const Factor& f) {
    Quad product;
    for (int i = 0; i < 8; i += 2) {
        product.v[i] = a.v[i] * f.re.v[i] + a.v[i + 1] * f.im.v[i];
        product.v[i + 1] = a.v[i + 1] * f.re.v[i] - a.v[i] * f.im.v[i];
    }
    return product;
}

// The real parts are added to what overhangs and stored, the imaginary parts overhang next.
inline void StoreOverlapped(double* to, double* overhang, Quad a) {
    for (int i = 0; i < 4; ++i) {
        to[i] = overhang[i] + a.v[2 * i];
        overhang[i] = a.v[2 * i + 1];
    }
}

// Four values, each twice.
inline Quad Twice(double a, double b, double c, double d) {
    return {{a, a, b, b, c, c, d, d}};
}

// from[0], from[step], from[2 step] and from[3 step], each twice. A step may be negative.
inline Quad LoadTwice(const double* from, std::ptrdiff_t step) {
    return Twice(from[0], from[step], from[2 * step], from[3 * step]);
}

// Groups of the twiddle table: cosine, sine, and both of three times the angle.
struct TwoGroups {
    double v[8];
};

struct FourGroups {
    TwoGroups low, high;
};

inline TwoGroups LoadGroups(const double* from) {
    return {{from[0], from[1], from[2], from[3], from[4], from[5], from[6], from[7]}};
}

inline TwoGroups WithFirst(TwoGroups groups, const double* group) {
    for (int i = 0; i < 4; ++i) groups.v[i] = group[i];
    return groups;
}

inline TwoGroups WithSecond(TwoGroups groups, const double* group) {
    for (int i = 0; i < 4; ++i) groups.v[4 + i] = group[i];
    return groups;
}

// The groups half-way between a's and b's: the secants are of half the angle between them and of three halves.
inline TwoGroups Between(TwoGroups a, TwoGroups b, double secant, double secantOfThrice) {
    for (int i = 0; i < 8; ++i) a.v[i] = (a.v[i] + b.v[i]) * (i % 4 < 2 ? secant : secantOfThrice);
    return a;
}

// The first of a, the first of b, the second of a, the second of b.
inline FourGroups Interleaved(TwoGroups a, TwoGroups b) {
    FourGroups all{a, b};
    for (int i = 0; i < 4; ++i) {
        all.low.v[4 + i] = b.v[i];
        all.high.v[i] = a.v[4 + i];
    }
    return all;
}

// The factors of four elements for the angle and for three times it.
struct Factors {
    Factor one, three;
};

template <int kEntry>
inline Quad Entry(const FourGroups& groups) {
    Quad a;
    for (int i = 0; i < 8; ++i) a.v[i] = (i < 4 ? groups.low : groups.high).v[i / 2 % 2 * 4 + kEntry];
    return a;
}

template <int kEntry>
inline Quad EntryBackwards(const FourGroups& groups) {
    Quad a;
    for (int i = 0; i < 8; ++i) a.v[7 - i] = (i < 4 ? groups.low : groups.high).v[i / 2 % 2 * 4 + kEntry];
    return a;
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
    return {{a.v[6], a.v[7], a.v[4], a.v[5], a.v[2], a.v[3], a.v[0], a.v[1]}};
}

// Rows become columns.
inline void Transpose(Quad (&rows)[4]) {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < r; ++c) {
            for (int part = 0; part < 2; ++part) {
                const double lower = rows[r].v[2 * c + part];
                rows[r].v[2 * c + part] = rows[c].v[2 * r + part];
                rows[c].v[2 * r + part] = lower;
            }
        }
    }
}

}  // namespace
