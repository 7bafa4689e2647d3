#include "interface/host.h"

#include "platform/file.h"

namespace {

std::u16string Widened(std::string_view narrow) {
    return {narrow.begin(), narrow.end()};
}

std::u16string Mark(const char16_t* mark, const char* name) {
    return mark + (u"  [" + Widened(name)) + u"]\r\n";
}

}  // namespace

void Host::Destroy() {
    QACDestroy(std::exchange(handle, nullptr));
}

std::u16string Host::Errors() {
    if (QACGetLastError(handle, mBuffer.data()) != QV_DONE) return u"";
    return reinterpret_cast<const char16_t*>(mBuffer.data());
}

std::u16string Host::Info() {
    if (QACGetLastInfo(handle, mBuffer.data()) != QV_DONE) return u"";
    return reinterpret_cast<const char16_t*>(mBuffer.data());
}

std::uint32_t Host::Progress() {
    std::uint32_t percent = 12345;
    QACGetProgress(handle, &percent);
    return percent;
}

bool Host::Convert(const char16_t* settings) {
    return QACConvertAudio(handle, In(u"in.wav"), In(u"out.qv"), In(u"WAV"), In(settings)) == QV_DONE;
}

bool Host::PollUntil(std::uint32_t percent) {
    return Eventually([=, this] { return Progress() == percent; });
}

void Host::AddEffect(const char16_t* name, const char16_t* settings) {
    QACAddDSPToList(handle, In(name), In(settings));
}

void Host::AddTag(const char16_t* name, const char16_t* value) {
    QACAddIDTagToList(handle, In(name), In(value));
}

bool Eventually(const std::function<bool()>& condition) {
    const std::uint32_t start = platform::GetTickCount.Native()();
    while (!condition()) {
        if (platform::GetTickCount.Native()() - start > 60000) return false;
        platform::Sleep(1);
    }
    return true;
}

void WriteTo(platform::Handle channel, std::u16string_view text) {
    WriteAll(channel, text);
}

void WriteBytesTo(platform::Handle channel, std::string_view bytes) {
    std::uint32_t written = 0;
    platform::WriteFile(channel, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written);
}

ManualTimers::ManualTimers() {
    mStarts.Replace([this](std::uint32_t delay, std::uint32_t resolution, platform::TimerCallback callback,
                           void* user, std::uint32_t startFlags) {
        delayMs = delay;
        resolutionMs = resolution;
        flags = startFlags;
        mTimers.push_back({++mLastId, callback, user});
        return mLastId;
    });
    mStops.Replace([this](std::uint32_t id) {
        return std::erase_if(mTimers, [id](const Timer& timer) { return timer.id == id; }) > 0;
    });
}

void ManualTimers::Tick() const {
    for (const Timer& timer : mTimers) timer.callback(timer.user);
}

Trace::Trace(Host& host) : mConverter(host.handle) {
    for (int level = 0; level < 1000; ++level) XLog::Write(XLog::kLeave, XLog(), nullptr, true, nullptr);
    mConverter->log.mTraceOut = mSink.Channel();
}

Trace::~Trace() {
    mConverter->log.mTraceOut = platform::kNullHandle;
}

std::u16string Trace::OwnLines() const {
    const std::u16string all = Text();
    std::u16string own;
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t end = all.find(u"\r\n", at) + 2;
        const std::u16string line = all.substr(at, end - at);
        if (line.find(u"CPUEncoder") == std::u16string::npos)
            own += line.substr(line.find_first_not_of(u' '));
        at = end;
    }
    return own;
}

std::u16string Enter(const char* name) {
    return Mark(u"->->", name);
}
std::u16string Leave(const char* name) {
    return Mark(u"<-<-", name);
}
