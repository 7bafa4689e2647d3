/* What a codec or effect module is: the contract between Quavermill and the modules it loads.
 *
 * A module is a dynamic library in one of three folders beside Quavermill's own file:
 *
 *     decoder   reads audio files, their properties and their ID tags      9 entries
 *     encoder   writes one type of audio file                              9 entries
 *     DSPs      changes audio on its way through a conversion             11 entries
 *
 * A module exports every entry of its kind under exactly the names below; one that lacks any is not used, whatever
 * was wanted of it. Define QV_DECODER_MODULE, QV_ENCODER_MODULE or QV_DSP_MODULE before including this header and the
 * compiler checks the entries you write.
 *
 * Records are packed: a 64-bit pointer may stand at a multiple of 4. Text is NUL-terminated 16-bit text. A text or
 * block that a module reports stays the module's and must stand until its next call; the caller copies at once.
 * Results are 32-bit, 0 for failure, unless an entry says otherwise. One instance is used by one thread at a time, not
 * always the same one; several instances of a module can be alive at once.
 *
 * No entry may let an exception out. A module must not fail for ever without an end: see DecodeBlock.
 */
#ifndef QUAVERMILL_MODULE_H
#define QUAVERMILL_MODULE_H

#include "types.h"

#if defined(_WIN32)
#define QV_MODULE_ENTRY __declspec(dllexport)
#else
#define QV_MODULE_ENTRY __attribute__((visibility("default")))
#endif

#pragma pack(push, 1)

/* Where a module may report: handles of the system (on Windows a HANDLE, elsewhere a file descriptor), 0 or -1 for
 * off. Written as 16-bit text without NUL, each message ending in CR LF and written in one piece. The record stands
 * only during the call that hands it over: copy it. The handles stay the giver's and stand as long as the instance. */
typedef struct QvLog {
    int64_t errorOut; /* reaches the host as error text */
    int64_t infoOut;  /* reaches the host as information text */
    int64_t traceOut; /* not for modules */
} QvLog;

/* A question to Get or an order to Set. */
typedef struct clCodecQueryRec {
    uint32_t index;    /* in: the row asked for, from 0 */
    uint32_t dataSize; /* in, Set: bytes at data */
    uint8_t reserved1[16];
    const QvChar* text;        /* out, Get: the extension with its dot. In, Set: the file to write */
    const QvChar* description; /* out, Get "Decodes": what the file type is called */
    uint8_t reserved2[8];
    const uint8_t* data; /* in, Set "IDTags": the tags in their flat form */
} clCodecQueryRec;

/* What an Open is for. */
enum {
    QV_OPEN_DECODING = 1,       /* fill format, lengthMs, fileSize */
    QV_OPEN_PROPERTIES = 4,     /* fill format, property, lengthMs, fileSize */
    QV_OPEN_TAGS = 8,           /* fill tagData, tagDataSize */
    QV_OPEN_PROPERTY_ROWS = 16, /* fill propertyData, propertyDataSize */
    QV_OPEN_ALL_TAGS = 32 /* as QV_OPEN_TAGS, whatever their size. Asked by the converter program only, which
                                   asks for QV_OPEN_TAGS when this is refused */
};

/* The record is not cleared before the call: fill every field that the request asks for. */
typedef struct clOpenFileRec {
    const QvChar* file; /* in: full path */
    uint32_t request;   /* in: one of the values above */
    uint8_t format[40]; /* out: a QvFormat or QvFormatExtensible of the audio that DecodeBlock will deliver */
    int32_t property;   /* out: a number of the module's own choice */
    uint64_t lengthMs;  /* out: length in milliseconds */
    uint64_t fileSize;  /* out: bytes of the file */
    uint8_t reserved[8];
    const uint8_t* tagData;      /* out: rows in the flat form; below 1000000 bytes, or they are ignored */
    uint32_t tagDataSize;        /* out: 0 for none; set to 0 by the caller */
    const uint8_t* propertyData; /* out: rows in the flat form, for display */
    uint32_t propertyDataSize;   /* out */
} clOpenFileRec;

/* One block of audio: out of a decoder, into an encoder, into and out of an effect. */
typedef struct clBlockRec {
    const uint8_t* data; /* PCM, or the coded data of the open file's format; whole frames */
    uint32_t bytes;      /* length of data */
    uint8_t
        format[68]; /* encoder and effect, in: the first 40 bytes are the format of data. Out: leave alone */
    uint64_t timecode; /* decoder, out: a number of the module's own, kept with the block */
    uint32_t finished; /* above 0 with the last block, which may be empty */
} clBlockRec;

/* One run of audio through an effect, from begin to end. */
typedef struct clEffectSessionRec {
    const QvChar* settings; /* in: the module's own settings text; stands until the end of the run */
    uint8_t
        format[40]; /* in: the format of the blocks to come. Out: that of the blocks the effect will give */
    uint64_t lengthMs; /* in: length of the audio in milliseconds, 0 when not known. Out: after the effect */
    uint32_t wants;    /* in: QV_EFFECT_HAD_ALL_FIRST or 0. Out: QV_EFFECT_WANTS_ALL_FIRST or 0 */
    uint8_t reserved[36]; /* 0 */
} clEffectSessionRec;

/* What clEffectSessionRec.wants can say. */
enum {
    QV_EFFECT_WANTS_ALL_FIRST = 1, /* the whole audio through DSP_PassNonLive before the first live block */
    QV_EFFECT_HAD_ALL_FIRST = 2    /* the instance has had that in a run before, of this very audio: it works
                                      with what it learnt then, and gets it no second time */
};

/* One encoding, from begin to end. */
typedef struct clEncoderSessionRec {
    uint8_t reserved1[8];
    const QvChar* file;     /* in: the file to write; stands until the end of the encoding */
    const QvChar* settings; /* in: the module's own settings text; stands until the end of the encoding */
    uint8_t* formatPointer; /* in: points at format */
    uint8_t reserved2[28];
    uint8_t format[40]; /* in: the format of the blocks to come */
    uint8_t reserved3[28];
} clEncoderSessionRec;

#pragma pack(pop)

QV_ASSERT_SIZE(QvLog, 24);
QV_ASSERT_OFFSET(QvLog, infoOut, 8);
QV_ASSERT_OFFSET(QvLog, traceOut, 16);

QV_ASSERT_SIZE(clCodecQueryRec, 56);
QV_ASSERT_OFFSET(clCodecQueryRec, index, 0);
QV_ASSERT_OFFSET(clCodecQueryRec, dataSize, 4);
QV_ASSERT_OFFSET(clCodecQueryRec, reserved1, 8);
QV_ASSERT_OFFSET(clCodecQueryRec, text, 24);
QV_ASSERT_OFFSET(clCodecQueryRec, description, 32);
QV_ASSERT_OFFSET(clCodecQueryRec, reserved2, 40);
QV_ASSERT_OFFSET(clCodecQueryRec, data, 48);

QV_ASSERT_SIZE(clOpenFileRec, 104);
QV_ASSERT_OFFSET(clOpenFileRec, file, 0);
QV_ASSERT_OFFSET(clOpenFileRec, request, 8);
QV_ASSERT_OFFSET(clOpenFileRec, format, 12);
QV_ASSERT_OFFSET(clOpenFileRec, property, 52);
QV_ASSERT_OFFSET(clOpenFileRec, lengthMs, 56);
QV_ASSERT_OFFSET(clOpenFileRec, fileSize, 64);
QV_ASSERT_OFFSET(clOpenFileRec, reserved, 72);
QV_ASSERT_OFFSET(clOpenFileRec, tagData, 80);
QV_ASSERT_OFFSET(clOpenFileRec, tagDataSize, 88);
QV_ASSERT_OFFSET(clOpenFileRec, propertyData, 92);
QV_ASSERT_OFFSET(clOpenFileRec, propertyDataSize, 100);

QV_ASSERT_SIZE(clBlockRec, 92);
QV_ASSERT_OFFSET(clBlockRec, data, 0);
QV_ASSERT_OFFSET(clBlockRec, bytes, 8);
QV_ASSERT_OFFSET(clBlockRec, format, 12);
QV_ASSERT_OFFSET(clBlockRec, timecode, 80);
QV_ASSERT_OFFSET(clBlockRec, finished, 88);

QV_ASSERT_SIZE(clEncoderSessionRec, 128);
QV_ASSERT_OFFSET(clEncoderSessionRec, reserved1, 0);
QV_ASSERT_OFFSET(clEncoderSessionRec, file, 8);
QV_ASSERT_OFFSET(clEncoderSessionRec, settings, 16);
QV_ASSERT_OFFSET(clEncoderSessionRec, formatPointer, 24);
QV_ASSERT_OFFSET(clEncoderSessionRec, reserved2, 32);
QV_ASSERT_OFFSET(clEncoderSessionRec, format, 60);
QV_ASSERT_OFFSET(clEncoderSessionRec, reserved3, 100);

QV_ASSERT_SIZE(clEffectSessionRec, 96);
QV_ASSERT_OFFSET(clEffectSessionRec, settings, 0);
QV_ASSERT_OFFSET(clEffectSessionRec, format, 8);
QV_ASSERT_OFFSET(clEffectSessionRec, lengthMs, 48);
QV_ASSERT_OFFSET(clEffectSessionRec, wants, 56);
QV_ASSERT_OFFSET(clEffectSessionRec, reserved, 60);

/* An instance: whatever the module likes, 0 for none. */
typedef uint64_t QvInstance;

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Decoders -------------------------------------------------------------------------------------------------
 *
 * Create; any number of Get; then one of
 *     Open for 4, 8 or 16, Destroy (without Close)
 *     Set "IDTags", Destroy
 *     DeleteATag, Destroy
 *     Open for 1, any number of DecodeBlock and SetPosition, Close, Destroy
 */

/* Makes an instance; 0 on failure. */
typedef QvInstance(QV_CALL* QvDecoderCreate)(const QvLog* log);
/* Ends it, also after an Open without a Close. */
typedef void(QV_CALL* QvDecoderDestroy)(QvInstance instance);
/* Key "Decodes": fills text (".wav") and description for row `index`. The list ends with the first 0. Answered right
 * after Create, with no file open. A row whose extension holds ".IGNORE" is not listed to hosts. */
typedef int32_t(QV_CALL* QvDecoderGet)(QvInstance instance, const QvChar* key, clCodecQueryRec* query);
/* Key "IDTags": for each name among the rows at `data`, the values that the file `text` has under that name become
 * those of the rows; its other tags stay. Only text, data and dataSize are set. */
typedef int32_t(QV_CALL* QvDecoderSet)(QvInstance instance, const QvChar* key, const clCodecQueryRec* query);
typedef int32_t(QV_CALL* QvDecoderOpen)(QvInstance instance, clOpenFileRec* record);
/* The pointer has no meaning for a decoder. */
typedef void(QV_CALL* QvDecoderClose)(QvInstance instance, void* record);
/* Non-zero when a block was produced. After 0 the caller asks again at once, so a decoder that can't go on reports
 * what is wrong to the log, sets finished and returns non-zero: every stream ends. */
typedef int32_t(QV_CALL* QvDecoderDecodeBlock)(QvInstance instance, clBlockRec* block);
/* The next block begins at this frame; a position outside the file is clamped. */
typedef void(QV_CALL* QvDecoderSetPosition)(QvInstance instance, int64_t frame);
/* Removes the tag of this name, or all tags when the name is null or empty. */
typedef int32_t(QV_CALL* QvDecoderDeleteATag)(QvInstance instance, const QvChar* file, const QvChar* name);

/* ---- Encoders -------------------------------------------------------------------------------------------------
 *
 * Encoding: ENC_Create, ENC_BeginConversion, any number of ENC_EncodeBlock, ENC_EndConversion; ENC_Destroy later.
 * Settings: ENC_Create, ENC_ShowConfigBit, ENC_RemoveConfigBit, ENC_Destroy.
 */

typedef QvInstance(QV_CALL* QvEncoderCreate)(const QvLog* log);
typedef void(QV_CALL* QvEncoderDestroy)(QvInstance instance);
/* Key "Extension": fills text with the extension that the encoder writes; ".IGNORE" asks hosts not
 * to offer it, and it is listed all the same. No other field of the record has a meaning. An encoder must be able to answer this. */
typedef int32_t(QV_CALL* QvEncoderGet)(QvInstance instance, const QvChar* key, clCodecQueryRec* query);
typedef int32_t(QV_CALL* QvEncoderSet)(QvInstance instance, const QvChar* key, const clCodecQueryRec* query);
/* Puts the settings panel on the window `parent` (a HWND as a number; 0 where the system has no windows) at x, y in
 * pixels, as a child of it, showing `settings`. Forms leave 300 by 90 dialog units for it. Called on the thread of the
 * window; one that stands already is replaced. A text that can't be understood is no failure: the panel shows what it
 * understands of it. */
typedef void(QV_CALL* QvEncoderShowConfigBit)(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                                              const QvChar* settings);
/* Takes the panel away, which may have gone with its parent already, and returns the settings text as it stood last, or
 * null. The text is the module's and stands until its next call: the caller copies it at once. */
typedef const QvChar*(QV_CALL* QvEncoderRemoveConfigBit)(QvInstance instance, uint64_t parent);
/* Opens the file. A settings text or format that the encoder can't serve is reported to the log and refused. */
typedef int32_t(QV_CALL* QvEncoderBeginConversion)(QvInstance instance, clEncoderSessionRec* session);
/* Completes and closes the file; 0 when it is not good. *reserved is 0 and has no meaning yet. */
typedef int32_t(QV_CALL* QvEncoderEndConversion)(QvInstance instance, clEncoderSessionRec* session,
                                                 uint32_t* reserved);
/* Takes a block, which may be empty. The result is not always looked at: an encoder that failed must also fail in
 * ENC_EndConversion. */
typedef int32_t(QV_CALL* QvEncoderEncodeBlock)(QvInstance instance, const clBlockRec* block);

/* ---- Effects --------------------------------------------------------------------------------------------------
 *
 * Settings: DSP_Create, DSP_ShowConfigBit, DSP_RemoveConfigBit, DSP_Destroy, as an encoder's.
 *
 * A run of audio, in the converter program only, which lets the effects of a conversion work in the order of their
 * numbers, each on what the one before gives:
 *
 *     DSP_Create
 *     DSP_BeginConversion                           what comes in; the effect says what will go out
 *     DSP_PassNonLive, for every block              only for an effect that wants all of it first
 *     DSP_PassAudioBlock, for every block           the last one has `finished` set and may be empty
 *     DSP_EndConversion
 *     DSP_AfterConversion                           once the output file is complete
 *     DSP_Destroy
 *
 * The work in front of an effect that wants all of it first is done once more for that: the effects before it have a
 * run of their own, from DSP_BeginConversion to DSP_EndConversion, on the same instance and with the same audio, for
 * every such effect, and the real one last.
 *
 * After a failure DSP_EndConversion is still called once when DSP_BeginConversion had succeeded; DSP_AfterConversion
 * is called only for a conversion that is good so far.
 */

typedef QvInstance(QV_CALL* QvEffectCreate)(const QvLog* log);
typedef void(QV_CALL* QvEffectDestroy)(QvInstance instance);
/* Both keep their places for keys to come; an effect of today refuses every key with 0. */
typedef int32_t(QV_CALL* QvEffectGet)(QvInstance instance, const QvChar* key, clCodecQueryRec* query);
typedef int32_t(QV_CALL* QvEffectSet)(QvInstance instance, const QvChar* key, const clCodecQueryRec* query);
typedef void(QV_CALL* QvEffectShowConfigBit)(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                                             const QvChar* settings);
typedef const QvChar*(QV_CALL* QvEffectRemoveConfigBit)(QvInstance instance, uint64_t parent);
/* Takes settings, format and length, and answers with format, length and wants. A settings text or format that the
 * effect can't serve is reported to the log and refused with 0; nothing more is called then but DSP_Destroy. */
typedef int32_t(QV_CALL* QvEffectBeginConversion)(QvInstance instance, clEffectSessionRec* session);
/* Ends the run and frees what it held; 0 when its audio was not good. */
typedef int32_t(QV_CALL* QvEffectEndConversion)(QvInstance instance, clEffectSessionRec* session);
/* Takes `in`, whole frames in the format of the session, and fills `out`, which comes cleared, with data, bytes and
 * finished: audio in the format that the effect answered with, owned by the module, standing until its next call. An
 * effect may hold audio back and give an empty block. With the block that is `finished` it gives the rest, its tail
 * included, and sets out->finished; what does not go into one block it leaves for further calls, which come with an
 * empty block that is `finished`, until it sets out->finished. 0 when it can't go on: it has reported why, and the
 * conversion fails. */
typedef int32_t(QV_CALL* QvEffectPassAudioBlock)(QvInstance instance, const clBlockRec* in, clBlockRec* out);
/* The same audio as will come live, the last block with `finished` set, to be looked at; nothing comes out. 0 when the
 * effect can't go on. */
typedef int32_t(QV_CALL* QvEffectPassNonLive)(QvInstance instance, const clBlockRec* in);
/* `file` is the complete output with its tags, still under a temporary name: the last chance to change it. 0 makes the
 * conversion fail. */
typedef int32_t(QV_CALL* QvEffectAfterConversion)(QvInstance instance, const QvChar* file);

#ifdef QV_DECODER_MODULE
QV_MODULE_ENTRY QvInstance QV_CALL Create(const QvLog* log);
QV_MODULE_ENTRY void QV_CALL Destroy(QvInstance instance);
QV_MODULE_ENTRY int32_t QV_CALL Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query);
QV_MODULE_ENTRY int32_t QV_CALL Set(QvInstance instance, const QvChar* key, const clCodecQueryRec* query);
QV_MODULE_ENTRY int32_t QV_CALL Open(QvInstance instance, clOpenFileRec* record);
QV_MODULE_ENTRY void QV_CALL Close(QvInstance instance, void* record);
QV_MODULE_ENTRY int32_t QV_CALL DecodeBlock(QvInstance instance, clBlockRec* block);
QV_MODULE_ENTRY void QV_CALL SetPosition(QvInstance instance, int64_t frame);
QV_MODULE_ENTRY int32_t QV_CALL DeleteATag(QvInstance instance, const QvChar* file, const QvChar* name);
#endif

#ifdef QV_ENCODER_MODULE
QV_MODULE_ENTRY QvInstance QV_CALL ENC_Create(const QvLog* log);
QV_MODULE_ENTRY void QV_CALL ENC_Destroy(QvInstance instance);
QV_MODULE_ENTRY int32_t QV_CALL ENC_Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query);
QV_MODULE_ENTRY int32_t QV_CALL ENC_Set(QvInstance instance, const QvChar* key, const clCodecQueryRec* query);
QV_MODULE_ENTRY void QV_CALL ENC_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                                               const QvChar* settings);
QV_MODULE_ENTRY const QvChar* QV_CALL ENC_RemoveConfigBit(QvInstance instance, uint64_t parent);
QV_MODULE_ENTRY int32_t QV_CALL ENC_BeginConversion(QvInstance instance, clEncoderSessionRec* session);
QV_MODULE_ENTRY int32_t QV_CALL ENC_EndConversion(QvInstance instance, clEncoderSessionRec* session,
                                                  uint32_t* reserved);
QV_MODULE_ENTRY int32_t QV_CALL ENC_EncodeBlock(QvInstance instance, const clBlockRec* block);
#endif

#ifdef QV_DSP_MODULE
QV_MODULE_ENTRY QvInstance QV_CALL DSP_Create(const QvLog* log);
QV_MODULE_ENTRY void QV_CALL DSP_Destroy(QvInstance instance);
QV_MODULE_ENTRY int32_t QV_CALL DSP_Get(QvInstance instance, const QvChar* key, clCodecQueryRec* query);
QV_MODULE_ENTRY int32_t QV_CALL DSP_Set(QvInstance instance, const QvChar* key, const clCodecQueryRec* query);
QV_MODULE_ENTRY void QV_CALL DSP_ShowConfigBit(QvInstance instance, uint64_t parent, int32_t x, int32_t y,
                                               const QvChar* settings);
QV_MODULE_ENTRY const QvChar* QV_CALL DSP_RemoveConfigBit(QvInstance instance, uint64_t parent);
QV_MODULE_ENTRY int32_t QV_CALL DSP_BeginConversion(QvInstance instance, clEffectSessionRec* session);
QV_MODULE_ENTRY int32_t QV_CALL DSP_EndConversion(QvInstance instance, clEffectSessionRec* session);
QV_MODULE_ENTRY int32_t QV_CALL DSP_PassAudioBlock(QvInstance instance, const clBlockRec* in,
                                                   clBlockRec* out);
QV_MODULE_ENTRY int32_t QV_CALL DSP_PassNonLive(QvInstance instance, const clBlockRec* in);
QV_MODULE_ENTRY int32_t QV_CALL DSP_AfterConversion(QvInstance instance, const QvChar* file);
#endif

#ifdef __cplusplus
}
#endif

#endif
