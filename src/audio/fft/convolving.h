// A convolution in one form: the levels of a transform down to products of single values, and up again. convolution.h
// tells why. After a quad header.
//
// The product modulo z^N - i is found for a block from those for its quarters, so each block is finished, there and
// back, before the next is touched.
#pragma once

#include <cstddef>

#include "audio/fft/form.h"
#include "audio/fft/levels.h"

namespace {

// What turns value j, e^(i pi j / 2N): of the first four neighbours in each quarter, times that of their column. The
// columns' turns are powers of e^(2 pi i / N), which the cosine table holds halved, so the others are doubled.
struct Turns {
    Turns(std::size_t n, const ConvolutionTables& tables)
        : cosines(tables.cosines), nc(tables.nc), step(nc / (n >> 2)) {
        const double* const sixteenth = tables.end - 16 + 4;  // cosine and sine
        const double c = sixteenth[0], s = sixteenth[1], r = kEighthTurnCosine;
        quarter[0] = Load(tables.firstTurns);
        quarter[1] = Times(quarter[0], Everywhere(c, s));
        quarter[2] = Times(quarter[0], Everywhere(r, r));
        quarter[3] = Times(quarter[0], Everywhere(s, c));
    }

    static Factor Everywhere(double re, double im) { return {Twice(re, re, re, re), Twice(im, im, im, im)}; }

    // That of the column j doubles from the start of its quarter.
    Factor OfColumn(std::size_t j) const {
        if (j == 0) return Everywhere(0.5, 0);
        const std::size_t k = j / 4 * step;
        return Everywhere(cosines[k], cosines[nc - k]);
    }

    Quad quarter[4];
    const double* cosines;
    std::size_t nc, step;
};

inline Elements LoadTurned(const double* reals, std::size_t apart, const Turns& turns, const Factor& column) {
    const auto turned = [&](std::size_t q) {
        return LoadTwice(reals + q * apart, 1) * Times(turns.quarter[q], column);
    };
    return {turned(0), turned(1), turned(2), turned(3)};
}

inline void StoreTurnedBack(double* reals, double* overhang, std::size_t apart, const Elements& e,
                            const Turns& turns, const Factor& column) {
    const auto store = [&](std::size_t q, Quad value) {
        const Factor turn = AsFactor(Times(turns.quarter[q], column));
        StoreOverlapped(reals + q * apart, overhang + q * apart, TimesConjugate(value, turn));
    };
    store(0, e.e0), store(1, e.e1), store(2, e.e2), store(3, e.e3);
}

// The first pass turns what it reads, and the last one up turns back what it stores.
inline void FirstPassOfReals(std::size_t n, double* a, const double* table, const double* reals,
                             const Turns& turns) {
    FirstPass(n, a, table,
              [=](std::size_t j) { return LoadTurned(reals + j / 2, n >> 3, turns, turns.OfColumn(j)); });
}

inline void FirstPassBackToReals(std::size_t n, const double* a, const double* table, double* reals,
                                 double* overhang, const Turns& turns) {
    const std::size_t quarter = n >> 2;
    const auto store = [=](std::size_t j, const Elements& e) {
        StoreTurnedBack(reals + j / 2, overhang + j / 2, quarter / 2, e, turns, turns.OfColumn(j));
    };
    const auto straight = [=](std::size_t j, const Factors& f) {
        store(j, BackFromA(LoadElements(a + j, quarter), f));
    };
    const auto mirrored = [=](std::size_t j, const Factors& f) {
        store(j, BackFromAMirrored(LoadElements(a + j, quarter), f));
    };
    ForFirstColumns(n, table, straight, mirrored);
}

// The last level: the transforms of a tile's four quads, side by side in its columns.
inline Elements Evaluated(const Elements& tile) {
    Quad z[4] = {tile.e0, tile.e1, tile.e2, tile.e3};
    Transpose(z);
    return FourRoots(z[0], z[1], z[2], z[3]);
}

inline Elements Interpolated(const Elements& y) {
    const Quad x0 = y.e0 + y.e1;
    const Quad x1 = y.e2 + y.e3;
    const Quad x2 = y.e0 - y.e1;
    const Quad ix3 = y.e2 - y.e3;
    Quad z[4] = {x0 + x1, MinusI(x2, ix3), x0 - x1, PlusI(x2, ix3)};
    Transpose(z);
    return {z[0], z[1], z[2], z[3]};
}

// Where the values of a block are the spectrum ...
struct Evaluating {
    static constexpr bool kGoesBack = false;

    void Finish(std::size_t l, double* x) const {
        for (std::size_t i = 0; i < l; i += 32) StoreElements(x + i, 8, Evaluated(LoadElements(x + i, 8)));
    }
};

// ... and where they are multiplied by one.
struct Multiplying {
    static constexpr bool kGoesBack = true;

    const double* start;  // of the values
    const double* spectrum;

    void Finish(std::size_t l, double* x) const {
        const double* const factors = spectrum + (x - start);
        for (std::size_t i = 0; i < l; i += 32) {
            const Elements z = Evaluated(LoadElements(x + i, 8)), f = LoadElements(factors + i, 8);
            const Elements product = {Times(z.e0, AsFactor(f.e0)), Times(z.e1, AsFactor(f.e1)),
                                      Times(z.e2, AsFactor(f.e2)), Times(z.e3, AsFactor(f.e3))};
            StoreElements(x + i, 8, Interpolated(product));
        }
    }
};

inline const double* FirstTable(std::size_t n, const ConvolutionTables& tables) {
    return tables.end - (n >> 2);
}

void SpectrumInForm(std::size_t n, const double* samples, double* spectrum, const ConvolutionTables& tables) {
    FirstPassOfReals(n, spectrum, FirstTable(n, tables), samples, Turns(n, tables));
    InnerLevels(n, spectrum, GatherTables(n, tables.end), Evaluating());
}

void ConvolveInForm(std::size_t n, double* samples, double* overhang, const double* spectrum, double* work,
                    const ConvolutionTables& tables) {
    const Turns turns(n, tables);
    FirstPassOfReals(n, work, FirstTable(n, tables), samples, turns);
    InnerLevels(n, work, GatherTables(n, tables.end), Multiplying{work, spectrum});
    FirstPassBackToReals(n, work, FirstTable(n, tables), samples, overhang, turns);
}

}  // namespace
