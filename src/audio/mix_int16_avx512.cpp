// Samples of 16 bits are summed without a detour through memory, 8 frames at a time: words are moved freely from
// where they stand among the channels to one vector a channel, and back.
//
// They are taken as whole numbers instead of fractions of full scale. That scales each product and each sum by
// 2^15, which no rounding notices, and so the result is the same to the bit; saved are two multiplications.
// Saved is also a sum that two outputs share, and one that is an input as it stands.
#include <immintrin.h>

#include "audio/mix_loops.h"

namespace {

constexpr std::size_t kFrames = 8;
constexpr std::size_t kWords = 32;  // in a vector

struct Words {
    __m512i low, high;
};

// The words of some frames, of 64.
struct Reach {
    explicit Reach(std::size_t words)
        : low(static_cast<__mmask32>(words < kWords ? (std::uint64_t{1} << words) - 1 : kAll)),
          high(static_cast<__mmask32>(words < kWords ? 0 : (std::uint64_t{1} << (words - kWords)) - 1)) {}

    static constexpr std::uint64_t kAll = 0xFFFFFFFF;
    __mmask32 low, high;
};

Words LoadWords(const std::uint8_t* from, const Reach& reach) {
    return {
        _mm512_maskz_loadu_epi16(reach.low, from),
        reach.high != 0 ? _mm512_maskz_loadu_epi16(reach.high, from + 2 * kWords) : _mm512_setzero_si512()};
}

// A sum that differs from those before it.
struct Terms {
    const clMixTerm* terms;
    std::size_t count;

    bool IsCopy() const { return count == 1 && terms[0].coefficient == 1.0; }
};

Terms CountTerms(const clMixTerm* terms) {
    std::size_t count = 0;
    while (count < kMixChannels && terms[count].position != 0) ++count;
    return {terms, count};
}

bool AreEqual(const Terms& a, const Terms& b) {
    bool equal = a.count == b.count;
    for (std::size_t i = 0; equal && i < a.count; ++i)
        equal =
            a.terms[i].position == b.terms[i].position && a.terms[i].coefficient == b.terms[i].coefficient;
    return equal;
}

// Halves are rounded away from zero. Eight sums of 16 bits are far from what 32 can't hold.
__m256i Rounded(__m512d sum) {
    constexpr int kOrOfAnd = 0xEA;  // (a & b) | c
    const __m512i half =
        _mm512_ternarylogic_epi64(_mm512_castpd_si512(sum), _mm512_castpd_si512(_mm512_set1_pd(-0.0)),
                                  _mm512_castpd_si512(_mm512_set1_pd(0.5)), kOrOfAnd);
    return _mm512_cvttpd_epi32(_mm512_add_pd(sum, _mm512_castsi512_pd(half)));
}

// What is the same for all frames of a run.
struct Plan {
    std::size_t sumCount = 0;
    Terms sums[kMixChannels];
    Words take, give;  // for each word of a vector, which of 64 it is
};

// Where packing leaves a frame of a sum.
std::size_t PlaceOf(std::size_t sum, std::size_t frame) {
    return sum / 4 * 32 + sum % 4 / 2 * 16 + frame / 4 * 8 + sum % 2 * 4 + frame % 4;
}

std::size_t FindSum(Plan& plan, const Terms& terms) {
    for (std::size_t sum = 0; sum < plan.sumCount; ++sum)
        if (AreEqual(plan.sums[sum], terms)) return sum;
    plan.sums[plan.sumCount] = terms;
    return plan.sumCount++;
}

Words LoadPlaces(const std::uint16_t* places) {
    return {_mm512_loadu_si512(places), _mm512_loadu_si512(places + kWords)};
}

Plan MakePlan(std::size_t toChannels, std::size_t fromChannels, const clMixTerms* rows) {
    Plan plan = {.sums = {}, .take = {}, .give = {}};
    std::uint16_t take[2 * kWords] = {}, give[2 * kWords] = {};
    for (std::size_t channel = 0; channel < fromChannels; ++channel)
        for (std::size_t frame = 0; frame < kFrames; ++frame)
            take[channel * kFrames + frame] = static_cast<std::uint16_t>(frame * fromChannels + channel);
    for (std::size_t channel = 0; channel < toChannels; ++channel) {
        const std::size_t sum = FindSum(plan, CountTerms(rows[channel]));
        for (std::size_t frame = 0; frame < kFrames; ++frame)
            give[frame * toChannels + channel] = static_cast<std::uint16_t>(PlaceOf(sum, frame));
    }
    plan.take = LoadPlaces(take);
    plan.give = LoadPlaces(give);
    return plan;
}

// One vector of each channel: as integers, and as doubles.
struct Inputs {
    __m256i integers[kMixChannels];
    __m512d values[kMixChannels];
};

// Two channels of words.
void Widen(__m256i words, __m256i* integers, __m512d* values) {
    const __m512i both = _mm512_cvtepi16_epi32(words);
    integers[0] = _mm512_castsi512_si256(both);
    integers[1] = _mm512_extracti64x4_epi64(both, 1);
    values[0] = _mm512_cvtepi32_pd(integers[0]);
    values[1] = _mm512_cvtepi32_pd(integers[1]);
}

// Four.
void Spread(const Words& words, __m512i places, std::size_t channels, __m256i* integers, __m512d* values) {
    const __m512i spread = _mm512_permutex2var_epi16(words.low, places, words.high);
    Widen(_mm512_castsi512_si256(spread), integers, values);
    if (channels > 2) Widen(_mm512_extracti64x4_epi64(spread, 1), integers + 2, values + 2);
}

__m256i Sum(const Inputs& inputs, const Terms& row) {
    if (row.IsCopy()) return inputs.integers[row.terms[0].position - 1];
    __m512d sum = _mm512_setzero_pd();
    for (std::size_t i = 0; i < row.count; ++i)
        sum = _mm512_add_pd(sum, _mm512_mul_pd(inputs.values[row.terms[i].position - 1],
                                               _mm512_set1_pd(row.terms[i].coefficient)));
    return Rounded(sum);
}

// Four sums as words that saturate.
__m512i Pack(const __m256i* sums) {
    return _mm512_inserti64x4(_mm512_castsi256_si512(_mm256_packs_epi32(sums[0], sums[1])),
                              _mm256_packs_epi32(sums[2], sums[3]), 1);
}

void Give(std::uint8_t* to, const Reach& reach, const Plan& plan, const __m256i* sums) {
    const __m512i low = Pack(sums), high = plan.sumCount > 4 ? Pack(sums + 4) : low;
    _mm512_mask_storeu_epi16(to, reach.low, _mm512_permutex2var_epi16(low, plan.give.low, high));
    if (reach.high != 0)
        _mm512_mask_storeu_epi16(to + 2 * kWords, reach.high,
                                 _mm512_permutex2var_epi16(low, plan.give.high, high));
}

}  // namespace

void MixInt16Avx512(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from,
                    std::uint32_t fromChannels, std::size_t frames, const clMixTerms* rows) {
    const Plan plan = MakePlan(toChannels, fromChannels, rows);
    const std::size_t fromBytes = kFrames * fromChannels * 2, toBytes = kFrames * toChannels * 2;
    Reach fromReach(kFrames * fromChannels), toReach(kFrames * toChannels);
    Inputs inputs;
    __m256i sums[kMixChannels] = {};
    for (std::size_t done = 0; done < frames; done += kFrames, from += fromBytes, to += toBytes) {
        if (frames - done < kFrames) {
            fromReach = Reach((frames - done) * fromChannels);
            toReach = Reach((frames - done) * toChannels);
        }
        const Words words = LoadWords(from, fromReach);
        Spread(words, plan.take.low, fromChannels, inputs.integers, inputs.values);
        if (fromChannels > 4)
            Spread(words, plan.take.high, fromChannels - 4, inputs.integers + 4, inputs.values + 4);
        for (std::size_t i = 0; i < plan.sumCount; ++i) sums[i] = Sum(inputs, plan.sums[i]);
        Give(to, toReach, plan, sums);
    }
}
