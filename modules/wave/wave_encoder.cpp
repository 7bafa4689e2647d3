#include "modules/wave/wave_encoder.h"

#include "foundation/joined.h"

bool clWaveEncoder::Begin(const char16_t* file, const char16_t* settings, const QvFormatExtensible& format) {
    mWriter.Close();
    mPath = file;
    mAudioBytes = 0;
    mGood = true;
    const XString trouble = Plan(settings, format);
    if (!trouble.IsEmpty()) return Fail(trouble.Text());
    if (!mWriter.Create(file))
        return Fail(
            Joined({u"can't be created (error ", XString::FromUInt64(mWriter.Error()).Text(), u")"}).Text());
    const auto header = mHeader.MakeOpen();
    return mWriter.Append(header.data(), static_cast<std::uint32_t>(header.size())) || FailWriting();
}

XString clWaveEncoder::Plan(const char16_t* settings, const QvFormatExtensible& format) {
    WaveHeader header{};
    clWaveFormat waveFormat;
    XString trouble = ParseWaveSettings(settings, &header);
    if (trouble.IsEmpty()) trouble = waveFormat.TakeRecord(format);
    return trouble.IsEmpty() ? mHeader.Plan(waveFormat, header) : trouble;
}

bool clWaveEncoder::Encode(const std::uint8_t* data, std::uint32_t bytes) {
    if (!mGood) return false;
    if (bytes == 0) return true;
    mAudioBytes += bytes;
    return mWriter.Append(data, bytes) || FailWriting();
}

bool clWaveEncoder::End() {
    const bool complete = mGood && Complete();
    if (!mWriter.Close() && complete) FailWriting();
    const bool good = complete && mGood;
    mGood = false;
    return good;
}

bool clWaveEncoder::Complete() {
    const clWaveFormat& format = mHeader.Format();
    const std::uint8_t padding = 0;
    if ((mAudioBytes & 1) != 0 && !mWriter.Append(&padding, 1)) return FailWriting();
    const auto header = mHeader.Make(mAudioBytes);
    if (!mWriter.Rewrite(header.data(), static_cast<std::uint32_t>(header.size()))) return FailWriting();
    if (!format.IsPlain() || mAudioBytes % format.Head().nBlockAlign == 0) return true;
    return Fail(u"its audio ends within a frame");
}

bool clWaveEncoder::Fail(const char16_t* trouble) {
    if (mGood) mLog.Error(mPath.Text(), trouble);
    mGood = false;
    return false;
}

bool clWaveEncoder::FailWriting() {
    return Fail(
        Joined({u"can't be written (error ", XString::FromUInt64(mWriter.Error()).Text(), u")"}).Text());
}
