/* The seven entries of an effect that only the converter program calls: the library asks that they exist. */
#define QV_CONVERTER_ENTRY(name)                \
    QV_MODULE_ENTRY int32_t QV_CALL name(void); \
    int32_t QV_CALL name(void) {                \
        return 0;                               \
    }

QV_CONVERTER_ENTRY(DSP_Get)
QV_CONVERTER_ENTRY(DSP_Set)
QV_CONVERTER_ENTRY(DSP_BeginConversion)
QV_CONVERTER_ENTRY(DSP_EndConversion)
QV_CONVERTER_ENTRY(DSP_PassAudioBlock)
QV_CONVERTER_ENTRY(DSP_PassNonLive)
QV_CONVERTER_ENTRY(DSP_AfterConversion)
