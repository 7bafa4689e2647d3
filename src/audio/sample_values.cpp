// An integer is read as it is made float by the depth stage, which loses nothing on the way through 32 bits;
// writing has loops of its own, since it rounds.
#include "audio/sample_values.h"

#include <cstring>

#include "audio/sample_loops.h"

void ReadSamples(double* to, const std::uint8_t* from, std::size_t count, SampleKind kind) {
    if (count == 0) return;
    auto* const bytes = reinterpret_cast<std::uint8_t*>(to);
    const SampleLoops& loops = *kSampleLoops.InUse();
    const auto index = static_cast<std::size_t>(kind);
    if (index < kIntegerKinds)
        loops.convert[index][static_cast<std::size_t>(SampleKind::Float64)](bytes, from, count);
    else if (kind == SampleKind::Float32)
        loops.widen(bytes, from, count);
    else if (kind == SampleKind::Float64)
        std::memcpy(bytes, from, count * sizeof *to);
    else
        std::memset(bytes, 0, count * sizeof *to);
}

void WriteSamples(std::uint8_t* to, const double* from, std::size_t count, SampleKind kind) {
    if (count == 0) return;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(from);
    const SampleLoops& loops = *kSampleLoops.InUse();
    const auto index = static_cast<std::size_t>(kind);
    if (index < kIntegerKinds)
        loops.round[index](to, bytes, count);
    else if (kind == SampleKind::Float32)
        loops.narrow(to, bytes, count);
    else if (kind == SampleKind::Float64)
        std::memcpy(to, bytes, count * sizeof *from);
}
