/* An effect with every entry. It is built once as it stands and once for each entry without that entry: the
 * build renames one of them. */
#define QV_DSP_MODULE
#include "quavermill/module.h"

QvInstance QV_CALL DSP_Create(const QvLog* log) {
    return log ? 1 : 0;
}

void QV_CALL DSP_Destroy(QvInstance instance) {
    (void)instance;
}

void QV_CALL DSP_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                               const QvChar* settings) {
    (void)instance, (void)parent, (void)x, (void)y, (void)settings;
}

const QvChar* QV_CALL DSP_RemoveConfigBit(QvInstance instance, uint64_t parent) {
    (void)instance, (void)parent;
    return NULL;
}

/* The seven that only the converter program calls. */
#define QV_CONVERTER_ENTRY(name, used, ...) \
    int32_t QV_CALL name(__VA_ARGS__) {     \
        used;                               \
        return 0;                           \
    }

QV_CONVERTER_ENTRY(DSP_Get, (void)i; (void)k; (void)q, QvInstance i, const QvChar* k, clCodecQueryRec* q)
QV_CONVERTER_ENTRY(DSP_Set, (void)i; (void)k;
                   (void)q, QvInstance i, const QvChar* k, const clCodecQueryRec* q)
QV_CONVERTER_ENTRY(DSP_BeginConversion, (void)i; (void)s, QvInstance i, clEffectSessionRec* s)
QV_CONVERTER_ENTRY(DSP_EndConversion, (void)i; (void)s, QvInstance i, clEffectSessionRec* s)
QV_CONVERTER_ENTRY(DSP_PassAudioBlock, (void)i; (void)b;
                   (void)o, QvInstance i, const clBlockRec* b, clBlockRec* o)
QV_CONVERTER_ENTRY(DSP_PassNonLive, (void)i; (void)b, QvInstance i, const clBlockRec* b)
QV_CONVERTER_ENTRY(DSP_AfterConversion, (void)i; (void)f, QvInstance i, const QvChar* f)
