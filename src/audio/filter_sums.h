// The inner loops of changing a rate, in a form for each instruction set.
#pragma once

#include <cstddef>
#include <cstdint>

#include "processor/instruction_set.h"

// The rows of a polyphase filter in the order in which they are used: output i is made with row i modulo the
// phases, and the input then advances by advance[i]. A row is `width` taps, followed by zeros to `stride`, a
// multiple of 8 doubles.
struct PolyphaseRows {
    const double* taps;
    const std::int32_t* advance;
    std::size_t phases;
    std::size_t width;
    std::size_t stride;
};

// Makes `count` outputs beginning with a phase, from input that begins at `from`: row by row the sum of its
// taps times the input samples in their order. The input must be readable for a whole stride, where the
// samples behind `width` count nothing unless they are not finite. The sum's order is the form's own.
using PolyphaseSums = void(const PolyphaseRows& rows, double* to, const double* from, std::size_t count,
                           std::size_t phase);

// The same filter by groups of eight outputs, for filters whose outputs lie close together: each input sample that
// a group spans is multiplied by eight taps at once, those of outputs that it doesn't reach being 0. Group g is
// followed by group g + 1 modulo `groups`, advance[g] samples later.
struct PolyphaseGroups {
    static constexpr std::size_t kOutputs = 8;

    const double* taps;  // by group, by sample, by output
    const std::int32_t* advance;
    std::size_t groups;
    std::size_t span;
};

// Makes `count` outputs, a multiple of eight, beginning with a group. As above, with span for width.
using PolyphaseGroupSums = void(const PolyphaseGroups& groups, double* to, const double* from,
                                std::size_t count, std::size_t group);

struct FilterSums {
    PolyphaseSums* polyphase;
    PolyphaseGroupSums* groups;  // null where rows are faster anyway
};

// The forms in use.
const FilterSums& FilterSumsInUse();
