// One frame and one sum at a time: what the other forms are held against.
#include <cstring>

#include "audio/mix_loops.h"

namespace {

double Sum(const double* frame, const clMixTerms& terms) {
    double sum = 0;
    for (const clMixTerm& term : terms) {
        if (term.position == 0) break;
        sum += frame[term.position - 1] * term.coefficient;
    }
    return sum;
}

}  // namespace

void MixPlain(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from,
              std::uint32_t fromChannels, std::size_t frames, const clMixTerms* rows) {
    double inputs[kMixChannels], sums[kMixChannels];
    const std::size_t fromBytes = fromChannels * sizeof *inputs, toBytes = toChannels * sizeof *sums;
    for (; frames > 0; --frames, from += fromBytes, to += toBytes) {
        std::memcpy(inputs, from, fromBytes);
        for (std::uint32_t channel = 0; channel < toChannels; ++channel)
            sums[channel] = Sum(inputs, rows[channel]);
        std::memcpy(to, sums, toBytes);
    }
}
