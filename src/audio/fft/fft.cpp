// The order of a real transform, and the choice of the form that does the work: once per transform, since a call
// through a pointer costs more than the smallest kernels.
#include "audio/fft/fft.h"

#include "audio/fft/form.h"
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

// The tables of a transform, made if need be, and the form in use.
struct Transformer {
    Transformer(std::size_t n, std::int32_t* fftIndex, double* fftTable)
        : scratch(fftIndex + 2), twiddles(fftTable) {
        if (n > 4 * static_cast<std::size_t>(fftIndex[0])) MakeTwiddles(n >> 2, fftIndex, fftTable);
        nw = static_cast<std::size_t>(fftIndex[0]);
        cosines = fftTable + nw;
        if (n > 4 * static_cast<std::size_t>(fftIndex[1])) MakeCosTable(n >> 2, fftIndex, fftTable + nw);
        nc = static_cast<std::size_t>(fftIndex[1]);
    }

    void Forward(std::size_t n, double* a) const {
        form.forwardComplex(n, a, scratch, nw, twiddles);
        if (n > 4) form.forwardRealPost(n, a, nc, cosines);
        SplitEnds(a);
    }

    void Inverse(std::size_t n, double* a) const {
        JoinEnds(a);
        if (n > 4) form.backwardRealPre(n, a, nc, cosines);
        form.backwardComplex(n, a, scratch, nw, twiddles);
    }

    void ConvolveHalf(std::size_t n, double* a, const double* spectrum) const {
        form.forwardComplexOfHalf(n, a, scratch, nw, twiddles);
        SplitEnds(a);
        a[0] *= spectrum[0];
        a[1] *= spectrum[1];
        JoinEnds(a);
        form.realProduct(n, a, spectrum, nc, cosines);
        form.backwardComplex(n, a, scratch, nw, twiddles);
    }

    const FftForm& form = *kForms.InUse();
    std::int32_t* const scratch;
    const double* const twiddles;
    const double* cosines;
    std::size_t nw, nc;
};

}  // namespace

void RealFft(std::size_t n, FftDirection direction, double* a, std::int32_t* fftIndex, double* fftTable) {
    const Transformer transformer(n, fftIndex, fftTable);
    if (direction == FftDirection::Forward)
        transformer.Forward(n, a);
    else
        transformer.Inverse(n, a);
}

void ConvolveHalf(std::size_t n, double* a, const double* spectrum, std::int32_t* fftIndex,
                  double* fftTable) {
    Transformer(n, fftIndex, fftTable).ConvolveHalf(n, a, spectrum);
}

void ForwardComplex(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw, const double* twiddles) {
    kForms.InUse()->forwardComplex(n, a, scratch, nw, twiddles);
}

void BackwardComplex(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw,
                     const double* twiddles) {
    kForms.InUse()->backwardComplex(n, a, scratch, nw, twiddles);
}

void ForwardRealPost(std::size_t n, double* a, std::size_t nc, const double* cosines) {
    kForms.InUse()->forwardRealPost(n, a, nc, cosines);
}

void BackwardRealPre(std::size_t n, double* a, std::size_t nc, const double* cosines) {
    kForms.InUse()->backwardRealPre(n, a, nc, cosines);
}
