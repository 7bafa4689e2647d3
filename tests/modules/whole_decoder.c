/* A decoder with every entry and no file type worth the name. It is built once as it stands and once for each
 * entry without that entry: the build renames one of them. */
#define QV_DECODER_MODULE
#include "quavermill/module.h"

QvInstance QV_CALL Create(const QvLog* log) {
    return log ? 1 : 0;
}

void QV_CALL Destroy(QvInstance instance) {
    (void)instance;
}

int32_t QV_CALL Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query) {
    static const QvChar extension[] = {'.', 'w', 'h', 'o', 'l', 'e', 0};
    (void)instance, (void)key;
    if (query->index > 0) return 0;
    query->text = query->description = extension;
    return 1;
}

int32_t QV_CALL Set(QvInstance instance, const QvChar* key, const clCodecQueryRec* query) {
    (void)instance, (void)key, (void)query;
    return 1;
}

int32_t QV_CALL Open(QvInstance instance, clOpenFileRec* record) {
    (void)instance, (void)record;
    return 0;
}

void QV_CALL Close(QvInstance instance, void* record) {
    (void)instance, (void)record;
}

int32_t QV_CALL DecodeBlock(QvInstance instance, clBlockRec* block) {
    (void)instance;
    block->bytes = 0;
    block->finished = 1;
    return 1;
}

void QV_CALL SetPosition(QvInstance instance, int64_t frame) {
    (void)instance, (void)frame;
}

int32_t QV_CALL DeleteATag(QvInstance instance, const QvChar* file, const QvChar* name) {
    (void)instance, (void)file, (void)name;
    return 1;
}
