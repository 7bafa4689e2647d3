#include "audio/fft/convolution.h"

#include "audio/fft/form.h"
#include "audio/fft/sine.h"
#include "audio/fft/transform_tables.h"

namespace {

constexpr double kHalfTurn = 3.14159265358979323846;

ConvolutionTables TablesFor(std::size_t n, std::int32_t* fftIndex, double* fftTable) {
    const TransformTables all(n, fftIndex, fftTable);
    ConvolutionTables tables = {all.twiddles + all.nw, all.cosines, all.nc, {}};
    for (int j = 0; j < 4; ++j) {
        const double angle = kHalfTurn / static_cast<double>(n) * j;
        tables.firstTurns[2 * j] = 2 * Cosine(angle);
        tables.firstTurns[2 * j + 1] = 2 * Sine(angle);
    }
    return tables;
}

}  // namespace

void MakeSpectrum(std::size_t n, const double* samples, double* spectrum, std::int32_t* fftIndex,
                  double* fftTable) {
    FftFormInUse().makeSpectrum(n, samples, spectrum, TablesFor(n, fftIndex, fftTable));
}

void Convolve(std::size_t n, double* samples, double* overhang, const double* spectrum, double* work,
              std::int32_t* fftIndex, double* fftTable) {
    FftFormInUse().convolve(n, samples, overhang, spectrum, work, TablesFor(n, fftIndex, fftTable));
}
