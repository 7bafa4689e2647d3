// Work that is repeated must leave as many drawing objects as there were.
#pragma once

#include "toolkit/real/canvas.h"

template <class Work>
void ExpectNothingLeft(Work work) {
    constexpr int kTimes = 100;
    work();  // what the platform keeps for itself from the first time on
    const std::uintptr_t before = DrawingGauge();
    for (int i = 0; i < kTimes; ++i) work();
    EXPECT_LT(DrawingGauge(), before + kTimes / 2);
}
