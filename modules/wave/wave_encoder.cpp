#include "modules/wave/wave_encoder.h"

XString clWaveEncoder::Plan(const char16_t* settings, const QvFormatExtensible& format) {
    WaveSettings asked;
    clWaveFormat waveFormat;
    QvFormatExtensible written = format;
    mAudioBytes = 0;
    XString trouble = ParseWaveSettings(settings, &asked);
    if (trouble.IsEmpty()) trouble = waveFormat.TakeRecord(format);
    if (trouble.IsEmpty()) trouble = mDepth.Plan(asked.depth, written);
    if (trouble.IsEmpty() && mDepth.Changes()) trouble = waveFormat.TakeRecord(written);
    return trouble.IsEmpty() ? mHeader.Plan(waveFormat, asked.header) : trouble;
}

bool clWaveEncoder::Start() {
    const auto header = mHeader.MakeOpen();
    return mWriter.Append(header.data(), static_cast<std::uint32_t>(header.size())) || FailWriting();
}

bool clWaveEncoder::Consume(const std::uint8_t* data, std::uint32_t bytes) {
    if (mDepth.Changes()) {
        const clAudioBlock* const converted = mDepth.Convert(data, bytes);
        if (!converted) return Fail(u"there is not enough memory to go on");
        data = converted->data;
        bytes = converted->bytes;
    }
    mAudioBytes += bytes;
    return mWriter.Append(data, bytes) || FailWriting();
}

bool clWaveEncoder::Complete() {
    const clWaveFormat& format = mHeader.Format();
    const std::uint8_t padding = 0;
    if ((mAudioBytes & 1) != 0 && !mWriter.Append(&padding, 1)) return FailWriting();
    const auto header = mHeader.Make(mAudioBytes);
    if (!mWriter.Rewrite(0, header.data(), static_cast<std::uint32_t>(header.size()))) return FailWriting();
    const bool isWhole = !mDepth.IsWithinAFrame() && mAudioBytes % format.Head().nBlockAlign == 0;
    if (!format.IsPlain() || isWhole) return true;
    return Fail(u"its audio ends within a frame");
}
