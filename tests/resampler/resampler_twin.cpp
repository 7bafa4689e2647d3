#include "resampler/resampler_twin.h"

#include <cmath>
#include <map>
#include <numeric>

namespace {

constexpr long double kPi = 3.14159265358979323846264338327950288L;
constexpr long double kWidth = 11.284818941504179L;
constexpr long double kShape = 17.77526L;

// The series with its first sixteen terms.
long double Bessel(long double x) {
    long double sum = 1, term = 1;
    for (int n = 1; n <= 15; ++n) {
        term *= x / 2 / n;
        sum += term * term;
    }
    return sum;
}

std::int64_t CeilingOf(std::int64_t number, std::int64_t divisor) {
    return (number + divisor - 1) / divisor;
}

}  // namespace

ResamplerTwin::ResamplerTwin(std::int64_t source, std::int64_t target) : mSource(source), mTarget(target) {
    const std::int64_t common = std::gcd(source, target);
    mCommon = source / common * target;
    const std::int64_t term = (source < target ? source : target) / common;
    mOversample = term == 1 ? 1 : term % 2 == 0 ? 2 : 3;
    if (source < target)
        MakeUp();
    else
        MakeDown();
}

ResamplerTwin::Taps ResamplerTwin::LowPass(long double cutoff, long double rate, std::int64_t length,
                                           long double gain) {
    Taps taps(static_cast<std::size_t>(length));
    for (std::int64_t i = 0; i < length; ++i) {
        const auto x = static_cast<long double>(i - length / 2);
        const auto span = static_cast<long double>(length - 1);
        const long double window = Bessel(kShape * std::sqrt(1 - 4 * x * x / (span * span))) / Bessel(kShape);
        const long double angle = 2 * kPi * cutoff / rate * x;
        const long double sinc = x == 0 ? 1 : std::sin(angle) / angle;
        taps[static_cast<std::size_t>(i)] = window * 2 * cutoff / rate * sinc * gain;
    }
    return taps;
}

std::int64_t ResamplerTwin::SteepLength(std::int64_t rate) {
    std::int64_t length = 16384;
    while (static_cast<long double>(rate) * kWidth / static_cast<long double>(length - 2) >= 100) length *= 2;
    return length - 1;
}

void ResamplerTwin::MakeUp() {
    const std::int64_t rate = mOversample * mTarget, half = mSource / 2, gap = rate / 2 - half;
    const auto taps = static_cast<std::int64_t>(
        static_cast<double>(mCommon) / static_cast<double>(gap) * static_cast<double>(kWidth) + 1.0);
    const std::int64_t phases = mCommon / mSource, odd = taps % 2 == 0 ? taps + 1 : taps;
    mPoly = LowPass(static_cast<long double>(gap) / 2 + static_cast<long double>(half),
                    static_cast<long double>(mCommon), odd, static_cast<long double>(phases));
    mPadding = odd / 2 / phases + 1;
    const std::int64_t steep = SteepLength(rate);
    mSteep = LowPass(static_cast<long double>(half), static_cast<long double>(rate), steep, 1);
    mDelay = steep / 2 / mOversample;
    if (mOversample == 1) mDelay = steep / 2;
}

void ResamplerTwin::MakeDown() {
    const std::int64_t rate = mOversample * mSource, half = mSource / 2, gap = rate / 2 - half;
    const std::int64_t steep = SteepLength(rate);
    const long double transition =
        static_cast<long double>(rate) * kWidth / static_cast<long double>(steep - 1);
    mSteep = LowPass((static_cast<long double>(mTarget) - transition) / 2, static_cast<long double>(rate),
                     steep, static_cast<long double>(mOversample));
    std::int64_t taps = 1;
    mPoly = {1};
    if (mOversample != 1) {
        taps = static_cast<std::int64_t>(
            static_cast<double>(mCommon) / static_cast<double>(gap) * static_cast<double>(kWidth) + 1.0);
        if (taps % 2 == 0) ++taps;
        mPoly = LowPass(static_cast<long double>(gap) / 2 + static_cast<long double>(half),
                        static_cast<long double>(mCommon), taps, static_cast<long double>(mCommon / rate));
    }
    mDelay = static_cast<std::int64_t>(
        static_cast<double>(taps) * 0.5 / (static_cast<double>(mCommon) / static_cast<double>(mTarget)) +
        static_cast<double>(steep) * 0.5 / (static_cast<double>(rate) / static_cast<double>(mTarget)));
}

// One output of the polyphase filter: the taps that meet samples of the input, which begin at the first sample
// not before it.
long double ResamplerTwin::Polyphase(std::int64_t output, std::int64_t inputRate, std::int64_t outputRate,
                                     const auto& sample) const {
    const std::int64_t phases = mCommon / inputRate, at = output * (mCommon / outputRate);
    const std::int64_t first = CeilingOf(at, phases);
    long double sum = 0;
    std::int64_t tap = first * phases - at;
    for (std::int64_t i = first; tap < static_cast<std::int64_t>(mPoly.size()); ++i, tap += phases)
        sum += sample(i) * mPoly[static_cast<std::size_t>(tap)];
    return sum;
}

// How many frames, the padding counted, are there when a sample of the upward way is made: those of its step and
// of the steps before. A step is given what its outputs advance by and a row's width, which falls short of the
// last tap where a row is but few taps wide; such a tap reads silence.
std::int64_t ResamplerTwin::GivenFrames(std::int64_t output) const {
    const std::int64_t phases = mCommon / mSource, rate = mTarget * mOversample, stride = mCommon / rate;
    const auto half = static_cast<std::int64_t>(mSteep.size()) + 1, step = output / half;
    const std::int64_t width = static_cast<std::int64_t>(mPoly.size()) / phases + 1;
    const std::int64_t used = step == 0 ? 0 : (step * half * stride - 1) / phases;
    return used + mSource * half / rate + 1 + width;
}

long double ResamplerTwin::Frame(const std::vector<double>& input, std::int64_t frame) const {
    const auto at = [&](std::int64_t i) -> long double {
        return i < 0 || i >= static_cast<std::int64_t>(input.size()) ? 0 : input[static_cast<std::size_t>(i)];
    };
    const auto steep = static_cast<std::int64_t>(mSteep.size());
    long double sum = 0;
    if (mSource < mTarget) {
        const std::int64_t last = (frame + mDelay) * mOversample;
        for (std::int64_t t = 0; t < steep && t <= last; ++t) {
            const std::int64_t given = GivenFrames(last - t);
            sum += mSteep[static_cast<std::size_t>(t)] *
                   Polyphase(last - t, mSource, mTarget * mOversample,
                             [&](std::int64_t i) { return i < given ? at(i - mPadding) : 0; });
        }
        return sum;
    }
    const std::int64_t width =
        static_cast<std::int64_t>(mPoly.size()) / (mCommon / (mSource * mOversample)) + 1;
    const std::int64_t offset = mPoly.size() == 1 ? 2 : width + 1;
    return Polyphase(frame + mDelay, mSource * mOversample, mTarget, [&](std::int64_t i) {
        const std::int64_t last = i - offset;
        long double filtered = 0;
        for (std::int64_t t = last % mOversample; last >= 0 && t < steep && t <= last; t += mOversample)
            filtered += mSteep[static_cast<std::size_t>(t)] * at((last - t) / mOversample);
        return filtered;
    });
}
