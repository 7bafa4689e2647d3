// CPUEncoder: starts the converter program for one file and watches it until it has ended.
//
// A conversion runs in a process of its own. This object writes its command into a temporary file, starts it
// with both output streams on pipes, and from then on lives on its owner's polls alone: it has no thread and
// no timer, nothing happens between two calls of ServiceCLI, and no call ever waits for the child. What the
// child says and what becomes of it goes to the log record given to Create.
//
// Order: Create, then StartThisEncoder, then ServiceCLI again and again until Running() is 0. ServiceCLI may
// be called at any time after construction. One run at a time; the next one begins with Create.
//
// Thread: one at a time, which is the owner's business. Two objects share nothing and may be used side by
// side.
//
// Failures are told in the error channel and by Running(): no call has a result. An exhausted memory raises;
// the object can then still be used and destroyed.
#pragma once

#include <cstdint>

#include "foundation/id_tag_list.h"
#include "foundation/log.h"
#include "foundation/pipe.h"
#include "foundation/temp_file.h"
#include "foundation/wide_string.h"
#include "platform/module.h"
#include "platform/types.h"

class CPUEncoder {
  public:
    CPUEncoder();
    // Gives up what the last run left: handles, pipes, the command file. A converter that still runs is not
    // told.
    ~CPUEncoder();
    CPUEncoder(const CPUEncoder&) = delete;
    CPUEncoder& operator=(const CPUEncoder&) = delete;

    // Prepares a run and sets Running(), Finished() and Percent() to 0. All arguments are copied. The
    // record's handles stay the caller's and must outlive this object's use of them. `processorNumber` 0 asks
    // for no processor. The converter is looked for in the folder of `module`, null being the program itself.
    // `dspText` is a piece of command as it stands: it is not looked into. A run that is going on is
    // abandoned: its child lives on unwatched.
    void Create(const XString& encoder, std::int32_t processorNumber, platform::ModuleHandle module,
                const XLog& logRecord, const XString& dspText);

    // Starts the converter. Running() is 1 afterwards when it was started, else 0, and the reason is in the
    // error channel. A command file that can't be written is reported there too, and the converter is started
    // all the same. `settings` is a piece of command as it stands. `tags` are handed over in their
    // order, those with a value; `writeThrough` false adds the switch that tells the converter to carry over
    // no tag of the source's own.
    void StartThisEncoder(const XString& source, const XString& destination, const XString& settings,
                          bool writeThrough, const clIDTagList& tags);

    // One step of supervision: takes what the child wrote, notices its end, applies the three wishes, gives
    // the child up after a minute without a sign of life and writes the activity line. With nothing running
    // only the priority is noted and the activity line written. `wantPriority` is a row of the table in
    // priorities.h.
    void ServiceCLI(bool wantPaused, bool wantCancel, std::uint32_t wantPriority);

    // 1 from a successful start to the end of the run, else 0.
    std::uint32_t Running() const { return running; }
    // A run has ended, in whatever way, since the last Create.
    bool Finished() const { return finished != 0; }
    // The highest number the child named in this run; it may exceed 100.
    std::int32_t Percent() const { return percent; }

    // What ServiceCLI does with the bytes it takes from a stream of the child's. They are 16-bit text and
    // need be neither whole units nor whole lines, but nothing is carried from one call to the next. Any
    // bytes will do.
    enum class Stream { kOutput, kError };
    void TakeText(Stream stream, const void* bytes, std::uint32_t count);

  private:
    struct Bare {};
    explicit CPUEncoder(Bare) {}  // with no event yet

    // Start: cpu_encoder_command.cpp, cpu_encoder_child.cpp.
    struct Command;
    void StartEncoder(const XString& source, const XString& destination, const XString& settings,
                      bool writeThrough, const clIDTagList& tags);
    void BeginRun(const XString& source, const XString& destination);
    XString MakeCancelEvent();
    XString MakeWatchdogEvent();
    bool WriteCommandFile(const Command& command);
    XString CommandText(const Command& command);
    void AppendTags(XString& text, const clIDTagList& tags);
    XString CommandLine() const;
    void ReplaceQuotes(XString& text);
    bool RunConverter(const XString& commandLine);

    // Supervision: cpu_encoder.cpp.
    void ServiceEncoder(bool draining);
    void ServiceRun(bool wantPaused, bool wantCancel);
    void ServiceWatchdog();
    void EncodingFinished();
    void FinishedAllEncodingClearLbls();
    void SetPriority(std::uint32_t newPriority);
    void PauseCLI();
    void UnPauseCLI();

    // Messages: cpu_encoder_messages.cpp.
    void DrainStream(Stream stream, XPipe& pipe);
    void TakeLine(Stream stream, const XString& line);
    bool ParseMessage(const XString& line);
    void ApplyMessage(const XString& key, const XString& value);
    void RaisePercent(std::int64_t value);
    const XString& LineToShow() const;
    void RotateLine();

    XString encoderName;
    XString dspArguments;
    std::uint32_t processor = 0;
    std::uint32_t running = 0;
    std::uint8_t finished = 0;
    std::int32_t percent = 0;
    XString sourceFile;
    XString destinationFile;
    XPipe stdoutPipe;
    XPipe stderrPipe;
    platform::Handle processHandle = platform::kInvalidHandle;
    platform::Handle threadHandle = platform::kInvalidHandle;
    XTempFile commandFile;
    std::uint8_t paused = 0;
    std::uint32_t priority = 0;
    platform::Handle cancelEvent = platform::kNullHandle;
    std::uint8_t cancelEventExisted = 0;
    platform::Handle watchdogEvent = platform::kNullHandle;
    std::uint8_t watchdogEventExisted = 0;
    std::uint32_t watchdogTick = 0;
    XString displayText;
    XString actionText;
    XString actionInputText;
    XString actionOutputText;
    std::uint32_t rotationTick = 0;
    std::uint32_t blankSince = 0;
    platform::ModuleHandle moduleHandle = nullptr;
    XLog log;
};
