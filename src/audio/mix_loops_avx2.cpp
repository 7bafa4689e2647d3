// Even frames are loaded into one vector and odd ones into another, two channels in each half: unpacking then
// leaves the frames in order.
#include <immintrin.h>

#include "audio/mix_loops_of.h"

namespace {

struct Avx2 {
    using Vector = __m256d;
    static constexpr std::size_t kFrames = 4;

    static Vector Load(const std::uint8_t* from) {
        return _mm256_loadu_pd(reinterpret_cast<const double*>(from));
    }
    static void Store(std::uint8_t* to, Vector value) {
        _mm256_storeu_pd(reinterpret_cast<double*>(to), value);
    }

    static __m128d Two(const std::uint8_t* from) {
        return _mm_loadu_pd(reinterpret_cast<const double*>(from));
    }
    static void LoadPair(const std::uint8_t* from, std::size_t bytes, Vector& a, Vector& b) {
        const Vector even = _mm256_insertf128_pd(_mm256_castpd128_pd256(Two(from)), Two(from + 2 * bytes), 1);
        const Vector odd =
            _mm256_insertf128_pd(_mm256_castpd128_pd256(Two(from + bytes)), Two(from + 3 * bytes), 1);
        a = _mm256_unpacklo_pd(even, odd);
        b = _mm256_unpackhi_pd(even, odd);
    }
    static void PutTwo(std::uint8_t* to, __m128d value) {
        _mm_storeu_pd(reinterpret_cast<double*>(to), value);
    }
    static void StorePair(std::uint8_t* to, std::size_t bytes, Vector a, Vector b) {
        const Vector even = _mm256_unpacklo_pd(a, b), odd = _mm256_unpackhi_pd(a, b);
        PutTwo(to, _mm256_castpd256_pd128(even));
        PutTwo(to + bytes, _mm256_castpd256_pd128(odd));
        PutTwo(to + 2 * bytes, _mm256_extractf128_pd(even, 1));
        PutTwo(to + 3 * bytes, _mm256_extractf128_pd(odd, 1));
    }

    static Vector Zero() { return _mm256_setzero_pd(); }
    static Vector AddProduct(Vector sum, Vector value, double coefficient) {
        return _mm256_add_pd(sum, _mm256_mul_pd(value, _mm256_set1_pd(coefficient)));
    }
};

}  // namespace

void MixAvx2(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from, std::uint32_t fromChannels,
             std::size_t frames, const clMixTerms* rows) {
    MixFrames<Avx2>(to, toChannels, from, fromChannels, frames, rows);
}
