// A sample is taken to the top of 32 bits first, where one arithmetic serves every depth: one step of the format
// is a power of two there, and all that differs is how many bytes of it are stored.
#include "modules/support/sample_format.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "foundation/joined.h"
#include "modules/support/little_endian.h"
#include "modules/support/property_text.h"

namespace {

bool IsExtensible(const QvFormat& head) {
    return head.wFormatTag == QV_FORMAT_EXTENSIBLE && head.cbSize >= 22;
}

std::uint32_t TypeOf(const QvFormatExtensible& format) {
    return IsExtensible(format.Format) ? Get16(format.SubFormat) : format.Format.wFormatTag;
}

bool IsKnown(std::uint32_t type, std::uint32_t bits) {
    if (type == QV_FORMAT_FLOAT) return bits == 32 || bits == 64;
    return type == QV_FORMAT_PCM && (bits == 8 || bits == 16 || bits == 24 || bits == 32);
}

// How integers of so many bits are stored.
template <std::uint32_t bits>
struct Stored {
    static constexpr std::size_t kBytes = bits / 8;
    static constexpr std::uint32_t kBias = bits == 8 ? 0x80000000 : 0;

    static std::int32_t Get(const std::uint8_t* sample) {
        std::uint32_t top = 0;
        for (std::size_t i = 0; i < kBytes; ++i) top |= std::uint32_t{sample[i]} << (32 - bits + 8 * i);
        return static_cast<std::int32_t>(top ^ kBias);
    }
    static void Put(std::uint8_t* sample, std::int32_t value) {
        const std::uint32_t top = static_cast<std::uint32_t>(value) ^ kBias;
        for (std::size_t i = 0; i < kBytes; ++i)
            sample[i] = static_cast<std::uint8_t>(top >> (32 - bits + 8 * i));
    }
};

template <std::uint32_t bits>
void GetAll(std::span<const std::uint8_t> samples, std::int32_t* to) {
    for (std::size_t at = 0; at < samples.size(); at += Stored<bits>::kBytes)
        *to++ = Stored<bits>::Get(&samples[at]);
}

template <std::uint32_t bits>
void MultiplyIntegers(std::span<std::uint8_t> samples, double factor, std::uint32_t validBits) {
    const double step = std::ldexp(1.0, static_cast<int>(32 - validBits));
    for (std::size_t at = 0; at + Stored<bits>::kBytes <= samples.size(); at += Stored<bits>::kBytes) {
        const double product = Stored<bits>::Get(&samples[at]) * factor;
        const double nearest = std::round(product / step) * step;
        Stored<bits>::Put(&samples[at],
                          static_cast<std::int32_t>(std::clamp(nearest, -0x1p31, 0x1p31 - step)));
    }
}

// What is no number, or endless, stays so.
template <class Float, class Bits>
void MultiplyFloats(std::span<std::uint8_t> samples, double factor) {
    constexpr double kLargest = std::numeric_limits<Float>::max();
    for (std::size_t at = 0; at + sizeof(Float) <= samples.size(); at += sizeof(Float)) {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < sizeof(Float); ++i) bits |= std::uint64_t{samples[at + i]} << (8 * i);
        const Float sample = std::bit_cast<Float>(static_cast<Bits>(bits));
        if (!std::isfinite(sample)) continue;
        const auto product = static_cast<Float>(std::clamp(sample * factor, -kLargest, kLargest));
        PutNumber(&samples[at], std::bit_cast<Bits>(product));
    }
}

}  // namespace

XString TakeSampleFormat(const QvFormatExtensible& format, const char16_t* done, clSampleFormat* samples) {
    const QvFormat& head = format.Format;
    const std::uint32_t type = TypeOf(format);
    if (!IsKnown(type, head.wBitsPerSample)) {
        return Joined({u"samples of type ", NumberText(type).Text(), u" with ",
                       NumberText(head.wBitsPerSample).Text(), u" bits can't be ", done});
    }
    if (head.nSamplesPerSec == 0) return Joined({u"a sample rate of 0 can't be ", done});
    if (head.nChannels == 0) return Joined({u"0 channels can't be ", done});
    samples->rate = head.nSamplesPerSec;
    samples->channels = head.nChannels;
    samples->bits = head.wBitsPerSample;
    samples->isFloat = type == QV_FORMAT_FLOAT;
    samples->mask = IsExtensible(head) ? format.dwChannelMask : 0;
    const std::uint32_t validBits = IsExtensible(head) ? format.wValidBitsPerSample : 0;
    samples->validBits = validBits > 0 && validBits < samples->bits ? validBits : samples->bits;
    return XString();
}

double clSampleFormat::FloatAt(const std::uint8_t* sample) const {
    if (bits == 64) return std::bit_cast<double>(Get64(sample));
    return std::bit_cast<float>(Get32(sample));
}

void clSampleFormat::TakeIntegers(std::span<const std::uint8_t> samples, std::int32_t* to) const {
    switch (bits) {
        case 8:
            return GetAll<8>(samples, to);
        case 16:
            return GetAll<16>(samples, to);
        case 24:
            return GetAll<24>(samples, to);
        default:
            return GetAll<32>(samples, to);
    }
}

void clSampleFormat::Multiply(std::span<std::uint8_t> samples, double factor) const {
    if (factor == 1) return;
    if (isFloat && bits == 64) return MultiplyFloats<double, std::uint64_t>(samples, factor);
    if (isFloat) return MultiplyFloats<float, std::uint32_t>(samples, factor);
    switch (bits) {
        case 8:
            return MultiplyIntegers<8>(samples, factor, validBits);
        case 16:
            return MultiplyIntegers<16>(samples, factor, validBits);
        case 24:
            return MultiplyIntegers<24>(samples, factor, validBits);
        default:
            return MultiplyIntegers<32>(samples, factor, validBits);
    }
}
