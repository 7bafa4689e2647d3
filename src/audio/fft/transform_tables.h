// A caller's tables, made for a length if need be: their places in the one array that holds them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/fft/fft.h"

struct TransformTables {
    TransformTables(std::size_t n, std::int32_t* fftIndex, double* fftTable)
        : scratch(fftIndex + 2), twiddles(fftTable) {
        if (n > 4 * static_cast<std::size_t>(fftIndex[0])) MakeTwiddles(n >> 2, fftIndex, fftTable);
        nw = static_cast<std::size_t>(fftIndex[0]);
        cosines = fftTable + nw;
        if (n > 4 * static_cast<std::size_t>(fftIndex[1])) MakeCosTable(n >> 2, fftIndex, fftTable + nw);
        nc = static_cast<std::size_t>(fftIndex[1]);
    }

    std::int32_t* const scratch;
    const double* const twiddles;
    const double* cosines;
    std::size_t nw, nc;
};
