/* Types that hosts and modules share: text units, calling convention, audio format records.
 *
 * Usable from C11 and C++. Nothing of the operating system's own headers is needed.
 */
#ifndef QUAVERMILL_TYPES_H
#define QUAVERMILL_TYPES_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <assert.h>
#endif

/* One unit of text: UTF-16, native byte order. wchar_t on Windows, where it has 16 bits; char16_t elsewhere.
 */
#if defined(_WIN32)
typedef wchar_t QvChar;
#elif defined(__cplusplus)
typedef char16_t QvChar;
#else
#include <uchar.h>
typedef char16_t QvChar;
#endif

/* x86-64 Windows has one calling convention; the word stands for readers and tools. */
#if defined(_WIN32)
#define QV_CALL __cdecl
#else
#define QV_CALL
#endif

#ifdef __cplusplus
#define QV_ASSERT_OFFSET(record, field, offset) \
    static_assert(offsetof(record, field) == (offset), #record "." #field " must stand at byte " #offset)
#define QV_ASSERT_SIZE(record, size) \
    static_assert(sizeof(record) == (size), #record " must have " #size " bytes")
#else
#define QV_ASSERT_OFFSET(record, field, offset) \
    _Static_assert(offsetof(record, field) == (offset), #record "." #field " must stand at byte " #offset)
#define QV_ASSERT_SIZE(record, size) \
    _Static_assert(sizeof(record) == (size), #record " must have " #size " bytes")
#endif

/* Values of QvFormat.wFormatTag and, for extensible records, of the first word of SubFormat. */
enum {
    QV_FORMAT_PCM = 1, /* integer; 8 bits are unsigned, more are signed */
    QV_FORMAT_ADPCM = 2,
    QV_FORMAT_FLOAT = 3, /* IEEE float of 32 or 64 bits */
    QV_FORMAT_ALAW = 6,
    QV_FORMAT_MULAW = 7,
    QV_FORMAT_MPEG = 80,
    QV_FORMAT_EXTENSIBLE = 65534
};

#pragma pack(push, 1)

/* An audio format, the plain form. Little-endian, without padding. */
typedef struct QvFormat {
    uint16_t wFormatTag;
    uint16_t nChannels;
    uint32_t nSamplesPerSec; /* hertz */
    uint32_t nAvgBytesPerSec;
    uint16_t nBlockAlign;    /* bytes of one frame: one sample of every channel */
    uint16_t wBitsPerSample; /* of the container that holds a sample */
    uint16_t cbSize;         /* bytes of this record behind the first 18; 0 in the plain form */
} QvFormat;

/* The extensible form: wFormatTag is 65534 and cbSize is 22. */
typedef struct QvFormatExtensible {
    QvFormat Format;
    uint16_t wValidBitsPerSample;
    uint32_t dwChannelMask; /* one bit per loudspeaker position, as in WAVE files; 0 for none given */
    uint8_t SubFormat[16];  /* little-endian: the format's number as 4 bytes, then 00 00 10 00 80 00 00 AA 00
                               38 9B 71 */
} QvFormatExtensible;

#pragma pack(pop)

QV_ASSERT_SIZE(QvFormat, 18);
QV_ASSERT_OFFSET(QvFormat, nChannels, 2);
QV_ASSERT_OFFSET(QvFormat, nSamplesPerSec, 4);
QV_ASSERT_OFFSET(QvFormat, nAvgBytesPerSec, 8);
QV_ASSERT_OFFSET(QvFormat, nBlockAlign, 12);
QV_ASSERT_OFFSET(QvFormat, wBitsPerSample, 14);
QV_ASSERT_OFFSET(QvFormat, cbSize, 16);
QV_ASSERT_SIZE(QvFormatExtensible, 40);
QV_ASSERT_OFFSET(QvFormatExtensible, wValidBitsPerSample, 18);
QV_ASSERT_OFFSET(QvFormatExtensible, dwChannelMask, 20);
QV_ASSERT_OFFSET(QvFormatExtensible, SubFormat, 24);

#endif
