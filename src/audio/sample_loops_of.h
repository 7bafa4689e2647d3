// SampleLoopsOf<Set>(): the table of loops of one instruction set, for the source that defines the set.
//
// A set says how `kLanes` samples are loaded and stored, each by way of X, which holds them as 32-bit integers:
//
//     LoadInt16 ... LoadFloat64(from)        samples as X; floats truncated and limited
//     LoadFloat32<narrowed>(from)            of which, when so, only the upper 24 bits are wanted
//     StoreInt16 ... StoreFloat64(to, x)     X as samples; integers shifted down
//     Round<Bits>(from)                      doubles as X, rounded and limited to so many bits, at its upper end
//     Widen(to, from), Narrow(to, from)      floats and doubles, as they are
//
// All pairs follow from these: no pair is faster than its own load and store. Everything here is unnamed, so
// that each source has its own, compiled for its set.
#pragma once

#include <algorithm>
#include <cstring>

#include "audio/sample_loops.h"

namespace {

template <SampleKind Kind>
inline constexpr std::size_t kWidth = 0;
template <>
inline constexpr std::size_t kWidth<SampleKind::Int16> = 2;
template <>
inline constexpr std::size_t kWidth<SampleKind::Int24> = 3;
template <>
inline constexpr std::size_t kWidth<SampleKind::UInt8> = 1;
template <>
inline constexpr std::size_t kWidth<SampleKind::Int32> = 4;
template <>
inline constexpr std::size_t kWidth<SampleKind::Float32> = 4;
template <>
inline constexpr std::size_t kWidth<SampleKind::Float64> = 8;

// A target that keeps 24 bits at most asks less of a float's limit.
template <class Set, SampleKind Kind, SampleKind To>
auto Load(const std::uint8_t* from) {
    constexpr bool kIsNarrowed =
        To == SampleKind::Int16 || To == SampleKind::Int24 || To == SampleKind::UInt8;
    if constexpr (Kind == SampleKind::Int16) return Set::LoadInt16(from);
    if constexpr (Kind == SampleKind::Int24) return Set::LoadInt24(from);
    if constexpr (Kind == SampleKind::UInt8) return Set::LoadUInt8(from);
    if constexpr (Kind == SampleKind::Int32) return Set::LoadInt32(from);
    if constexpr (Kind == SampleKind::Float32) return Set::template LoadFloat32<kIsNarrowed>(from);
    if constexpr (Kind == SampleKind::Float64) return Set::LoadFloat64(from);
}

template <class Set, SampleKind Kind, class X>
void Store(std::uint8_t* to, X x) {
    if constexpr (Kind == SampleKind::Int16) Set::StoreInt16(to, x);
    if constexpr (Kind == SampleKind::Int24) Set::StoreInt24(to, x);
    if constexpr (Kind == SampleKind::UInt8) Set::StoreUInt8(to, x);
    if constexpr (Kind == SampleKind::Int32) Set::StoreInt32(to, x);
    if constexpr (Kind == SampleKind::Float32) Set::StoreFloat32(to, x);
    if constexpr (Kind == SampleKind::Float64) Set::StoreFloat64(to, x);
}

template <class Set, SampleKind From, SampleKind To>
struct Convert {
    static constexpr std::size_t kFrom = kWidth<From>, kTo = kWidth<To>;
    static void Do(std::uint8_t* to, const std::uint8_t* from) {
        Store<Set, To>(to, Load<Set, From, To>(from));
    }
};

template <class Set, SampleKind To>
struct Round {
    static constexpr std::size_t kFrom = sizeof(double), kTo = kWidth<To>;
    static void Do(std::uint8_t* to, const std::uint8_t* from) {
        Store<Set, To>(to, Set::template Round<static_cast<int>(8 * kTo)>(from));
    }
};

template <class Set>
struct Widen {
    static constexpr std::size_t kFrom = sizeof(float), kTo = sizeof(double);
    static void Do(std::uint8_t* to, const std::uint8_t* from) { Set::Widen(to, from); }
};

template <class Set>
struct Narrow {
    static constexpr std::size_t kFrom = sizeof(double), kTo = sizeof(float);
    static void Do(std::uint8_t* to, const std::uint8_t* from) { Set::Narrow(to, from); }
};

// Fewer samples than a vector holds go by way of a vector's worth of memory.
template <class Set, class Step>
void RunShort(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    std::uint8_t source[Set::kLanes * sizeof(double)] = {}, target[Set::kLanes * sizeof(double)];
    std::memcpy(source, from, count * Step::kFrom);
    Step::Do(target, source);
    std::memcpy(to, target, count * Step::kTo);
}

constexpr std::size_t kLine = 64;

// How many samples lead to an address where no vector is stored across two cache lines; as many as a vector
// holds where it stands at one already, or where there is none.
template <class Set, class Step>
std::size_t LeadIn(const std::uint8_t* to) {
    const std::size_t bytes = (kLine - reinterpret_cast<std::uintptr_t>(to) % kLine) % kLine;
    const std::size_t samples = bytes % Step::kTo == 0 ? bytes / Step::kTo % Set::kLanes : 0;
    return samples == 0 ? Set::kLanes : samples;
}

// What the nearest cache doesn't hold is asked for ahead, in groups of samples that fill whole lines.
constexpr std::size_t kNearCache = std::size_t{1} << 15;  // bytes
constexpr std::size_t kAhead = 2048;                      // bytes
constexpr std::size_t kGroup = 64;                        // samples

template <class Set, class Step>
void DoGroup(std::uint8_t* to, const std::uint8_t* from) {
    for (std::size_t line = 0; line < Step::kFrom; ++line) __builtin_prefetch(from + kAhead + line * kLine);
    for (std::size_t line = 0; line < Step::kTo; ++line) __builtin_prefetch(to + kAhead + line * kLine, 1);
    for (std::size_t i = 0; i < kGroup; i += Set::kLanes)
        Step::Do(to + i * Step::kTo, from + i * Step::kFrom);
}

// The first and the last vector are stored over others: what they share they store twice alike.
template <class Set, class Step>
void Run(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    constexpr std::size_t kLanes = Set::kLanes;
    if constexpr (kLanes > 1) {
        if (count < kLanes) {
            if (count > 0) RunShort<Set, Step>(to, from, count);
            return;
        }
        Step::Do(to, from);
        const std::size_t end = count - kLanes;
        std::size_t i = LeadIn<Set, Step>(to);
        constexpr std::size_t kSamplesAhead = kAhead / std::min(Step::kFrom, Step::kTo) + kGroup;
        if (count * (Step::kFrom + Step::kTo) >= kNearCache)
            for (; i + kSamplesAhead < end; i += kGroup)
                DoGroup<Set, Step>(to + i * Step::kTo, from + i * Step::kFrom);
        for (; i < end; i += kLanes) Step::Do(to + i * Step::kTo, from + i * Step::kFrom);
        Step::Do(to + end * Step::kTo, from + end * Step::kFrom);
    } else {
        for (std::size_t i = 0; i < count; ++i) Step::Do(to + i * Step::kTo, from + i * Step::kFrom);
    }
}

template <class Set, SampleKind From>
constexpr void FillRow(SampleLoops::Loop* (&row)[kSampleKinds]) {
    row[0] = Run<Set, Convert<Set, From, SampleKind::Int16>>;
    row[1] = Run<Set, Convert<Set, From, SampleKind::Int24>>;
    row[2] = Run<Set, Convert<Set, From, SampleKind::UInt8>>;
    row[3] = Run<Set, Convert<Set, From, SampleKind::Int32>>;
    row[4] = Run<Set, Convert<Set, From, SampleKind::Float32>>;
    row[5] = Run<Set, Convert<Set, From, SampleKind::Float64>>;
}

template <class Set>
constexpr SampleLoops SampleLoopsOf() {
    SampleLoops loops = {};
    FillRow<Set, SampleKind::Int16>(loops.convert[0]);
    FillRow<Set, SampleKind::Int24>(loops.convert[1]);
    FillRow<Set, SampleKind::UInt8>(loops.convert[2]);
    FillRow<Set, SampleKind::Int32>(loops.convert[3]);
    FillRow<Set, SampleKind::Float32>(loops.convert[4]);
    FillRow<Set, SampleKind::Float64>(loops.convert[5]);
    loops.round[0] = Run<Set, Round<Set, SampleKind::Int16>>;
    loops.round[1] = Run<Set, Round<Set, SampleKind::Int24>>;
    loops.round[2] = Run<Set, Round<Set, SampleKind::UInt8>>;
    loops.round[3] = Run<Set, Round<Set, SampleKind::Int32>>;
    loops.widen = Run<Set, Widen<Set>>;
    loops.narrow = Run<Set, Narrow<Set>>;
    return loops;
}

}  // namespace
