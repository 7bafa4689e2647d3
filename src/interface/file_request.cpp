// One road for five calls. They differ in their words and in the one thing that they ask of the module; that a
// module is searched, started, asked and let go again is the same for all.
//
// A module is held twice. What was found has an instance already, which has answered for its file types; the
// operation gets one of its own from a second wrapper, so that it is the first thing a fresh instance is asked.
// The library is loaded once for both, and goes with the request.
#include "interface/file_request.h"

#include "foundation/joined.h"
#include "foundation/paths.h"
#include "foundation/qv_text.h"
#include "plugins/codec_handler.h"
#include "quavermill/quavermill.h"

const FileRequestWords kReadAudioProperties = {
    "clConverter::ReadAudioProperties",
    u"Error reading audio info, file does not exist '",
    u"Failed to find decoder to read audio info from file '",
    u"Failed to read audio info from file '",
    u"Reading audio info from file '",
    u"Finished reading audio info from file '",
};

const FileRequestWords kReadAudioPropStrings = {
    "clConverter::ReadAudioPropStrings",
    u"Error reading audio properties, file does not exist '",
    u"Failed to find decoder to read audio properties from file '",
    u"Failed to read audio properties from file '",
    u"Reading audio properties from file '",
    u"Finished reading audio properties from file '",
};

const FileRequestWords kReadIDTags = {
    "clConverter::ReadIDTag",
    u"Error reading ID tags, file does not exist '",
    u"Failed to find decoder to read ID tag in file '",
    u"Failed to read ID tags from file '",
    u"Reading ID tags in file '",
    u"Finished reading ID tags in file '",
};

const FileRequestWords kWriteIDTag = {
    "clConverter::WriteIDTag",
    u"Error writing ID tags, file does not exist '",
    u"Failed to find decoder to write ID tag in file '",
    u"Failed to write ID tag to file '",
    u"Writing ID tag to file '",
    u"Finished writing ID tag to file '",
};

constexpr FileRequestWords kDeleteIDTag = {
    "clConverter::DeleteIDTag",
    u"Error deleting ID tag(s), file does not exist '",
    u"Failed to find decoder to delete ID tag(s) from file '",
    u"Failed to delete ID tag(s) from file '",
    u"Deleting ID tag(s) from file '",
    u"Finished deleting ID tag(s) from file '",
};

constinit const FileRequestWords kDeleteAllIDTags = [] {
    FileRequestWords words = kDeleteIDTag;
    words.begun = u"Deleting all ID tags from file '";
    return words;
}();

clFileRequest::clFileRequest(const FileRequestWords& words, const char16_t* file, const XLog& log,
                             platform::ModuleHandle module)
    : mWords(words),
      mFile(file),
      mLog(log),
      mModule(module),
      mTrace(log, words.function),
      mResult(QV_NOTHING) {}

bool clFileRequest::FindFile() {
    return paths::Exists(mFile) || Abandon(mWords.noFile);
}

bool clFileRequest::FindDecoder() {
    Information(mWords.begun);
    return clQvCodecHandler::LoadDecoderForFile(mFile, mFound, mLog, mModule) || Abandon(mWords.noDecoder);
}

bool clFileRequest::Abandon(const char16_t* error) {
    Error(error);
    mTrace.SkipLeaveMark();
    mResult = QV_FAILED;
    return false;
}

// What could not be done is finished all the same, and said so; only a module that never started goes unsaid.
void clFileRequest::Serve(const Operation& operation) {
    Apply(operation);
    clQvCodecHandler::DestroyInstance(mFound);
    if (mResult != QV_NOTHING) Information(mWords.finished);
}

void clFileRequest::Apply(const Operation& operation) {
    clQvDecoder decoder;
    if (!clQvCodecHandler::OpenDecoderFile(decoder, mFound.RememberedPath(), mFound.RememberedExtension()))
        return;
    if (!clQvCodecHandler::CreateInstance(decoder, mLog)) return;
    mResult = operation(decoder);
    if (mResult == QV_FAILED) Error(mWords.failed);
}

// The record is cleared first: what a module does not fill is zero.
void clFileRequest::Open(std::uint32_t purpose, const Answer& answer) {
    Serve([&](const clQvDecoder& decoder) -> std::int32_t {
        clOpenFileRec record = {};
        record.file = ToQvText(mFile);
        record.request = purpose;
        return decoder.Open(&record) ? answer(record) : QV_FAILED;
    });
}

void clFileRequest::Error(const char16_t* text) const {
    XLog::Error(Joined({text, mFile, u"'"}).Text(), mLog, nullptr);
}

void clFileRequest::Information(const char16_t* text) const {
    XLog::Information(Joined({text, mFile, u"'"}).Text(), mLog);
}
