// The order of a real transform, and the choice of the form that does the work: once per transform, since a call
// through a pointer costs more than the smallest kernels.
#include "audio/fft/fft.h"

#include "audio/fft/form.h"
#include "audio/fft/transform_tables.h"
#include "processor/instruction_set.h"

namespace {

constexpr Forms<const FftForm> kForms{{&kPlainFft, &kSse2Fft, &kAvx2Fft, &kAvx512Fft}};

// The sum and the difference of the first two values: the bins 0 and n/2, which have no imaginary parts.
void SplitEnds(double* a) {
    const double difference = a[0] - a[1];
    a[0] += a[1];
    a[1] = difference;
}

void JoinEnds(double* a) {
    a[1] = 0.5 * (a[0] - a[1]);
    a[0] -= a[1];
}

}  // namespace

const FftForm& FftFormInUse() {
    return *kForms.InUse();
}

void RealFft(std::size_t n, FftDirection direction, double* a, std::int32_t* fftIndex, double* fftTable) {
    const TransformTables tables(n, fftIndex, fftTable);
    const FftForm& form = FftFormInUse();
    if (direction == FftDirection::Forward) {
        form.forwardComplex(n, a, tables.scratch, tables.nw, tables.twiddles);
        if (n > 4) form.forwardRealPost(n, a, tables.nc, tables.cosines);
        SplitEnds(a);
    } else {
        JoinEnds(a);
        if (n > 4) form.backwardRealPre(n, a, tables.nc, tables.cosines);
        form.backwardComplex(n, a, tables.scratch, tables.nw, tables.twiddles);
    }
}

void ForwardComplex(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw, const double* twiddles) {
    FftFormInUse().forwardComplex(n, a, scratch, nw, twiddles);
}

void BackwardComplex(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw,
                     const double* twiddles) {
    FftFormInUse().backwardComplex(n, a, scratch, nw, twiddles);
}

void ForwardRealPost(std::size_t n, double* a, std::size_t nc, const double* cosines) {
    FftFormInUse().forwardRealPost(n, a, nc, cosines);
}

void BackwardRealPre(std::size_t n, double* a, std::size_t nc, const double* cosines) {
    FftFormInUse().backwardRealPre(n, a, nc, cosines);
}
