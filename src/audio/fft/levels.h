// Which pass runs when: all levels behind the first pass. After a quad header.
//
// A block of type A falls into quarters A, B, A, A, one of type B into A, B, A, B, whatever its length. Each level
// does its own pass before it descends, and finishes a quarter before it touches the next. A goal says what is done with
// the values that the last pass leaves, and whether the levels are then gone back up, each undoing its pass.
#pragma once

#include <cstddef>

#include "audio/fft/back_passes.h"

namespace {

constexpr std::size_t kLongestSwept = 512;  // doubles; above, blocks are finished by recursion
constexpr std::size_t kKernel32Pass = 128;  // the last pass, whose quarters are blocks for Kernel32A and B

struct LevelTables {
    const double* end;  // of the twiddle tables
    Leaves leaves;
};

// Lengths whose power of two is even end in passes of 64 doubles, the others in passes of 128.
inline bool EndsIn64(std::size_t n) {
    while (n > kKernel32Pass) n >>= 2;
    return n == 64;
}

inline LevelTables GatherTables(std::size_t n, const double* end) {
    LevelTables tables{end, {}};
    Leaves& leaves = tables.leaves;
    const bool passes = n > kKernel32Pass;
    if (EndsIn64(n)) {
        leaves.sixteen = MakeKernel16Factors(end - 16);
        if (passes) GatherColumnFactors(end, leaves.two);
    } else {
        leaves.thirtyTwo = MakeKernel32Factors(end);
        if (passes) GatherColumnFactors(end, leaves.four);
    }
    return tables;
}

// A transform's goal: what is left to do is done by its reordering.
struct Transforming {
    static constexpr bool kGoesBack = false;
    void Finish(std::size_t, double*) const {}
};

template <typename Goal>
inline void LastLevelsA(std::size_t l, double* x, const LevelTables& tables, const Goal& goal) {
    const bool is128 = l == kKernel32Pass;
    is128 ? LastPass128A(x, tables.leaves) : LastPass64A(x, tables.leaves);
    goal.Finish(l, x);
    if constexpr (Goal::kGoesBack)
        is128 ? LastPassBack128A(x, tables.leaves) : LastPassBack64A(x, tables.leaves);
}

template <typename Goal>
inline void LastLevelsB(std::size_t l, double* x, const LevelTables& tables, const Goal& goal) {
    const bool is128 = l == kKernel32Pass;
    is128 ? LastPass128B(x, tables.leaves) : LastPass64B(x, tables.leaves);
    goal.Finish(l, x);
    if constexpr (Goal::kGoesBack)
        is128 ? LastPassBack128B(x, tables.leaves) : LastPassBack64B(x, tables.leaves);
}

// The quarters of a block of 512 or 256 doubles after its pass.
template <typename Goal>
inline void SweepA(std::size_t n, double* x, const LevelTables& tables, const Goal& goal) {
    const std::size_t l = n >> 2;
    LastLevelsA(l, x, tables, goal);
    LastLevelsB(l, x + l, tables, goal);
    LastLevelsA(l, x + 2 * l, tables, goal);
    LastLevelsA(l, x + 3 * l, tables, goal);
}

template <typename Goal>
inline void SweepB(std::size_t n, double* x, const LevelTables& tables, const Goal& goal) {
    const std::size_t l = n >> 2;
    LastLevelsA(l, x, tables, goal);
    LastLevelsA(l, x + 2 * l, tables, goal);
    LastLevelsB(l, x + l, tables, goal);
    LastLevelsB(l, x + 3 * l, tables, goal);
}

template <typename Goal>
void RecurseB(std::size_t L, double* x, const LevelTables& tables, const Goal& goal);

template <typename Goal>
void RecurseA(std::size_t L, double* x, const LevelTables& tables, const Goal& goal) {
    MiddlePassA(L, x, tables.end - L / 2);
    if (L > kLongestSwept) {
        const std::size_t l = L >> 2;
        RecurseA(l, x, tables, goal);
        RecurseB(l, x + l, tables, goal);
        RecurseA(l, x + 2 * l, tables, goal);
        RecurseA(l, x + 3 * l, tables, goal);
    } else {
        SweepA(L, x, tables, goal);
    }
    if constexpr (Goal::kGoesBack) MiddlePassBackA(L, x, tables.end - L / 2);
}

template <typename Goal>
void RecurseB(std::size_t L, double* x, const LevelTables& tables, const Goal& goal) {
    MiddlePassB(L, x, tables.end - L);
    if (L > kLongestSwept) {
        const std::size_t l = L >> 2;
        RecurseA(l, x, tables, goal);
        RecurseB(l, x + l, tables, goal);
        RecurseA(l, x + 2 * l, tables, goal);
        RecurseB(l, x + 3 * l, tables, goal);
    } else {
        SweepB(L, x, tables, goal);
    }
    if constexpr (Goal::kGoesBack) MiddlePassBackB(L, x, tables.end - L);
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

// All levels after the first pass, for n above 32. A goal that goes back has n above 128.
template <typename Goal>
inline void InnerLevels(std::size_t n, double* a, const LevelTables& tables, const Goal& goal) {
    const std::size_t m = n >> 2;
    if (n > kLongestSwept) {
        RecurseA(m, a, tables, goal);
        RecurseB(m, a + m, tables, goal);
        RecurseA(m, a + 2 * m, tables, goal);
        RecurseA(m, a + 3 * m, tables, goal);
    } else if (m > 32) {
        SweepA(n, a, tables, goal);
    } else {
        Leaf128(n, a, tables.leaves);
    }
}

}  // namespace
