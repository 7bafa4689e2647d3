#include "audio/filter_sums.h"

#include "audio/filter_sums_forms.h"

namespace {

void PlainPolyphase(const PolyphaseRows& rows, double* to, const double* from, std::size_t count,
                    std::size_t phase) {
    for (std::size_t i = 0; i < count; ++i) {
        const double* const taps = rows.taps + phase * rows.stride;
        double sum = 0;
        for (std::size_t j = 0; j < rows.width; ++j) sum += from[j] * taps[j];
        to[i] = sum;
        from += rows.advance[phase];
        if (++phase == rows.phases) phase = 0;
    }
}

const FilterSums kPlain = {PlainPolyphase, nullptr};

constexpr Forms<const FilterSums> kForms = {
    {&kPlain, &kFilterSumsSse2, &kFilterSumsAvx2, &kFilterSumsAvx512}};

}  // namespace

const FilterSums& FilterSumsInUse() {
    return *kForms.InUse();
}
