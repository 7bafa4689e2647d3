// The peers among the rate converters; rate_converters.cpp says how each is set up.
#pragma once

#include "bench/audio/rate_converters.h"

std::unique_ptr<RateConverter> MakeSoxrSteep(const Rates& rates);
std::unique_ptr<RateConverter> MakeSoxr(const Rates& rates);
std::unique_ptr<RateConverter> MakeSamplerate(const Rates& rates);
std::unique_ptr<RateConverter> MakeZita(const Rates& rates);
std::unique_ptr<RateConverter> MakeSpeex(const Rates& rates);

// Ends the program.
[[noreturn]] void RefusedBy(const char* who);
