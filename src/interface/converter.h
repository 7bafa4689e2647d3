// clConverter: the one object behind a host's handle.
//
// It owns all that a request needs and lives from QACCreate to QACDestroy. Every text that the library, a
// module or the supervisor reports goes into one of its two pipes through `log`; a timer tick, on a thread of
// the timer service, drains the pipes into `lastError` and `lastInfo`, where the host takes it. The tick and
// the host share those two texts, under a lock that is held for one copy, and a few atomics; everything else
// belongs to the host's thread.
//
// Each method serves the export of the same role, named as its trace marks name it. Results are those of
// quavermill.h. A text that comes in may be null, which is the empty text; a buffer that is null receives
// nothing. An exhausted memory raises; the object can then still be used and destroyed.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "audio/block_carry.h"
#include "audio/format_changer.h"
#include "foundation/id_tag_list.h"
#include "foundation/log.h"
#include "foundation/pipe.h"
#include "foundation/string_list.h"
#include "foundation/wide_string.h"
#include "interface/dsp_list.h"
#include "platform/module.h"
#include "plugins/decoder_module.h"
#include "plugins/encoder_module.h"
#include "quavermill/module.h"
#include "supervisor/cpu_encoder.h"

class clConverter {
  public:
    clConverter();
    // Waits for a running tick. A converter that still runs is not told.
    ~clConverter();
    clConverter(const clConverter&) = delete;
    clConverter& operator=(const clConverter&) = delete;

    // Message channel: converter_messages.cpp.
    std::int32_t GetLastError(char16_t* buffer);
    std::int32_t GetLastInfo(char16_t* buffer);

    // What the module folders offer: converter_listing.cpp.
    std::int32_t GetEncoder(std::int32_t index, char16_t* name, char16_t* extension);
    std::int32_t GetDecoder(std::int32_t index, char16_t* name, char16_t* extension, char16_t* description);
    std::int32_t GetDSP(std::int32_t index, char16_t* name);

    // What a file is: converter_properties.cpp.
    std::int32_t ReadAudioProperties(const char16_t* file, QvFormat* format, std::uint64_t* lengthMs,
                                     std::uint64_t* fileSize, std::int64_t* property);
    std::int32_t ReadAudioPropStrings(const char16_t* file, std::int32_t index, char16_t* name,
                                      char16_t* value);

    // Tags of a file, and those for the next conversion: converter_tags.cpp.
    std::int32_t ReadIDTag(const char16_t* file, std::int32_t index, char16_t* name, char16_t* value,
                           std::uint8_t* art, std::uint64_t* artSize);
    std::int32_t WriteIDTag(const char16_t* file, const char16_t* name, const char16_t* value,
                            const std::uint8_t* art, const std::uint32_t* artSize);
    std::int32_t DeleteIDTag(const char16_t* file, const char16_t* tagName);
    std::int32_t IDTagsAddToList(const char16_t* name, const char16_t* value);
    std::int32_t IDTagsReadList(std::int32_t index, char16_t* name, char16_t* value);
    std::int32_t IDTagsRemoveFromList(std::int32_t index);

    // Effects for the next conversion: converter_effects.cpp.
    std::int32_t DSPAddToList(const char16_t* name, const char16_t* settings);
    std::int32_t DSPReadList(std::int32_t index, char16_t* name, char16_t* settings);
    std::int32_t DSPRemoveFromList(std::int32_t index);

    // Conversion: converter_conversion.cpp.
    std::int32_t ConvertAudio(const char16_t* sourceFile, const char16_t* destinationFile,
                              const char16_t* encoderName, const char16_t* settings);
    std::int32_t GetProgress(std::uint32_t* percent);
    std::int32_t SetCodecPriority(std::uint32_t newPriority);
    std::int32_t SetPause(std::uint8_t newPaused);
    std::int32_t SetCancelled();

    // Direct decoding: converter_decoding.cpp.
    std::int32_t DecoderOpenFile(const char16_t* file, QvFormatExtensible* format, std::uint64_t* lengthMs);
    std::int32_t DecoderDecodeBlock(std::uint8_t* buffer, std::uint32_t* bytes, std::uint32_t* finished,
                                    std::uint64_t* positionMs);
    std::int32_t DecoderSetPosition(std::int64_t positionMs);
    std::int32_t DecoderCloseFile();

    // Direct encoding: converter_encoding.cpp.
    std::int32_t EncoderOpenFile(const char16_t* file, const char16_t* encoderName, const char16_t* settings,
                                 const QvFormatExtensible* format);
    std::int32_t EncoderEncodeBlock(const std::uint8_t* buffer, const std::uint32_t* bytes,
                                    const std::uint32_t* finished);
    std::int32_t EncoderCloseFile();

    // Settings, shown to the user: converter_settings.cpp. A parent form of 0 is none, and a form of the
    // library's own comes up.
    std::int32_t ShowSettings(const char16_t* encoderName, char16_t* encoderNameOut, const char16_t* settings,
                              char16_t* settingsOut, std::uint64_t parentForm, std::uint32_t x,
                              std::uint32_t y);
    std::int32_t RemoveSettings(std::uint64_t parentForm, char16_t* settingsOut);
    std::int32_t ShowDSPSettings(const char16_t* dspName, char16_t* dspNameOut, const char16_t* settings,
                                 char16_t* settingsOut);

    // The members in the order of their birth; they die the other way round.
    std::atomic<bool> timerBusy = false;  // keeps two drains apart
    XLog log;                             // modules are given its address
    clIDTagList tagList;                  // the last file's tags, or the host's own rows: one list for both
    clIDTagList propList;                 // the last file's property texts
    CPUEncoder encoderProcess;
    std::uint32_t priority = 0;
    std::uint8_t paused = 0;
    std::uint8_t cancelled = 0;
    std::int32_t cpu = -1;
    platform::ModuleHandle moduleHandle;          // the library's own: its folder anchors what it looks for
    XStringList encoderNames, encoderExtensions;  // full paths; the lists of a kind are parallel
    XStringList decoderNames, decoderExtensions, decoderDescriptions;
    XStringList dspNames;
    clDSPList dspChain;
    XPipe infoPipe;
    XPipe errorPipe;
    std::int32_t tagWriteThrough = 0;
    clQvDecoder decoder;                         // of the open direct decoding
    clFormatHolder sourceFormat;                 // what it gives
    clBlockCarry decodedCarry;                   // in outputFormat already, not yet delivered
    std::uint64_t moduleTimecode = 0;            // of the module's last block; kept, not read
    std::uint64_t deliveredBytes = 0;            // output position: the last seek's target and all since
    std::uint32_t decoderFinished = 0;           // the module has reported the end
    clQvEncoder directEncoder;                   // of the open direct encoding
    clEncoderSessionRec encoderRecord = {};      // stands as long as that
    clFormatChanger formatChanger;               // from sourceFormat to outputFormat
    clFormatHolder outputFormat;                 // what direct decoding delivers
    XString settingsText;                        // of the last settings call
    XString settingsEncoderName;                 // of the same
    clQvEncoder settingsEncoder;                 // whose panel stands on a form of the host's, or last stood
    std::atomic<bool> encodingFinished = false;  // the end of the current run stands in lastInfo
    std::uint32_t timerId = 0;                   // 0 when the timer service has refused
    XString lastError;
    XString lastInfo;

  private:
    static bool CheckLicence();

    void OpenChannel();
    void StartTicking();
    void CloseChannel();
    static void Tick(void* converter);
    void Drain();
    void DrainWithoutTimer();
    bool Deliver(XPipe& pipe, clByteStore*& undelivered, XString& text, std::atomic<bool>* endSeen);
    void LookForEnd(std::u16string& searched, std::atomic<bool>& endSeen);
    std::int32_t TakeText(XString& text, char16_t* buffer);

    void Service();
    std::uint32_t Progress() const;
    XString DSPArguments();

    void ReleaseModules();
    bool FindDecoder(const char16_t* file, clQvDecoder& found);
    std::int32_t OpenDecoder(clQvDecoder& found, const char16_t* file, QvFormatExtensible* format,
                             std::uint64_t* lengthMs);
    void DeriveFormats(const clOpenFileRec& record, QvFormatExtensible* format);
    void CloseDecoder();
    void DecodeModuleBlock(std::uint32_t wanted);
    void HandOut(std::uint32_t grant, std::uint8_t* buffer);
    std::uint64_t DeliveredMs();
    std::uint16_t OutputBlockAlign();
    bool BeginEncoding(const char16_t* file, const char16_t* encoderName, const char16_t* settings,
                       const QvFormatExtensible* format);
    std::int32_t ShowPanel(std::uint64_t parentForm, std::uint32_t x, std::uint32_t y);
    std::int32_t RunSettingsForm(char16_t* encoderNameOut, char16_t* settingsOut);

    std::mutex textGuard;                      // lastError and lastInfo, between the tick and the host
    clByteStore* undeliveredErrors = nullptr;  // in errorPipe, drained but still without memory to stand in
    clByteStore* undeliveredInfo = nullptr;
    std::u16string infoTail;  // the last units of the drain before
    std::atomic<std::uint64_t> drainsBegun = 0;
    std::atomic<std::uint64_t> drainsDone = 0;  // the number of the last drain that delivered all it found
    std::optional<std::uint64_t> drainOfLastWords;  // the first drain that begins behind the end of the run
};

// What a host's handle points at.
struct QvConverter final : clConverter {};
