/* What is laid out in memory that hosts, modules and the library share, as one list. Each side makes its own
 * table of it: records_in_c.c with the C compiler, records_test.cpp with the C++ compiler. */
#ifndef TESTS_ABI_RECORDS_H
#define TESTS_ABI_RECORDS_H

#include <stddef.h>

#include "quavermill/module.h"
#include "quavermill/quavermill.h"

struct AbiRow {
    const char* name;
    size_t value;
};

/* SIZE(type), FIELD(record, field), VALUE(constant) for everything there is. */
#define ABI_ROWS(SIZE, FIELD, VALUE)               \
    SIZE(QvChar)                                   \
    SIZE(QvInstance)                               \
    SIZE(QvFormat)                                 \
    FIELD(QvFormat, wFormatTag)                    \
    FIELD(QvFormat, nChannels)                     \
    FIELD(QvFormat, nSamplesPerSec)                \
    FIELD(QvFormat, nAvgBytesPerSec)               \
    FIELD(QvFormat, nBlockAlign)                   \
    FIELD(QvFormat, wBitsPerSample)                \
    FIELD(QvFormat, cbSize)                        \
    SIZE(QvFormatExtensible)                       \
    FIELD(QvFormatExtensible, Format)              \
    FIELD(QvFormatExtensible, wValidBitsPerSample) \
    FIELD(QvFormatExtensible, dwChannelMask)       \
    FIELD(QvFormatExtensible, SubFormat)           \
    SIZE(QvLog)                                    \
    FIELD(QvLog, errorOut)                         \
    FIELD(QvLog, infoOut)                          \
    FIELD(QvLog, traceOut)                         \
    SIZE(clCodecQueryRec)                          \
    FIELD(clCodecQueryRec, index)                  \
    FIELD(clCodecQueryRec, dataSize)               \
    FIELD(clCodecQueryRec, text)                   \
    FIELD(clCodecQueryRec, description)            \
    FIELD(clCodecQueryRec, data)                   \
    SIZE(clOpenFileRec)                            \
    FIELD(clOpenFileRec, file)                     \
    FIELD(clOpenFileRec, request)                  \
    FIELD(clOpenFileRec, format)                   \
    FIELD(clOpenFileRec, property)                 \
    FIELD(clOpenFileRec, lengthMs)                 \
    FIELD(clOpenFileRec, fileSize)                 \
    FIELD(clOpenFileRec, tagData)                  \
    FIELD(clOpenFileRec, tagDataSize)              \
    FIELD(clOpenFileRec, propertyData)             \
    FIELD(clOpenFileRec, propertyDataSize)         \
    SIZE(clBlockRec)                               \
    FIELD(clBlockRec, data)                        \
    FIELD(clBlockRec, bytes)                       \
    FIELD(clBlockRec, format)                      \
    FIELD(clBlockRec, timecode)                    \
    FIELD(clBlockRec, finished)                    \
    SIZE(clEncoderSessionRec)                      \
    FIELD(clEncoderSessionRec, file)               \
    FIELD(clEncoderSessionRec, settings)           \
    FIELD(clEncoderSessionRec, formatPointer)      \
    FIELD(clEncoderSessionRec, format)             \
    VALUE(QV_FORMAT_PCM)                           \
    VALUE(QV_FORMAT_ADPCM)                         \
    VALUE(QV_FORMAT_FLOAT)                         \
    VALUE(QV_FORMAT_ALAW)                          \
    VALUE(QV_FORMAT_MULAW)                         \
    VALUE(QV_FORMAT_MPEG)                          \
    VALUE(QV_FORMAT_EXTENSIBLE)                    \
    VALUE(QV_OPEN_DECODING)                        \
    VALUE(QV_OPEN_PROPERTIES)                      \
    VALUE(QV_OPEN_TAGS)                            \
    VALUE(QV_OPEN_PROPERTY_ROWS)                   \
    VALUE(QV_DONE)                                 \
    VALUE(QV_NOTHING)                              \
    VALUE(QV_PRIORITY_NORMAL)                      \
    VALUE(QV_PRIORITY_LOW)                         \
    VALUE(QV_PRIORITY_IDLE)                        \
    VALUE(QV_PRIORITY_HIGH)

#define ABI_SIZE(type) {"sizeof " #type, sizeof(type)},
#define ABI_FIELD(record, field) {#record "." #field, offsetof(record, field)},
#define ABI_VALUE(constant) {#constant, (size_t)constant},

#ifdef __cplusplus
extern "C" {
#endif

/* The C side's table. */
const struct AbiRow* AbiRowsInC(size_t* count);

/* Functions of the types that C modules write, called from C++. */
QvInstance MakeInC(const QvLog* log);
int32_t DescribeInC(QvInstance instance, clOpenFileRec* record);

#ifdef __cplusplus
}
#endif

#endif
