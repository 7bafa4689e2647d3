// The last pass and its four kernels in one: a block of 128 or 64 doubles is loaded, passes through three levels in
// registers and is stored. After a quad header.
//
// A column of a block is a quad from each of its quarters: four columns in 128 doubles, two in 64. What a kernel
// works on, a quarter, is the same element of each column. The pass's factors are those of every such block of the
// transform, so they too are gathered once.
#pragma once

#include <cstddef>

#include "audio/fft/kernels.h"

namespace {

template <std::size_t kColumns>
struct ColumnFactors {
    Factors a[kColumns];
    Factors straightB[kColumns], mirroredB[kColumns];
};

template <std::size_t kColumns>
inline void GatherColumnFactors(const double* end, ColumnFactors<kColumns>& f) {
    const std::size_t l = 32 * kColumns;
    const std::size_t quarter = 8 * kColumns;
    const std::size_t half = quarter / 2;
    for (std::size_t c = 0; c < kColumns; ++c) {
        const std::size_t j = 8 * c;
        f.a[c] = j < half ? Straight(GroupsFrom(end - l / 2, j))
                          : Mirrored(GroupsBackTo(end - l / 2, quarter - j, half));
        f.straightB[c] = Straight(GroupsFrom(end - l, j));
        f.mirroredB[c] = Mirrored(GroupsBackTo(end - l, quarter - j, quarter));
    }
}

struct Leaves {
    ColumnFactors<2> two;
    Kernel16Factors sixteen;
    ColumnFactors<4> four;
    Kernel32Factors thirtyTwo;
};

inline Elements Column(const double* x, std::size_t l, std::size_t c) {
    return LoadElements(x + 8 * c, l / 4);
}

inline void LastPass64A(double* x, const Leaves& f) {
    const Elements c0 = ButterflyA(Column(x, 64, 0), f.two.a[0]);
    const Elements c1 = ButterflyAMirrored(Column(x, 64, 1), f.two.a[1]);
    Kernel16A(x, c0.e0, c1.e0, f.sixteen);
    Kernel16B(x + 16, c0.e1, c1.e1, f.sixteen);
    Kernel16A(x + 32, c0.e2, c1.e2, f.sixteen);
    Kernel16A(x + 48, c0.e3, c1.e3, f.sixteen);
}

inline void LastPass64B(double* x, const Leaves& f) {
    const Elements c0 = ButterflyB(Column(x, 64, 0), f.two.straightB[0], f.two.mirroredB[0]);
    const Elements c1 = ButterflyB(Column(x, 64, 1), f.two.straightB[1], f.two.mirroredB[1]);
    Kernel16A(x, c0.e0, c1.e0, f.sixteen);
    Kernel16B(x + 16, c0.e1, c1.e1, f.sixteen);
    Kernel16A(x + 32, c0.e2, c1.e2, f.sixteen);
    Kernel16B(x + 48, c0.e3, c1.e3, f.sixteen);
}

inline void LastPass128A(double* x, const Leaves& f) {
    const Elements c0 = ButterflyA(Column(x, 128, 0), f.four.a[0]);
    const Elements c1 = ButterflyA(Column(x, 128, 1), f.four.a[1]);
    const Elements c2 = ButterflyAMirrored(Column(x, 128, 2), f.four.a[2]);
    const Elements c3 = ButterflyAMirrored(Column(x, 128, 3), f.four.a[3]);
    Kernel32A(x, {c0.e0, c1.e0, c2.e0, c3.e0}, f.thirtyTwo);
    Kernel32B(x + 32, {c0.e1, c1.e1, c2.e1, c3.e1}, f.thirtyTwo);
    Kernel32A(x + 64, {c0.e2, c1.e2, c2.e2, c3.e2}, f.thirtyTwo);
    Kernel32A(x + 96, {c0.e3, c1.e3, c2.e3, c3.e3}, f.thirtyTwo);
}

inline void LastPass128B(double* x, const Leaves& f) {
    const Elements c0 = ButterflyB(Column(x, 128, 0), f.four.straightB[0], f.four.mirroredB[0]);
    const Elements c1 = ButterflyB(Column(x, 128, 1), f.four.straightB[1], f.four.mirroredB[1]);
    const Elements c2 = ButterflyB(Column(x, 128, 2), f.four.straightB[2], f.four.mirroredB[2]);
    const Elements c3 = ButterflyB(Column(x, 128, 3), f.four.straightB[3], f.four.mirroredB[3]);
    Kernel32A(x, {c0.e0, c1.e0, c2.e0, c3.e0}, f.thirtyTwo);
    Kernel32B(x + 32, {c0.e1, c1.e1, c2.e1, c3.e1}, f.thirtyTwo);
    Kernel32A(x + 64, {c0.e2, c1.e2, c2.e2, c3.e2}, f.thirtyTwo);
    Kernel32B(x + 96, {c0.e3, c1.e3, c2.e3, c3.e3}, f.thirtyTwo);
}

}  // namespace
