// Even frames are loaded into one vector and odd ones into another, two channels in each quarter: unpacking
// then leaves the frames in order.
#include <immintrin.h>

#include "audio/mix_loops_of.h"

namespace {

struct Avx512 {
    using Vector = __m512d;
    static constexpr std::size_t kFrames = 8;

    static Vector Load(const std::uint8_t* from) { return _mm512_loadu_pd(from); }
    static void Store(std::uint8_t* to, Vector value) { _mm512_storeu_pd(to, value); }

    // Every other frame from the first on.
    static Vector LoadFour(const std::uint8_t* from, std::size_t bytes) {
        const auto two = [](const std::uint8_t* at) {
            return _mm_loadu_pd(reinterpret_cast<const double*>(at));
        };
        Vector four = _mm512_castpd128_pd512(two(from));
        four = _mm512_mask_broadcast_f64x2(four, 0x0C, two(from + 2 * bytes));
        four = _mm512_mask_broadcast_f64x2(four, 0x30, two(from + 4 * bytes));
        return _mm512_mask_broadcast_f64x2(four, 0xC0, two(from + 6 * bytes));
    }
    static void LoadPair(const std::uint8_t* from, std::size_t bytes, Vector& a, Vector& b) {
        const Vector even = LoadFour(from, bytes), odd = LoadFour(from + bytes, bytes);
        a = _mm512_unpacklo_pd(even, odd);
        b = _mm512_unpackhi_pd(even, odd);
    }

    static void StoreFour(std::uint8_t* to, std::size_t bytes, Vector four) {
        const auto put = [](std::uint8_t* at, __m128d two) {
            _mm_storeu_pd(reinterpret_cast<double*>(at), two);
        };
        put(to, _mm512_castpd512_pd128(four));
        put(to + 2 * bytes, _mm512_extractf64x2_pd(four, 1));
        put(to + 4 * bytes, _mm512_extractf64x2_pd(four, 2));
        put(to + 6 * bytes, _mm512_extractf64x2_pd(four, 3));
    }
    static void StorePair(std::uint8_t* to, std::size_t bytes, Vector a, Vector b) {
        StoreFour(to, bytes, _mm512_unpacklo_pd(a, b));
        StoreFour(to + bytes, bytes, _mm512_unpackhi_pd(a, b));
    }

    static Vector Zero() { return _mm512_setzero_pd(); }
    static Vector AddProduct(Vector sum, Vector value, double coefficient) {
        return _mm512_add_pd(sum, _mm512_mul_pd(value, _mm512_set1_pd(coefficient)));
    }
};

}  // namespace

void MixAvx512(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from,
               std::uint32_t fromChannels, std::size_t frames, const clMixTerms* rows) {
    MixFrames<Avx512>(to, toChannels, from, fromChannels, frames, rows);
}
