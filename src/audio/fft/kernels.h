// The last levels but one, on blocks of 32 and 16 doubles in registers. After a quad header.
//
// What they leave are quads to be transformed by themselves, all of type A: one of type B becomes one of type A when
// its values are turned by e^(i pi/4 j), since there are no more savings to be had at this length. The factors are
// the same in every kernel of a transform, so they are gathered from the tables once.
#pragma once

#include "audio/fft/passes.h"

namespace {

struct Kernel16Factors {
    Factor eighth;           // e^(i pi/4 j), for j = 0..3
    Factor sixteenth;        // e^(i pi/8 j)
    Factor threeSixteenths;  // e^(3 i pi/8 j)
};

struct Kernel32Factors {
    Factor eighth;
    Factors a;                     // e^(i pi/8 j) and e^(3 i pi/8 j)
    Factors straightB, mirroredB;  // as in pass B
};

inline Factor EighthTurns(double r) {
    return {Twice(1, r, 0, -r), Twice(0, r, 1, r)};
}

// From cosine and sine of pi/8.
inline Factors SixteenthTurns(double r, double c, double s) {
    return {{Twice(1, c, r, s), Twice(0, s, r, c)}, {Twice(1, s, -r, -c), Twice(0, c, r, -s)}};
}

// What Kernel16A needs alone; then all, from the sub-table of 8 entries.
inline Kernel16Factors MakeKernel16AFactors(const double* table) {
    Kernel16Factors factors;
    factors.eighth = EighthTurns(table[1]);
    return factors;
}

inline Kernel16Factors MakeKernel16Factors(const double* table) {
    const Factors turns = SixteenthTurns(table[1], table[4], table[5]);
    return {EighthTurns(table[1]), turns.one, turns.three};
}

// What Kernel32A needs alone, from the sub-table of 4 entries, which has no group. The secant 1/(2 cos x) gives
// both, x being pi/8: sin x = sin 2x / (2 cos x) and cos x = (1 + cos 2x) / (2 cos x).
inline Kernel32Factors MakeKernel32AFactors(const double* table) {
    const double sine = table[1] * table[2];
    Kernel32Factors factors;
    factors.eighth = EighthTurns(table[1]);
    factors.a = SixteenthTurns(table[1], table[2] + sine, sine);
    return factors;
}

// All, from the end of the tables.
inline Kernel32Factors MakeKernel32Factors(const double* end) {
    Kernel32Factors factors = MakeKernel32AFactors(end - 8);
    factors.straightB = Straight(GroupsFrom(end - 32, 0));
    factors.mirroredB = Mirrored(GroupsBackTo(end - 32, 8, 8));
    return factors;
}

// Each leaves the last level, transforms of four neighbours, to a transform's reordering or to a convolution's goal.
inline void Kernel32A(double* x, const Elements& block, const Kernel32Factors& f) {
    Elements e = ButterflyA(block, f.a);
    e.e1 = Times(e.e1, f.eighth);
    StoreElements(x, 8, e);
}

inline void Kernel32B(double* x, const Elements& block, const Kernel32Factors& f) {
    Elements e = ButterflyB(block, f.straightB, f.mirroredB);
    e.e1 = Times(e.e1, f.eighth);
    e.e3 = Times(e.e3, f.eighth);
    StoreElements(x, 8, e);
}

inline void Kernel16A(double* x, Quad e0, Quad e1, const Kernel16Factors& f) {
    Store(x, e0 + e1);
    Store(x + 8, Times(e0 - e1, f.eighth));
}

inline void Kernel16B(double* x, Quad e0, Quad e1, const Kernel16Factors& f) {
    Store(x, Times(PlusI(e0, e1), f.sixteenth));
    Store(x + 8, Times(MinusI(e0, e1), f.threeSixteenths));
}

}  // namespace
