#include "audio/depth.h"

bool ConvertDepth(clAudioBlock& dest, const clAudioBlock& src, std::uint32_t bits, bool toFloat) {
    const std::uint32_t type = toFloat ? QV_FORMAT_FLOAT : QV_FORMAT_PCM;
    if (src.format->wBitsPerSample != bits || src.sampleType() != type) return false;
    return dest.CopyFrom(src);
}
