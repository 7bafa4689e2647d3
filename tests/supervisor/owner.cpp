#include "supervisor/owner.h"

#include "platform/file.h"
#include "platform/module.h"
#include "platform/synchronisation.h"
#include "support/child.h"

namespace {
constexpr std::uint32_t kPatienceMs = 60000;
}

Owner::Owner() {
    for (int level = 0; level < 1000; ++level) XLog::Write(XLog::kLeave, XLog(), nullptr, true, nullptr);
}

XLog Owner::Log() const {
    XLog log;
    log.mErrorOut = errors.Channel();
    log.mInfoOut = information.Channel();
    log.mTraceOut = trace.Channel();
    return log;
}

void Owner::Create(std::int32_t processor, const char16_t* dspText, platform::ModuleHandle module) {
    encoder.Create(u"WAV", processor, module, Log(), dspText);
}

void Owner::Start(const char16_t* settings) {
    encoder.StartThisEncoder(u"in.wav", u"out.qv", settings, writeThrough, tags);
}

void Owner::Poll(bool paused, bool cancel, std::uint32_t priority) {
    encoder.ServiceCLI(paused, cancel, priority);
}

bool Owner::PollUntil(const std::function<bool()>& condition, bool paused, bool cancel) {
    const std::uint32_t start = platform::GetTickCount.Native()();
    for (;;) {
        Poll(paused, cancel);
        if (condition()) return true;
        if (platform::GetTickCount.Native()() - start > kPatienceMs) return false;
        platform::Sleep(1);
    }
}

void Owner::Say(std::u16string_view text, CPUEncoder::Stream stream) {
    encoder.TakeText(stream, text.data(), static_cast<std::uint32_t>(2 * text.size()));
}

Launch::Launch() {
    mCalls.Replace([this](char16_t* commandLine, std::uint32_t creationFlags,
                          const platform::ChildStreams& childStreams, platform::ChildHandles*) {
        Note(commandLine, creationFlags, childStreams);
        platform::CloseHandle.Native()(childStreams.output);  // nobody else will
        platform::CloseHandle.Native()(childStreams.error);
        return false;
    });
}

Launch::Launch(const char* name, const std::u16string& arguments) {
    const std::u16string self = child::CommandLine(name);
    const std::u16string childSwitch = self.substr(self.find(u" --child="));
    mCalls.Replace([=, this](char16_t* commandLine, std::uint32_t creationFlags,
                             const platform::ChildStreams& childStreams, platform::ChildHandles* handles) {
        Note(commandLine, creationFlags, childStreams);
        const std::size_t end = line.find(u'"', 1) + 1;
        const std::u16string program = mOwnProgram ? self : line.substr(0, end) + childSwitch;
        std::u16string real = program + line.substr(end) + u" " + arguments;
        const bool started = mCalls.Native(real.data(), creationFlags, childStreams, handles);
        if (started) this->child = *handles;
        return started;
    });
}

void Launch::Note(const char16_t* commandLine, std::uint32_t creationFlags,
                  const platform::ChildStreams& childStreams) {
    ++count;
    line = commandLine;
    flags = creationFlags;
    streams = childStreams;
    const std::size_t name = line.find(u" -qvcmd=\"") + 9;
    commandFile = line.substr(name, line.size() - 1 - name);
    commandBytes = ReadBytes(commandFile);
    command = TextOf(commandBytes);
}

std::u16string Launch::Value(const std::u16string& name) const {
    const std::size_t found = command.find(name + u"=\"");
    if (found == std::u16string::npos) return u"";
    const std::size_t value = found + name.size() + 2;
    return command.substr(value, command.find(u'"', value) - value);
}

Signal::Signal() {
    static std::int64_t made = 0;
    std::int64_t counter = 0;
    platform::QueryPerformanceCounter.Native()(&counter);
    const std::string name = "qvtest-" + std::to_string(counter) + "-" + std::to_string(++made);
    mName.assign(name.begin(), name.end());
    mHandle = platform::CreateEventW.Native()(mName.c_str());
}

Signal::~Signal() {
    platform::CloseHandle.Native()(mHandle);
}

std::u16string Signal::As(const char* argument) const {
    const std::string narrow(argument);
    return u"--" + std::u16string(narrow.begin(), narrow.end()) + u"=" + mName;
}

void Signal::Set() const {
    platform::SetEvent.Native()(mHandle);
}
void Signal::Reset() const {
    platform::ResetEvent.Native()(mHandle);
}
bool Signal::Wait() const {
    return platform::WaitForSingleObject.Native()(mHandle, kPatienceMs) == platform::kWaitObject;
}

TestClock::TestClock(std::uint32_t start) : mNow(start) {
    mCalls.Replace([this] { return mHeld ? mNow : mNow++; });
}

std::uint32_t TestClock::Somewhere() {
    std::int64_t counter = 0;
    platform::QueryPerformanceCounter.Native()(&counter);
    // The multiplier spreads counts that lie close together over all of the range.
    return static_cast<std::uint32_t>(counter) * 2654435761u | 0x80000000u;
}

void TestClock::Hold() {
    if (!mHeld) --mNow;
    mHeld = true;
}

std::u16string SignedDecimal(std::uint32_t value) {
    const std::string narrow = std::to_string(static_cast<std::int32_t>(value));
    return {narrow.begin(), narrow.end()};
}

std::size_t CountOf(const std::u16string& text, const std::u16string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::u16string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}
