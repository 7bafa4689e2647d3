// Supervision is one step that the owner calls again and again. Each step reads what the child wrote, looks
// whether it has ended, passes the owner's wishes on and measures the time since the last sign of life. Every
// wait has a timeout of 0, so a step costs what there is to read and never the child's patience. The price is
// that nothing is noticed between two steps: the watchdog may fire late, never early.
#include "supervisor/cpu_encoder.h"

#include "foundation/priorities.h"
#include "platform/clock.h"
#include "platform/file.h"
#include "platform/process.h"
#include "platform/synchronisation.h"

namespace {

constexpr std::uint32_t kWatchdogMs = 60000;

bool IsSignalled(platform::Handle handle) {
    return platform::WaitForSingleObject(handle, 0) == platform::kWaitObject;
}

void CloseIfOpen(platform::Handle handle) {
    if (platform::IsOpen(handle)) platform::CloseHandle(handle);
}

}  // namespace

// The two events stand in until a run brings its own, so that there is something to set and to look at from
// the start. The object is whole before it makes them: should the second raise, the first is given back.
CPUEncoder::CPUEncoder() : CPUEncoder(Bare()) {
    cancelEvent = platform::CreateEventW(nullptr);
    watchdogEvent = platform::CreateEventW(nullptr);
}

CPUEncoder::~CPUEncoder() {
    for (const platform::Handle handle : {cancelEvent, watchdogEvent, threadHandle, processHandle})
        CloseIfOpen(handle);
}

void CPUEncoder::Create(const XString& encoder, std::int32_t processorNumber, platform::ModuleHandle module,
                        const XLog& logRecord, const XString& dspText) {
    log = logRecord;
    const XTraceScope trace(log, "CPUEncoder::Create");
    encoderName = encoder;
    dspArguments = dspText;
    processor = static_cast<std::uint32_t>(processorNumber);
    moduleHandle = module;
    running = finished = 0;
    percent = 0;
    rotationTick = blankSince = 0;
    paused = 0;
    priority = 0;
    // Forgotten, not closed: a child that still runs is abandoned together with its handles.
    processHandle = threadHandle = platform::kInvalidHandle;
}

void CPUEncoder::ServiceCLI(bool wantPaused, bool wantCancel, std::uint32_t wantPriority) {
    ServiceEncoder(false);
    if (wantPriority != priority) {
        priority = wantPriority;
        SetPriority(wantPriority);
    }
    if (running == 1) ServiceRun(wantPaused, wantCancel);
    if (!wantPaused) RotateLine();
}

void CPUEncoder::ServiceRun(bool wantPaused, bool wantCancel) {
    if (wantPaused) {
        watchdogTick = platform::GetTickCount();  // who is held still can give no sign of life
        if (!paused) PauseCLI();
    } else if (paused) {
        UnPauseCLI();
    }
    if (wantCancel && cancelEvent != platform::kNullHandle) platform::SetEvent(cancelEvent);
    ServiceWatchdog();
}

// Only the event counts as a sign of life. Text does not: a child that writes for ever without it is given
// up.
void CPUEncoder::ServiceWatchdog() {
    if (watchdogEvent != platform::kNullHandle && IsSignalled(watchdogEvent)) {
        watchdogTick = platform::GetTickCount();
        platform::ResetEvent(watchdogEvent);
    }
    if (platform::GetTickCount() - watchdogTick <= kWatchdogMs)
        return;  // unsigned: right across the tick's wrap
    XLog::Error(u"Error: Watchdog timeout, possible Quavercore crash", log, nullptr);
    EncodingFinished();
}

void CPUEncoder::ServiceEncoder(bool draining) {
    XTraceScope trace(log, "CPUEncoder::ServiceEncoder");
    if (processHandle == platform::kInvalidHandle || running != 1) return;
    DrainStream(Stream::kError, stderrPipe);
    DrainStream(Stream::kOutput, stdoutPipe);
    if (draining) {
        // The last drain of a run has no leave mark: in a trace each run that has ended sets what follows one
        // step in.
        trace.SkipLeaveMark();
        return;
    }
    if (IsSignalled(processHandle)) EncodingFinished();
}

// The owner's channel looks for "Encoding finished" to learn that the run is over. It goes out before the
// child's last words are read, which therefore stand behind it.
void CPUEncoder::EncodingFinished() {
    const XTraceScope trace(log, "CPUEncoder::EncodingFinished");
    XLog::Information(u"Encoding finished", log);
    if (processHandle != platform::kInvalidHandle) {
        ServiceEncoder(true);
        platform::CloseHandle(processHandle);
        platform::CloseHandle(threadHandle);
        processHandle = threadHandle = platform::kInvalidHandle;
    }
    running = 0;
    finished = 1;
    FinishedAllEncodingClearLbls();
}

void CPUEncoder::FinishedAllEncodingClearLbls() {
    for (XString* text : {&displayText, &actionText, &actionInputText, &actionOutputText})
        text->Assign(u"", 1);
}

void CPUEncoder::SetPriority(std::uint32_t newPriority) {
    XTraceScope trace(log, "CPUEncoder::SetPriority");
    if (processHandle == platform::kInvalidHandle || threadHandle == platform::kInvalidHandle ||
        running != 1) {
        trace.SkipLeaveMark();  // in a trace a priority that met no child is an enter mark without a partner
        return;
    }
    const PriorityLevel& level = LevelOf(newPriority);
    platform::SetThreadPriority(threadHandle, level.thread);
    platform::SetPriorityClass(processHandle, level.processClass);
}

void CPUEncoder::PauseCLI() {
    const XTraceScope trace(log, "CPUEncoder::PauseCLI");
    paused = 1;
    if (threadHandle != platform::kInvalidHandle) platform::SuspendThread(threadHandle);
}

void CPUEncoder::UnPauseCLI() {
    const XTraceScope trace(log, "CPUEncoder::UnPauseCLI");
    paused = 0;
    if (threadHandle != platform::kInvalidHandle) platform::ResumeThread(threadHandle);
}
