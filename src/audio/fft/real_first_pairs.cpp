// Single values are left to a source that is compiled for no instruction set. Where it may, g++ 12 makes one fused
// instruction of two products and their sum and difference as they stand here, even under -ffp-contract=off, and
// not at every level of optimisation. Vectors are safe from that; that the bits stay the same is tested.
#include <initializer_list>

#include "audio/fft/form.h"

namespace {

void JoinPair(double* front, double* back, double wr, double wi) {
    const double xr = front[0] - back[0];
    const double xi = front[1] + back[1];
    const double yr = wr * xr - wi * xi;
    const double yi = wr * xi + wi * xr;
    front[0] -= yr;
    front[1] -= yi;
    back[0] += yr;
    back[1] -= yi;
}

}  // namespace

void JoinFirstPairs(std::size_t n, double* a, std::size_t nc, const double* cosines, double sign) {
    const std::size_t step = 4 * nc / n;
    for (std::size_t k = 1; k < 4 && k < n >> 2; ++k)
        JoinPair(a + 2 * k, a + n - 2 * k, 0.5 - cosines[nc - k * step], sign * cosines[k * step]);
}
