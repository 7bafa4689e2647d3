// What a programmer would write without a library: one loop over the samples, compiled with -O3 for any x86-64
// processor. Each gives what ConvertDepth gives, in the shortest form that the pair of types allows.
#pragma once

#include <cstddef>

#include "audio/sample_view.h"

using PlainLoop = void(void* to, const void* from, std::size_t count);

// Null for a pair that isn't raced.
PlainLoop* FindPlainLoop(SampleKind from, SampleKind to);
