// The gates: each tests the handle and forwards to the method of the same role, arguments unchanged. All
// logic lies behind them. Four calls are too small for a method and do their work here, between the marks of
// their name.
#include "foundation/qv_text.h"
#include "interface/converter.h"
#include "quavermill/quavermill.h"

namespace {

template <class... Parameters, class... Arguments>
std::int32_t Forward(QvConverter* converter, std::int32_t (clConverter::*method)(Parameters...),
                     Arguments... arguments) {
    return converter ? (converter->*method)(arguments...) : QV_NOTHING;
}

template <class Work>
std::int32_t Between(QvConverter* converter, const char* marks, Work work) {
    if (!converter) return QV_NOTHING;
    XTraceScope trace(converter->log, marks);
    work(*converter);
    return QV_DONE;
}

}  // namespace

QvConverter* QACCreate() {
    return new QvConverter;
}

int32_t QACDestroy(QvConverter* converter) {
    delete converter;
    return QV_DONE;
}

int32_t QACGetLastError(QvConverter* converter, QvChar* buffer) {
    return Forward(converter, &clConverter::GetLastError, FromQvText(buffer));
}

int32_t QACGetLastInfo(QvConverter* converter, QvChar* buffer) {
    return Forward(converter, &clConverter::GetLastInfo, FromQvText(buffer));
}

int32_t QACGetEncoder(QvConverter* converter, int32_t index, QvChar* name, QvChar* extension) {
    return Forward(converter, &clConverter::GetEncoder, index, FromQvText(name), FromQvText(extension));
}

int32_t QACGetDecoder(QvConverter* converter, int32_t index, QvChar* name, QvChar* extension,
                      QvChar* description) {
    return Forward(converter, &clConverter::GetDecoder, index, FromQvText(name), FromQvText(extension),
                   FromQvText(description));
}

int32_t QACGetDSP(QvConverter* converter, int32_t index, QvChar* name) {
    return Forward(converter, &clConverter::GetDSP, index, FromQvText(name));
}

int32_t QACReadAudioProperties(QvConverter* converter, const QvChar* file, QvFormat* format,
                               uint64_t* lengthMs, uint64_t* fileSize, int64_t* property) {
    return Forward(converter, &clConverter::ReadAudioProperties, FromQvText(file), format, lengthMs, fileSize,
                   property);
}

int32_t QACReadAudioPropStrings(QvConverter* converter, const QvChar* file, int32_t index, QvChar* name,
                                QvChar* value) {
    return Forward(converter, &clConverter::ReadAudioPropStrings, FromQvText(file), index, FromQvText(name),
                   FromQvText(value));
}

int32_t QACReadIDTag(QvConverter* converter, const QvChar* file, int32_t index, QvChar* name, QvChar* value,
                     uint8_t* art, uint64_t* artSize) {
    return Forward(converter, &clConverter::ReadIDTag, FromQvText(file), index, FromQvText(name),
                   FromQvText(value), art, artSize);
}

int32_t QACWriteIDTag(QvConverter* converter, const QvChar* file, const QvChar* name, const QvChar* value,
                      const uint8_t* art, const uint32_t* artSize) {
    return Forward(converter, &clConverter::WriteIDTag, FromQvText(file), FromQvText(name), FromQvText(value),
                   art, artSize);
}

int32_t QACDeleteIDTag(QvConverter* converter, const QvChar* file, const QvChar* tagName) {
    return Forward(converter, &clConverter::DeleteIDTag, FromQvText(file), FromQvText(tagName));
}

int32_t QACAddIDTagToList(QvConverter* converter, const QvChar* name, const QvChar* value) {
    return Forward(converter, &clConverter::IDTagsAddToList, FromQvText(name), FromQvText(value));
}

int32_t QACClearIDTagList(QvConverter* converter) {
    return Between(converter, "clConverter::IDTagsClearList",
                   [](clConverter& object) { object.tagList.Clear(); });
}

int32_t QACReadIDTagList(QvConverter* converter, int32_t index, QvChar* name, QvChar* value) {
    return Forward(converter, &clConverter::IDTagsReadList, index, FromQvText(name), FromQvText(value));
}

int32_t QACRemoveFromIDTagList(QvConverter* converter, int32_t index) {
    return Forward(converter, &clConverter::IDTagsRemoveFromList, index);
}

int32_t QACSetTagWriteThrough(QvConverter* converter, int32_t enabled) {
    return Between(converter, "clConverter::SetTagWriteThrough",
                   [=](clConverter& object) { object.tagWriteThrough = enabled; });
}

int32_t QACAddDSPToList(QvConverter* converter, const QvChar* name, const QvChar* settings) {
    return Forward(converter, &clConverter::DSPAddToList, FromQvText(name), FromQvText(settings));
}

int32_t QACClearDSPList(QvConverter* converter) {
    return Between(converter, "clConverter::DSPClearList",
                   [](clConverter& object) { object.dspChain.Clear(); });
}

int32_t QACReadDSPList(QvConverter* converter, int32_t index, QvChar* name, QvChar* settings) {
    return Forward(converter, &clConverter::DSPReadList, index, FromQvText(name), FromQvText(settings));
}

int32_t QACRemoveFromDSPList(QvConverter* converter, int32_t index) {
    return Forward(converter, &clConverter::DSPRemoveFromList, index);
}

int32_t QACConvertAudio(QvConverter* converter, const QvChar* sourceFile, const QvChar* destinationFile,
                        const QvChar* encoderName, const QvChar* settings) {
    return Forward(converter, &clConverter::ConvertAudio, FromQvText(sourceFile), FromQvText(destinationFile),
                   FromQvText(encoderName), FromQvText(settings));
}

int32_t QACGetProgress(QvConverter* converter, uint32_t* percent) {
    return Forward(converter, &clConverter::GetProgress, percent);
}

int32_t QACSetPriority(QvConverter* converter, uint32_t priority) {
    return Forward(converter, &clConverter::SetCodecPriority, priority);
}

int32_t QACSetPause(QvConverter* converter, uint8_t paused) {
    return Forward(converter, &clConverter::SetPause, paused);
}

int32_t QACSetCancelled(QvConverter* converter) {
    return Forward(converter, &clConverter::SetCancelled);
}

int32_t QACSetCPU(QvConverter* converter, int32_t cpu) {
    return Between(converter, "clConverter::SetCPU", [=](clConverter& object) { object.cpu = cpu; });
}

// Text and name change places on the way, since the method has each output behind its input.
int32_t QACShowSettings(QvConverter* converter, const QvChar* encoderName, const QvChar* settings,
                        QvChar* encoderNameOut, QvChar* settingsOut) {
    return Forward(converter, &clConverter::ShowSettings, FromQvText(encoderName), FromQvText(encoderNameOut),
                   FromQvText(settings), FromQvText(settingsOut), 0u, 0u, 0u);
}

int32_t QACShowSettingsOnForm(QvConverter* converter, const QvChar* encoderName, const QvChar* settings,
                              uint64_t parentForm, uint32_t x, uint32_t y) {
    return Forward(converter, &clConverter::ShowSettings, FromQvText(encoderName), nullptr,
                   FromQvText(settings), nullptr, parentForm, x, y);
}

int32_t QACRemoveSettings(QvConverter* converter, uint64_t parentForm, QvChar* settingsOut) {
    return Forward(converter, &clConverter::RemoveSettings, parentForm, FromQvText(settingsOut));
}

int32_t QACShowDSPSettings(QvConverter* converter, const QvChar* dspName, const QvChar* settings,
                           QvChar* dspNameOut, QvChar* settingsOut) {
    return Forward(converter, &clConverter::ShowDSPSettings, FromQvText(dspName), FromQvText(dspNameOut),
                   FromQvText(settings), FromQvText(settingsOut));
}

int32_t QADOpenFile(QvConverter* converter, const QvChar* file, QvFormatExtensible* format,
                    uint64_t* lengthMs) {
    return Forward(converter, &clConverter::DecoderOpenFile, FromQvText(file), format, lengthMs);
}

int32_t QADDecodeBlock(QvConverter* converter, uint8_t* buffer, uint32_t* bytes, uint32_t* finished,
                       uint64_t* positionMs) {
    return Forward(converter, &clConverter::DecoderDecodeBlock, buffer, bytes, finished, positionMs);
}

int32_t QADSetPosition(QvConverter* converter, int64_t positionMs) {
    return Forward(converter, &clConverter::DecoderSetPosition, positionMs);
}

int32_t QADCloseFile(QvConverter* converter) {
    return Forward(converter, &clConverter::DecoderCloseFile);
}

int32_t QAEOpenFile(QvConverter* converter, const QvChar* file, const QvChar* encoderName,
                    const QvChar* settings, const QvFormatExtensible* format) {
    return Forward(converter, &clConverter::EncoderOpenFile, FromQvText(file), FromQvText(encoderName),
                   FromQvText(settings), format);
}

int32_t QAEEncodeBlock(QvConverter* converter, const uint8_t* buffer, const uint32_t* bytes,
                       const uint32_t* finished) {
    return Forward(converter, &clConverter::EncoderEncodeBlock, buffer, bytes, finished);
}

int32_t QAECloseFile(QvConverter* converter) {
    return Forward(converter, &clConverter::EncoderCloseFile);
}
