// What programs need of the system. Programs are started for real: this one again, or one that echoes its
// arguments.
#include "platform/program.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

#include "open_file.h"
#include "platform/module.h"
#include "platform/names.h"
#include "platform/pipe.h"
#include "platform/process.h"
#include "platform/synchronisation.h"
#include "support/child.h"
#include "support/temp_folder.h"

using namespace platform;

namespace {

struct Ended {
    std::string output;
    std::uint32_t exitCode = 0xFFFFFFFF;
};

std::string ReadAll(Handle pipe) {
    std::string all;
    char bytes[256];
    std::uint32_t read = 0;
    while (ReadFile(pipe, bytes, sizeof bytes, &read)) all.append(bytes, read);
    return all;
}

// Runs a command line to its end.
Ended RunToEnd(std::u16string line) {
    Ended run;
    Handle reader = kNullHandle, writer = kNullHandle;
    ChildStreams streams;
    ChildHandles child;
    EXPECT_TRUE(CreatePipe(&reader, &writer));
    EXPECT_TRUE(DuplicateHandle(writer, &streams.output));
    streams.error = streams.output;
    EXPECT_TRUE(CreateProcessW(line.data(), kCreateNoWindow, streams, &child));
    CloseHandle(streams.output);
    run.output = ReadAll(reader);
    EXPECT_EQ(WaitForSingleObject(child.process, kInfinite), kWaitObject);
    EXPECT_TRUE(GetExitCodeProcess(child.process, &run.exitCode));
    for (const Handle handle : {reader, child.process, child.thread}) CloseHandle(handle);
    return run;
}

std::u16string EchoProgram() {
    char16_t path[4096];
    GetModuleFileNameW(nullptr, path, 4096);
    const std::u16string self = path, name = u"qv_platform_tests";
    return std::u16string(self).replace(self.rfind(name), name.size(), u"qv_echo_arguments");
}

}  // namespace

CHILD_PROGRAM(exit_at_once) {
    std::atexit([] { WriteConsoleText(GetStdHandle(kStdOutput), u"too late"); });
    ExitProcess(7);
    return 0;
}

CHILD_PROGRAM(write_both_streams) {
    WriteConsoleText(GetStdHandle(kStdOutput), u"out \u00E9\U0001F3B5 ");
    WriteConsoleText(GetStdHandle(kStdError), u"err");
    return GetConsoleWidth(GetStdHandle(kStdOutput)) == 0 ? 0 : 1;
}

CHILD_PROGRAM(read_input) {
    return std::fgetc(stdin) == EOF ? 0 : 1;
}

CHILD_PROGRAM(take_interruptions) {
    return SetConsoleCtrlHandler([](std::uint32_t) {}) ? 0 : 1;
}

TEST(Program, ExitProcess_ends_it_at_once) {
    const Ended run = RunToEnd(child::CommandLine("exit_at_once"));
    EXPECT_EQ(run.exitCode, 7u);
    EXPECT_EQ(run.output, "");
}

TEST(Program, WriteConsoleText_writes_UTF_8_where_there_is_no_console) {
    const Ended run = RunToEnd(child::CommandLine("write_both_streams"));
    EXPECT_EQ(run.output, "out \xC3\xA9\xF0\x9F\x8E\xB5 err");
    EXPECT_EQ(run.exitCode, 0u);
}

TEST(Program, a_child_has_no_input_and_does_not_wait_for_any) {
    EXPECT_EQ(RunToEnd(child::CommandLine("read_input")).exitCode, 0u);
}

TEST(Program, WriteConsoleText_has_no_length_limit) {
    const TempFolder folder;
    {
        const OpenFile file(folder / u"text", kGenericWrite, kCreateNew);
        EXPECT_TRUE(WriteConsoleText(file, std::u16string(100000, u'\u00E9').c_str()));
        EXPECT_TRUE(WriteConsoleText(file, u""));
    }
    EXPECT_EQ(folder.Read(u"text").size(), 200000u);
}

TEST(Program, a_file_has_no_width) {
    const TempFolder folder;
    EXPECT_EQ(GetConsoleWidth(OpenFile(folder / u"file", kGenericWrite, kCreateNew)), 0u);
    EXPECT_EQ(GetConsoleWidth(kInvalidHandle), 0u);
}

TEST(Program, no_stream_takes_text_without_harm) {
    EXPECT_FALSE(WriteConsoleText(kNullHandle, u"lost"));
    EXPECT_FALSE(WriteConsoleText(kInvalidHandle, u"lost"));
}

TEST(Program, interruptions_can_be_taken) {
    EXPECT_EQ(RunToEnd(child::CommandLine("take_interruptions")).exitCode, 0u);
}

TEST(Program, ProgramMain_gets_each_argument_as_it_was_given) {
    const Ended run = RunToEnd(u"\"" + EchoProgram() +
                               u"\" plain \"two words\" a\\\\b \"quo\\\"te\" \"\" \u00E9\U0001F3B5");
    EXPECT_EQ(run.output, "plain\ntwo words\na\\\\b\nquo\"te\n\n\xC3\xA9\xF0\x9F\x8E\xB5\n");
    EXPECT_EQ(run.exitCode, 6u);
}

TEST(Program, ProgramMain_may_get_no_arguments) {
    const Ended run = RunToEnd(u"\"" + EchoProgram() + u"\"");
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.exitCode, 0u);
}

TEST(Program, IsSameFile_sees_through_spelling_and_links) {
    const TempFolder folder;
    folder.MakeFolder(u"inner");
    const auto file = folder.Write(u"file", "bytes"), copy = folder.Write(u"copy", "bytes");
    const auto link = folder / u"link";
    std::filesystem::create_hard_link(file, link);
    EXPECT_TRUE(IsSameFile(file.c_str(), file.c_str()));
    EXPECT_TRUE(IsSameFile(file.c_str(), (folder / u"inner/../file").c_str()));
    EXPECT_TRUE(IsSameFile(file.c_str(), link.c_str()));
    EXPECT_FALSE(IsSameFile(file.c_str(), copy.c_str()));
    EXPECT_FALSE(IsSameFile(file.c_str(), (folder / u"none").c_str()));
    EXPECT_FALSE(IsSameFile((folder / u"none").c_str(), (folder / u"none").c_str()));
}
