// The vector forms of filter_sums.h, each from the source that is named after its instruction set.
#pragma once

#include "audio/filter_sums.h"

extern const FilterSums kFilterSumsSse2;
extern const FilterSums kFilterSumsAvx2;
extern const FilterSums kFilterSumsAvx512;
