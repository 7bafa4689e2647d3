#include "audio/sample_view.h"

namespace {

// Only float is told apart by its type: anything else, the logarithmic codes included, is read as integer by
// its bits.
SampleKind KindOf(bool isFloat, std::uint16_t bits) {
    if (isFloat) return bits == 64 ? SampleKind::Float64 : SampleKind::Float32;
    switch (bits) {
        case 8:
            return SampleKind::UInt8;
        case 16:
            return SampleKind::Int16;
        case 24:
            return SampleKind::Int24;
        case 32:
            return SampleKind::Int32;
        default:
            return SampleKind::None;
    }
}

}  // namespace

std::uint32_t BytesOf(SampleKind kind) {
    constexpr std::uint32_t kBytes[] = {2, 3, 1, 4, 4, 8};
    return kind == SampleKind::None ? 0 : kBytes[static_cast<std::size_t>(kind)];
}

clSampleView::clSampleView(const clAudioBlock& block)
    : data(block.data),
      channels(block.format->nChannels),
      sampleKind(KindOf(block.sampleType() == QV_FORMAT_FLOAT, block.format->wBitsPerSample)),
      containerBytes(block.BytesPerSample()) {}
