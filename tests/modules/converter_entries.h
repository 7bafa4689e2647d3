/* The seven entries of an effect that only the converter program calls: the library asks that they exist. */
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
