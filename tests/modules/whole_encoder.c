/* An encoder with every entry that writes nothing. It is built once as it stands and once for each entry
 * without that entry: the build renames one of them. */
#define QV_ENCODER_MODULE
#include "quavermill/module.h"

QvInstance QV_CALL ENC_Create(const QvLog* log) {
    return log ? 1 : 0;
}

void QV_CALL ENC_Destroy(QvInstance instance) {
    (void)instance;
}

int32_t QV_CALL ENC_Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query) {
    static const QvChar extension[] = {'.', 'w', 'h', 'o', 'l', 'e', 0};
    (void)instance, (void)key;
    query->text = extension;
    return 1;
}

int32_t QV_CALL ENC_Set(QvInstance instance, const QvChar* key, const clCodecQueryRec* query) {
    (void)instance, (void)key, (void)query;
    return 1;
}

void QV_CALL ENC_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                               const QvChar* settings) {
    (void)instance, (void)parent, (void)x, (void)y, (void)settings;
}

const QvChar* QV_CALL ENC_RemoveConfigBit(QvInstance instance, uint64_t parent) {
    (void)instance, (void)parent;
    return NULL;
}

int32_t QV_CALL ENC_BeginConversion(QvInstance instance, clEncoderSessionRec* session) {
    (void)instance, (void)session;
    return 1;
}

int32_t QV_CALL ENC_EndConversion(QvInstance instance, clEncoderSessionRec* session, uint32_t* reserved) {
    (void)instance, (void)session, (void)reserved;
    return 1;
}

int32_t QV_CALL ENC_EncodeBlock(QvInstance instance, const clBlockRec* block) {
    (void)instance, (void)block;
    return 1;
}
