#include "running_child.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/file.h"
#include "platform/pipe.h"
#include "platform/program.h"
#include "platform/synchronisation.h"
#include "support/child.h"

using namespace platform;

namespace {

// Takes what is there. False once the pipe is broken.
bool Take(Handle pipe, std::string& all) {
    std::uint32_t available = 0, read = 0;
    if (!PeekNamedPipe(pipe, &available)) return false;
    std::string bytes(available, '\0');
    if (available && !ReadFile(pipe, bytes.data(), available, &read)) return false;
    all.append(bytes, 0, read);
    return true;
}

void MakeStream(Handle* reader, Handle* inherited) {
    Handle writer = kInvalidHandle;
    EXPECT_TRUE(CreatePipe(reader, &writer));
    EXPECT_TRUE(DuplicateHandle(writer, inherited));
}

}  // namespace

RunningChild::RunningChild(const char* name, const std::u16string& arguments) {
    ChildStreams streams;
    MakeStream(&mOutputPipe, &streams.output);
    MakeStream(&mErrorPipe, &streams.error);
    std::u16string line = child::CommandLine(name, arguments);
    mStarted = CreateProcessW(line.data(), kCreateNoWindow | kNormalPriorityClass, streams, &mChild);
    EXPECT_TRUE(mStarted);
    EXPECT_TRUE(CloseHandle(streams.output));
    EXPECT_TRUE(CloseHandle(streams.error));
}

RunningChild::~RunningChild() {
    if (mChild.process != kInvalidHandle && WaitForSingleObject(mChild.process, 0) != kWaitObject) {
        TerminateProcess(mChild.process);
        WaitForSingleObject(mChild.process, kInfinite);
    }
    LetGo();
    CloseHandle(mOutputPipe);
    CloseHandle(mErrorPipe);
}

void RunningChild::LetGo() {
    EXPECT_EQ(CloseHandle(mChild.process), mChild.process != kInvalidHandle);
    EXPECT_EQ(CloseHandle(mChild.thread), mChild.thread != kInvalidHandle);
    mChild = {};
}

void RunningChild::ReadToEnd() {
    for (bool output = true, errors = true; output || errors; Sleep(1)) {
        output = output && Take(mOutputPipe, mOutput);
        errors = errors && Take(mErrorPipe, mErrors);
    }
}

std::uint32_t RunningChild::Finish() {
    ReadToEnd();
    EXPECT_EQ(WaitForSingleObject(mChild.process, kInfinite), kWaitObject);
    std::uint32_t exitCode = 0xFFFFFFFF;
    EXPECT_TRUE(GetExitCodeProcess(mChild.process, &exitCode));
    return exitCode;
}

bool RunningChild::ReadOutput(std::size_t bytes) {
    for (; mOutput.size() < bytes; Sleep(1)) {
        if (!Take(mOutputPipe, mOutput)) return false;
    }
    return true;
}

bool WriteToStream(std::uint32_t which, const std::string& bytes) {
    std::uint32_t written = 0;
    return WriteFile(GetStdHandle(which), bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written);
}
