#include "converter/effect.h"

#include <cstring>

#include "converter/module_search.h"
#include "foundation/qv_text.h"

bool Effect::Find(const XLog& log) {
    return LoadEffectNamed(XString(mName.c_str()), mModule, log);
}

bool Effect::BeginWith(std::uint32_t wants) {
    mSession = {};
    mSession.settings = ToQvText(mSettings.c_str());
    std::memcpy(mSession.format, mIn.format.data(), sizeof mSession.format);
    mSession.lengthMs = mIn.lengthMs;
    mSession.wants = wants;
    mRuns = mModule.BeginConversion(&mSession);
    return mRuns;
}

bool Effect::Begin(AudioForm& form) {
    mIn = form;
    if (!BeginWith(0)) return false;
    mWantsAllFirst = (mSession.wants & QV_EFFECT_WANTS_ALL_FIRST) != 0;
    std::memcpy(form.format.data(), mSession.format, sizeof mSession.format);
    form.lengthMs = mSession.lengthMs;
    return true;
}

// What comes behind has already begun with its first answer.
bool Effect::BeginAgain() {
    const clEffectSessionRec before = mSession;
    return End() && BeginWith(mWantsAllFirst ? QV_EFFECT_HAD_ALL_FIRST : 0) &&
           std::memcmp(mSession.format, before.format, sizeof before.format) == 0;
}

clBlockRec Effect::Labelled(const clBlockRec& block) const {
    clBlockRec in = {};
    in.data = block.data;
    in.bytes = block.bytes;
    in.finished = block.finished;
    std::memcpy(in.format, mIn.format.data(), mIn.format.size());
    return in;
}

bool Effect::LookAt(const clBlockRec& block) const {
    const clBlockRec in = Labelled(block);
    return mModule.PassNonLive(&in);
}

bool Effect::Pass(const clBlockRec& block, clBlockRec& out) const {
    const clBlockRec in = Labelled(block);
    out = {};
    return mModule.PassAudioBlock(&in, &out) && (out.bytes == 0 || out.data);
}

bool Effect::End() {
    const bool ended = !mRuns || mModule.EndConversion(&mSession);
    mRuns = false;
    return ended;
}

bool Effect::AfterConversion(const std::u16string& file) const {
    return mModule.AfterConversion(file.c_str());
}
