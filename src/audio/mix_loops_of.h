// MixFrames<Set>(): the loop that sums channels in vectors, for the source that defines the set.
//
// A vector holds one channel of several frames, so that a sum is the same few operations whatever the layout.
// Frames are interleaved: two neighbouring channels are taken from each and given back to each at a time, the
// last two once more where there is an odd one. A set says
//
//     Vector, kFrames                          of so many doubles
//     Load(from), Store(to, v)                 of frames that stand close: a single channel
//     LoadPair(from, bytes, a, b)              two channels of frames of so many bytes
//     StorePair(to, bytes, a, b)
//     Zero(), AddProduct(sum, v, coefficient)  in two operations, each rounded
//
// Everything here is unnamed, so that each source has its own, compiled for its set.
#pragma once

#include <cstring>

#include "audio/mix_loops.h"

namespace {

template <class Set, std::uint32_t Channels>
void LoadChannels(const std::uint8_t* from, typename Set::Vector* inputs) {
    if constexpr (Channels == 1) {
        inputs[0] = Set::Load(from);
        return;
    }
    for (std::uint32_t done = 0; done < Channels; done += 2) {
        const std::uint32_t at = done + 2 > Channels ? Channels - 2 : done;
        Set::LoadPair(from + at * sizeof(double), Channels * sizeof(double), inputs[at], inputs[at + 1]);
    }
}

template <class Set>
void StoreChannels(std::uint8_t* to, std::uint32_t channels, const typename Set::Vector* sums) {
    if (channels == 1) return Set::Store(to, sums[0]);
    for (std::uint32_t done = 0; done < channels; done += 2) {
        const std::uint32_t at = done + 2 > channels ? channels - 2 : done;
        Set::StorePair(to + at * sizeof(double), channels * sizeof(double), sums[at], sums[at + 1]);
    }
}

template <class Set>
typename Set::Vector Sum(const typename Set::Vector* inputs, const clMixTerms& terms) {
    typename Set::Vector sum = Set::Zero();
    for (const clMixTerm& term : terms) {
        if (term.position == 0) break;
        sum = Set::AddProduct(sum, inputs[term.position - 1], term.coefficient);
    }
    return sum;
}

// The frames that are left over at the end go by way of a vector's worth of memory.
template <class Set, std::uint32_t FromChannels>
void MixFrom(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from, std::size_t frames,
             const clMixTerms* rows) {
    constexpr std::size_t kFrames = Set::kFrames;
    constexpr std::size_t kFromBytes = FromChannels * sizeof(double);
    const std::size_t toBytes = toChannels * sizeof(double);
    const auto step = [=](std::uint8_t* target, const std::uint8_t* source) {
        typename Set::Vector inputs[kMixChannels], sums[kMixChannels];
        LoadChannels<Set, FromChannels>(source, inputs);
        for (std::uint32_t channel = 0; channel < toChannels; ++channel)
            sums[channel] = Sum<Set>(inputs, rows[channel]);
        StoreChannels<Set>(target, toChannels, sums);
    };
    for (; frames >= kFrames; frames -= kFrames, from += kFrames * kFromBytes, to += kFrames * toBytes)
        step(to, from);
    if (frames == 0) return;
    std::uint8_t source[kFrames * kFromBytes] = {}, target[kFrames * kMixChannels * sizeof(double)];
    std::memcpy(source, from, frames * kFromBytes);
    step(target, source);
    std::memcpy(to, target, frames * toBytes);
}

// The number of input channels decides on most of the work: each has a loop of its own.
template <class Set>
void MixFrames(std::uint8_t* to, std::uint32_t toChannels, const std::uint8_t* from,
               std::uint32_t fromChannels, std::size_t frames, const clMixTerms* rows) {
    constexpr decltype(&MixFrom<Set, 1>) kLoops[] = {MixFrom<Set, 1>, MixFrom<Set, 2>, MixFrom<Set, 3>,
                                                     MixFrom<Set, 4>, MixFrom<Set, 5>, MixFrom<Set, 6>,
                                                     MixFrom<Set, 7>, MixFrom<Set, 8>};
    kLoops[fromChannels - 1](to, toChannels, from, frames, rows);
}

}  // namespace
