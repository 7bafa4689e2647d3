// The complex transforms, forward and backward, for every length. After a quad header.
#pragma once

#include <cstddef>
#include <cstdint>

#include "audio/fft/levels.h"
#include "audio/fft/reordering.h"

namespace {

inline void TwoPoints(double* a) {
    const double re = a[0] - a[2];
    const double im = a[1] - a[3];
    a[0] += a[2];
    a[1] += a[3];
    a[2] = re;
    a[3] = im;
}

// Four values, in natural order.
inline void Kernel8Forward(double* a) {
    FourPoints(a);
    SwapComplex(a, 1, 2);
}

inline void Kernel8Backward(double* a) {
    Kernel8Forward(a);
    NegateIndex(8, a);
}

// What differs between the two ways.
struct Way {
    void (*firstPass)(std::size_t n, double* a, const double* table);
    void (*reverse)(std::size_t n, std::int32_t* scratch, double* a);
    void (*reverse32)(double* a);
    void (*reverse16)(double* a);
    void (*kernel8)(double* a);
};

constexpr Way kForward{FirstPassForward, BitReverse, BitReverse32, BitReverse16, Kernel8Forward};
constexpr Way kBackward{FirstPassBackward, BitReverseConj, BitReverse32Neg, BitReverse16Neg, Kernel8Backward};

template <const Way& way>
void Transform(std::size_t n, double* a, std::int32_t* scratch, std::size_t nw, const double* twiddles) {
    if (n > 32) {
        way.firstPass(n, a, twiddles + nw - (n >> 2));
        InnerLevels(n, a, GatherTables(n, twiddles + nw), Transforming());
        way.reverse(n, scratch, a);
    } else if (n == 32) {
        Kernel32A(a, LoadElements(a, 8), MakeKernel32AFactors(twiddles + nw - 8));
        way.reverse32(a);
    } else if (n == 16) {
        Kernel16A(a, Load(a), Load(a + 8), MakeKernel16AFactors(twiddles));
        way.reverse16(a);
    } else if (n == 8) {
        way.kernel8(a);
    } else if (n == 4) {
        TwoPoints(a);
    }
}

}  // namespace
