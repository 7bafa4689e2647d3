// The eleven entries of an effect module, for any clModuleEffect.
#define QV_DSP_MODULE
#include <cstring>

#include "foundation/qv_text.h"
#include "modules/support/entry_guard.h"
#include "modules/support/module_effect.h"
#include "modules/support/panel_entries.h"

namespace {

clModuleEffect& At(QvInstance instance) {
    return *reinterpret_cast<clModuleEffect*>(instance);
}

template <class Entry>
int32_t Serve(QvInstance instance, Entry entry) {
    if (instance == 0) return 0;
    clModuleEffect& effect = At(instance);
    const int32_t raised = -1;
    const int32_t result = Guarded(effect.Log(), raised, [&] { return entry(effect) ? 1 : 0; });
    if (result == raised) effect.Abandon();
    return result > 0;
}

bool Begin(clModuleEffect& effect, clEffectSessionRec& session) {
    static_assert(sizeof(QvFormatExtensible) == sizeof(session.format));
    clEffectAudio audio;
    std::memcpy(&audio.format, session.format, sizeof session.format);
    audio.lengthMs = session.lengthMs;
    audio.hadAllFirst = (session.wants & QV_EFFECT_HAD_ALL_FIRST) != 0;
    if (!effect.Begin(session.settings ? FromQvText(session.settings) : u"", audio)) return false;
    std::memcpy(session.format, &audio.format, sizeof session.format);
    session.lengthMs = audio.lengthMs;
    session.wants = audio.wantsAllFirst ? QV_EFFECT_WANTS_ALL_FIRST : 0;
    return true;
}

clEffectBlock Taken(const clBlockRec& block) {
    return {{block.data, block.data ? block.bytes : 0}, block.finished != 0};
}

bool Pass(clModuleEffect& effect, const clBlockRec& in, clBlockRec& out) {
    clEffectBlock changed;
    if (!effect.Pass(Taken(in), &changed)) return false;
    out.data = changed.audio.data();
    out.bytes = static_cast<uint32_t>(changed.audio.size());
    out.finished = changed.finished;
    return true;
}

}  // namespace

QvInstance QV_CALL DSP_Create(const QvLog* record) {
    const clModuleLog log(record);
    return Guarded(log, QvInstance{},
                   [&] { return reinterpret_cast<QvInstance>(MakeEffect(log).release()); });
}

void QV_CALL DSP_Destroy(QvInstance instance) {
    if (instance != 0) delete &At(instance);
}

int32_t QV_CALL DSP_Get(QvInstance, const QvChar*, clCodecQueryRec*) {
    return 0;
}
int32_t QV_CALL DSP_Set(QvInstance, const QvChar*, const clCodecQueryRec*) {
    return 0;
}

void QV_CALL DSP_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                               const QvChar* settings) {
    ShowPanel<clModuleEffect>(instance, parent, x, y, settings);
}

const QvChar* QV_CALL DSP_RemoveConfigBit(QvInstance instance, uint64_t) {
    return RemovePanel<clModuleEffect>(instance);
}

int32_t QV_CALL DSP_BeginConversion(QvInstance instance, clEffectSessionRec* session) {
    return Serve(instance, [&](clModuleEffect& effect) { return session && Begin(effect, *session); });
}

int32_t QV_CALL DSP_EndConversion(QvInstance instance, clEffectSessionRec*) {
    return Serve(instance, [](clModuleEffect& effect) { return effect.End(); });
}

int32_t QV_CALL DSP_PassAudioBlock(QvInstance instance, const clBlockRec* in, clBlockRec* out) {
    return Serve(instance, [&](clModuleEffect& effect) { return in && out && Pass(effect, *in, *out); });
}

int32_t QV_CALL DSP_PassNonLive(QvInstance instance, const clBlockRec* in) {
    return Serve(instance, [&](clModuleEffect& effect) { return in && effect.LookAt(Taken(*in)); });
}

int32_t QV_CALL DSP_AfterConversion(QvInstance instance, const QvChar* file) {
    return Serve(instance,
                 [&](clModuleEffect& effect) { return file && effect.AfterConversion(FromQvText(file)); });
}
