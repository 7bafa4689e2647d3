#include "modules/wave/wave_depth.h"

#include "audio/depth.h"
#include "audio/format_record.h"

namespace {

struct Samples {
    std::uint16_t bits;
    bool isFloat;
};

// By WaveDepth.
constexpr Samples kSamples[] = {{0, false},  {8, false}, {16, false}, {24, false},
                                {32, false}, {32, true}, {64, true}};

}  // namespace

XString clWaveDepth::Plan(WaveDepth depth, QvFormatExtensible& format) {
    mWaiting.Clear();
    mChanges = false;
    if (depth == WaveDepth::source) return XString();
    clFormatHolder source;
    TakeFormat(source, &format);
    const std::uint32_t type = source.sampleType();
    if (type != QV_FORMAT_PCM && type != QV_FORMAT_FLOAT)
        return XString(u"coded audio has no depth to change");
    mBits = kSamples[static_cast<std::size_t>(depth)].bits;
    mToFloat = kSamples[static_cast<std::size_t>(depth)].isFloat;
    if (source.format->wBitsPerSample == mBits && (type == QV_FORMAT_FLOAT) == mToFloat) return XString();
    clAudioBlock nothing;
    nothing.Borrow(nullptr, 0, source.format);
    if (!ConvertDepth(mConverted, nothing, mBits, mToFloat))
        return XString(u"integers can't become float of 64 bits, only of 32");
    mWaiting.setFormat(source.format);
    source.SetBits(mBits);
    source.SetType(mToFloat);
    GiveFormat(source, &format);
    if (source.IsExtensible()) format.wValidBitsPerSample = mBits;
    mChanges = true;
    return XString();
}

const clAudioBlock* clWaveDepth::Convert(const std::uint8_t* data, std::uint32_t bytes) {
    clAudioBlock block;
    block.Borrow(data, bytes, mWaiting.format);
    if (!mWaiting.Append(block, true)) return nullptr;
    const std::uint32_t cut = mWaiting.held() % mWaiting.format->nBlockAlign;
    const bool done = ConvertDepth(mConverted, mWaiting.Take(mWaiting.held() - cut), mBits, mToFloat);
    return done && mWaiting.Own(0) ? &mConverted : nullptr;
}
