// The transforms of fft.h in the form for one instruction set. Form sources (form_avx2.cpp) gather one each from the
// same text: the vector of four complex values differs, what is done with it doesn't.
#pragma once

#include <cstddef>
#include <cstdint>

struct FftForm {
    using Complex = void(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw,
                         const double* twiddles);
    using Real = void(std::size_t n, double* a, std::size_t nc, const double* cosines);
    using Product = void(std::size_t n, double* a, const double* spectrum, std::size_t nc,
                         const double* cosines);

    Complex* forwardComplex;
    Complex* forwardComplexOfHalf;  // the second half of `a` is taken for zeros
    Complex* backwardComplex;
    Real* forwardRealPost;
    Real* backwardRealPre;
    Product* realProduct;  // both, with the product of two real spectra between them
};

// What the forms share: the first three pairs of bins of a real pass. `sign` is that of the weights' imaginary parts,
// 1 forward and -1 backward.
void JoinFirstPairs(std::size_t n, double* a, std::size_t nc, const double* cosines, double sign);
// The product of those pairs with a spectrum's, and of the bin in the middle, which needs no joining.
void MultiplyFirstPairs(std::size_t n, double* a, const double* spectrum);

extern const FftForm kPlainFft;
extern const FftForm kSse2Fft;
extern const FftForm kAvx2Fft;
extern const FftForm kAvx512Fft;
