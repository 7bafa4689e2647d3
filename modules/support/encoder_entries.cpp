// The nine entries of an encoder module, for any clModuleEncoder.
#define QV_ENCODER_MODULE
#include <cstring>

#include "foundation/qv_text.h"
#include "modules/support/entry_guard.h"
#include "modules/support/module_encoder.h"
#include "modules/support/panel_entries.h"

namespace {

clModuleEncoder& At(QvInstance instance) {
    return *reinterpret_cast<clModuleEncoder*>(instance);
}

template <class Entry>
int32_t Serve(QvInstance instance, Entry entry) {
    if (instance == 0) return 0;
    clModuleEncoder& encoder = At(instance);
    const int32_t raised = -1;
    const int32_t result = Guarded(encoder.Log(), raised, [&] { return entry(encoder) ? 1 : 0; });
    if (result == raised) encoder.Abandon();
    return result > 0;
}

bool Begin(clModuleEncoder& encoder, const clEncoderSessionRec& session) {
    if (!session.file) return false;
    QvFormatExtensible format;
    std::memcpy(&format, session.format, sizeof format);
    const char16_t* settings = session.settings ? FromQvText(session.settings) : u"";
    return encoder.Begin(FromQvText(session.file), settings, format);
}

}  // namespace

QvInstance QV_CALL ENC_Create(const QvLog* record) {
    const clModuleLog log(record);
    return Guarded(log, QvInstance{},
                   [&] { return reinterpret_cast<QvInstance>(MakeEncoder(log).release()); });
}

void QV_CALL ENC_Destroy(QvInstance instance) {
    if (instance != 0) delete &At(instance);
}

int32_t QV_CALL ENC_Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query) {
    return Serve(instance, [&](clModuleEncoder& encoder) {
        if (!query || !key || !(XString(u"Extension") == FromQvText(key))) return false;
        query->text = ToQvText(encoder.Extension());
        return true;
    });
}

int32_t QV_CALL ENC_Set(QvInstance, const QvChar*, const clCodecQueryRec*) {
    return 0;
}

void QV_CALL ENC_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                               const QvChar* settings) {
    ShowPanel<clModuleEncoder>(instance, parent, x, y, settings);
}

const QvChar* QV_CALL ENC_RemoveConfigBit(QvInstance instance, uint64_t) {
    return RemovePanel<clModuleEncoder>(instance);
}

int32_t QV_CALL ENC_BeginConversion(QvInstance instance, clEncoderSessionRec* session) {
    return Serve(instance, [&](clModuleEncoder& encoder) { return session && Begin(encoder, *session); });
}

int32_t QV_CALL ENC_EndConversion(QvInstance instance, clEncoderSessionRec*, uint32_t*) {
    return Serve(instance, [](clModuleEncoder& encoder) { return encoder.End(); });
}

int32_t QV_CALL ENC_EncodeBlock(QvInstance instance, const clBlockRec* block) {
    return Serve(instance, [&](clModuleEncoder& encoder) {
        return block && encoder.Encode(block->data, block->bytes);
    });
}
