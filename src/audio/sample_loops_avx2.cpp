// The loops in vectors of 32 bytes. Most instructions here work on the two halves of a vector apart, which is
// why samples are put in order before they are widened and after they were packed.
#include <immintrin.h>

#include "audio/sample_loops_of.h"

namespace {

constexpr double kFullScale = 2147483648.0;

// Samples 0 to 7 and 8 to 15.
struct Pair {
    __m256i a, b;
};

__m128i Half(const std::uint8_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
__m256i Whole(const std::uint8_t* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}
__m256d Doubles(const std::uint8_t* from) {
    return _mm256_loadu_pd(reinterpret_cast<const double*>(from));
}
__m256 Floats(const std::uint8_t* from) {
    return _mm256_loadu_ps(reinterpret_cast<const float*>(from));
}
void PutHalf(std::uint8_t* to, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
}
void PutWhole(std::uint8_t* to, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), value);
}
void PutDoubles(std::uint8_t* to, __m256d value) {
    _mm256_storeu_pd(reinterpret_cast<double*>(to), value);
}

// Quarters 0 2 1 3: what the two halves of an unpacking or packing instruction mix up, put in order.
__m256i InOrder(__m256i value) {
    return _mm256_permute4x64_epi64(value, 0xD8);
}

// 24 bytes, by two loads that end where they end.
__m256i Spread24(const std::uint8_t* from) {
    const __m256i upper = _mm256_setr_epi8(-1, 0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11,  //
                                           -1, 4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15);
    const __m256i bytes = _mm256_inserti128_si256(_mm256_castsi128_si256(Half(from)), Half(from + 8), 1);
    return _mm256_shuffle_epi8(bytes, upper);
}

void Gather24(std::uint8_t* to, __m256i x) {
    const __m256i packed = _mm256_setr_epi8(1, 2, 3, 5, 6, 7, 9, 10, 11, 13, 14, 15, -1, -1, -1, -1,  //
                                            1, 2, 3, 5, 6, 7, 9, 10, 11, 13, 14, 15, -1, -1, -1, -1);
    const __m256i joined = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(x, packed),
                                                       _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7));
    PutHalf(to, _mm256_castsi256_si128(joined));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to + 16), _mm256_extracti128_si256(joined, 1));
}

__m256i SpreadBytes(const std::uint8_t* from) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
    const __m256i upper = _mm256_slli_epi32(_mm256_cvtepu8_epi32(bytes), 24);
    return _mm256_xor_si256(upper, _mm256_set1_epi32(-2147483647 - 1));
}

constexpr float kLimit = 2147483648.0F;
constexpr float kBelowLimit = 2147483520.0F;  // the highest float below, 0x7FFFFF80

// The conversion gives the lowest integer for all that it can't express: right for what is too low, turned over
// for what is too high, cleared for what is no number.
template <bool IsNarrowed>
__m256i TruncateFloats(__m256 values) {
    const __m256 limit = _mm256_set1_ps(kLimit);
    const __m256 scaled = _mm256_mul_ps(values, limit);
    const __m256i number = _mm256_castps_si256(_mm256_cmp_ps(values, values, _CMP_ORD_Q));
    if constexpr (IsNarrowed)
        return _mm256_and_si256(_mm256_cvttps_epi32(_mm256_min_ps(scaled, _mm256_set1_ps(kBelowLimit))),
                                number);
    const __m256i high = _mm256_castps_si256(_mm256_cmp_ps(scaled, limit, _CMP_GE_OQ));
    return _mm256_and_si256(_mm256_xor_si256(_mm256_cvttps_epi32(scaled), high), number);
}

__m256d NumberOrZero(__m256d values) {
    return _mm256_and_pd(values, _mm256_cmp_pd(values, values, _CMP_ORD_Q));
}

__m128i TruncateFour(const std::uint8_t* from) {
    const __m256d scaled = _mm256_mul_pd(NumberOrZero(Doubles(from)), _mm256_set1_pd(kFullScale));
    return _mm256_cvttpd_epi32(_mm256_min_pd(scaled, _mm256_set1_pd(kFullScale - 1)));
}
__m256i TruncateDoubles(const std::uint8_t* from) {
    return _mm256_set_m128i(TruncateFour(from + 32), TruncateFour(from));
}

// With the half of its own sign added; -0 and 0 both end as 0. The product is exact, so that the fused operation
// gives the same bits as the two.
template <int Bits>
__m128i RoundFour(const std::uint8_t* from) {
    constexpr double kScale = std::uint32_t{1} << (Bits - 1);
    const __m256d numbers = NumberOrZero(Doubles(from));
    const __m256d half = _mm256_or_pd(_mm256_and_pd(numbers, _mm256_set1_pd(-0.0)), _mm256_set1_pd(0.5));
    const __m256d moved = _mm256_fmadd_pd(numbers, _mm256_set1_pd(kScale), half);
    const __m256d limited =
        _mm256_max_pd(_mm256_min_pd(moved, _mm256_set1_pd(kScale - 1)), _mm256_set1_pd(-kScale));
    return _mm256_cvttpd_epi32(limited);
}
template <int Bits>
__m256i RoundDoubles(const std::uint8_t* from) {
    return _mm256_slli_epi32(_mm256_set_m128i(RoundFour<Bits>(from + 32), RoundFour<Bits>(from)), 32 - Bits);
}

void PutFloatsOf(std::uint8_t* to, __m256i x) {
    PutWhole(to, _mm256_castps_si256(_mm256_mul_ps(_mm256_cvtepi32_ps(x), _mm256_set1_ps(0x1p-31F))));
}
void PutDoublesOf(std::uint8_t* to, __m256i x) {
    const __m256d scale = _mm256_set1_pd(0x1p-31);
    PutDoubles(to, _mm256_mul_pd(_mm256_cvtepi32_pd(_mm256_castsi256_si128(x)), scale));
    PutDoubles(to + 32, _mm256_mul_pd(_mm256_cvtepi32_pd(_mm256_extracti128_si256(x, 1)), scale));
}

struct Avx2 {
    static constexpr std::size_t kLanes = 16;

    static Pair LoadInt16(const std::uint8_t* from) {
        const __m256i samples = InOrder(Whole(from)), zero = _mm256_setzero_si256();
        return {_mm256_unpacklo_epi16(zero, samples), _mm256_unpackhi_epi16(zero, samples)};
    }
    static Pair LoadInt24(const std::uint8_t* from) { return {Spread24(from), Spread24(from + 24)}; }
    static Pair LoadUInt8(const std::uint8_t* from) { return {SpreadBytes(from), SpreadBytes(from + 8)}; }
    static Pair LoadInt32(const std::uint8_t* from) { return {Whole(from), Whole(from + 32)}; }
    template <bool IsNarrowed>
    static Pair LoadFloat32(const std::uint8_t* from) {
        return {TruncateFloats<IsNarrowed>(Floats(from)), TruncateFloats<IsNarrowed>(Floats(from + 32))};
    }
    static Pair LoadFloat64(const std::uint8_t* from) {
        return {TruncateDoubles(from), TruncateDoubles(from + 64)};
    }

    static void StoreInt16(std::uint8_t* to, Pair x) {
        PutWhole(to, InOrder(_mm256_packs_epi32(_mm256_srai_epi32(x.a, 16), _mm256_srai_epi32(x.b, 16))));
    }
    static void StoreInt24(std::uint8_t* to, Pair x) {
        Gather24(to, x.a);
        Gather24(to + 24, x.b);
    }
    static void StoreUInt8(std::uint8_t* to, Pair x) {
        const __m256i words =
            InOrder(_mm256_packs_epi32(_mm256_srai_epi32(x.a, 24), _mm256_srai_epi32(x.b, 24)));
        const __m128i bytes =
            _mm_packs_epi16(_mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1));
        PutHalf(to, _mm_xor_si128(bytes, _mm_set1_epi8(-128)));
    }
    static void StoreInt32(std::uint8_t* to, Pair x) {
        PutWhole(to, x.a);
        PutWhole(to + 32, x.b);
    }
    static void StoreFloat32(std::uint8_t* to, Pair x) {
        PutFloatsOf(to, x.a);
        PutFloatsOf(to + 32, x.b);
    }
    static void StoreFloat64(std::uint8_t* to, Pair x) {
        PutDoublesOf(to, x.a);
        PutDoublesOf(to + 64, x.b);
    }

    template <int Bits>
    static Pair Round(const std::uint8_t* from) {
        return {RoundDoubles<Bits>(from), RoundDoubles<Bits>(from + 64)};
    }

    static void Widen(std::uint8_t* to, const std::uint8_t* from) {
        for (int i = 0; i < 4; ++i)
            PutDoubles(to + 32 * i, _mm256_cvtps_pd(_mm_castsi128_ps(Half(from + 16 * i))));
    }
    static void Narrow(std::uint8_t* to, const std::uint8_t* from) {
        for (int i = 0; i < 4; ++i)
            PutHalf(to + 16 * i, _mm_castps_si128(_mm256_cvtpd_ps(Doubles(from + 32 * i))));
    }
};

}  // namespace

constinit const SampleLoops kAvx2SampleLoops = SampleLoopsOf<Avx2>();
