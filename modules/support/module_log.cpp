#include "modules/support/module_log.h"

#include <string>

#include "foundation/joined.h"
#include "platform/file.h"

namespace {

void Send(platform::Handle channel, const char16_t* text, std::size_t length) {
    std::uint32_t written = 0;
    if (platform::IsOpen(channel)) {
        platform::WriteFile(channel, text, static_cast<std::uint32_t>(length * sizeof(char16_t)), &written);
    }
}

void SendMessage(platform::Handle channel, const char16_t* file, const char16_t* message) {
    const XString line = file ? Joined({file, u": ", message, u"\r\n"}) : Joined({message, u"\r\n"});
    Send(channel, line.Text(), static_cast<std::size_t>(line.Length()));
}

}  // namespace

clModuleLog::clModuleLog(const QvLog* log) {
    if (!log) return;
    mErrorOut = static_cast<platform::Handle>(log->errorOut);
    mInfoOut = static_cast<platform::Handle>(log->infoOut);
}

void clModuleLog::Error(const char16_t* file, const char16_t* message) const {
    SendMessage(mErrorOut, file, message);
}

void clModuleLog::Information(const char16_t* file, const char16_t* message) const {
    SendMessage(mInfoOut, file, message);
}

void clModuleLog::ErrorLine(const char16_t* line) const {
    Send(mErrorOut, line, std::char_traits<char16_t>::length(line));
}
