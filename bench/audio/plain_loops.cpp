#include "bench/audio/plain_loops.h"

#include <algorithm>
#include <cstdint>

namespace {

struct Three {
    std::uint8_t bytes[3];
};

std::int32_t Value(Three three) {
    const std::uint32_t low = three.bytes[0], middle = three.bytes[1], high = three.bytes[2];
    return static_cast<std::int32_t>(low << 8 | middle << 16 | high << 24) >> 8;
}

Three MakeThree(std::int32_t value) {
    return {{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
             static_cast<std::uint8_t>(value >> 16)}};
}

// Full scale of 32 bits, limited, towards zero.
template <typename Float>
std::int32_t Whole(Float value) {
    const double scaled = static_cast<double>(value) * 2147483648.0;
    return static_cast<std::int32_t>(std::clamp(scaled, -2147483648.0, 2147483647.0));
}

using I16 = std::int16_t;
using I32 = std::int32_t;

template <typename From, typename To, To (*One)(From)>
void Loop(void* __restrict to, const void* __restrict from, std::size_t count) {
    auto* const target = static_cast<To*>(to);
    const auto* const source = static_cast<const From*>(from);
    for (std::size_t i = 0; i < count; ++i) target[i] = One(source[i]);
}

constexpr float kOf16 = 1.0f / 32768;
constexpr float kOf32 = 1.0f / 2147483648.0f;

float FloatOf16(I16 x) {
    return static_cast<float>(x) * kOf16;
}
I16 Int16OfFloat(float x) {
    return static_cast<I16>(Whole(x) >> 16);
}
float FloatOf32(I32 x) {
    return static_cast<float>(x) * kOf32;
}
I32 Int32OfFloat(float x) {
    return Whole(x);
}
double DoubleOf16(I16 x) {
    return x / 32768.0;
}
I16 Int16OfDouble(double x) {
    return static_cast<I16>(Whole(x) >> 16);
}
I16 Int16Of24(Three x) {
    return static_cast<I16>(Value(x) >> 8);
}
I32 Int32Of24(Three x) {
    return static_cast<I32>(static_cast<std::uint32_t>(Value(x)) << 8);
}
float FloatOf24(Three x) {
    return static_cast<float>(Value(x)) * (1.0f / 8388608);
}
Three Int24Of16(I16 x) {
    return MakeThree(x * 256);
}
Three Int24Of32(I32 x) {
    return MakeThree(x >> 8);
}
Three Int24OfFloat(float x) {
    return MakeThree(Whole(x) >> 8);
}

struct Row {
    SampleKind from;
    SampleKind to;
    PlainLoop* loop;
};

constexpr Row kRows[] = {
    {SampleKind::Int16, SampleKind::Float32, Loop<I16, float, FloatOf16>},
    {SampleKind::Float32, SampleKind::Int16, Loop<float, I16, Int16OfFloat>},
    {SampleKind::Int32, SampleKind::Float32, Loop<I32, float, FloatOf32>},
    {SampleKind::Float32, SampleKind::Int32, Loop<float, I32, Int32OfFloat>},
    {SampleKind::Int16, SampleKind::Float64, Loop<I16, double, DoubleOf16>},
    {SampleKind::Float64, SampleKind::Int16, Loop<double, I16, Int16OfDouble>},
    {SampleKind::Int24, SampleKind::Int16, Loop<Three, I16, Int16Of24>},
    {SampleKind::Int24, SampleKind::Int32, Loop<Three, I32, Int32Of24>},
    {SampleKind::Int24, SampleKind::Float32, Loop<Three, float, FloatOf24>},
    {SampleKind::Int16, SampleKind::Int24, Loop<I16, Three, Int24Of16>},
    {SampleKind::Int32, SampleKind::Int24, Loop<I32, Three, Int24Of32>},
    {SampleKind::Float32, SampleKind::Int24, Loop<float, Three, Int24OfFloat>},
};

}  // namespace

PlainLoop* FindPlainLoop(SampleKind from, SampleKind to) {
    for (const Row& row : kRows)
        if (row.from == from && row.to == to) return row.loop;
    return nullptr;
}
