#include <immintrin.h>

#include "audio/mix_loops_of.h"

namespace {

struct Sse2 {
    using Vector = __m128d;
    static constexpr std::size_t kFrames = 2;

    static Vector Load(const std::uint8_t* from) {
        return _mm_loadu_pd(reinterpret_cast<const double*>(from));
    }
    static void Store(std::uint8_t* to, Vector value) { _mm_storeu_pd(reinterpret_cast<double*>(to), value); }

    static void LoadPair(const std::uint8_t* from, std::size_t bytes, Vector& a, Vector& b) {
        const Vector first = Load(from), second = Load(from + bytes);
        a = _mm_unpacklo_pd(first, second);
        b = _mm_unpackhi_pd(first, second);
    }
    static void StorePair(std::uint8_t* to, std::size_t bytes, Vector a, Vector b) {
        Store(to, _mm_unpacklo_pd(a, b));
        Store(to + bytes, _mm_unpackhi_pd(a, b));
    }

    static Vector Zero() { return _mm_setzero_pd(); }
    static Vector AddProduct(Vector sum, Vector value, double coefficient) {
        return _mm_add_pd(sum, _mm_mul_pd(value, _mm_set1_pd(coefficient)));
    }
};

}  // namespace

void MixSse2(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from, std::uint32_t fromChannels,
             std::size_t frames, const clMixTerms* rows) {
    MixFrames<Sse2>(to, toChannels, from, fromChannels, frames, rows);
}
