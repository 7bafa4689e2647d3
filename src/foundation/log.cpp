// A trace line is composed only when somebody takes it, but the depth is kept and the lock taken on every
// call, so that a channel that is opened later shows the calls that were under way. The depth is a number:
// marks without a partner let it grow with each run, and a number costs the same however large it is.
#include "foundation/log.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <new>
#include <string>

#include "foundation/log_channel.h"
#include "foundation/mutex.h"

namespace {

// Made by StartUp. The two words it guards are atomic, so that a log which works unlocked has no undefined
// moments.
std::unique_ptr<XMutex> gLogMutex;
std::atomic<std::uint32_t> gLogIndent = 0;          // depth; a level is two spaces wide
std::atomic<bool> gLogLineEnded = false;            // the next line begins at the margin and takes the indent
constexpr std::uint32_t kDeepestIndent = 1u << 28;  // a deeper one would have no size

class LogLock {
  public:
    LogLock() {
        if (gLogMutex) gLogMutex->Lock();
    }
    LogLock(const LogLock&) = delete;
    LogLock& operator=(const LogLock&) = delete;
    ~LogLock() {
        if (gLogMutex) gLogMutex->Unlock();
    }
};

bool BeginsWith(const char16_t* message, const char16_t* mark) {
    return message && std::u16string_view(message).starts_with(mark);
}

void Enter() {
    gLogIndent = std::min(gLogIndent + 1, kDeepestIndent);
}

void Leave() {
    if (gLogIndent > 0) --gLogIndent;
}

std::u16string Indent() {
    return std::u16string(gLogLineEnded ? std::size_t{2} * gLogIndent : 0, u' ');
}

}  // namespace

void XLog::Write(const char16_t* message, const XLog& log, const char* function, bool endLine,
                 const char16_t* prefix) {
    const LogLock lock;
    if (BeginsWith(message, kLeave)) Leave();
    if (platform::IsOpen(log.mTraceOut))
        log_channel::Write(log.mTraceOut,
                           MakeLine(prefix ? prefix : Indent().c_str(), message, function, endLine));
    if (BeginsWith(message, kEnter)) Enter();
    gLogLineEnded = endLine;
}

void XLog::Information(const char16_t* message, const XLog& log) {
    Write(message, log, nullptr, true, u"*** Information: ");
    if (platform::IsOpen(log.mInfoOut))
        log_channel::Write(log.mInfoOut, MakeLine(nullptr, message, nullptr, true));
}

void XLog::Error(const char16_t* message, const XLog& log, const char* function) {
    Write(message, log, function, true, u"*** Error: ");
    if (platform::IsOpen(log.mErrorOut))
        log_channel::Write(log.mErrorOut, MakeLine(nullptr, message, function, true));
}

XString XLog::MakeLine(const char16_t* prefix, const char16_t* message, const char* function, bool endLine) {
    XString line(prefix);
    if (message) line.Append(message);
    if (!endLine) return line;
    if (function) {
        line.Append(u"  [");
        line.Append(XString(function).Text());
        line.Append(u"]");
    }
    line.Append(u"\r\n");
    return line;
}

void XLog::SetDrain(platform::Handle channel, Drain drain, void* user) {
    log_channel::SetDrain(channel, drain, user);
}

void XLog::StartUp() {
    if (!gLogMutex) gLogMutex = std::make_unique<XMutex>();
}

void XLog::ShutDown() {
    gLogMutex.reset();
}

XTraceScope::XTraceScope(const XLog& log, const char* function) : mLog(log), mFunction(function) {
    XLog::Write(XLog::kEnter, log, function, true, nullptr);
}

XTraceScope::~XTraceScope() {
    if (mSkipLeave) return;
    try {
        XLog::Write(XLog::kLeave, mLog, mFunction, true, nullptr);
    } catch (const std::bad_alloc&) {
        // The depth is right again; only the line is lost.
    }
}
