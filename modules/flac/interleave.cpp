// A loop for each size of a sample, with one and two channels unrolled: those two are nearly all music, and a
// frame of two channels then goes out in one store. The bytes of a number in memory are taken as little-endian.
#include "modules/flac/interleave.h"

#include <bit>
#include <cstring>

static_assert(std::endian::native == std::endian::little);

namespace {

template <unsigned bytes>
std::uint64_t Sample(std::int32_t number, std::uint32_t shift) {
    std::uint32_t bits = static_cast<std::uint32_t>(number) << shift;
    if constexpr (bytes == 1) bits ^= 0x80;
    if constexpr (bytes < 4) bits &= (1u << (8 * bytes)) - 1;
    return bits;
}

template <unsigned bytes>
void InterleaveMono(const std::int32_t* row, std::uint32_t frames, std::uint32_t shift, std::uint8_t* to) {
    for (std::uint32_t i = 0; i < frames; ++i, to += bytes) {
        const std::uint64_t frame = Sample<bytes>(row[i], shift);
        std::memcpy(to, &frame, bytes);
    }
}

template <unsigned bytes>
void InterleaveStereo(const std::int32_t* left, const std::int32_t* right, std::uint32_t frames,
                      std::uint32_t shift, std::uint8_t* to) {
    for (std::uint32_t i = 0; i < frames; ++i, to += 2 * bytes) {
        const std::uint64_t frame = Sample<bytes>(left[i], shift) | Sample<bytes>(right[i], shift)
                                                                        << (8 * bytes);
        std::memcpy(to, &frame, 2 * bytes);
    }
}

template <unsigned bytes>
void InterleaveAny(const std::int32_t* const rows[], std::uint32_t first, std::uint32_t frames,
                   const clSampleShape& shape, std::uint8_t* to) {
    if (shape.channels == 1) return InterleaveMono<bytes>(rows[0] + first, frames, shape.shift, to);
    if (shape.channels == 2)
        return InterleaveStereo<bytes>(rows[0] + first, rows[1] + first, frames, shape.shift, to);
    for (std::uint32_t i = first; i < first + frames; ++i)
        for (std::uint32_t channel = 0; channel < shape.channels; ++channel, to += bytes) {
            const std::uint64_t sample = Sample<bytes>(rows[channel][i], shape.shift);
            std::memcpy(to, &sample, bytes);
        }
}

}  // namespace

void Interleave(const std::int32_t* const rows[], std::uint32_t first, std::uint32_t frames,
                const clSampleShape& shape, std::uint8_t* to) {
    constexpr decltype(&InterleaveAny<1>) kBySize[] = {InterleaveAny<1>, InterleaveAny<2>, InterleaveAny<3>,
                                                       InterleaveAny<4>};
    kBySize[shape.bytes - 1](rows, first, frames, shape, to);
}
