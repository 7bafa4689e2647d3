// The loops in vectors of 16 bytes, which every x86-64 processor has. There is no instruction here that moves
// bytes freely, so three-byte samples are shifted into place, two of them in each 64 bits.
#include <immintrin.h>

#include "audio/sample_loops_of.h"

namespace {

constexpr double kFullScale = 2147483648.0;

// Samples 0 to 3 and 4 to 7.
struct Pair {
    __m128i a, b;
};

__m128i Half(const std::uint8_t* from) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
}
__m128i Whole(const std::uint8_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
__m128d Doubles(const std::uint8_t* from) {
    return _mm_loadu_pd(reinterpret_cast<const double*>(from));
}
__m128 Floats(const std::uint8_t* from) {
    return _mm_loadu_ps(reinterpret_cast<const float*>(from));
}
void PutHalf(std::uint8_t* to, __m128i value) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), value);
}
void PutWhole(std::uint8_t* to, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), value);
}
void PutDoubles(std::uint8_t* to, __m128d value) {
    _mm_storeu_pd(reinterpret_cast<double*>(to), value);
}

// 12 bytes, 6 in each half, and each half then two samples in the upper three bytes of 32 bits.
__m128i Spread24(const std::uint8_t* from) {
    const __m128i upper = _mm_set_epi32(-256, 0, -256, 0), lower = _mm_set_epi32(0, -256, 0, -256);
    const __m128i sixes = _mm_unpacklo_epi64(Half(from), _mm_srli_epi64(Half(from + 4), 16));
    return _mm_or_si128(_mm_and_si128(_mm_slli_epi64(sixes, 8), lower),
                        _mm_and_si128(_mm_slli_epi64(sixes, 16), upper));
}

void Gather24(std::uint8_t* to, __m128i x) {
    const __m128i first = _mm_srli_epi64(_mm_slli_epi64(x, 32), 40);
    const __m128i second = _mm_slli_epi64(_mm_srli_epi64(x, 40), 24);
    const __m128i sixes = _mm_or_si128(first, second);
    const __m128i next = _mm_unpackhi_epi64(sixes, sixes);
    PutHalf(to, _mm_or_si128(sixes, _mm_slli_epi64(next, 48)));
    const int last = _mm_cvtsi128_si32(_mm_srli_epi64(next, 16));
    std::memcpy(to + 8, &last, sizeof last);
}

constexpr float kLimit = 2147483648.0F;
constexpr float kBelowLimit = 2147483520.0F;  // the highest float below, 0x7FFFFF80

// The conversion gives the lowest integer for all that it can't express: right for what is too low, turned over
// for what is too high, cleared for what is no number.
template <bool IsNarrowed>
__m128i TruncateFloats(__m128 values) {
    const __m128 limit = _mm_set1_ps(kLimit);
    const __m128 scaled = _mm_mul_ps(values, limit);
    const __m128i number = _mm_castps_si128(_mm_cmpord_ps(values, values));
    if constexpr (IsNarrowed)
        return _mm_and_si128(_mm_cvttps_epi32(_mm_min_ps(scaled, _mm_set1_ps(kBelowLimit))), number);
    const __m128i high = _mm_castps_si128(_mm_cmpge_ps(scaled, limit));
    return _mm_and_si128(_mm_xor_si128(_mm_cvttps_epi32(scaled), high), number);
}

__m128d NumberOrZero(__m128d values) {
    return _mm_and_pd(values, _mm_cmpord_pd(values, values));
}

// Two doubles each.
__m128i TruncateDoubles(__m128d a, __m128d b) {
    const __m128d scale = _mm_set1_pd(kFullScale), high = _mm_set1_pd(kFullScale - 1);
    const __m128d c = _mm_min_pd(_mm_mul_pd(NumberOrZero(a), scale), high);
    const __m128d d = _mm_min_pd(_mm_mul_pd(NumberOrZero(b), scale), high);
    return _mm_unpacklo_epi64(_mm_cvttpd_epi32(c), _mm_cvttpd_epi32(d));
}

// With the half of its own sign added; -0 and 0 both end as 0.
template <int Bits>
__m128i RoundDoubles(__m128d values) {
    constexpr double kScale = std::uint32_t{1} << (Bits - 1);
    const __m128d numbers = NumberOrZero(values);
    const __m128d half = _mm_or_pd(_mm_and_pd(numbers, _mm_set1_pd(-0.0)), _mm_set1_pd(0.5));
    const __m128d moved = _mm_add_pd(_mm_mul_pd(numbers, _mm_set1_pd(kScale)), half);
    const __m128d limited = _mm_max_pd(_mm_min_pd(moved, _mm_set1_pd(kScale - 1)), _mm_set1_pd(-kScale));
    return _mm_slli_epi32(_mm_cvttpd_epi32(limited), 32 - Bits);
}

__m128 FloatsOf(__m128i x) {
    return _mm_mul_ps(_mm_cvtepi32_ps(x), _mm_set1_ps(0x1p-31F));
}
void PutDoublesOf(std::uint8_t* to, __m128i x) {
    const __m128d scale = _mm_set1_pd(0x1p-31);
    PutDoubles(to, _mm_mul_pd(_mm_cvtepi32_pd(x), scale));
    PutDoubles(to + 16, _mm_mul_pd(_mm_cvtepi32_pd(_mm_unpackhi_epi64(x, x)), scale));
}

struct Sse2 {
    static constexpr std::size_t kLanes = 8;

    static Pair LoadInt16(const std::uint8_t* from) {
        const __m128i samples = Whole(from), zero = _mm_setzero_si128();
        return {_mm_unpacklo_epi16(zero, samples), _mm_unpackhi_epi16(zero, samples)};
    }
    static Pair LoadInt24(const std::uint8_t* from) { return {Spread24(from), Spread24(from + 12)}; }
    static Pair LoadUInt8(const std::uint8_t* from) {
        const __m128i zero = _mm_setzero_si128();
        const __m128i samples = _mm_xor_si128(_mm_unpacklo_epi8(zero, Half(from)), _mm_set1_epi16(-32768));
        return {_mm_unpacklo_epi16(zero, samples), _mm_unpackhi_epi16(zero, samples)};
    }
    static Pair LoadInt32(const std::uint8_t* from) { return {Whole(from), Whole(from + 16)}; }
    template <bool IsNarrowed>
    static Pair LoadFloat32(const std::uint8_t* from) {
        return {TruncateFloats<IsNarrowed>(Floats(from)), TruncateFloats<IsNarrowed>(Floats(from + 16))};
    }
    static Pair LoadFloat64(const std::uint8_t* from) {
        return {TruncateDoubles(Doubles(from), Doubles(from + 16)),
                TruncateDoubles(Doubles(from + 32), Doubles(from + 48))};
    }

    static void StoreInt16(std::uint8_t* to, Pair x) {
        PutWhole(to, _mm_packs_epi32(_mm_srai_epi32(x.a, 16), _mm_srai_epi32(x.b, 16)));
    }
    static void StoreInt24(std::uint8_t* to, Pair x) {
        Gather24(to, x.a);
        Gather24(to + 12, x.b);
    }
    static void StoreUInt8(std::uint8_t* to, Pair x) {
        const __m128i words = _mm_packs_epi32(_mm_srai_epi32(x.a, 24), _mm_srai_epi32(x.b, 24));
        PutHalf(to, _mm_xor_si128(_mm_packs_epi16(words, words), _mm_set1_epi8(-128)));
    }
    static void StoreInt32(std::uint8_t* to, Pair x) {
        PutWhole(to, x.a);
        PutWhole(to + 16, x.b);
    }
    static void StoreFloat32(std::uint8_t* to, Pair x) {
        PutWhole(to, _mm_castps_si128(FloatsOf(x.a)));
        PutWhole(to + 16, _mm_castps_si128(FloatsOf(x.b)));
    }
    static void StoreFloat64(std::uint8_t* to, Pair x) {
        PutDoublesOf(to, x.a);
        PutDoublesOf(to + 32, x.b);
    }

    template <int Bits>
    static __m128i RoundFour(const std::uint8_t* from) {
        return _mm_unpacklo_epi64(RoundDoubles<Bits>(Doubles(from)), RoundDoubles<Bits>(Doubles(from + 16)));
    }
    template <int Bits>
    static Pair Round(const std::uint8_t* from) {
        return {RoundFour<Bits>(from), RoundFour<Bits>(from + 32)};
    }

    static void Widen(std::uint8_t* to, const std::uint8_t* from) {
        for (int i = 0; i < 4; ++i)
            PutDoubles(to + 16 * i, _mm_cvtps_pd(_mm_castsi128_ps(Half(from + 8 * i))));
    }
    static void Narrow(std::uint8_t* to, const std::uint8_t* from) {
        for (int i = 0; i < 4; ++i)
            PutHalf(to + 8 * i, _mm_castps_si128(_mm_cvtpd_ps(Doubles(from + 16 * i))));
    }
};

}  // namespace

constinit const SampleLoops kSse2SampleLoops = SampleLoopsOf<Sse2>();
