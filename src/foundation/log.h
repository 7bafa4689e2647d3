// XLog: where error, information and trace text goes.
//
// The record is three native handles in an order that modules rely on (module.h). A handle of 0 or -1 turns
// its channel off. Text is UTF-16 without byte order mark; a line ends in CR LF. Trace lines are indented by
// call depth, which all records of the process share under one lock; the error and information lines are
// written outside it.
#pragma once

#include <cstdint>

#include "foundation/wide_string.h"
#include "platform/types.h"

class XLog {
  public:
    platform::Handle mErrorOut = platform::kNullHandle;
    platform::Handle mInfoOut = platform::kNullHandle;
    platform::Handle mTraceOut = platform::kNullHandle;

    static constexpr const char16_t* kEnter = u"->->";
    static constexpr const char16_t* kLeave = u"<-<-";

    // A trace line. `function` and `prefix` may be null; a prefix replaces the indent. Without `endLine` the
    // line stays open for the next call and the function is not named.
    static void Write(const char16_t* message, const XLog& log, const char* function, bool endLine,
                      const char16_t* prefix);
    // A trace line, and the message to the information channel.
    static void Information(const char16_t* message, const XLog& log);
    // A trace line, and the message with "  [function]" to the error channel. `function` may be null.
    static void Error(const char16_t* message, const XLog& log, const char* function);

    static XString MakeLine(const char16_t* prefix, const char16_t* message, const char* function,
                            bool endLine);

    // A channel that nobody drains would block its writer for ever once it is full. Its owner names a drain
    // here; it is then called before every piece of text that goes into that handle. A null function takes it
    // back; once that returns the drain neither runs nor will. A drain must not log, and whoever logs must
    // not hold a lock that the drain takes.
    using Drain = void (*)(void* user);
    static void SetDrain(platform::Handle channel, Drain drain, void* user);

    // Before the first and behind the last use in a process. Without them the log works unlocked.
    static void StartUp();
    static void ShutDown();
};

// The enter and leave marks of a method: the leave mark is written at the end of the scope, unless the method
// has skipped it. That is done on purpose, and a trace then shows an enter mark with no partner.
class XTraceScope {
  public:
    XTraceScope(const XLog& log, const char* function);
    XTraceScope(const XTraceScope&) = delete;
    XTraceScope& operator=(const XTraceScope&) = delete;
    ~XTraceScope();

    void SkipLeaveMark() { mSkipLeave = true; }

  private:
    const XLog& mLog;
    const char* mFunction;
    bool mSkipLeave = false;
};
