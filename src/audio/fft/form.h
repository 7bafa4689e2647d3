// The transforms of fft.h and the convolution of convolution.h in the form for one instruction set. Form sources (form_avx2.cpp) gather one each from the
// same text: the vector of four complex values differs, what is done with it doesn't.
#pragma once

#include <cstddef>
#include <cstdint>

// What a convolution finds in the tables, made for its length.
struct ConvolutionTables {
    const double* end;  // of the twiddle tables
    const double* cosines;
    std::size_t nc;
    double firstTurns[8];  // twice e^(i pi j / 2N), for j = 0..3
};

struct FftForm {
    using Complex = void(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw,
                         const double* twiddles);
    using Real = void(std::size_t n, double* a, std::size_t nc, const double* cosines);

    Complex* forwardComplex;
    Complex* backwardComplex;
    Real* forwardRealPost;
    Real* backwardRealPre;
    void (*makeSpectrum)(std::size_t n, const double* samples, double* spectrum,
                         const ConvolutionTables& tables);
    void (*convolve)(std::size_t n, double* samples, double* overhang, const double* spectrum, double* work,
                     const ConvolutionTables& tables);
};

// The first three pairs of bins of a real pass, which the forms share. `sign` is that of the weights' imaginary parts,
// 1 forward and -1 backward.
void JoinFirstPairs(std::size_t n, double* a, std::size_t nc, const double* cosines, double sign);

extern const FftForm kPlainFft;
extern const FftForm kSse2Fft;
extern const FftForm kAvx2Fft;
extern const FftForm kAvx512Fft;

const FftForm& FftFormInUse();
