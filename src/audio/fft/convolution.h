// The convolution of two real signals, at less than the cost of the transforms of fft.h that would do it.
//
// Two signals of N real values convolve to one of 2N - 1, and read as polynomials they multiply to it. Here the product
// is taken modulo z^N - i, so that what would be coefficient j + N comes back at j, times i: of the complex value j the
// real part is sample j, and the imaginary part is sample j + N. No spectrum of real values has to be made of a complex
// one, and no zeros need be appended.
//
// The N roots of z^N = i lie a quarter of a step beyond those of 1. A signal whose value j is turned by e^(i pi j / 2N)
// is a polynomial of type A in the words of fft.h, which the passes there take apart; what comes out is turned back.
//
// And nothing has to be in order. The product of two polynomials of type A or B follows from the products of their
// quarters, by undoing the pass that made the quarters, and so on down to single values. So each block is finished
// before the next is begun, in the cache all the time, and none of it is reordered.
//
// Sources. R. Crandall and B. Fagin, "Discrete weighted transforms and large-integer arithmetic", Mathematics of
// Computation 62 (1994), for the turned signal; D. J. Bernstein, "Multidigit multiplication for mathematicians" (2001),
// for products by reduction of polynomials.
#pragma once

#include <cstddef>
#include <cstdint>

// Lengths n are powers of two, at least 256: N is n/2. fftIndex and fftTable are those of RealFft for n or more, and
// are made in the first call as there. A value that isn't finite spoils all n that come of its block. Nothing is allocated and nothing fails. The arrays need
// no alignment and must not overlap; all are fastest when they begin at a multiple of 64 bytes. Calls on different
// arrays and tables may run at once.

// Writes what Convolve multiplies by: the n doubles of the spectrum of n/2 samples, in an order of their own.
void MakeSpectrum(std::size_t n, const double* samples, double* spectrum, std::int32_t* fftIndex,
                  double* fftTable);

// Convolves n/2 samples with the signal of the spectrum, times n/2. The first n/2 values of the result, plus the n/2 of
// `overhang`, take the samples' place, and the others that of the overhang: to be added to the next n/2 samples in the
// same way (overlap-add; Oppenheim and Schafer, Discrete-Time Signal Processing). Before the first of a signal, the
// overhang is zeros. `work` is n doubles.
void Convolve(std::size_t n, double* samples, double* overhang, const double* spectrum, double* work,
              std::int32_t* fftIndex, double* fftTable);
