// The child's process and its pipes: how it is started, what a failed start leaves, and what is read of it.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/file.h"
#include "platform/module.h"
#include "platform/names.h"
#include "platform/pipe.h"
#include "platform/synchronisation.h"
#include "supervisor/doubles.h"
#include "supervisor/owner.h"
#include "support/temp_folder.h"

namespace {

// Which handles were made for a child and which were closed.
struct HandleWatch {
    HandleWatch() {
        duplicates.Replace([this](platform::Handle source, platform::Handle* duplicate) {
            const bool done = duplicates.Native(source, duplicate);
            if (done) made.push_back(*duplicate);
            return done;
        });
        closes.Replace([this](platform::Handle handle) {
            closed.push_back(handle);
            return closes.Native(handle);
        });
    }
    bool Closed(platform::Handle handle) const {
        return std::count(closed.begin(), closed.end(), handle) == 1;
    }

    std::vector<platform::Handle> made, closed;
    Faulty<platform::DuplicateHandle> duplicates;
    Faulty<platform::CloseHandle> closes;
};

// The read ends of the pipes made, in their order.
struct PipeWatch {
    PipeWatch() {
        pipes.Replace([this](platform::Handle* readEnd, platform::Handle* writeEnd) {
            const bool done = pipes.Native(readEnd, writeEnd);
            if (done) readEnds.push_back(*readEnd);
            return done;
        });
    }
    std::uint32_t Waiting(std::size_t pipe) const {
        std::uint32_t waiting = 0;
        platform::PeekNamedPipe(readEnds[pipe], &waiting);
        return waiting;
    }

    std::vector<platform::Handle> readEnds;
    Faulty<platform::CreatePipe> pipes;
};

// The library's folder is `folder`, which ends in a separator.
struct LibraryIn {
    explicit LibraryIn(const std::u16string& folder) : path(folder + u"library") {
        names.Replace([this](platform::ModuleHandle, char16_t* text, std::uint32_t count) {
            const std::size_t length = path.copy(text, count - 1);
            text[length] = 0;
            return static_cast<std::uint32_t>(length);
        });
    }

    std::u16string path;
    Faulty<platform::GetModuleFileNameW> names;
};

void ExpectNotStarted(const Owner& owner, const std::u16string& error) {
    EXPECT_EQ(owner.errors.Text(), error + u"\r\n");
    EXPECT_EQ(owner.information.Text(), u"");
    EXPECT_EQ(owner.encoder.Running(), 0u);
    EXPECT_FALSE(owner.encoder.Finished());
    EXPECT_EQ(owner.encoder.Percent(), 0);
}

std::u16string WithoutLineEnds(std::u16string text) {
    std::erase_if(text, [](char16_t unit) { return unit == u'\r' || unit == u'\n'; });
    return text;
}

std::u16string Repeated(std::u16string_view line, int count) {
    std::u16string all;
    for (int index = 0; index < count; ++index) all += line;
    return all;
}

}  // namespace

TEST(ConverterChild, start_fails_without_its_pipes) {
    const std::u16string errors[] = {u"Error creating StdOut Pipe", u"Error creating StdErr Pipe"};
    for (int call = 1; call <= 2; ++call) {
        Owner owner;
        Launch launch;
        Faulty<platform::CreatePipe> pipes;
        owner.Create();
        pipes.FailCall(call);
        owner.Start();
        EXPECT_EQ(launch.count, 0);
        ExpectNotStarted(owner, errors[call - 1]);
    }
}

TEST(ConverterChild, start_fails_without_a_process) {
    Owner owner;
    Faulty<platform::CreateProcessW> processes;
    HandleWatch handles;
    owner.Create();
    processes.FailAlways();
    owner.Start();
    ExpectNotStarted(owner, u"Error running Quavercore");
    for (const platform::Handle handle : handles.made) platform::CloseHandle.Native()(handle);
}

TEST(ConverterChild, start_that_failed_leaves_both_write_ends_open) {
    Owner owner;
    Faulty<platform::CreateProcessW> processes;
    HandleWatch handles;
    owner.Create();
    processes.FailAlways();
    owner.Start();
    ASSERT_EQ(handles.made.size(), 2u);
    for (const platform::Handle handle : handles.made) {
        EXPECT_FALSE(handles.Closed(handle));
        EXPECT_TRUE(platform::CloseHandle.Native()(handle));
    }
}

TEST(ConverterChild, start_closes_both_write_ends_of_its_own) {
    Owner owner;
    Launch launch("leaves");
    HandleWatch handles;
    owner.Create();
    owner.Start();
    ASSERT_EQ(handles.made.size(), 2u);
    EXPECT_EQ(launch.streams.output, handles.made[0]);
    EXPECT_EQ(launch.streams.error, handles.made[1]);
    EXPECT_EQ(launch.flags, 0x8000020u);
    for (const platform::Handle handle : handles.made) EXPECT_TRUE(handles.Closed(handle));
    EXPECT_EQ(owner.encoder.Running(), 1u);
    EXPECT_TRUE(owner.PollUntilEnd());
}

TEST(ConverterChild, missing_program_is_not_started) {
    Owner owner;
    const TempFolder folder;
    const LibraryIn library(folder / u"");
    owner.Create();
    owner.Start();
    ExpectNotStarted(owner, u"Error running Quavercore");
    owner.Poll();
    EXPECT_FALSE(owner.encoder.Finished());
}

TEST(ConverterChild, program_in_the_current_folder_is_not_taken_for_the_converter) {
    Faulty<platform::GetModuleFileNameW> names;
    names.FailAlways();
    std::u16string started = u"nothing";
    Faulty<platform::CreateProcessW> starts;
    starts.Replace(
        [&](char16_t* line, std::uint32_t, const platform::ChildStreams&, platform::ChildHandles*) {
            started = line;
            return false;
        });
    Owner owner;
    owner.Create();
    owner.Start();
    ExpectNotStarted(owner, u"Error running Quavercore");
    EXPECT_EQ(started, u"");
}

TEST(ConverterChild, file_that_is_no_program_is_not_started) {
    Owner owner;
    const TempFolder folder;
    const std::u16string file = folder.Write(platform::kConverterFileName, "just a text\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    const LibraryIn library(folder / u"");
    owner.Create();
    owner.Start();
    ExpectNotStarted(owner, u"Error running Quavercore");
}

TEST(ConverterChild, start_works_again_after_one_that_failed) {
    Owner owner;
    owner.Create();
    {
        const Launch refused;
        owner.Start();
    }
    const Launch launch("converts");
    owner.Create();
    owner.Start();
    EXPECT_TRUE(owner.PollUntilEnd());
    EXPECT_EQ(owner.encoder.Percent(), 100);
}

TEST(ConverterChild, folder_with_a_blank_in_its_name_works) {
    Owner owner;
    const TempFolder folder;
    folder.MakeFolder(u"a folder");
    char16_t self[4096];
    platform::GetModuleFileNameW(nullptr, self, 4096);
    std::filesystem::copy_file(self, folder / (u"a folder/" + std::u16string(platform::kConverterFileName)));
    const LibraryIn library(folder / u"a folder/");
    Launch launch("converts");
    launch.UseProgramOfLine();
    owner.Create();
    owner.Start();
    EXPECT_TRUE(launch.line.starts_with(u"\"" + (folder / u"a folder/")));
    EXPECT_TRUE(owner.PollUntilEnd());
    EXPECT_EQ(owner.encoder.Percent(), 100);
}

TEST(ConverterChild, one_object_runs_one_after_another) {
    Owner owner;
    const Launch launch("converts");
    for (int run = 1; run <= 3; ++run) {
        owner.Create();
        EXPECT_EQ(owner.encoder.Percent(), 0);
        owner.Start();
        ASSERT_TRUE(owner.PollUntilEnd());
        EXPECT_EQ(owner.encoder.Percent(), 100);
    }
    EXPECT_EQ(launch.count, 3);
    EXPECT_EQ(owner.errors.Text(), u"");
}

TEST(ConverterChild, what_it_left_in_its_pipes_is_read_after_its_end) {
    TestClock clock;
    Owner owner;
    const Signal ready, go;
    const Launch launch("speaks_when_told", ready.As("ready") + u" " + go.As("go"));
    owner.Create();
    owner.Start();
    clock.Hold();
    go.Set();
    platform::WaitForSingleObject(launch.child.process, 60000);
    owner.Poll();
    EXPECT_TRUE(owner.encoder.Finished());
    EXPECT_EQ(owner.encoder.Percent(), 77);
    EXPECT_EQ(owner.errors.Text(), u"last complaint\r\n");
    EXPECT_EQ(owner.information.Text(), u"last words\r\nEncoding finished\r\n");
}

// It speaks and ends between the look into its pipes and the look at its process.
TEST(ConverterChild, last_words_after_the_last_look_stand_behind_the_end) {
    TestClock clock;
    Owner owner;
    const Signal ready, go;
    const Launch launch("speaks_when_told", ready.As("ready") + u" " + go.As("go"));
    owner.Create();
    owner.Start();
    clock.Hold();
    Faulty<platform::WaitForSingleObject> waits;
    waits.Replace([&](platform::Handle handle, std::uint32_t ms) {
        EXPECT_EQ(ms, 0u);
        if (handle != launch.child.process) return waits.Native(handle, ms);
        go.Set();
        return waits.Native(handle, 60000);
    });
    owner.Poll();
    EXPECT_TRUE(owner.encoder.Finished());
    EXPECT_EQ(owner.encoder.Percent(), 77);
    EXPECT_EQ(owner.information.Text(), u"Encoding finished\r\nlast words\r\n");
    EXPECT_EQ(owner.errors.Text(), u"last complaint\r\n");
}

TEST(ConverterChild, megabytes_on_both_streams_wait_for_the_first_poll_and_none_is_lost) {
    TestClock clock;
    Owner owner;
    const PipeWatch pipes;
    const Launch launch("fills_both_streams");
    owner.Create();
    owner.Start();
    clock.Hold();
    // Nobody polls. Both pipes run full and hold the child up.
    while (pipes.Waiting(0) < 2048 || pipes.Waiting(1) < 2048) platform::Sleep(1);
    EXPECT_EQ(platform::WaitForSingleObject(launch.child.process, 0), platform::kWaitTimeout);
    ASSERT_TRUE(owner.PollUntilEnd());
    std::u16string remarks = owner.information.Text();
    const std::u16string end = u"Encoding finished\r\n";
    const std::size_t ended = remarks.find(end);
    ASSERT_NE(ended, std::u16string::npos);
    remarks.erase(ended, end.size());
    EXPECT_TRUE(WithoutLineEnds(remarks) == WithoutLineEnds(Repeated(kRemark, kFloodLines)));
    EXPECT_TRUE(WithoutLineEnds(owner.errors.Text()) == WithoutLineEnds(Repeated(kComplaint, kFloodLines)));
}

TEST(ConverterChild, ten_megabytes_without_a_line_end_arrive_whole) {
    TestClock clock;
    Owner owner;
    const Launch launch("never_ends_a_line");
    owner.Create();
    owner.Start();
    clock.Hold();
    ASSERT_TRUE(owner.PollUntilEnd());
    const std::u16string all = owner.information.Text();
    EXPECT_EQ(std::count(all.begin(), all.end(), u'x'), std::ptrdiff_t{kLongPieces} * kLongPiece);
}

TEST(ConverterChild, a_hundred_thousand_lines_arrive_whole) {
    TestClock clock;
    Owner owner;
    const Launch launch("writes_many_lines");
    owner.Create();
    owner.Start();
    clock.Hold();
    ASSERT_TRUE(owner.PollUntilEnd());
    std::u16string all = owner.information.Text();
    all.erase(all.find(u"Encoding finished\r\n"), 19);
    EXPECT_TRUE(WithoutLineEnds(all) == WithoutLineEnds(Repeated(u"a line\r\n", kManyLines)));
}

TEST(ConverterChild, pipe_that_cannot_be_looked_into_is_passed_over) {
    TestClock clock;
    Owner owner;
    const Signal ready, go;
    const Launch launch("speaks_when_told", ready.As("ready") + u" " + go.As("go"));
    owner.Create();
    owner.Start();
    clock.Hold();
    go.Set();
    platform::WaitForSingleObject(launch.child.process, 60000);
    Faulty<platform::PeekNamedPipe> peeks;
    peeks.FailAlways();
    owner.Poll();
    EXPECT_TRUE(owner.encoder.Finished());
    EXPECT_EQ(owner.information.Text(), u"Encoding finished\r\n");
    EXPECT_EQ(owner.errors.Text(), u"");
}
