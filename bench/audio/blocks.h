// Blocks of samples for the races of depth and mixing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "audio/audio_block.h"
#include "audio/sample_view.h"

struct SampleType {
    const char* name;
    std::uint16_t bits;
    bool isFloat;
    SampleKind kind;
};

inline constexpr SampleType kInt16{"16", 16, false, SampleKind::Int16};
inline constexpr SampleType kInt24{"24", 24, false, SampleKind::Int24};
inline constexpr SampleType kInt32{"32", 32, false, SampleKind::Int32};
inline constexpr SampleType kFloat32{"f32", 32, true, SampleKind::Float32};
inline constexpr SampleType kFloat64{"f64", 64, true, SampleKind::Float64};

QvFormat FormatOf(const SampleType& type, std::uint16_t channels);
// A block of noise within 0.9 of full scale, the same on every run.
void FillWithNoise(clAudioBlock& block, const SampleType& type, std::uint16_t channels, std::uint32_t frames);
// The same samples without a block around them.
std::vector<double> Values(const void* samples, std::size_t count, SampleKind kind);
// Where two runs of samples part by more than `tolerance` of full scale, in words; nothing where they agree.
std::string Difference(const std::vector<double>& a, const std::vector<double>& b, double tolerance);
