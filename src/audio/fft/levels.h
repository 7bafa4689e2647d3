// Which pass runs when: all levels behind the first pass. After a quad header.
//
// A block of type A falls into quarters A, B, A, A, one of type B into A, B, A, B, whatever its length. Each level
// does its own pass before it descends, finishes a quarter before it touches the next, and undoes its pass on the way
// up where the goal is a product.
#pragma once

#include <cstddef>

#include "audio/fft/back_passes.h"

namespace {

constexpr std::size_t kKernel32Pass =
    128;  // doubles in the last pass whose quarters are blocks for Kernel32A and B

struct Tables {
    const double* end;  // of the twiddle tables
    Leaves leaves;
};

// Lengths whose power of two is even end in passes of 64 doubles, the others in passes of 128.
inline bool EndsIn64(std::size_t n) {
    while (n > kKernel32Pass) n >>= 2;
    return n == 64;
}

inline Tables GatherTables(std::size_t n, const double* end) {
    Tables tables{end, {}};
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

struct TypeA {
    static void Pass(std::size_t L, double* x, const Tables& tables) {
        PassOfTypeA<ButterflyA, ButterflyAMirrored>(L, x, tables.end - L / 2);
    }

    static void PassBack(std::size_t L, double* x, const Tables& tables) {
        PassOfTypeA<BackFromA, BackFromAMirrored>(L, x, tables.end - L / 2);
    }

    static void LastPass(std::size_t l, double* x, const Leaves& leaves) {
        l == kKernel32Pass ? LastPass128A(x, leaves) : LastPass64A(x, leaves);
    }

    static void LastPassBack(std::size_t l, double* x, const Leaves& leaves) {
        l == kKernel32Pass ? LastPassBack128A(x, leaves) : LastPassBack64A(x, leaves);
    }
};

struct TypeB {
    static void Pass(std::size_t L, double* x, const Tables& tables) {
        PassOfTypeB<ButterflyB>(L, x, tables.end - L);
    }

    static void PassBack(std::size_t L, double* x, const Tables& tables) {
        PassOfTypeB<BackFromB>(L, x, tables.end - L);
    }

    static void LastPass(std::size_t l, double* x, const Leaves& leaves) {
        l == kKernel32Pass ? LastPass128B(x, leaves) : LastPass64B(x, leaves);
    }

    static void LastPassBack(std::size_t l, double* x, const Leaves& leaves) {
        l == kKernel32Pass ? LastPassBack128B(x, leaves) : LastPassBack64B(x, leaves);
    }
};

template <typename Type, typename Goal>
void Levels(std::size_t L, double* x, const Tables& tables, const Goal& goal);

template <typename Type, typename Goal>
inline void LevelsOfQuarters(std::size_t L, double* x, const Tables& tables, const Goal& goal) {
    const std::size_t l = L >> 2;
    Levels<TypeA>(l, x, tables, goal);
    Levels<TypeB>(l, x + l, tables, goal);
    Levels<TypeA>(l, x + 2 * l, tables, goal);
    Levels<Type>(l, x + 3 * l, tables, goal);
}

// The goal finishes the values of each block that the last pass leaves.
template <typename Type, typename Goal>
void Levels(std::size_t L, double* x, const Tables& tables, const Goal& goal) {
    if (L > kKernel32Pass) {
        Type::Pass(L, x, tables);
        LevelsOfQuarters<Type>(L, x, tables, goal);
        if constexpr (Goal::kGoesBack) Type::PassBack(L, x, tables);
    } else {
        Type::LastPass(L, x, tables.leaves);
        goal.Finish(L, x);
        if constexpr (Goal::kGoesBack) Type::LastPassBack(L, x, tables.leaves);
    }
}

// What a transform wants of a block is left to its reordering.
struct Transforming {
    static constexpr bool kGoesBack = false;
    void Finish(std::size_t, double*) const {}
};

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
    if (n >> 2 > 32)
        LevelsOfQuarters<TypeA>(n, a, tables, Transforming());
    else
        Leaf128(n, a, tables.leaves);
}

}  // namespace
