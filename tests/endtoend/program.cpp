#include "endtoend/program.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

namespace {

// The rules that programs go by: a backslash escapes only a quote, and itself before one.
std::u16string Quoted(const std::u16string& argument) {
    std::u16string quoted = u"\"";
    std::size_t backslashes = 0;
    for (const char16_t unit : argument) {
        if (unit == u'"') quoted.append(backslashes + 1, u'\\');
        backslashes = unit == u'\\' ? backslashes + 1 : 0;
        quoted += unit;
    }
    return quoted.append(backslashes, u'\\') + u'"';
}

// Takes what is there. False once the pipe is broken.
bool Take(XPipe& pipe, std::string& text) {
    bool failed = false;
    clByteStore& bytes = *pipe.ReadAvailable(&failed);
    text.append(reinterpret_cast<const char*>(bytes.Data()), bytes.Cursor());
    bytes.SetCursor(0);
    return !failed;
}

std::u16string QuaverLine(const std::vector<std::u16string>& arguments) {
    std::vector<std::u16string> all = {Quaver::File()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return CommandLine(all);
}

}  // namespace

std::u16string CommandLine(const std::vector<std::u16string>& arguments) {
    std::u16string line;
    for (const std::u16string& argument : arguments) line += (line.empty() ? u"" : u" ") + Quoted(argument);
    return line;
}

Program::Program(std::u16string commandLine) {
    EXPECT_TRUE(mOutputPipe.Create() && mErrorPipe.Create());
    const platform::ChildStreams streams = {mOutputPipe.DetachWriteEnd(), mErrorPipe.DetachWriteEnd()};
    EXPECT_TRUE(platform::CreateProcessW(
        commandLine.data(), platform::kCreateNoWindow | platform::kNormalPriorityClass, streams, &mChild));
    platform::CloseHandle(streams.output);
    platform::CloseHandle(streams.error);
}

Program::~Program() {
    if (!HasEnded()) Kill();
    platform::CloseHandle(mChild.process);
    platform::CloseHandle(mChild.thread);
}

std::uint32_t Program::Finish() {
    for (bool output = true, errors = true; output || errors; platform::Sleep(1)) {
        output = output && Take(mOutputPipe, mOutput);
        errors = errors && Take(mErrorPipe, mErrors);
    }
    EXPECT_EQ(platform::WaitForSingleObject(mChild.process, platform::kInfinite), platform::kWaitObject);
    std::uint32_t exitCode = 0xFFFFFFFF;
    EXPECT_TRUE(platform::GetExitCodeProcess(mChild.process, &exitCode));
    return exitCode;
}

void Program::Kill() {
    platform::TerminateProcess(mChild.process);
    platform::WaitForSingleObject(mChild.process, platform::kInfinite);
}

bool Program::HasEnded() const {
    return platform::WaitForSingleObject(mChild.process, 0) != platform::kWaitTimeout;
}

Quaver::Quaver(const std::vector<std::u16string>& arguments) : Program(QuaverLine(arguments)) {}

std::u16string Quaver::File() {
    return std::filesystem::absolute(QV_QUAVER_FILE).make_preferred().u16string();
}
