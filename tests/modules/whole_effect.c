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

#include "converter_entries.h"
