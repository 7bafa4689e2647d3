// The destination appears complete or not at all.
#include "foundation/output_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/file.h"
#include "foundation/find_file.h"
#include "foundation/paths.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/synchronisation.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

std::vector<std::u16string> NamesIn(const TempFolder& folder) {
    std::vector<std::u16string> names;
    XFindFile files(XString(u"*"), XString(folder.Path().c_str()));
    while (files.Next()) names.emplace_back(paths::GetFileName(files.Name()).Text());
    return names;
}

// What an encoder does with a temporary name.
void Encode(const XOutputFile& output, const std::string& text) {
    XFile file{XString(output.TemporaryName().c_str())};
    ASSERT_TRUE(file.Create());
    ASSERT_TRUE(file.Write(text.data(), static_cast<std::uint32_t>(text.size())));
}

const std::vector<std::u16string> kTheSongAlone = {u"song.wav"};

struct OutputFileTest : testing::Test {
    TempFolder folder;
    std::u16string destination = folder / u"song.wav";
};

TEST_F(OutputFileTest, Commit_gives_the_temporary_the_destinations_name) {
    XOutputFile output(destination);
    ASSERT_TRUE(output.Create());
    Encode(output, "new");
    EXPECT_FALSE(folder.Has(u"song.wav"));
    ASSERT_TRUE(output.Commit());
    EXPECT_EQ(folder.Read(u"song.wav"), "new");
    EXPECT_EQ(NamesIn(folder), kTheSongAlone);
}

TEST_F(OutputFileTest, Without_commit_the_old_file_stays_and_nothing_else) {
    folder.Write(u"song.wav", "old");
    {
        XOutputFile output(destination);
        ASSERT_TRUE(output.Create());
        Encode(output, "new");
    }
    EXPECT_EQ(folder.Read(u"song.wav"), "old");
    EXPECT_EQ(NamesIn(folder), kTheSongAlone);
}

TEST_F(OutputFileTest, Commit_replaces_an_existing_file) {
    folder.Write(u"song.wav", "old");
    XOutputFile output(destination);
    ASSERT_TRUE(output.Create());
    Encode(output, "new");
    ASSERT_TRUE(output.Commit());
    EXPECT_EQ(folder.Read(u"song.wav"), "new");
}

TEST_F(OutputFileTest, A_refused_rename_leaves_the_old_file_and_no_temporary) {
    folder.Write(u"song.wav", "old");
    {
        Faulty<platform::MoveFileExW> moves;
        moves.FailAlways(false, platform::kErrorAccessDenied);
        XOutputFile output(destination);
        ASSERT_TRUE(output.Create());
        EXPECT_FALSE(output.Commit());
    }
    EXPECT_EQ(folder.Read(u"song.wav"), "old");
    EXPECT_EQ(NamesIn(folder), kTheSongAlone);
}

TEST_F(OutputFileTest, A_folder_that_is_not_there_is_refused) {
    XOutputFile output(folder / u"nowhere/x.wav");
    EXPECT_FALSE(output.Create());
}

TEST_F(OutputFileTest, A_taken_name_is_tried_again_under_another) {
    Faulty<platform::CreateFileW> files;
    files.FailCall(1, platform::kInvalidHandle, platform::kErrorFileExists);
    XOutputFile output(destination);
    EXPECT_TRUE(output.Create());
    EXPECT_EQ(files.Calls(), 2);
}

TEST_F(OutputFileTest, Abandoned_temporaries_are_swept_and_others_left) {
    const char16_t* const abandoned = u".qvpart-0123456789ABCDEF.wav";
    const char16_t* const alive = u".qvpart-FEDCBA9876543210.wav";
    const char16_t* const foreign[] = {u".qvpart-notours.wav", u".qvpart-0123456789ABCDE", u"x.wav"};
    folder.Write(abandoned);
    folder.Write(alive);
    for (const char16_t* name : foreign) folder.Write(name);
    const platform::Handle mark = platform::CreateEventW(u"qvpart-FEDCBA9876543210");
    {
        XOutputFile output(destination);
        ASSERT_TRUE(output.Create());
    }
    platform::CloseHandle(mark);
    EXPECT_FALSE(folder.Has(abandoned));
    EXPECT_TRUE(folder.Has(alive));
    for (const char16_t* name : foreign) EXPECT_TRUE(folder.Has(name));
}

TEST_F(OutputFileTest, Two_at_work_on_one_destination_keep_apart) {
    XOutputFile first(destination), second(destination);
    ASSERT_TRUE(first.Create());
    ASSERT_TRUE(second.Create());
    Encode(first, "first");
    Encode(second, "second");
    ASSERT_TRUE(second.Commit());
    ASSERT_TRUE(first.Commit());
    EXPECT_EQ(folder.Read(u"song.wav"), "first");
}

}  // namespace
