#include "modules/wave/wave_encoder.h"

XString clWaveEncoder::Plan(const char16_t* settings, const QvFormatExtensible& format) {
    WaveHeader header{};
    clWaveFormat waveFormat;
    mAudioBytes = 0;
    XString trouble = ParseWaveSettings(settings, &header);
    if (trouble.IsEmpty()) trouble = waveFormat.TakeRecord(format);
    return trouble.IsEmpty() ? mHeader.Plan(waveFormat, header) : trouble;
}

bool clWaveEncoder::Start() {
    const auto header = mHeader.MakeOpen();
    return mWriter.Append(header.data(), static_cast<std::uint32_t>(header.size())) || FailWriting();
}

bool clWaveEncoder::Consume(const std::uint8_t* data, std::uint32_t bytes) {
    mAudioBytes += bytes;
    return mWriter.Append(data, bytes) || FailWriting();
}

bool clWaveEncoder::Complete() {
    const clWaveFormat& format = mHeader.Format();
    const std::uint8_t padding = 0;
    if ((mAudioBytes & 1) != 0 && !mWriter.Append(&padding, 1)) return FailWriting();
    const auto header = mHeader.Make(mAudioBytes);
    if (!mWriter.Rewrite(0, header.data(), static_cast<std::uint32_t>(header.size()))) return FailWriting();
    if (!format.IsPlain() || mAudioBytes % format.Head().nBlockAlign == 0) return true;
    return Fail(u"its audio ends within a frame");
}
