// Samples are relabelled without being looked at where the depth stays and only the type differs: A-law bytes
// asked for as 8-bit PCM are read as integers like any others and come out unchanged, not expanded.
#include "audio/depth.h"

#include <cstring>

#include "audio/sample_loops.h"
#include "audio/sample_view.h"

namespace {

bool IsFloatDepth(std::uint32_t bits) {
    return bits == 32 || bits == 64;
}

// The record of the result but for its type, which is set last. False without memory for all of it.
bool SetDepth(clAudioBlock& dest, const clAudioBlock& src, std::uint32_t bits) {
    clFormatHolder record;
    const bool whole = record.setFormat(src.format);
    record.SetBits(static_cast<std::uint16_t>(bits));
    return dest.setFormat(record.format) && whole;
}

// A record without channels has frames of nothing.
bool Reserve(clAudioBlock& dest, std::uint64_t samples) {
    const std::uint64_t needed = samples * dest.BytesPerSample();
    if (!dest.reserveToWrite(needed)) return false;
    dest.bytes = static_cast<std::uint32_t>(needed);
    return true;
}

// What can't be read or can't be written is silence.
void ConvertSamples(clAudioBlock& dest, const clSampleView& from, std::size_t samples) {
    const clSampleView to(dest);
    if (to.sampleKind == SampleKind::None || from.sampleKind == SampleKind::None) {
        std::memset(dest.data, to.sampleKind == SampleKind::UInt8 ? 128 : 0, dest.bytes);
        return;
    }
    const auto source = static_cast<std::size_t>(from.sampleKind);
    const auto target = static_cast<std::size_t>(to.sampleKind);
    kSampleLoops.InUse()->convert[source][target](dest.data, from.data, samples);
}

}  // namespace

bool CanConvertDepth(const clAudioBlock& src, std::uint32_t bits) {
    if (src.format->wBitsPerSample == bits) return true;
    const bool isFloat = src.sampleType() == QV_FORMAT_FLOAT;
    if (!isFloat && src.sampleType() != QV_FORMAT_PCM) return false;
    return bits == 8 || bits == 16 || bits == 24 || bits == 32 || (isFloat && bits == 64);
}

bool ConvertDepth(clAudioBlock& dest, const clAudioBlock& src, std::uint32_t bits, bool toFloat) {
    const std::uint32_t type = toFloat ? QV_FORMAT_FLOAT : QV_FORMAT_PCM;
    if (src.format->wBitsPerSample == bits && src.sampleType() == type) return dest.CopyFrom(src);
    const clSampleView from(src);
    if (!CanConvertDepth(src, bits) || !from.Fits() || (toFloat && !IsFloatDepth(bits))) return false;
    const std::uint64_t samples = std::uint64_t{src.format->nChannels} * src.frames();
    if (!SetDepth(dest, src, bits) || !Reserve(dest, samples)) return false;
    dest.SetType(toFloat);
    ConvertSamples(dest, from, static_cast<std::size_t>(samples));
    return true;
}
