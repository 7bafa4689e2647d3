// The loops in ordinary C++, one sample at a time: what the other forms are held against, and short enough to
// be read beside the rules in depth.h and sample_values.h.
#include "audio/sample_loops_of.h"

namespace {

constexpr double kFullScale = 2147483648.0;

template <class Value>
Value Get(const std::uint8_t* from) {
    Value value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <class Value>
void Put(std::uint8_t* to, Value value) {
    std::memcpy(to, &value, sizeof value);
}

// Toward zero; beyond either end the end, and 0 for what is no number.
std::int32_t Truncate(double value, double low, double high) {
    if (value != value) return 0;
    const double least = value > low ? value : low;
    return static_cast<std::int32_t>(least < high ? least : high);
}

struct Plain {
    static constexpr std::size_t kLanes = 1;

    static std::int32_t LoadInt16(const std::uint8_t* from) { return Get<std::int16_t>(from) * 65536; }
    static std::int32_t LoadInt24(const std::uint8_t* from) {
        return (Get<std::int8_t>(from + 2) * 16777216) | (from[1] << 16) | (from[0] << 8);
    }
    static std::int32_t LoadUInt8(const std::uint8_t* from) { return (*from - 128) * 16777216; }
    static std::int32_t LoadInt32(const std::uint8_t* from) { return Get<std::int32_t>(from); }
    template <bool>
    static std::int32_t LoadFloat32(const std::uint8_t* from) {
        return Truncate(Get<float>(from) * kFullScale, -kFullScale, kFullScale - 1);
    }
    static std::int32_t LoadFloat64(const std::uint8_t* from) {
        return Truncate(Get<double>(from) * kFullScale, -kFullScale, kFullScale - 1);
    }

    static void StoreInt16(std::uint8_t* to, std::int32_t x) { Put(to, static_cast<std::int16_t>(x >> 16)); }
    static void StoreInt24(std::uint8_t* to, std::int32_t x) {
        to[0] = static_cast<std::uint8_t>(x >> 8);
        to[1] = static_cast<std::uint8_t>(x >> 16);
        to[2] = static_cast<std::uint8_t>(x >> 24);
    }
    static void StoreUInt8(std::uint8_t* to, std::int32_t x) {
        *to = static_cast<std::uint8_t>((x >> 24) + 128);
    }
    static void StoreInt32(std::uint8_t* to, std::int32_t x) { Put(to, x); }
    static void StoreFloat32(std::uint8_t* to, std::int32_t x) {
        Put(to, static_cast<float>(x / kFullScale));
    }
    static void StoreFloat64(std::uint8_t* to, std::int32_t x) { Put(to, x / kFullScale); }

    template <int Bits>
    static std::int32_t Round(const std::uint8_t* from) {
        constexpr double kScale = std::uint32_t{1} << (Bits - 1);
        const double value = Get<double>(from);
        const double moved = value * kScale + (value > 0 ? 0.5 : -0.5);
        const auto rounded = static_cast<std::uint32_t>(Truncate(moved, -kScale, kScale - 1));
        return static_cast<std::int32_t>(rounded << (32 - Bits));
    }

    static void Widen(std::uint8_t* to, const std::uint8_t* from) { Put<double>(to, Get<float>(from)); }
    static void Narrow(std::uint8_t* to, const std::uint8_t* from) {
        Put(to, static_cast<float>(Get<double>(from)));
    }
};

}  // namespace

constinit const SampleLoops kPlainSampleLoops = SampleLoopsOf<Plain>();
