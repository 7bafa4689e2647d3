/* The public header in C11, linked against the library as an ordinary C host links it. */
#include "host_in_c.h"

#include <quavermill/quavermill.h>
#include <string.h>

#define HOLDS(condition) \
    if (!(condition)) return __LINE__

static const QvChar kName[] = {'N', 0}, kText[] = {'T', 'x', 0};

static int Lists(QvConverter* converter) {
    QvChar name[8] = {0}, text[8] = {0};
    HOLDS(QACAddIDTagToList(converter, kName, kText) == QV_DONE);
    HOLDS(QACReadIDTagList(converter, 0, name, text) == QV_DONE);
    HOLDS(memcmp(name, kName, sizeof kName) == 0 && memcmp(text, kText, sizeof kText) == 0);
    HOLDS(QACRemoveFromIDTagList(converter, 0) == QV_DONE);
    HOLDS(QACReadIDTagList(converter, 0, name, text) == QV_NOTHING);
    HOLDS(QACClearIDTagList(converter) == QV_DONE);
    HOLDS(QACSetTagWriteThrough(converter, 1) == QV_DONE);
    HOLDS(QACAddDSPToList(converter, kText, kName) == QV_DONE);
    HOLDS(QACReadDSPList(converter, 0, name, text) == QV_DONE);
    HOLDS(memcmp(name, kText, sizeof kText) == 0 && memcmp(text, kName, sizeof kName) == 0);
    HOLDS(QACRemoveFromDSPList(converter, 1) == QV_NOTHING);
    HOLDS(QACRemoveFromDSPList(converter, 0) == QV_DONE);
    HOLDS(QACClearDSPList(converter) == QV_DONE);
    return 0;
}

/* The library of the build has no modules beside it, or those of the tree: a list has an end either way. */
static int Modules(QvConverter* converter) {
    QvChar name[260] = {0}, extension[64] = {0}, description[256] = {0};
    int32_t row = 0;
    while (QACGetEncoder(converter, row, name, extension) == QV_DONE) HOLDS(++row < 1000);
    HOLDS(QACGetEncoder(converter, row, name, extension) == QV_NOTHING);
    HOLDS(QACGetEncoder(converter, -1, name, extension) == QV_NOTHING);
    row = 0;
    while (QACGetDecoder(converter, row, name, extension, description) == QV_DONE) HOLDS(++row < 1000);
    HOLDS(QACGetDecoder(NULL, 0, name, extension, description) == QV_NOTHING);
    row = 0;
    while (QACGetDSP(converter, row, name) == QV_DONE) HOLDS(++row < 1000);
    HOLDS(QACGetDSP(converter, row, name) == QV_NOTHING);
    return 0;
}

/* A path without a text is no file, whatever modules there are. */
static int Files(QvConverter* converter) {
    static const QvChar kNoFile[] = {0};
    QvFormat format;
    QvChar name[8] = {'#', 0}, value[8] = {'#', 0};
    uint8_t art[4];
    uint64_t lengthMs = 7, fileSize = 7, artSize = sizeof art;
    const uint32_t written = sizeof kText;
    int64_t property = -7;
    HOLDS(QACReadAudioProperties(converter, kNoFile, &format, &lengthMs, &fileSize, &property) == QV_FAILED);
    HOLDS(lengthMs == 7 && fileSize == 7 && property == -7);
    HOLDS(QACReadAudioPropStrings(converter, kNoFile, 0, name, value) == QV_FAILED);
    HOLDS(QACReadIDTag(converter, kNoFile, 0, name, value, art, &artSize) == QV_FAILED);
    HOLDS(artSize == 0 && name[0] == '#' && value[0] == '#');
    HOLDS(QACWriteIDTag(converter, kNoFile, kName, kText, (const uint8_t*)kText, &written) == QV_FAILED);
    HOLDS(QACDeleteIDTag(converter, kNoFile, kName) == QV_FAILED);
    HOLDS(QACReadIDTag(NULL, kNoFile, 0, name, value, art, &artSize) == QV_NOTHING);
    return 0;
}

/* The form of an encoder or effect that does not exist goes before anybody could see it; without forms the texts come
 * back. Either way only what this call has stored is stored. */
static int Settings(QvConverter* converter) {
    static const QvChar kNobody[] = {'*', 0};
    QvChar name[8] = {'#', 0}, text[8] = {'#', 0};
    HOLDS(QACShowSettings(converter, kNobody, kText, name, text) == QV_NOTHING);
    HOLDS(name[0] == 0 ? text[0] == 0 : memcmp(text, kText, sizeof kText) == 0);
    HOLDS(QACShowDSPSettings(converter, kNobody, kText, name, text) == QV_NOTHING);
    HOLDS(name[0] == 0 ? text[0] == 0 : memcmp(text, kText, sizeof kText) == 0);
    HOLDS(QACShowSettingsOnForm(converter, kNobody, kText, 1, 0, 0) == QV_NOTHING);
    text[0] = '#';
    HOLDS(QACRemoveSettings(converter, 1, text) == QV_DONE && text[0] == 0);
    HOLDS(sizeof QV_SETTINGS_KEY > sizeof QV_SETTINGS_VALUE);
    return 0;
}

/* A path without a text is no file and a name without one no encoder, whatever modules there are. */
static int Direct(QvConverter* converter) {
    static const QvChar kNothing[] = {0};
    QvFormatExtensible format = {0};
    uint8_t buffer[4] = {'#', '#', '#', '#'};
    uint32_t bytes = sizeof buffer, finished = 7;
    uint64_t lengthMs = 7, positionMs = 7;
    HOLDS(QADOpenFile(converter, kNothing, &format, &lengthMs) == QV_FAILED);
    HOLDS(lengthMs == 7 && format.Format.nBlockAlign == 0);
    HOLDS(QADDecodeBlock(converter, buffer, &bytes, &finished, &positionMs) == QV_DONE);
    HOLDS(bytes == sizeof buffer && finished == 0 && positionMs == 0 && buffer[0] == '#');
    HOLDS(QADSetPosition(converter, -1) == QV_NOTHING);
    HOLDS(QADCloseFile(converter) == QV_DONE);
    HOLDS(QAEOpenFile(converter, kText, kNothing, kText, &format) == QV_NOTHING);
    HOLDS(QAEEncodeBlock(converter, buffer, &bytes, &finished) == QV_DONE);
    HOLDS(QAECloseFile(converter) == QV_NOTHING);
    HOLDS(QADOpenFile(NULL, kNothing, &format, &lengthMs) == QV_NOTHING);
    return 0;
}

static int Conversion(QvConverter* converter) {
    uint32_t percent = 77;
    HOLDS(QACSetCPU(converter, 0) == QV_DONE);
    HOLDS(QACSetPriority(converter, QV_PRIORITY_HIGH) == QV_DONE);
    HOLDS(QACSetPriority(converter, QV_PRIORITY_HIGH + 1) == QV_NOTHING);
    HOLDS(QACSetPause(converter, 1) == QV_DONE);
    HOLDS(QACSetPause(converter, 0) == QV_DONE);
    HOLDS(QACSetCancelled(converter) == QV_DONE);
    HOLDS(QACGetProgress(converter, &percent) == QV_DONE && percent == 0);
    HOLDS(QACConvertAudio(NULL, kText, kText, kName, kText) == QV_NOTHING);
    return 0;
}

static int Messages(QvConverter* converter) {
    QvChar buffer[1024] = {'#', 0};
    HOLDS(QACGetLastError(converter, buffer) == QV_NOTHING && buffer[0] == '#');
    HOLDS(QACGetLastInfo(NULL, buffer) == QV_NOTHING && buffer[0] == '#');
    return 0;
}

int HostInC(void) {
    QvConverter* const converter = QACCreate();
    int line = converter ? 0 : __LINE__;
    if (line == 0) line = Lists(converter);
    if (line == 0) line = Modules(converter);
    if (line == 0) line = Conversion(converter);
    if (line == 0) line = Messages(converter);
    if (line == 0) line = Files(converter);
    if (line == 0) line = Direct(converter);
    if (line == 0) line = Settings(converter);
    HOLDS(QACDestroy(converter) == QV_DONE);
    return line;
}
