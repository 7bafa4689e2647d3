// The loops in vectors of 64 bytes. Masks take the place of blends, and instructions that narrow keep samples
// in order.
#include <immintrin.h>

#include "audio/sample_loops_of.h"

namespace {

constexpr double kFullScale = 2147483648.0;
constexpr __mmask16 kTwelve = 0x0FFF;

__m256i Half(const std::uint8_t* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}
void PutHalf(std::uint8_t* to, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), value);
}

__m512i Both(__m256i low, __m256i high) {
    return _mm512_inserti64x4(_mm512_castsi256_si512(low), high, 1);
}

constexpr float kLimit = 2147483648.0F;
constexpr float kBelowLimit = 2147483520.0F;  // the highest float below, 0x7FFFFF80

template <bool IsNarrowed>
__m512i TruncateFloats(__m512 values) {
    const __m512 limit = _mm512_set1_ps(kLimit), scaled = _mm512_mul_ps(values, limit);
    const __mmask16 numbers = _mm512_cmp_ps_mask(values, values, _CMP_ORD_Q);
    if constexpr (IsNarrowed)
        return _mm512_maskz_cvttps_epi32(numbers, _mm512_min_ps(scaled, _mm512_set1_ps(kBelowLimit)));
    const __mmask16 high = _mm512_cmp_ps_mask(scaled, limit, _CMP_GE_OQ);
    return _mm512_mask_mov_epi32(_mm512_maskz_cvttps_epi32(numbers, scaled), high,
                                 _mm512_set1_epi32(2147483647));
}

__m256i TruncateEight(const std::uint8_t* from) {
    const __m512d values = _mm512_loadu_pd(from);
    const __mmask8 numbers = _mm512_cmp_pd_mask(values, values, _CMP_ORD_Q);
    const __m512d scaled = _mm512_maskz_mul_pd(numbers, values, _mm512_set1_pd(kFullScale));
    return _mm512_cvttpd_epi32(_mm512_min_pd(scaled, _mm512_set1_pd(kFullScale - 1)));
}

// With the half of its own sign added; -0 and 0 both end as 0. The product is exact, so that the fused operation
// gives the same bits as the two.
template <int Bits>
__m256i RoundEight(const std::uint8_t* from) {
    constexpr double kScale = std::uint32_t{1} << (Bits - 1);
    constexpr int kOrOfAnd = 0xEA;  // (a & b) | c
    const __m512d values = _mm512_loadu_pd(from);
    const __mmask8 numbers = _mm512_cmp_pd_mask(values, values, _CMP_ORD_Q);
    const __m512d half = _mm512_castsi512_pd(
        _mm512_ternarylogic_epi64(_mm512_castpd_si512(values), _mm512_castpd_si512(_mm512_set1_pd(-0.0)),
                                  _mm512_castpd_si512(_mm512_set1_pd(0.5)), kOrOfAnd));
    const __m512d moved = _mm512_maskz_fmadd_pd(numbers, values, _mm512_set1_pd(kScale), half);
    const __m512d limited =
        _mm512_max_pd(_mm512_min_pd(moved, _mm512_set1_pd(kScale - 1)), _mm512_set1_pd(-kScale));
    return _mm512_cvttpd_epi32(limited);
}

struct Avx512 {
    static constexpr std::size_t kLanes = 16;

    static __m512i LoadInt16(const std::uint8_t* from) {
        return _mm512_slli_epi32(_mm512_cvtepi16_epi32(Half(from)), 16);
    }
    static __m512i LoadInt24(const std::uint8_t* from) {
        const __m512i places = _mm512_setr_epi32(0, 1, 2, 12, 3, 4, 5, 12, 6, 7, 8, 12, 9, 10, 11, 12);
        const __m512i upper =
            _mm512_broadcast_i32x4(_mm_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11));
        const __m512i bytes = _mm512_maskz_loadu_epi32(kTwelve, from);
        return _mm512_shuffle_epi8(_mm512_permutexvar_epi32(places, bytes), upper);
    }
    static __m512i LoadUInt8(const std::uint8_t* from) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
        const __m512i upper = _mm512_slli_epi32(_mm512_cvtepu8_epi32(bytes), 24);
        return _mm512_xor_si512(upper, _mm512_set1_epi32(-2147483647 - 1));
    }
    static __m512i LoadInt32(const std::uint8_t* from) { return _mm512_loadu_si512(from); }
    template <bool IsNarrowed>
    static __m512i LoadFloat32(const std::uint8_t* from) {
        return TruncateFloats<IsNarrowed>(_mm512_loadu_ps(from));
    }
    static __m512i LoadFloat64(const std::uint8_t* from) {
        return Both(TruncateEight(from), TruncateEight(from + 64));
    }

    static void StoreInt16(std::uint8_t* to, __m512i x) {
        PutHalf(to, _mm512_cvtepi32_epi16(_mm512_srli_epi32(x, 16)));
    }
    static void StoreInt24(std::uint8_t* to, __m512i x) {
        const __m512i places = _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 7, 11, 15);
        const __m512i packed =
            _mm512_broadcast_i32x4(_mm_setr_epi8(1, 2, 3, 5, 6, 7, 9, 10, 11, 13, 14, 15, -1, -1, -1, -1));
        _mm512_mask_storeu_epi32(to, kTwelve,
                                 _mm512_permutexvar_epi32(places, _mm512_shuffle_epi8(x, packed)));
    }
    static void StoreUInt8(std::uint8_t* to, __m512i x) {
        const __m128i bytes = _mm512_cvtepi32_epi8(_mm512_srli_epi32(x, 24));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_xor_si128(bytes, _mm_set1_epi8(-128)));
    }
    static void StoreInt32(std::uint8_t* to, __m512i x) { _mm512_storeu_si512(to, x); }
    static void StoreFloat32(std::uint8_t* to, __m512i x) {
        _mm512_storeu_ps(to, _mm512_mul_ps(_mm512_cvtepi32_ps(x), _mm512_set1_ps(0x1p-31F)));
    }
    static void StoreFloat64(std::uint8_t* to, __m512i x) {
        const __m512d scale = _mm512_set1_pd(0x1p-31);
        _mm512_storeu_pd(to, _mm512_mul_pd(_mm512_cvtepi32_pd(_mm512_castsi512_si256(x)), scale));
        _mm512_storeu_pd(to + 64, _mm512_mul_pd(_mm512_cvtepi32_pd(_mm512_extracti64x4_epi64(x, 1)), scale));
    }

    template <int Bits>
    static __m512i Round(const std::uint8_t* from) {
        return _mm512_slli_epi32(Both(RoundEight<Bits>(from), RoundEight<Bits>(from + 64)), 32 - Bits);
    }

    static void Widen(std::uint8_t* to, const std::uint8_t* from) {
        _mm512_storeu_pd(to, _mm512_cvtps_pd(_mm256_castsi256_ps(Half(from))));
        _mm512_storeu_pd(to + 64, _mm512_cvtps_pd(_mm256_castsi256_ps(Half(from + 32))));
    }
    static void Narrow(std::uint8_t* to, const std::uint8_t* from) {
        PutHalf(to, _mm256_castps_si256(_mm512_cvtpd_ps(_mm512_loadu_pd(from))));
        PutHalf(to + 32, _mm256_castps_si256(_mm512_cvtpd_ps(_mm512_loadu_pd(from + 64))));
    }
};

// Between samples of four bytes there is little to compute, and a vector of 64 bytes that stands anywhere crosses
// from one cache line to the next at every load; of these it is every other one.
struct Halves {
    static constexpr std::size_t kLanes = 16;
    struct Pair {
        __m256i a, b;
    };

    static Pair LoadInt32(const std::uint8_t* from) { return {Half(from), Half(from + 32)}; }
    template <bool>
    static Pair LoadFloat32(const std::uint8_t* from) {
        return {TruncateHalf(from), TruncateHalf(from + 32)};
    }
    static void StoreInt32(std::uint8_t* to, Pair x) {
        PutHalf(to, x.a);
        PutHalf(to + 32, x.b);
    }
    static void StoreFloat32(std::uint8_t* to, Pair x) {
        PutHalf(to, Scaled(x.a));
        PutHalf(to + 32, Scaled(x.b));
    }

  private:
    static __m256i TruncateHalf(const std::uint8_t* from) {
        const __m256i numbers = _mm256_set1_epi32(0x11111188);  // what makes 0 of those that are none
        const __m256 limit = _mm256_set1_ps(kLimit), values = _mm256_castsi256_ps(Half(from));
        const __m256 scaled = _mm256_mul_ps(_mm256_fixupimm_ps(values, values, numbers, 0), limit);
        const __m256 high = _mm256_cmp_ps(scaled, limit, _CMP_GE_OQ);
        return _mm256_xor_si256(_mm256_cvttps_epi32(scaled), _mm256_castps_si256(high));
    }
    static __m256i Scaled(__m256i x) {
        return _mm256_castps_si256(_mm256_mul_ps(_mm256_cvtepi32_ps(x), _mm256_set1_ps(0x1p-31F)));
    }
};

// Two vectors at a time, where one instruction can take the upper words of both.
struct Doubled {
    static constexpr std::size_t kLanes = 32;
    struct Pair {
        __m512i a, b;
    };

    template <bool IsNarrowed>
    static Pair LoadFloat32(const std::uint8_t* from) {
        return {Avx512::LoadFloat32<IsNarrowed>(from), Avx512::LoadFloat32<IsNarrowed>(from + 64)};
    }
    static void StoreInt16(std::uint8_t* to, Pair x) {
        const __m512i odd =
            _mm512_set_epi16(63, 61, 59, 57, 55, 53, 51, 49, 47, 45, 43, 41, 39, 37, 35, 33,  //
                             31, 29, 27, 25, 23, 21, 19, 17, 15, 13, 11, 9, 7, 5, 3, 1);
        _mm512_storeu_si512(to, _mm512_permutex2var_epi16(x.a, odd, x.b));
    }
};

constexpr SampleLoops Loops() {
    SampleLoops loops = SampleLoopsOf<Avx512>();
    loops.convert[3][4] = Run<Halves, Convert<Halves, SampleKind::Int32, SampleKind::Float32>>;
    loops.convert[4][3] = Run<Halves, Convert<Halves, SampleKind::Float32, SampleKind::Int32>>;
    loops.convert[4][0] = Run<Doubled, Convert<Doubled, SampleKind::Float32, SampleKind::Int16>>;
    return loops;
}

}  // namespace

constinit const SampleLoops kAvx512SampleLoops = Loops();
