// What a transform finds in its caller's arrays. Asking for it makes the tables if they don't serve the length yet.
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
