// clModuleDecoder: what a decoder module of ours fills in. The nine entries themselves, their records, keys
// and requests, and the flat form of tags are served for all of them by decoder_entries.cpp; a module links
// that and provides MakeDecoder.
//
// A false result is a failure that has been reported to mLog. An exception is caught at the entry and
// reported there.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "foundation/id_tag_list.h"
#include "modules/support/module_log.h"

// A row of what the module reads. Both texts are constants.
struct clFileType {
    const char16_t* extension;  // ".wav"
    const char16_t* description;
};

struct clAudioInformation {
    QvFormatExtensible format{};  // of the blocks to come; a plain record leaves the rest 0
    std::int32_t property = 0;
    std::uint64_t lengthMs = 0;
    std::uint64_t fileSize = 0;
};

struct clDecodedBlock {
    const std::uint8_t* data = nullptr;  // stands until the next call
    std::uint32_t bytes = 0;
    std::uint64_t timecode = 0;
    bool finished = false;
};

class clModuleDecoder {
  public:
    explicit clModuleDecoder(const clModuleLog& log) : mLog(log) {}
    clModuleDecoder(const clModuleDecoder&) = delete;
    clModuleDecoder& operator=(const clModuleDecoder&) = delete;
    virtual ~clModuleDecoder() = default;

    virtual std::span<const clFileType> FileTypes() const = 0;

    // Reads of a file that leave nothing open. The lists come empty.
    virtual bool ReadInformation(const char16_t* file, clAudioInformation& information) = 0;
    virtual bool ReadTags(const char16_t* file, clIDTagList& tags) = 0;
    virtual bool ReadPropertyRows(const char16_t* file, clIDTagList& rows) = 0;

    // Replaces the tags of a file; removes the named one, or all of them for an empty name.
    virtual bool WriteTags(const char16_t* file, const clIDTagList& tags) = 0;
    virtual bool DeleteTags(const char16_t* file, const char16_t* name) = 0;

    virtual bool OpenForDecoding(const char16_t* file, clAudioInformation& information) = 0;
    virtual void Close() = 0;
    // The next block. A decoder that can't go on reports why and sets `finished`. With no file open it does
    // the same.
    virtual clDecodedBlock DecodeBlock() = 0;
    virtual void SetPosition(std::int64_t frame) = 0;  // clamped

    const clModuleLog& Log() const { return mLog; }

  protected:
    const clModuleLog mLog;
};

// Provided by the module.
std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log);
