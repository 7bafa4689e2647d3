#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/file.h"
#include "foundation/native_text.h"
#include "foundation/paths.h"
#include "platform/file.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

// The last path handed to an operation of one path, which answers `result`.
template <auto& operation>
class PathSeen {
  public:
    explicit PathSeen(bool result) {
        mFault.Replace([this, result](const char16_t* path, auto...) {
            mPaths.emplace_back(path);
            return result;
        });
    }
    const std::vector<std::u16string>& All() const { return mPaths; }

  private:
    std::vector<std::u16string> mPaths;
    Faulty<operation> mFault;
};

TEST(Exists, Knows_files_folders_and_roots) {
    const TempFolder temp;
    temp.Write(u"file.txt");
    temp.MakeFolder(u"folder");
    const XString root = XString(temp.Path().c_str()).Left(paths::GetRootEnd(temp.Path().c_str()) - 1);
    EXPECT_TRUE(paths::Exists((temp / u"file.txt").c_str()));
    EXPECT_TRUE(paths::Exists((temp / u"folder").c_str()));
    EXPECT_TRUE(paths::Exists((temp / u"folder//").c_str()));
    EXPECT_TRUE(paths::Exists(root)) << testing::PrintToString(Units(root));
    EXPECT_FALSE(paths::Exists((temp / u"nothing").c_str()));
    EXPECT_FALSE(paths::Exists((temp / u"nothing/below").c_str()));
}

TEST(Exists, Asks_for_a_drive_with_a_separator_behind_it) {
    Faulty<platform::FindFirstFileW> walks;
    walks.FailAlways(platform::kInvalidHandle);
    Faulty<platform::GetDriveTypeW> drives;
    std::vector<std::u16string> asked;
    std::uint32_t type = platform::kDriveNoRoot;
    drives.Replace([&](const char16_t* root) {
        asked.emplace_back(root);
        return type;
    });
    EXPECT_FALSE(paths::Exists(u"X:"));
    type = 0;
    EXPECT_TRUE(paths::Exists(Native(u"X:\\").c_str()));
    EXPECT_EQ(asked, (std::vector<std::u16string>(2, Native(u"X:\\"))));
}

TEST(MakeWritable, Takes_the_read_only_bit_and_no_other) {
    Faulty<platform::FindFirstFileW> walks;
    walks.Replace([](const char16_t*, platform::FindData* data) -> platform::Handle {
        data->attributes = 0x27;
        data->name[0] = u'x';
        return 77;
    });
    Faulty<platform::FindClose> closes;
    closes.Replace([](platform::Handle) { return true; });
    Faulty<platform::SetFileAttributesW> sets;
    std::uint32_t attributes = 0;
    std::u16string path;
    sets.Replace([&](const char16_t* given, std::uint32_t bits) {
        path = given;
        attributes = bits;
        return true;
    });
    EXPECT_TRUE(paths::MakeWritable(PathOfLength(247).c_str()));
    EXPECT_EQ(attributes, 0x26u);
    EXPECT_EQ(path, PathOfLength(247));
    EXPECT_TRUE(paths::MakeWritable(PathOfLength(248).c_str()));
    EXPECT_EQ(path, LongForm(PathOfLength(248)));
    sets.FailAlways(false);
    EXPECT_FALSE(paths::MakeWritable(u"x"));
}

TEST(MakeWritable, Fails_without_a_call_where_nothing_is_found) {
    const TempFolder temp;
    Faulty<platform::SetFileAttributesW> sets;
    EXPECT_FALSE(paths::MakeWritable((temp / u"nothing").c_str()));
    EXPECT_EQ(sets.Calls(), 0);
}

TEST(CopyFile, Overwrites) {
    const TempFolder temp;
    const std::u16string from = temp.Write(u"from", "new"), to = temp.Write(u"to", "older");
    EXPECT_TRUE(paths::CopyFile(from.c_str(), to.c_str()));
    EXPECT_EQ(temp.Read(u"to"), "new");
    EXPECT_FALSE(paths::CopyFile((temp / u"nothing").c_str(), to.c_str()));
    EXPECT_EQ(temp.Read(u"to"), "new");
}

TEST(CopyFile, Gives_both_paths_in_their_long_form) {
    Faulty<platform::CopyFileW> copies;
    std::u16string source, target;
    bool failsIfExists = true;
    copies.Replace([&](const char16_t* from, const char16_t* to, bool failIfExists) {
        source = from;
        target = to;
        failsIfExists = failIfExists;
        return true;
    });
    EXPECT_TRUE(paths::CopyFile(PathOfLength(248).c_str(), PathOfLength(247).c_str()));
    EXPECT_EQ(source, LongForm(PathOfLength(248)));
    EXPECT_EQ(target, PathOfLength(247));
    EXPECT_FALSE(failsIfExists);
    EXPECT_TRUE(paths::CopyFile(PathOfLength(247).c_str(), PathOfLength(248).c_str()));
    EXPECT_EQ(source, PathOfLength(247));
    EXPECT_EQ(target, LongForm(PathOfLength(248)));
}

TEST(DeleteFile, Deletes) {
    const TempFolder temp;
    const std::u16string path = temp.Write(u"file");
    EXPECT_TRUE(paths::DeleteFile(path.c_str()));
    EXPECT_FALSE(temp.Has(u"file"));
    EXPECT_FALSE(paths::DeleteFile(path.c_str()));
}

TEST(DeleteFile, Takes_a_read_only_file_at_the_second_attempt) {
    const TempFolder temp;
    const std::u16string path = temp.Write(u"file");
    temp.SetReadOnly(u"file");
    Faulty<platform::DeleteFileW> deletions;
    EXPECT_TRUE(paths::DeleteFile(path.c_str()));
    EXPECT_FALSE(temp.Has(u"file"));
    EXPECT_EQ(deletions.Calls(), 2);
}

TEST(DeleteFile, Makes_exactly_two_attempts_where_access_is_denied) {
    const TempFolder temp;
    const std::u16string path = temp.Write(u"file");
    Faulty<platform::DeleteFileW> deletions;
    deletions.FailAlways(false, platform::kErrorAccessDenied);
    EXPECT_FALSE(paths::DeleteFile(path.c_str()));
    EXPECT_EQ(deletions.Calls(), 2);
}

TEST(DeleteFile, Makes_one_attempt_where_anything_else_is_wrong) {
    for (const std::uint32_t error : {platform::kErrorSharingViolation, platform::kErrorFileNotFound}) {
        Faulty<platform::DeleteFileW> deletions;
        deletions.FailAlways(false, error);
        EXPECT_FALSE(paths::DeleteFile(u"file"));
        EXPECT_EQ(deletions.Calls(), 1);
    }
}

TEST(DeleteFile, Is_not_misled_by_an_older_error) {
    Faulty<platform::DeleteFileW> deletions;
    deletions.Replace([](const char16_t*) { return false; });
    platform::SetLastError(platform::kErrorAccessDenied);
    EXPECT_FALSE(paths::DeleteFile(u"file"));
    EXPECT_EQ(deletions.Calls(), 1);
}

// Some systems delete a file that is open. Where it is refused it stays, after two attempts at most.
TEST(DeleteFile, Gives_up_on_a_file_that_is_held_open) {
    const TempFolder temp;
    XFile holder((temp / u"file").c_str());
    ASSERT_TRUE(holder.Create());
    Faulty<platform::DeleteFileW> deletions;
    const bool deleted = paths::DeleteFile((temp / u"file").c_str());
    EXPECT_EQ(temp.Has(u"file"), !deleted);
    EXPECT_LE(deletions.Calls(), 2);
}

TEST(DeleteFile, Gives_the_path_in_its_long_form) {
    const PathSeen<platform::DeleteFileW> seen(true);
    EXPECT_TRUE(paths::DeleteFile(PathOfLength(247).c_str()));
    EXPECT_TRUE(paths::DeleteFile(PathOfLength(248).c_str()));
    EXPECT_EQ(seen.All(), (std::vector{PathOfLength(247), LongForm(PathOfLength(248))}));
}

TEST(CreateFolder, Makes_all_levels) {
    const TempFolder temp;
    EXPECT_TRUE(paths::CreateFolder((temp / u"a/b/c/").c_str()));
    EXPECT_TRUE(temp.Has(u"a/b/c"));
    EXPECT_TRUE(paths::CreateFolder((temp / u"a/b/c").c_str())) << "an existing folder is a success";
}

TEST(CreateFolder, Goes_from_the_top_down) {
    const PathSeen<platform::CreateDirectoryW> seen(true);
    EXPECT_TRUE(paths::CreateFolder(Native(u"C:\\a\\b\\c\\").c_str()));
    EXPECT_EQ(seen.All(), (std::vector{Native(u"C:\\a"), Native(u"C:\\a\\b"), Native(u"C:\\a\\b\\c")}));
}

TEST(CreateFolder, Gives_the_path_in_its_long_form) {
    const PathSeen<platform::CreateDirectoryW> seen(true);
    EXPECT_TRUE(paths::CreateFolder(PathOfLength(247).c_str()));
    EXPECT_TRUE(paths::CreateFolder(PathOfLength(248).c_str()));
    EXPECT_EQ(seen.All(), (std::vector{PathOfLength(247), LongForm(PathOfLength(248))}));
}

TEST(CreateFolder, Makes_a_path_longer_than_a_plain_one_can_be) {
    const TempFolder temp;
    const std::u16string level(60, u'x');
    std::u16string path = temp.Path();
    while (path.size() < 300) path += platform::kPathSeparator + level;
    EXPECT_TRUE(paths::CreateFolder(path.c_str()));
    EXPECT_TRUE(paths::Exists(path.c_str()));
}

TEST(CreateFolder, Stops_at_the_first_failure) {
    Faulty<platform::CreateDirectoryW> levels;
    levels.Replace([](const char16_t*) { return true; });
    levels.FailCall(2, false, platform::kErrorAccessDenied);
    EXPECT_FALSE(paths::CreateFolder(Native(u"C:\\a\\b\\c").c_str()));
    EXPECT_EQ(levels.Calls(), 2);
}

TEST(CreateFolder, Takes_what_exists_already) {
    Faulty<platform::CreateDirectoryW> levels;
    levels.FailAlways(false, platform::kErrorAlreadyExists);
    EXPECT_TRUE(paths::CreateFolder(Native(u"C:\\a\\b").c_str()));
    EXPECT_EQ(levels.Calls(), 2);
}

TEST(CreateFolder, Is_not_misled_by_an_older_error) {
    Faulty<platform::CreateDirectoryW> levels;
    levels.Replace([](const char16_t*) { return false; });
    platform::SetLastError(platform::kErrorAlreadyExists);
    EXPECT_FALSE(paths::CreateFolder(Native(u"C:\\a\\b").c_str()));
}

TEST(CreateFolder, Is_true_for_a_root_only_where_there_is_one) {
    const TempFolder temp;
    const XString root = XString(temp.Path().c_str()).Left(paths::GetRootEnd(temp.Path().c_str()) - 1);
    Faulty<platform::CreateDirectoryW> levels;
    EXPECT_TRUE(paths::CreateFolder(root));
    EXPECT_FALSE(paths::CreateFolder(Native(u"Q:\\").c_str()));
    EXPECT_FALSE(paths::CreateFolder(u"a-name-without-a-root"));
    EXPECT_EQ(levels.Calls(), 0);
}

TEST(PathOperations, An_empty_path_never_reaches_the_platform) {
    Faulty<platform::FindFirstFileW> walks;
    Faulty<platform::GetDriveTypeW> drives;
    Faulty<platform::SetFileAttributesW> attributes;
    Faulty<platform::CopyFileW> copies;
    Faulty<platform::DeleteFileW> deletions;
    Faulty<platform::CreateDirectoryW> levels;
    platform::SetLastError(platform::kErrorAccessDenied);
    EXPECT_FALSE(paths::Exists(u""));
    EXPECT_FALSE(paths::MakeWritable(u""));
    EXPECT_FALSE(paths::CopyFile(u"", u"x"));
    EXPECT_FALSE(paths::CopyFile(u"x", u""));
    EXPECT_FALSE(paths::DeleteFile(u""));
    EXPECT_FALSE(paths::CreateFolder(u""));
    EXPECT_EQ(walks.Calls() + drives.Calls() + attributes.Calls(), 0);
    EXPECT_EQ(copies.Calls() + deletions.Calls() + levels.Calls(), 0);
}

TEST(GetModulePath, Is_the_programs_own_without_a_module) {
    const XString path = paths::GetModulePath(nullptr);
    EXPECT_TRUE(paths::Exists(path));
    EXPECT_EQ(Units(paths::GetModuleFolder(nullptr)), Units(paths::GetFolder(path)));
}

TEST(GetModulePath, Takes_quotation_marks_off_and_gives_nothing_on_failure) {
    struct {
        const char16_t *name, *path;
    } const rows[] = {{u"C:\\x\\y.dll", u"C:\\x\\y.dll"},
                      {u"\"C:\\x\\y.dll\" -a", u"C:\\x\\y.dll"},
                      {u"\"C:\\x\\y.dll", u"C:\\x\\y.dll"},
                      {u"C:\\x\\\"y\".dll", u"C:\\x\\\"y\".dll"},
                      {u"\"\"", u""},
                      {u"\"", u""}};
    Faulty<platform::GetModuleFileNameW> names;
    for (const auto& row : rows) {
        names.Replace([&](platform::ModuleHandle, char16_t* path, std::uint32_t count) {
            EXPECT_EQ(count, 1000u);
            const std::u16string name(row.name);
            name.copy(path, name.size());
            return static_cast<std::uint32_t>(name.size());
        });
        EXPECT_EQ(Units(paths::GetModulePath(nullptr)), row.path);
    }
    names.FailAlways(0u);
    EXPECT_TRUE(paths::GetModulePath(nullptr).IsEmpty());
    EXPECT_TRUE(paths::GetModuleFolder(nullptr).IsEmpty());
}

TEST(GetModulePath, Gives_nothing_for_a_path_that_was_cut) {
    Faulty<platform::GetModuleFileNameW> names;
    names.Replace([](platform::ModuleHandle, char16_t* path, std::uint32_t count) {
        std::fill_n(path, count, u'x');
        return count;
    });
    EXPECT_TRUE(paths::GetModulePath(nullptr).IsEmpty());
}

TEST(GetTempFolder, Exists_and_ends_in_a_separator) {
    const XString folder = paths::GetTempFolder();
    EXPECT_TRUE(paths::Exists(folder));
    EXPECT_EQ(folder.GetAt(), platform::kPathSeparator);
}

TEST(GetTempFolder, Is_the_default_where_the_system_names_none) {
    const std::u16string standard =
        platform::kDefaultTempFolder + std::u16string(1, platform::kPathSeparator);
    Faulty<platform::GetTempPathW> temp;
    for (const std::uint32_t result : {0u, 260u, 400u}) {
        temp.FailAlways(result);
        EXPECT_EQ(Units(paths::GetTempFolder()), standard) << result;
    }
}

TEST(GetTempFolder, Adds_the_separator_that_is_missing) {
    Faulty<platform::GetTempPathW> temp;
    temp.Replace([](std::uint32_t count, char16_t* buffer) {
        EXPECT_EQ(count, 260u);
        return static_cast<std::uint32_t>(Native(u"D:\\T").copy(buffer, 4));
    });
    EXPECT_EQ(Units(paths::GetTempFolder()), Native(u"D:\\T\\"));
}

}  // namespace
