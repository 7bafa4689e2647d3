// Convolutions of vectors, with arrays of exactly the size that is asked for.
#pragma once

#include "audio/fft/convolution.h"
#include "fft/real_transform.h"

struct Convolution {
    // With tables that were made for `tablesFor` doubles before, if any.
    explicit Convolution(const Values& taps, std::size_t tablesFor = 0)
        : n(2 * taps.size()), tables(std::max(n, tablesFor)), spectrum(n), work(n), overhang(taps.size()) {
        if (tablesFor != 0) {
            Values values(tablesFor);
            RealFft(tablesFor, FftDirection::Forward, values.data(), tables.index.data(),
                    tables.table.data());
        }
        MakeSpectrum(n, taps.data(), spectrum.data(), tables.index.data(), tables.table.data());
    }

    // What comes out, followed by what overhangs.
    Values Apply(Values samples) {
        Convolve(n, samples.data(), overhang.data(), spectrum.data(), work.data(), tables.index.data(),
                 tables.table.data());
        samples.insert(samples.end(), overhang.begin(), overhang.end());
        return samples;
    }

    std::size_t n;
    FftTables tables;
    Values spectrum, work, overhang;
};
