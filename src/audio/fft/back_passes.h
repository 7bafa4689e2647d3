// The levels undone: a pass or a kernel makes of what a block's quarters hold the block again, four times as large, or
// twice where it has two halves. After a quad header.
#pragma once

#include <cstddef>

#include "audio/fft/leaves.h"

namespace {

template <bool kMirrored>
inline Elements BackFromTypeA(const Elements& y, const Factors& f) {
    const Quad one = TimesConjugate(y.e2, f.one);
    const Quad three = TimesConjugate(y.e3, f.three);
    const Quad x0 = y.e0 + y.e1;
    const Quad x1 = kMirrored ? one - three : one + three;
    const Quad x2 = y.e0 - y.e1;
    const Quad ix3 = kMirrored ? one + three : one - three;
    return {x0 + x1, MinusI(x2, ix3), x0 - x1, PlusI(x2, ix3)};
}

inline Elements BackFromA(const Elements& y, const Factors& f) {
    return BackFromTypeA<false>(y, f);
}

inline Elements BackFromAMirrored(const Elements& y, const Factors& f) {
    return BackFromTypeA<true>(y, f);
}

inline Quad OverI(Quad a) {
    return MinusI(Twice(0, 0, 0, 0), a);
}

inline Elements BackFromB(const Elements& y, const Factors& straight, const Factors& mirrored) {
    const Quad x0 = TimesConjugate(y.e0 + y.e1, straight.one);
    const Quad x1 = TimesConjugate(y.e2 + y.e3, straight.three);
    const Quad x2 = TimesConjugate(y.e0 - y.e1, mirrored.one);
    const Quad x3 = TimesConjugate(y.e3 - y.e2, mirrored.three);
    return {x0 + x1, x2 + x3, OverI(x0 - x1), OverI(x2 - x3)};
}

inline void MiddlePassBackA(std::size_t L, double* x, const double* table) {
    PassOfTypeA<BackFromA, BackFromAMirrored>(L, x, table);
}

inline void MiddlePassBackB(std::size_t L, double* x, const double* table) {
    PassOfTypeB<BackFromB>(L, x, table);
}

struct Pair {
    Quad e0, e1;
};

inline Pair BackFrom16A(const double* x, const Kernel16Factors& f) {
    const Quad y0 = Load(x);
    const Quad y1 = TimesConjugate(Load(x + 8), f.eighth);
    return {y0 + y1, y0 - y1};
}

inline Pair BackFrom16B(const double* x, const Kernel16Factors& f) {
    const Quad y0 = TimesConjugate(Load(x), f.sixteenth);
    const Quad y1 = TimesConjugate(Load(x + 8), f.threeSixteenths);
    return {y0 + y1, OverI(y0 - y1)};
}

inline Elements BackFrom32A(const double* x, const Kernel32Factors& f) {
    Elements e = LoadElements(x, 8);
    e.e1 = TimesConjugate(e.e1, f.eighth);
    return BackFromA(e, f.a);
}

inline Elements BackFrom32B(const double* x, const Kernel32Factors& f) {
    Elements e = LoadElements(x, 8);
    e.e1 = TimesConjugate(e.e1, f.eighth);
    e.e3 = TimesConjugate(e.e3, f.eighth);
    return BackFromB(e, f.straightB, f.mirroredB);
}

inline void StoreColumn(double* x, std::size_t l, std::size_t c, const Elements& e) {
    StoreElements(x + 8 * c, l / 4, e);
}

inline void LastPassBack64A(double* x, const Leaves& f) {
    const Pair k0 = BackFrom16A(x, f.sixteen);
    const Pair k1 = BackFrom16B(x + 16, f.sixteen);
    const Pair k2 = BackFrom16A(x + 32, f.sixteen);
    const Pair k3 = BackFrom16A(x + 48, f.sixteen);
    StoreColumn(x, 64, 0, BackFromA({k0.e0, k1.e0, k2.e0, k3.e0}, f.two.a[0]));
    StoreColumn(x, 64, 1, BackFromAMirrored({k0.e1, k1.e1, k2.e1, k3.e1}, f.two.a[1]));
}

inline void LastPassBack64B(double* x, const Leaves& f) {
    const auto column = [&](std::size_t c, const Elements& e) {
        StoreColumn(x, 64, c, BackFromB(e, f.two.straightB[c], f.two.mirroredB[c]));
    };
    const Pair k0 = BackFrom16A(x, f.sixteen);
    const Pair k1 = BackFrom16B(x + 16, f.sixteen);
    const Pair k2 = BackFrom16A(x + 32, f.sixteen);
    const Pair k3 = BackFrom16B(x + 48, f.sixteen);
    column(0, {k0.e0, k1.e0, k2.e0, k3.e0});
    column(1, {k0.e1, k1.e1, k2.e1, k3.e1});
}

inline void LastPassBack128A(double* x, const Leaves& f) {
    const Elements k0 = BackFrom32A(x, f.thirtyTwo);
    const Elements k1 = BackFrom32B(x + 32, f.thirtyTwo);
    const Elements k2 = BackFrom32A(x + 64, f.thirtyTwo);
    const Elements k3 = BackFrom32A(x + 96, f.thirtyTwo);
    StoreColumn(x, 128, 0, BackFromA({k0.e0, k1.e0, k2.e0, k3.e0}, f.four.a[0]));
    StoreColumn(x, 128, 1, BackFromA({k0.e1, k1.e1, k2.e1, k3.e1}, f.four.a[1]));
    StoreColumn(x, 128, 2, BackFromAMirrored({k0.e2, k1.e2, k2.e2, k3.e2}, f.four.a[2]));
    StoreColumn(x, 128, 3, BackFromAMirrored({k0.e3, k1.e3, k2.e3, k3.e3}, f.four.a[3]));
}

inline void LastPassBack128B(double* x, const Leaves& f) {
    const auto column = [&](std::size_t c, const Elements& e) {
        StoreColumn(x, 128, c, BackFromB(e, f.four.straightB[c], f.four.mirroredB[c]));
    };
    const Elements k0 = BackFrom32A(x, f.thirtyTwo);
    const Elements k1 = BackFrom32B(x + 32, f.thirtyTwo);
    const Elements k2 = BackFrom32A(x + 64, f.thirtyTwo);
    const Elements k3 = BackFrom32B(x + 96, f.thirtyTwo);
    column(0, {k0.e0, k1.e0, k2.e0, k3.e0});
    column(1, {k0.e1, k1.e1, k2.e1, k3.e1});
    column(2, {k0.e2, k1.e2, k2.e2, k3.e2});
    column(3, {k0.e3, k1.e3, k2.e3, k3.e3});
}

}  // namespace
