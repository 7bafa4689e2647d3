#include "modules/support/module_effect.h"

bool clModuleEffect::Begin(const char16_t* settings, clEffectAudio& audio) {
    Release();
    mGood = true;
    const XString refusal = TakeSampleFormat(audio.format, u"changed", &mFormat);
    if (!refusal.IsEmpty()) return Fail(refusal.Text());
    clSettings given(settings);
    const XString trouble = Plan(given, audio);
    const XString misread = given.Trouble();
    if (!misread.IsEmpty()) return Fail(misread.Text());
    return trouble.IsEmpty() || Fail(trouble.Text());
}

bool clModuleEffect::LookAt(const clEffectBlock& in) {
    return mGood && HoldsWholeFrames(in) && Look(in);
}

bool clModuleEffect::Pass(const clEffectBlock& in, clEffectBlock* out) {
    return mGood && HoldsWholeFrames(in) && Change(in, out);
}

bool clModuleEffect::End() {
    const bool complete = mGood && Complete();
    mGood = false;
    Release();
    return complete;
}

bool clModuleEffect::HoldsWholeFrames(const clEffectBlock& block) {
    return block.audio.size() % mFormat.FrameBytes() == 0 || Fail(u"a block ends within a frame");
}

bool clModuleEffect::Fail(const char16_t* trouble) {
    if (mGood) mLog.Error(mName, trouble);
    mGood = false;
    return false;
}
