// Rows and outputs are each other's permutation, as the stride and the phases have no common factor: so the rows
// are laid down in the order of the outputs, and a run reads them one behind the other.
//
// Summing a short row costs less than adding up the lanes of its vector at the end. Where outputs lie close
// together the taps are therefore laid down a second time, turned: eight outputs side by side, and no lanes to add.
#include "audio/polyphase_filter.h"

#include <algorithm>
#include <numeric>

#include "audio/filter_sums.h"
#include "audio/low_pass.h"

namespace {

// The row that output i is made with: how far before the next whole input sample it lies, in phases.
std::int64_t RowOf(std::int64_t output, const clResamplerPlan& plan) {
    return (plan.phases - output * plan.stride % plan.phases) % plan.phases;
}

}  // namespace

void clPolyphaseFilter::Design(const clResamplerPlan& plan) {
    const auto phases = static_cast<std::size_t>(plan.phases);
    mWidth = static_cast<std::size_t>(plan.width);
    mStride = (mWidth + 7) / 8 * 8;
    mTaps.Assign(phases * mStride);
    mAdvance.resize(phases);
    for (std::int64_t i = 0; i < plan.phases; ++i)
        mAdvance[static_cast<std::size_t>(i)] =
            static_cast<std::int32_t>((plan.stride - RowOf(i, plan) + RowOf(i + 1, plan)) / plan.phases);
    LayTaps(plan);
    LayGroups();
}

void clPolyphaseFilter::LayTaps(const clResamplerPlan& plan) {
    if (plan.polyphase.length == 1) {
        *mTaps.Data() = 1.0;
        return;
    }
    std::vector<std::size_t> outputOf(mAdvance.size());
    for (std::size_t i = 0; i < outputOf.size(); ++i)
        outputOf[static_cast<std::size_t>(RowOf(static_cast<std::int64_t>(i), plan))] = i;
    const clLowPass lowPass(plan.polyphase.cutoff, static_cast<double>(plan.polyphase.rate),
                            plan.polyphase.length);
    const std::int64_t half = plan.polyphase.length / 2;
    for (std::int64_t i = 0; i <= half; ++i) {
        const double tap = lowPass.Tap(i) * plan.polyphase.gain;
        for (const std::int64_t j : {half - i, half + i})
            mTaps.Data()[outputOf[static_cast<std::size_t>(j % plan.phases)] * mStride +
                         static_cast<std::size_t>(j / plan.phases)] = tap;
    }
}

// The groups repeat when both the phases and eight outputs begin anew.
void clPolyphaseFilter::LayGroups() {
    constexpr std::size_t kOutputs = PolyphaseGroups::kOutputs;
    constexpr std::size_t kLargest = std::size_t{1}
                                     << 15;  // doubles: beyond that a table doesn't stay in the cache
    const std::size_t phases = mAdvance.size(), count = std::lcm(phases, kOutputs);
    std::size_t reach = 0;  // from a group's first output to its last, in samples
    mGroupAdvance.assign(count / kOutputs, 0);
    for (std::size_t i = 0; i < count; ++i) {
        std::int32_t& advance = mGroupAdvance[i / kOutputs];
        reach = std::max(reach, static_cast<std::size_t>(advance));
        advance += mAdvance[i % phases];
    }
    mSpan = mWidth + reach;
    static_assert(kSpare >=
                  2 * kOutputs);  // a row's vector ends less than 8 samples behind it, a group 8 later
    const bool isWorthIt = mWidth > 1 && mSpan <= mStride + kOutputs && count * mSpan <= kLargest;
    if (!isWorthIt) mSpan = 0;
    mGroupTaps.Assign(count * mSpan);
    std::size_t first = 0;
    for (std::size_t i = 0; i < count && isWorthIt; ++i) {
        if (i % kOutputs == 0) first = 0;
        double* const taps = mGroupTaps.Data() + (i / kOutputs * mSpan + first) * kOutputs + i % kOutputs;
        for (std::size_t j = 0; j < mWidth; ++j) taps[j * kOutputs] = mTaps.Data()[i % phases * mStride + j];
        first += static_cast<std::size_t>(mAdvance[i % phases]);
    }
}

std::int64_t clPolyphaseFilter::Cycle() const {
    return static_cast<std::int64_t>(mAdvance.size() * PolyphaseGroups::kOutputs);
}

void clPolyphaseFilter::Run(double* to, const double* from, std::int64_t count, std::int64_t before) const {
    if (mAdvance.size() == 1 && mWidth == 1) {  // the one tap is 1
        for (std::int64_t i = 0; i < count; ++i, from += mAdvance[0]) to[i] = *from;
        return;
    }
    const FilterSums& sums = FilterSumsInUse();
    const auto outputs = static_cast<std::size_t>(count), made = static_cast<std::size_t>(before);
    if (sums.groups && mSpan != 0 && (outputs | made) % PolyphaseGroups::kOutputs == 0) {
        const PolyphaseGroups groups = {mGroupTaps.Data(), mGroupAdvance.data(), mGroupAdvance.size(), mSpan};
        sums.groups(groups, to, from, outputs, made / PolyphaseGroups::kOutputs % groups.groups);
        return;
    }
    const PolyphaseRows rows = {mTaps.Data(), mAdvance.data(), mAdvance.size(), mWidth, mStride};
    sums.polyphase(rows, to, from, outputs, made % rows.phases);
}
