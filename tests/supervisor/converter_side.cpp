#include "supervisor/converter_side.h"

#include <cstring>

#include "platform/file.h"
#include "platform/program.h"
#include "platform/synchronisation.h"
#include "platform/text.h"
#include "supervisor/files.h"

namespace {
constexpr std::uint32_t kPatienceMs = 60000;
}

ConverterSide::ConverterSide(int argc, char** argv)
    : mCount(argc),
      mArguments(argv),
      mOutput(platform::GetStdHandle(platform::kStdOutput)),
      mError(platform::GetStdHandle(platform::kStdError)) {
    const std::u16string file = Argument("-qvcmd");
    if (!file.empty()) mCommand = TextOf(ReadBytes(file));
}

ConverterSide::~ConverterSide() {
    for (const auto& [name, event] : mEvents) platform::CloseHandle(event);
    platform::CloseHandle(mCancel);
    platform::CloseHandle(mWatchdog);
}

void ConverterSide::Say(std::u16string_view text) const {
    WriteAll(mOutput, text);
}
void ConverterSide::SayBytes(const void* bytes, std::size_t first, std::size_t end) const {
    std::uint32_t written = 0;
    platform::WriteFile(mOutput, static_cast<const char*>(bytes) + first,
                        static_cast<std::uint32_t>(end - first), &written);
}

void ConverterSide::Complain(std::u16string_view text) const {
    WriteAll(mError, text);
}

void ConverterSide::OpenEvents() {
    mCancel = platform::OpenEventW(Switch(u" -evtquit").c_str());
    mWatchdog = platform::OpenEventW(Switch(u" -evtwatchdog").c_str());
}

void ConverterSide::SignLife() const {
    platform::SetEvent(mWatchdog);
}

bool ConverterSide::WaitForCancel() const {
    return platform::WaitForSingleObject(mCancel, kPatienceMs) == platform::kWaitObject;
}

bool ConverterSide::WaitFor(const char* argument) const {
    return platform::WaitForSingleObject(Event(argument), kPatienceMs) == platform::kWaitObject;
}

void ConverterSide::Tell(const char* argument) const {
    platform::SetEvent(Event(argument));
}
void ConverterSide::Clear(const char* argument) const {
    platform::ResetEvent(Event(argument));
}

bool ConverterSide::IsSet(const char* argument) const {
    return platform::WaitForSingleObject(Event(argument), 0) == platform::kWaitObject;
}

std::u16string ConverterSide::Argument(const char* name) const {
    const std::size_t length = std::strlen(name);
    for (int index = 0; index < mCount; ++index) {
        const char* const argument = mArguments[index];
        if (std::strncmp(argument, name, length) != 0 || argument[length] != '=') continue;
        char16_t wide[1024] = {};
        platform::MultiByteToWideChar(argument + length + 1, wide, 1024);
        return wide;
    }
    return u"";
}

// Opened once and kept until the child ends.
platform::Handle ConverterSide::Event(const char* argument) const {
    platform::Handle& event = mEvents[argument];
    const std::u16string name = Argument((std::string("--") + argument).c_str());
    if (event == platform::kNullHandle) event = platform::OpenEventW(name.c_str());
    return event;
}

std::u16string ConverterSide::Switch(const std::u16string& name) const {
    const std::size_t found = mCommand.find(name + u"=\"");
    if (found == std::u16string::npos) return u"";
    const std::size_t value = found + name.size() + 2;
    return mCommand.substr(value, mCommand.find(u'"', value) - value);
}
