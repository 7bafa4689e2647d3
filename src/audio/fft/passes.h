// The radix-4 passes over a block of L doubles: four complex elements at a time, one from each quarter, and four
// neighbours of each side by side in a quad. After a quad header.
//
// The twiddle table goes up to an eighth of a turn. What lies beyond, in the second half of a quarter for pass A and
// in every second factor of pass B, is read from it backwards; group 0 and the group of the eighth of a turn itself
// are not in the tables and are put in their places.
#pragma once

#include <cstddef>

namespace {

constexpr double kEighthTurnCosine = 0.70710678118654752440;
constexpr double kNoTurn[4] = {1, 0, 1, 0};
constexpr double kEighthTurn[4] = {kEighthTurnCosine, kEighthTurnCosine, -kEighthTurnCosine,
                                   kEighthTurnCosine};

// One element of each quarter.
struct Elements {
    Quad e0, e1, e2, e3;
};

inline Elements LoadElements(const double* x, std::size_t quarter) {
    return {Load(x), Load(x + quarter), Load(x + 2 * quarter), Load(x + 3 * quarter)};
}

inline void StoreElements(double* x, std::size_t quarter, const Elements& e) {
    Store(x, e.e0);
    Store(x + quarter, e.e1);
    Store(x + 2 * quarter, e.e2);
    Store(x + 3 * quarter, e.e3);
}

template <Quad Last(Quad, Quad)>
inline Elements ButterflyOfTypeA(const Elements& e, const Factors& f) {
    const Quad x0 = e.e0 + e.e2;
    const Quad x1 = e.e0 - e.e2;
    const Quad x2 = e.e1 + e.e3;
    const Quad x3 = e.e1 - e.e3;
    return {x0 + x2, x0 - x2, Times(PlusI(x1, x3), f.one), Times(Last(x1, x3), f.three)};
}

inline Elements ButterflyA(const Elements& e, const Factors& f) {
    return ButterflyOfTypeA<MinusI>(e, f);
}

// With mirrored factors, the last of which is negative.
inline Elements ButterflyAMirrored(const Elements& e, const Factors& f) {
    return ButterflyOfTypeA<NegatedMinusI>(e, f);
}

inline Elements ButterflyB(const Elements& e, const Factors& straight, const Factors& mirrored) {
    const Quad y0 = Times(PlusI(e.e0, e.e2), straight.one);
    const Quad y1 = Times(MinusI(e.e0, e.e2), straight.three);
    const Quad y2 = Times(PlusI(e.e1, e.e3), mirrored.one);
    const Quad y3 = Times(MinusI(e.e1, e.e3), mirrored.three);
    return {y0 + y2, y0 - y2, y1 - y3, y1 + y3};
}

// The transform of four, at the roots 1, -1, i, -i.
inline Elements FourRoots(Quad z0, Quad z1, Quad z2, Quad z3) {
    const Quad x0 = z0 + z2;
    const Quad x1 = z0 - z2;
    const Quad x2 = z1 + z3;
    const Quad x3 = z1 - z3;
    return {x0 + x2, x0 - x2, PlusI(x1, x3), MinusI(x1, x3)};
}

// The groups for four elements from offset j on, and backwards for the four that end before `end`, which is the
// place of the eighth of a turn.
inline FourGroups GroupsFrom(const double* table, std::size_t j) {
    const TwoGroups low = LoadGroups(table + 2 * j);
    return {j == 0 ? WithFirst(low, kNoTurn) : low, LoadGroups(table + 2 * j + 8)};
}

inline FourGroups GroupsBackTo(const double* table, std::size_t j, std::size_t end) {
    const double* last = table + 2 * j;
    const TwoGroups high = LoadGroups(last - 4);
    return {LoadGroups(last - 12), j == end ? WithSecond(high, kEighthTurn) : high};
}

// A pass in either direction is one of these loops: what is done with a column is handed in.
using ColumnOfTypeA = Elements(const Elements& e, const Factors& f);
using ColumnOfTypeB = Elements(const Elements& e, const Factors& straight, const Factors& mirrored);

template <ColumnOfTypeA Do, ColumnOfTypeA DoMirrored>
inline void PassOfTypeA(std::size_t L, double* x, const double* table) {
    const std::size_t quarter = L >> 2;
    const std::size_t half = quarter >> 1;
    for (std::size_t j = 0; j < half; j += 8) {
        const Factors f = Straight(GroupsFrom(table, j));
        StoreElements(x + j, quarter, Do(LoadElements(x + j, quarter), f));
    }
    for (std::size_t j = half; j < quarter; j += 8) {
        const Factors f = Mirrored(GroupsBackTo(table, quarter - j, half));
        StoreElements(x + j, quarter, DoMirrored(LoadElements(x + j, quarter), f));
    }
}

template <ColumnOfTypeB Do>
inline void PassOfTypeB(std::size_t L, double* x, const double* table) {
    const std::size_t quarter = L >> 2;
    for (std::size_t j = 0; j < quarter; j += 8) {
        const Factors straight = Straight(GroupsFrom(table, j));
        const Factors mirrored = Mirrored(GroupsBackTo(table, quarter - j, quarter));
        StoreElements(x + j, quarter, Do(LoadElements(x + j, quarter), straight, mirrored));
    }
}

inline void MiddlePassA(std::size_t L, double* x, const double* table) {
    PassOfTypeA<ButterflyA, ButterflyAMirrored>(L, x, table);
}

inline void MiddlePassB(std::size_t L, double* x, const double* table) {
    PassOfTypeB<ButterflyB>(L, x, table);
}

// The first pass reads half as many groups and makes those between. `first` is the first of three neighbours.
struct NeighbourGroups {
    TwoGroups lower, upper, between;
};

inline NeighbourGroups LoadNeighbours(const double* table, std::size_t first, std::size_t end) {
    NeighbourGroups groups{LoadGroups(table + first), LoadGroups(table + first + 4), {}};
    if (first == 0) groups.lower = WithFirst(groups.lower, kNoTurn);
    if (first + 8 == end) groups.upper = WithSecond(groups.upper, kEighthTurn);
    groups.between = Between(groups.lower, groups.upper, table[2], table[3]);
    return groups;
}

// The columns of a first pass, with their factors.
template <typename Do, typename DoMirrored>
inline void ForFirstColumns(std::size_t n, const double* table, const Do& straight,
                            const DoMirrored& mirrored) {
    const std::size_t quarter = n >> 2;
    const std::size_t half = quarter >> 1;
    for (std::size_t j = 0; j < half; j += 8) {
        const NeighbourGroups groups = LoadNeighbours(table, j, half);
        straight(j, Straight(Interleaved(groups.lower, groups.between)));
    }
    for (std::size_t j = half; j < quarter; j += 8) {
        const NeighbourGroups groups = LoadNeighbours(table, quarter - j - 8, half);
        mirrored(j, Mirrored(Interleaved(groups.between, groups.upper)));
    }
}

// Over the whole array. `taken` gives the elements of the column j doubles from the start of their quarters.
template <typename Taken>
inline void FirstPass(std::size_t n, double* a, const double* table, const Taken& taken) {
    const std::size_t quarter = n >> 2;
    const auto straight = [&](std::size_t j, const Factors& f) {
        StoreElements(a + j, quarter, ButterflyA(taken(j), f));
    };
    const auto mirrored = [&](std::size_t j, const Factors& f) {
        StoreElements(a + j, quarter, ButterflyAMirrored(taken(j), f));
    };
    ForFirstColumns(n, table, straight, mirrored);
}

inline void FirstPassForward(std::size_t n, double* a, const double* table) {
    FirstPass(n, a, table, [=](std::size_t j) { return LoadElements(a + j, n >> 2); });
}

// The way back begins by conjugating what it reads.
inline void FirstPassBackward(std::size_t n, double* a, const double* table) {
    FirstPass(n, a, table, [=](std::size_t j) {
        const Elements e = LoadElements(a + j, n >> 2);
        return Elements{Conjugate(e.e0), Conjugate(e.e1), Conjugate(e.e2), Conjugate(e.e3)};
    });
}

}  // namespace
