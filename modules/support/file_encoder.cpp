#include "modules/support/file_encoder.h"

#include "foundation/joined.h"

bool clFileEncoder::Begin(const char16_t* file, const char16_t* settings, const QvFormatExtensible& format) {
    Release();
    mWriter.Close();
    mPath = file;
    mGood = true;
    const XString trouble = Plan(settings, format);
    if (!trouble.IsEmpty()) return Fail(trouble.Text());
    if (!mWriter.Create(file))
        return Fail(
            Joined({u"can't be created (error ", XString::FromUInt64(mWriter.Error()).Text(), u")"}).Text());
    return Start();
}

bool clFileEncoder::Encode(const std::uint8_t* data, std::uint32_t bytes) {
    if (!mGood) return false;
    return bytes == 0 || Consume(data, bytes);
}

bool clFileEncoder::End() {
    const bool complete = mGood && Complete();
    Release();
    if (!mWriter.Close() && complete) FailWriting();
    const bool good = complete && mGood;
    mGood = false;
    return good;
}

bool clFileEncoder::Fail(const char16_t* trouble) {
    if (mGood) mLog.Error(mPath.Text(), trouble);
    mGood = false;
    return false;
}

bool clFileEncoder::FailWriting() {
    return Fail(
        Joined({u"can't be written (error ", XString::FromUInt64(mWriter.Error()).Text(), u")"}).Text());
}
