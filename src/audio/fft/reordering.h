// From bit-reversed order to the natural one, and the last level of the transform on the way. After a quad header.
//
// An index of the complex values falls into two bits at the top, two at the bottom and those between: for one
// value of the middle, the values form a tile of 4 by 4, a quad from each quarter of the array. Reversal turns the
// tile over and puts it where the middle is reversed. Tiles move in pairs, whole quads at a time, and the scratch
// holds the reversal of half of the middle's bits: (upper half, odd bit, lower half) becomes (lower half reversed,
// odd bit, upper half reversed), so the pairs are those across the diagonal of a square, or of two squares.
//
// The last level transforms the four values of each quad. When a tile is turned over they lie in four vectors, of
// four quads side by side, and need no shuffling: so it is done here, while they are in registers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/fft/passes.h"

namespace {

inline Quad Same(Quad a) {
    return a;
}

// The tile as it is written: columns for rows, transformed, and both in natural order.
inline Elements Turned(const Elements& tile) {
    Quad rows[4] = {tile.e0, tile.e2, tile.e1, tile.e3};
    Transpose(rows);
    const Elements y = FourRoots(rows[0], rows[1], rows[2], rows[3]);
    return {y.e0, y.e2, y.e1, y.e3};
}

template <Quad As(Quad)>
inline void StoreTile(double* to, std::size_t row, const Elements& e) {
    StoreElements(to, row, {As(e.e0), As(e.e1), As(e.e2), As(e.e3)});
}

template <Quad As(Quad)>
inline void TurnTile(double* a, std::size_t row) {
    StoreTile<As>(a, row, Turned(LoadElements(a, row)));
}

template <Quad As(Quad)>
inline void SwapTiles(double* a, double* b, std::size_t row) {
    const Elements fromA = Turned(LoadElements(a, row));
    StoreTile<As>(a, row, Turned(LoadElements(b, row)));
    StoreTile<As>(b, row, fromA);
}

// How a row of quads folds into squares: `side` quads wide, each line of all squares `line` doubles long.
struct Squares {
    std::size_t side, line;
};

// Writes the offset of each line, its number reversed, to the scratch.
inline Squares MakeReversal(std::size_t row, std::int32_t* scratch) {
    Squares squares{1, row};
    scratch[0] = 0;
    while (squares.line > 16 * squares.side) {
        squares.line >>= 1;
        for (std::size_t j = 0; j < squares.side; ++j)
            scratch[squares.side + j] = scratch[j] + static_cast<std::int32_t>(squares.line);
        squares.side <<= 1;
    }
    return squares;
}

// Along the diagonals: from one pair to the next both tiles move on by a cache line. Along a line of the square, one
// of them would move by whole pages, and a processor takes a load for one that must wait when the store before it
// went to the same place of another page.
template <Quad As(Quad)>
inline void SwapAcross(const Squares& squares, double* square, const std::int32_t* lines, std::size_t row) {
    for (std::size_t diagonal = 1; diagonal < squares.side; ++diagonal) {
        for (std::size_t j = 0, k = diagonal; k < squares.side; ++j, ++k)
            SwapTiles<As>(square + lines[k] + 8 * j, square + lines[j] + 8 * k, row);
    }
}

template <Quad As(Quad)>
inline void Reorder(std::size_t n, std::int32_t* scratch, double* a) {
    const std::size_t row = n >> 2;
    const Squares squares = MakeReversal(row, scratch);
    for (double* square = a; square < a + squares.line; square += 8 * squares.side) {
        SwapAcross<As>(squares, square, scratch, row);
        for (std::size_t k = 0; k < squares.side; ++k) TurnTile<As>(square + scratch[k] + 8 * k, row);
    }
}

// n above 32.
inline void BitReverse(std::size_t n, std::int32_t* scratch, double* a) {
    Reorder<Same>(n, scratch, a);
}

inline void BitReverseConj(std::size_t n, std::int32_t* scratch, double* a) {
    Reorder<Conjugate>(n, scratch, a);
}

inline void SwapComplex(double* a, std::size_t i, std::size_t k) {
    for (std::size_t part = 0; part < 2; ++part) {
        const double held = a[2 * i + part];
        a[2 * i + part] = a[2 * k + part];
        a[2 * k + part] = held;
    }
}

// Puts each of n doubles' complex values at its negated index.
inline void NegateIndex(std::size_t n, double* a) {
    for (std::size_t k = 1; k < n / 4; ++k) SwapComplex(a, k, n / 2 - k);
}

inline void BitReverse32(double* a) {
    TurnTile<Same>(a, 8);
}

inline void BitReverse32Neg(double* a) {
    BitReverse32(a);
    NegateIndex(32, a);
}

// The last level by itself, for lengths that make no tile: in bit-reversed order.
inline void FourPoints(double* a) {
    for (std::size_t part = 0; part < 2; ++part) {
        const double x0 = a[part] + a[4 + part];
        a[4 + part] = a[part] - a[4 + part];
        const double x2 = a[2 + part] + a[6 + part];
        a[6 + part] = a[2 + part] - a[6 + part];
        a[part] = x0 + x2;
        a[2 + part] = x0 - x2;
    }
    const double x1[2] = {a[4], a[5]};
    const double x3[2] = {a[6], a[7]};
    a[4] = x1[0] - x3[1];
    a[5] = x1[1] + x3[0];
    a[6] = x1[0] + x3[1];
    a[7] = x1[1] - x3[0];
}

inline void BitReverse16(double* a) {
    FourPoints(a);
    FourPoints(a + 8);
    SwapComplex(a, 1, 4);
    SwapComplex(a, 3, 6);
}

inline void BitReverse16Neg(double* a) {
    BitReverse16(a);
    NegateIndex(16, a);
}

}  // namespace
