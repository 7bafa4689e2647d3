// A real Fourier transform of double precision, in place, for lengths that are powers of two.
//
// What it computes. For n real values a[j] the forward transform gives
//
//     R[k] = sum of a[j] cos(2 pi j k / n)         I[k] = sum of a[j] sin(2 pi j k / n)
//
// that is the sum of a[j] e^(+2 pi i j k / n): the exponent is positive, and a sine in the input shows as a
// positive I. k runs from 0 to n/2; the rest mirrors it. I[0] and I[n/2] are always 0, so n doubles hold it all:
//
//     a[0] = R[0]    a[1] = R[n/2]    a[2k] = R[k]    a[2k+1] = I[k]    for k from 1 to n/2 - 1
//
// The inverse takes this layout and gives the input times n/2; the scale is left to the caller.
//
// How a real transform becomes a complex one. The n doubles are read as n/2 complex values, even ones real and
// odd ones imaginary, and transformed as such. A spectrum Z of those holds the spectra E of the even and O of the
// odd values added up; mirrored bins take them apart, and one butterfly per pair joins them to what n values
// give. ForwardRealPost does both at once, BackwardRealPre undoes it before the way back.
//
// The complex transform is a split radix in twisted form. Call N the complex length, w the root e^(2 pi i / N).
// A transform evaluates the polynomial of its values at points of the unit circle:
//
//     type A: at the roots of z^N = 1       type B: at the roots of z^N = -1, half a step further
//
// Both fall into quarters, because z^N - 1 and z^N + 1 do. A quarter is a polynomial of length N/4 again, and is
// evaluated where z^(N/4) is some fourth root; turning its values by a twiddle factor moves those points back to
// where type A or type B wants them:
//
//     pass A on e0..e3 gives   e0 + e1 + e2 + e3            at z^(N/4) =  1    already of type A
//                              e0 - e1 + e2 - e3            at z^(N/4) = -1    already of type B, no twiddles
//                              e0 + i e1 - e2 - i e3        at z^(N/4) =  i    times w^j, of type A
//                              e0 - i e1 - e2 + i e3        at z^(N/4) = -i    times w^3j, of type A
//
//     pass B starts an eighth of a turn off: its points are z^(N/4) = e^(i pi/4) and on in quarters, so it turns
//     all four, and two of them by w^j or w^3j of twice the length: to types A, B, A, B.
//
// That a quarter goes on as type B without being turned is what split radix saves. The quarters come in
// bit-reversed order (0, 2, 1, 3), so after the last level the spectrum is in bit-reversed order altogether, and
// one reordering ends the transform.
//
// The way back needs e^(-...). It transforms the conjugated values forward and conjugates the result: the first
// pass conjugates as it reads, the reordering as it writes, and every level in between is shared. In the shortest
// lengths the result is read at the negated index instead, which comes to the same.
//
// Levels. Each does its pass, then finishes its quarters one after another, so that a quarter is worked on while it
// is in cache: by recursion down to 512 doubles, then by a sweep over its quarters. There the last pass and the
// kernels of 32 or 16 doubles, into which its quarters fall, work in registers, and the four values that are left
// are transformed while the reordering holds them.
//
// The library's own filters go a shorter way over the same levels: convolution.h.
//
// Forms. All of it is written once, over a quad: four complex values side by side. Each instruction set has a quad of
// its own, and a form made with it.
//
// Tables. The caller owns them; they are made in the first call and serve every length up to the one they were
// made for. With nw twiddle entries, h = nw/2 and delta = pi/4h, fftTable begins with
//
//     [0] 1   [1] cos(pi/4)   [2] 1/(2 cos(2 delta))   [3] 1/(2 cos(6 delta))
//     [j..j+3] cos(delta j), sin(delta j), cos(3 delta j), sin(3 delta j)    for j = 4, 8, ... below h
//
// the factors w^j and w^3j up to an eighth of a turn; what lies beyond is read backwards with cosine and sine
// exchanged. Then follow sub-tables of the same form, each for half the length (h halved, every second group), down
// to h = 2, so that a level reads neighbouring entries whatever its length. The table of h entries stands at
// nw - 2h. A pass of length L finds its own at nw - L/2 (type A) or nw - L (type B, which takes half the step).
//
// The first pass, at nw - n/4, has only every second factor there: those between are the sum of two neighbours
// times the secant at [2] or [3], since cos(x - d) + cos(x + d) = 2 cos(x) cos(d). That halves the longest table.
//
// The nw entries are followed by nc cosines, halved, for the passes between complex and real spectrum.
//
// Sources. J. W. Cooley and J. W. Tukey 1965 for the decomposition; P. Duhamel and H. Hollmann, "Split radix FFT
// algorithm", Electronics Letters 20 (1984); D. J. Bernstein, "The tangent FFT" (2007), section 3, for transforms as
// reduction of polynomials, with twisting; H. V. Sorensen et al., "Real-valued fast Fourier transform algorithms",
// IEEE Trans. ASSP 35 (1987), for the real passes; C. van Loan, Computational Frameworks for the Fast Fourier
// Transform (1992), for reversal through a square of indices.
#pragma once

#include <cstddef>
#include <cstdint>

enum class FftDirection : std::uint8_t { Forward, Inverse };

// Lengths n are counts of doubles, powers of two: at least 4 for RealFft and the complex transforms. Nothing is
// allocated and nothing fails. Calls on different arrays and tables may run at once. The arrays need no
// alignment; `a` is fastest when it begins at a multiple of 64 bytes.

// Transforms the n doubles of `a`, which must be finite, in place.
//
// fftIndex holds (int)(sqrt(n) + 2) entries: [0] is nw, [1] is nc, the rest is scratch. fftTable holds n/2 doubles.
// The caller makes entry 0 equal to 0 before the first call, which marks the tables as empty; a length above that
// of the tables makes them anew, which the arrays must have room for.
void RealFft(std::size_t n, FftDirection direction, double* a, std::int32_t* fftIndex, double* fftTable);

// Writes the nw entries of the twiddle table, if nw is above 2; fftIndex entry 0 becomes nw and entry 1 becomes 1.
void MakeTwiddles(std::size_t nw, std::int32_t* fftIndex, double* twiddles);

// Writes the nc entries of the cosine table, if nc is above 1; fftIndex entry 1 becomes nc. With h = nc/2 and
// delta = pi/4h: [0] is cos(pi/4), [j] is cos(delta j)/2 and [nc - j] is sin(delta j)/2, up to j = h.
void MakeCosTable(std::size_t nc, std::int32_t* fftIndex, double* cosines);

// The transform of N = n/2 complex values, stored real, imaginary, ...: the sum of z[j] e^(+2 pi i j k / N) and,
// backward, of z[j] e^(-2 pi i j k / N). `scratch` is fftIndex from entry 2 on; nw must be at least n/4.
void ForwardComplex(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw, const double* twiddles);
void BackwardComplex(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw, const double* twiddles);

// From the complex spectrum of n/2 values to the real one of n, but for the first two values; and the way back.
// nc must be at least n/4.
void ForwardRealPost(std::size_t n, double* a, std::size_t nc, const double* cosines);
void BackwardRealPre(std::size_t n, double* a, std::size_t nc, const double* cosines);
