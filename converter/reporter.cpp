#include "converter/reporter.h"

#include <algorithm>

#include "platform/file.h"
#include "platform/program.h"

Reporter::Reporter()
    : mOutput(platform::GetStdHandle(platform::kStdOutput)),
      mError(platform::GetStdHandle(platform::kStdError)) {}

void Reporter::Error(std::u16string_view text) {
    Line(mError, text);
}

void Reporter::Error(std::u16string_view what, std::u16string_view name) {
    Error(std::u16string(what) + u" '" + std::u16string(name) + u"'");
}

void Reporter::Information(std::u16string_view text) {
    Line(mOutput, text);
}

void Reporter::Percent(int percent) {
    if (percent <= mPercent) return;
    mPercent = percent;
    const std::string digits = std::to_string(percent);
    Message(u"PCDone", std::u16string(digits.begin(), digits.end()));
}

void Reporter::Action(std::u16string_view action, std::u16string_view input, std::u16string_view output) {
    Message(u"ActionInput", input);
    Message(u"ActionOutput", output);
    Message(u"Action", action);
}

void Reporter::Message(std::u16string_view key, std::u16string_view value) {
    Line(mOutput, u"MSGTO: qMC: " + std::u16string(key) + u": " + std::u16string(value));
}

void Reporter::Line(platform::Handle stream, std::u16string_view text) {
    if (!platform::IsOpen(stream)) return;
    std::u16string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char16_t unit) { return unit == u'\r' || unit == u'\n'; }, u' ');
    line += u"\r\n";
    const std::lock_guard lock(mLock);
    std::uint32_t written = 0;
    platform::WriteFile(stream, line.data(), static_cast<std::uint32_t>(line.size() * sizeof(char16_t)),
                        &written);
}
