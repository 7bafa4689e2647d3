#include "audio/resampler_plan.h"

#include <numeric>

#include "audio/low_pass.h"
#include "audio/polyphase_filter.h"

namespace {

constexpr std::int64_t kBaseLength = 16384;  // of a low-pass applied by FFT, the least
constexpr double kTransitionLimit = 100.0;   // hertz that its transition stays below
constexpr std::int64_t kMemoryLimit = std::int64_t{512} << 20;
constexpr std::int64_t kRateLimit = std::int64_t{1}
                                    << 62;  // a common rate beyond has filters beyond all memory

std::int64_t Odd(std::int64_t length) {
    return length % 2 == 0 ? length - 1 : length;
}

double Transition(std::int64_t rate, std::int64_t length) {
    return static_cast<double>(rate) * clLowPass::kTransitionWidth / static_cast<double>(length - 1);
}

}  // namespace

bool clResamplerPlan::Make(std::int64_t source, std::int64_t target, std::int64_t channels) {
    *this = {};
    sourceRate = source;
    targetRate = target;
    Substitute();
    if (sourceRate <= 0 || targetRate <= 0 || channels <= 0) return false;
    upward = sourceRate < targetRate;
    const std::int64_t divisor = std::gcd(sourceRate, targetRate);
    if (sourceRate / divisor > kRateLimit / targetRate) return false;
    if (!ChooseOversampling((upward ? sourceRate : targetRate) / divisor)) return false;
    if (upward)
        PlanUp(divisor);
    else
        PlanDown(divisor);
    return lowPass.cutoff > 0 && Bytes(channels) <= kMemoryLimit;
}

// The filters' cost grows with the rates. The first row that fits counts; 0 stands for any rate.
void clResamplerPlan::Substitute() {
    struct Row {
        std::int64_t source, target, divisor;
    };
    static constexpr Row kRows[] = {{352800, 0, 4},     {192000, 44100, 2}, {44100, 192000, 2},
                                    {22050, 192000, 2}, {176400, 0, 4},     {0, 88100, 2}};
    for (const Row& row : kRows) {
        if ((row.source != 0 && row.source != sourceRate) || (row.target != 0 && row.target != targetRate))
            continue;
        sourceRate /= row.divisor;
        targetRate /= row.divisor;
        return;
    }
}

bool clResamplerPlan::ChooseOversampling(std::int64_t term) {
    for (const std::int64_t factor : {2, 3}) {
        if (term != 1 && term % factor != 0) continue;
        oversample = term == 1 ? 1 : factor;
        return true;
    }
    return false;
}

void clResamplerPlan::PlanDown(std::int64_t divisor) {
    firstRate = sourceRate * oversample;
    secondRate = sourceRate / divisor * targetRate;
    PlanLowPass(firstRate);
    lowPass.cutoff = (static_cast<double>(targetRate) - Transition(firstRate, lowPass.length)) * 0.5;
    lowPass.gain = static_cast<double>(oversample);
    stride = sourceRate / divisor;
    phases = secondRate / firstRate;
    if (oversample == 1)
        polyphase = {1, secondRate, 0, 1};  // picks frames
    else
        PlanPolyphase(secondRate, firstRate, firstRate / 2 - sourceRate / 2);
    const double first = static_cast<double>(firstRate) / static_cast<double>(targetRate);
    const double second = static_cast<double>(secondRate) / static_cast<double>(targetRate);
    delay = static_cast<std::int64_t>(static_cast<double>(polyphase.length) * 0.5 / second +
                                      static_cast<double>(lowPass.length) * 0.5 / first);
}

void clResamplerPlan::PlanUp(std::int64_t divisor) {
    firstRate = sourceRate / divisor * targetRate;
    secondRate = oversample * targetRate;
    PlanPolyphase(firstRate, sourceRate, secondRate / 2 - sourceRate / 2);
    stride = firstRate / secondRate;
    padding = polyphase.length / 2 / phases + 1;
    PlanLowPass(secondRate);
    lowPass.cutoff = static_cast<double>(sourceRate / 2);
    delay = static_cast<std::int64_t>(static_cast<double>(lowPass.length) * 0.5 /
                                      static_cast<double>(oversample));
}

// The shortest of 16384, 32768, ... taps, less 1 to be odd, whose transition is narrow enough. Twice its length
// rounded up to a power of two, so that a block yields half of that in new samples.
void clResamplerPlan::PlanLowPass(std::int64_t rate) {
    lowPass.rate = rate;
    std::int64_t length = kBaseLength;
    while (Transition(rate, Odd(length)) >= kTransitionLimit) length *= 2;
    lowPass.length = Odd(length);
    fftLength = 2 * length;
}

// What is passed is the half of the source rate, and the transition ends at the half of the oversampled one.
void clResamplerPlan::PlanPolyphase(std::int64_t rate, std::int64_t inputRate, std::int64_t gap) {
    const auto band = static_cast<double>(gap);
    polyphase.rate = rate;
    polyphase.cutoff = band * 0.5 + static_cast<double>(sourceRate / 2);
    phases = rate / inputRate;
    polyphase.gain = static_cast<double>(phases);
    const auto length =
        static_cast<std::int64_t>(static_cast<double>(rate) / band * clLowPass::kTransitionWidth + 1.0);
    polyphase.length = length % 2 == 0 ? length + 1 : length;
    width = polyphase.length / phases + 1;
}

clResamplerPlan::Buffers clResamplerPlan::Lengths() const {
    const std::int64_t half = fftLength / 2;
    Buffers lengths;
    // Behind a step's samples there is room for the zeros that follow the last of them, and for what the filter reads.
    lengths.block = upward ? half : Lead() + half + clPolyphaseFilter::kSpare;
    lengths.picked = upward ? 0 : half + 1;
    lengths.in = half + width + 1;
    lengths.out = upward ? half / oversample + 1 : half + 1;
    lengths.input = upward ? half + width + 1 + clPolyphaseFilter::kSpare : width + 1;
    lengths.overhang = half;
    return lengths;
}

std::int64_t clResamplerPlan::Lead() const {
    constexpr std::int64_t kAligned = 8;
    return (width + 1 + kAligned - 1) / kAligned * kAligned;
}

std::int64_t clResamplerPlan::Bytes(std::int64_t channels) const {
    const Buffers lengths = Lengths();
    const std::int64_t rows = phases * (width + clPolyphaseFilter::kSpare);
    const std::int64_t transform = 2 * fftLength + fftLength / 2;
    const std::int64_t each = lengths.in + lengths.out + lengths.input + lengths.overhang;
    const std::int64_t doubles = rows + transform + lengths.block + lengths.picked + channels * each;
    return doubles * std::int64_t{sizeof(double)} + phases * std::int64_t{sizeof(std::int32_t)};
}
