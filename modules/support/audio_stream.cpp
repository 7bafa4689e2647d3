#include "modules/support/audio_stream.h"

#include "foundation/joined.h"

bool clAudioStream::Open(const char16_t* path) {
    mPath = path;
    if (!mFile.Open(path)) {
        return Refuse(
            Joined({u"can't be opened (error ", XString::FromUInt64(mFile.Error()).Text(), u")"}).Text());
    }
    return ReadHeaders();
}

bool clAudioStream::Refuse(const char16_t* why) {
    mLog.Error(mPath.Text(), why);
    return false;
}

void clAudioStream::Damage(const char16_t* what) {
    if (!mDamageReported) mLog.Error(mPath.Text(), what);
    mDamageReported = true;
}
