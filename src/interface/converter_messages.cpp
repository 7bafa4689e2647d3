// The message channel: how reported text reaches the host.
//
// Writers, be they the library, its modules or the supervisor, write into a pipe and need no lock. Every 10
// ms a tick empties both pipes and appends what came to the two texts that the host takes. A drain that found
// nothing allocates nothing. A drain of any size goes on whole, but only as far as its first NUL: text has
// none, so what stands behind one is no text.
//
// Where memory is short the drained bytes stay in their pipe's buffer until a later tick has room for them,
// and nothing is read over them meanwhile; the tick itself never fails.
//
// Where the timer service refuses, nobody would drain, and a writer into a full pipe would wait for ever. The
// log then drains before it writes, and so does every call that takes text or waits for it.
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "interface/converter.h"
#include "interface/text.h"
#include "platform/clock.h"
#include "platform/file.h"

namespace {

constexpr std::uint32_t kTickMs = 10;
constexpr std::u16string_view kEndOfRun = u"Encoding finished";

void OpenPipe(XPipe& pipe, platform::Handle& channel) {
    if (pipe.Create()) channel = pipe.DetachWriteEnd();
}

void CloseEnd(platform::Handle& channel) {
    platform::CloseHandle(channel);
    channel = platform::kNullHandle;
}

void SetDrain(platform::Handle channel, XLog::Drain drain, void* user) {
    if (platform::IsOpen(channel)) XLog::SetDrain(channel, drain, user);
}

// What waits in the pipe; null for nothing, and for a pipe that fails: its bytes are no message.
clByteStore* TakeWaiting(XPipe& pipe) {
    bool failed = false;
    clByteStore* bytes = pipe.ReadAvailable(&failed);
    return failed || bytes->Cursor() == 0 ? nullptr : bytes;
}

// The bytes as text. A last byte without its other half is completed by a zero.
std::u16string AsText(const clByteStore& bytes) {
    std::u16string text((bytes.Cursor() + std::size_t{1}) / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), bytes.Data(), bytes.Cursor());
    return text;
}

}  // namespace

void clConverter::OpenChannel() {
    OpenPipe(infoPipe, log.mInfoOut);
    OpenPipe(errorPipe, log.mErrorOut);
}

void clConverter::StartTicking() {
    lastError = u"";
    lastInfo = u"";
    timerBusy = false;
    timerId = platform::timeSetEvent(kTickMs, 0, &clConverter::Tick, this, platform::kTimePeriodic);
    if (timerId != 0) return;
    SetDrain(log.mErrorOut, &clConverter::Tick, this);
    SetDrain(log.mInfoOut, &clConverter::Tick, this);
}

// The trace handle is never set by the library, but it is closed like the others where somebody has set it.
void clConverter::CloseChannel() {
    if (timerId != 0) {
        platform::timeKillEvent(timerId);
    } else {
        SetDrain(log.mErrorOut, nullptr, nullptr);
        SetDrain(log.mInfoOut, nullptr, nullptr);
    }
    errorPipe.Close();
    infoPipe.Close();
    CloseEnd(log.mTraceOut);
    CloseEnd(log.mErrorOut);
    CloseEnd(log.mInfoOut);
}

void clConverter::Tick(void* converter) {
    static_cast<clConverter*>(converter)->Drain();
}

// Drains are numbered so that the host's thread can tell whether one that began behind a certain moment is
// done.
void clConverter::Drain() {
    if (timerBusy.exchange(true)) return;
    const std::uint64_t number = ++drainsBegun;
    const bool errorsDelivered = Deliver(errorPipe, undeliveredErrors, lastError, nullptr);
    const bool infoDelivered = Deliver(infoPipe, undeliveredInfo, lastInfo, &encodingFinished);
    if (errorsDelivered && infoDelivered) drainsDone = number;
    timerBusy = false;
}

void clConverter::DrainWithoutTimer() {
    if (timerId == 0) Drain();
}

// Moves what waits in the pipe to the end of `text`. False when there was no memory for it.
bool clConverter::Deliver(XPipe& pipe, clByteStore*& undelivered, XString& text,
                          std::atomic<bool>* endSeen) try {
    if (!undelivered) undelivered = TakeWaiting(pipe);
    if (!undelivered) return true;
    const std::u16string units = AsText(*undelivered);
    std::u16string searched = endSeen ? infoTail + units.c_str() : std::u16string();
    {
        std::lock_guard lock(textGuard);
        text.Append(units.c_str());
    }
    undelivered->SetCursor(0);
    undelivered = nullptr;
    if (endSeen) LookForEnd(searched, *endSeen);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

// A full pipe can part the words over two drains: what might be their beginning is kept for the next one.
void clConverter::LookForEnd(std::u16string& searched, std::atomic<bool>& endSeen) {
    if (searched.find(kEndOfRun) != std::u16string::npos) endSeen = true;
    if (searched.size() >= kEndOfRun.size()) searched.erase(0, searched.size() - kEndOfRun.size() + 1);
    infoTail.swap(searched);
}

std::int32_t clConverter::TakeText(XString& text, char16_t* buffer) {
    DrainWithoutTimer();
    std::lock_guard lock(textGuard);
    if (text.IsEmpty() || !buffer) return 0;
    CopyOut(text, buffer);
    text = u"";
    return 1;
}

std::int32_t clConverter::GetLastError(char16_t* buffer) {
    XTraceScope trace(log, "clConverter::GetLastError");
    return TakeText(lastError, buffer);
}

std::int32_t clConverter::GetLastInfo(char16_t* buffer) {
    XTraceScope trace(log, "clConverter::GetLastInfo");
    return TakeText(lastInfo, buffer);
}
