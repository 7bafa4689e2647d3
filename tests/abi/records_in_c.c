/* Every entry of every kind is declared here too, so that the declarations are proven to be C. */
#define QV_DECODER_MODULE
#define QV_ENCODER_MODULE
#define QV_DSP_MODULE
#include "records.h"

static const struct AbiRow rows[] = {ABI_ROWS(ABI_SIZE, ABI_FIELD, ABI_VALUE)};

const struct AbiRow* AbiRowsInC(size_t* count) {
    *count = sizeof rows / sizeof rows[0];
    return rows;
}

QvInstance MakeInC(const QvLog* log) {
    return (QvInstance)(log->errorOut + log->infoOut);
}

int32_t DescribeInC(QvInstance instance, clOpenFileRec* record) {
    record->property = -7;
    record->lengthMs = instance;
    record->propertyDataSize = record->request;
    return 1;
}
