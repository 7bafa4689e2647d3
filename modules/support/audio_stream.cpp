#include "modules/support/audio_stream.h"

#include "foundation/joined.h"

bool clAudioStream::Open(const char16_t* path) {
    mPath = path;
    return mFile.Open(path) ? ReadHeaders() : RefuseFor(u"can't be opened (error ");
}

// A library that got no bytes may call it anything.
bool clAudioStream::Refuse(const char16_t* why) {
    if (mFile.Error() != 0) return RefuseFor(u"can't be read (error ");
    mLog.Error(mPath.Text(), why);
    return false;
}

bool clAudioStream::RefuseFor(const char16_t* failure) {
    mLog.Error(mPath.Text(), Joined({failure, XString::FromUInt64(mFile.Error()).Text(), u")"}).Text());
    return false;
}

void clAudioStream::Damage(const char16_t* what) {
    if (!mDamageReported) mLog.Error(mPath.Text(), what);
    mDamageReported = true;
}
