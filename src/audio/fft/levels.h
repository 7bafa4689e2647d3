// Which pass runs when: all levels between the first pass and the reordering. After a quad header.
//
// A block of type A falls into quarters A, B, A, A, one of type B into A, B, A, B, whatever its length. Each level
// does its own pass before it descends, and finishes a quarter before it touches the next.
#pragma once

#include <cstddef>

#include "audio/fft/leaves.h"

namespace {

constexpr std::size_t kLongestSwept = 512;  // doubles; above, blocks are finished by recursion
constexpr std::size_t kKernel32Pass = 128;  // the last pass, whose quarters are blocks for Kernel32A and B

struct Tables {
    const double* end;  // of the twiddle tables
    Leaves leaves;
};

inline void PassA(std::size_t L, double* x, const Tables& tables) {
    MiddlePassA(L, x, tables.end - L / 2);
}

inline void PassB(std::size_t L, double* x, const Tables& tables) {
    MiddlePassB(L, x, tables.end - L);
}

inline void LastPassA(std::size_t l, double* x, const Tables& tables) {
    l == kKernel32Pass ? LastPass128A(x, tables.leaves) : LastPass64A(x, tables.leaves);
}

inline void LastPassB(std::size_t l, double* x, const Tables& tables) {
    l == kKernel32Pass ? LastPass128B(x, tables.leaves) : LastPass64B(x, tables.leaves);
}

// The quarters of a block of 512 or 256 doubles after its pass.
inline void SweepA(std::size_t n, double* x, const Tables& tables) {
    const std::size_t l = n >> 2;
    LastPassA(l, x, tables);
    LastPassB(l, x + l, tables);
    LastPassA(l, x + 2 * l, tables);
    LastPassA(l, x + 3 * l, tables);
}

inline void SweepB(std::size_t n, double* x, const Tables& tables) {
    const std::size_t l = n >> 2;
    LastPassA(l, x, tables);
    LastPassA(l, x + 2 * l, tables);
    LastPassB(l, x + l, tables);
    LastPassB(l, x + 3 * l, tables);
}

void RecurseB(std::size_t L, double* x, const Tables& tables);

// The last quarter is of the block's own type, so it needs no call.
void RecurseA(std::size_t L, double* x, const Tables& tables) {
    PassA(L, x, tables);
    while (L > kLongestSwept) {
        L >>= 2;
        RecurseA(L, x, tables);
        RecurseB(L, x + L, tables);
        RecurseA(L, x + 2 * L, tables);
        x += 3 * L;
        PassA(L, x, tables);
    }
    SweepA(L, x, tables);
}

void RecurseB(std::size_t L, double* x, const Tables& tables) {
    PassB(L, x, tables);
    while (L > kLongestSwept) {
        L >>= 2;
        RecurseA(L, x, tables);
        RecurseB(L, x + L, tables);
        RecurseA(L, x + 2 * L, tables);
        x += 3 * L;
        PassB(L, x, tables);
    }
    SweepB(L, x, tables);
}

// The quarters of the whole array, of 128 or 64 doubles, after the first pass.
inline void Leaf128(std::size_t n, double* a, const Leaves& leaves) {
    if (n == kKernel32Pass) {
        Kernel32A(a, LoadElements(a, 8), leaves.thirtyTwo);
        Kernel32B(a + 32, LoadElements(a + 32, 8), leaves.thirtyTwo);
        Kernel32A(a + 64, LoadElements(a + 64, 8), leaves.thirtyTwo);
        Kernel32A(a + 96, LoadElements(a + 96, 8), leaves.thirtyTwo);
    } else {
        Kernel16A(a, Load(a), Load(a + 8), leaves.sixteen);
        Kernel16B(a + 16, Load(a + 16), Load(a + 24), leaves.sixteen);
        Kernel16A(a + 32, Load(a + 32), Load(a + 40), leaves.sixteen);
        Kernel16A(a + 48, Load(a + 48), Load(a + 56), leaves.sixteen);
    }
}

// All levels after the first pass, for n above 32.
inline void InnerLevels(std::size_t n, double* a, const Tables& tables) {
    const std::size_t m = n >> 2;
    if (n > kLongestSwept) {
        RecurseA(m, a, tables);
        RecurseB(m, a + m, tables);
        RecurseA(m, a + 2 * m, tables);
        RecurseA(m, a + 3 * m, tables);
    } else if (m > 32) {
        SweepA(n, a, tables);
    } else {
        Leaf128(n, a, tables.leaves);
    }
}

}  // namespace
