// Slow twins of what changes samples: one sample at a time, each rule written out as it is told, in wider
// numbers where the rule knows no end. And samples to hold them against, which meet every corner.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "audio/sample_view.h"

namespace twin {

using Bytes = std::vector<std::uint8_t>;

inline const SampleKind kKinds[] = {SampleKind::Int16, SampleKind::Int24,   SampleKind::UInt8,
                                    SampleKind::Int32, SampleKind::Float32, SampleKind::Float64};
inline const char* NameOf(SampleKind kind) {
    static const char* const names[] = {"16 bits", "24 bits", "8 bits", "32 bits", "float", "double"};
    return kind == SampleKind::None ? "no kind" : names[static_cast<int>(kind)];
}
inline bool IsFloat(SampleKind kind) {
    return kind == SampleKind::Float32 || kind == SampleKind::Float64;
}
inline std::uint16_t BitsOf(SampleKind kind) {
    return static_cast<std::uint16_t>(8 * BytesOf(kind));
}

// The number that is stored, in its own units.
inline double StoredValue(const std::uint8_t* at, SampleKind kind) {
    if (kind == SampleKind::Float64) {
        double value;
        std::memcpy(&value, at, 8);
        return value;
    }
    if (kind == SampleKind::Float32) {
        float value;
        std::memcpy(&value, at, 4);
        return value;
    }
    if (kind == SampleKind::UInt8) return at[0] - 128.0;
    double value = 0, unit = 1;
    for (std::uint32_t i = 0; i < BytesOf(kind); ++i, unit *= 256) value += at[i] * unit;
    return value >= unit / 2 ? value - unit : value;
}

inline double HalfRange(SampleKind kind) {
    return std::ldexp(1.0, BitsOf(kind) - 1);
}

inline void StoreInteger(std::uint8_t* at, std::int64_t value, SampleKind kind) {
    if (kind == SampleKind::UInt8) value += 128;
    for (std::uint32_t i = 0; i < BytesOf(kind); ++i) at[i] = static_cast<std::uint8_t>(value >> (8 * i));
}
inline void StoreFloat(std::uint8_t* at, double value, SampleKind kind) {
    const auto narrow = static_cast<float>(value);
    kind == SampleKind::Float64 ? std::memcpy(at, &value, 8) : std::memcpy(at, &narrow, 4);
}

// The depth stage.
inline void ConvertOne(std::uint8_t* to, SampleKind toKind, const std::uint8_t* from, SampleKind fromKind) {
    double value = fromKind == SampleKind::None ? 0.0 : StoredValue(from, fromKind);
    value *= IsFloat(fromKind) ? 2147483648.0 : std::ldexp(1.0, 32 - BitsOf(fromKind));
    if (std::isnan(value)) value = 0;
    value = std::fmax(std::fmin(std::trunc(value), 2147483647.0), -2147483648.0);
    value += 0.0;  // no integer is -0
    if (IsFloat(toKind)) return StoreFloat(to, value * 4.656612873077393e-10, toKind);
    StoreInteger(to, static_cast<std::int64_t>(std::floor(std::ldexp(value, BitsOf(toKind) - 32))), toKind);
}

// The values that channels are mixed and rates changed with.
inline double ReadOne(const std::uint8_t* from, SampleKind kind) {
    if (kind == SampleKind::None) return 0;
    const double value = StoredValue(from, kind);
    return IsFloat(kind) ? value : value / HalfRange(kind);
}
inline void WriteOne(std::uint8_t* to, double value, SampleKind kind) {
    if (IsFloat(kind)) return StoreFloat(to, value, kind);
    const double half = HalfRange(kind);
    double moved = value * half;
    moved += value > 0 ? 0.5 : -0.5;
    const double whole = std::isnan(moved) ? 0.0 : std::trunc(moved);
    StoreInteger(to, static_cast<std::int64_t>(std::fmax(std::fmin(whole, half - 1), -half)), kind);
}

// Doubles at and beside everything that matters: halves of every depth and their neighbours, both ends, what
// is too small, too large or no number.
inline std::vector<double> Corners() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    std::vector<double> corners = {0.0, 1.0, 1.5, kInfinity, 1e300, 1e-310, 4.9e-324, 0.1, 0.5, 9.3e18, 1e10};
    for (const int bits : {7, 15, 23, 31})
        for (const double steps :
             {0.25, 0.49999999999999994, 0.5, 0.75, 1.0, 1.5, 2.5, 100.5, 127.5, 126.5, 128.5})
            corners.push_back(std::ldexp(steps, -bits)), corners.push_back(1.0 - std::ldexp(steps, -bits));
    const std::size_t count = corners.size();
    for (std::size_t i = 0; i < count; ++i)
        for (const double end : {-kInfinity, kInfinity}) corners.push_back(std::nextafter(corners[i], end));
    const std::size_t positive = corners.size();
    for (std::size_t i = 0; i < positive; ++i) corners.push_back(-corners[i]);
    corners.push_back(std::numeric_limits<double>::quiet_NaN());
    return corners;
}

// Samples of a kind, corners first, then some within and around full scale, then any bits at all.
inline Bytes Samples(SampleKind kind, std::size_t count, std::uint32_t seed) {
    static const std::vector<double> corners = Corners();
    std::mt19937_64 random(seed);
    const std::size_t width = BytesOf(kind);
    Bytes samples(count * width);
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t* const at = samples.data() + i * width;
        const std::uint64_t bits = random();
        const double some = static_cast<double>(static_cast<std::int64_t>(bits)) * 0x1.4p-63;
        std::memcpy(at, &bits, width);
        if (i < corners.size())
            WriteOne(at, corners[i], kind);
        else if (i % 2 == 0)
            WriteOne(at, some, kind);
    }
    return samples;
}

// A hash of bytes, for what has to be the same everywhere (FNV-1a).
inline std::uint64_t Digest(const Bytes& bytes, std::uint64_t seed = 0xCBF29CE484222325) {
    for (const std::uint8_t byte : bytes) seed = (seed ^ byte) * 0x100000001B3;
    return seed;
}

}  // namespace twin
