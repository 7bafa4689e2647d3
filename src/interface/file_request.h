// clFileRequest: one call that reads or changes a file through the module that decodes it, and nothing of which
// outlasts the call.
//
//     clFileRequest request(kReadIDTags, file, log, moduleHandle);
//     if (!request.FindFile() || !request.FindDecoder()) return request.Result();
//     request.Serve([&](const clQvDecoder& decoder) { ... });
//     return request.Result();
//
// Each step says what it does in the operation's own words. The scope is that of the trace marks; the two steps
// that find nothing end the call early, and then it has no leave mark.
#pragma once

#include <cstdint>
#include <functional>

#include "foundation/log.h"
#include "platform/module.h"
#include "plugins/decoder_module.h"

// The words of an operation. The texts end where the file's name begins; a quote follows that.
struct FileRequestWords {
    const char* function;    // of the trace marks
    const char16_t* noFile;  // errors
    const char16_t* noDecoder;
    const char16_t* failed;
    const char16_t* begun;  // information
    const char16_t* finished;
};

extern const FileRequestWords kReadAudioProperties;
extern const FileRequestWords kReadAudioPropStrings;
extern const FileRequestWords kReadIDTags;
extern const FileRequestWords kWriteIDTag;
extern const FileRequestWords kDeleteIDTag;
extern const FileRequestWords kDeleteAllIDTags;

class clFileRequest {
  public:
    // What is done with a live decoder. Its result becomes that of the request; QV_FAILED is also reported.
    using Operation = std::function<std::int32_t(const clQvDecoder& decoder)>;
    // What is done with the answer to an Open; its result becomes that of the request.
    using Answer = std::function<std::int32_t(const clOpenFileRec& record)>;

    // The words, the file's name and the log stand as long as the request. `module` is the library's own.
    clFileRequest(const FileRequestWords& words, const char16_t* file, const XLog& log,
                  platform::ModuleHandle module);

    // False when there is no such file.
    bool FindFile();
    // False when no module decodes it.
    bool FindDecoder();
    // Behind FindDecoder, once. Hands a fresh instance of that module to the operation. The result stays as it
    // is, and nothing is reported, when the module can't be loaded or makes no instance.
    void Serve(const Operation& operation);
    // Serve, with an Open: QV_FAILED where the module refuses it.
    void Open(std::uint32_t purpose, const Answer& answer);

    // QV_NOTHING at first, QV_FAILED once a step was false.
    std::int32_t Result() const { return mResult; }

  private:
    bool Abandon(const char16_t* error);
    void Apply(const Operation& operation);
    void Error(const char16_t* text) const;
    void Information(const char16_t* text) const;

    const FileRequestWords& mWords;
    const char16_t* mFile;
    const XLog& mLog;
    platform::ModuleHandle mModule;
    XTraceScope mTrace;
    clQvDecoder mFound;
    std::int32_t mResult;
};
