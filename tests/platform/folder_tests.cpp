// Folders, names, attributes: what happens to whole entries.
#include <gtest/gtest.h>

#include <set>

#include "open_file.h"
#include "platform/error.h"
#include "platform/names.h"
#include "support/temp_folder.h"

using namespace platform;

namespace {

constexpr std::uint32_t kKnownAttributes = kAttributeReadOnly | kAttributeDirectory;

std::uint32_t Attributes(const std::u16string& path) {
    return GetFileAttributesW(path.c_str()) & kKnownAttributes;
}

// The path in the form that no length limit holds for.
std::u16string Unlimited(const std::u16string& path) {
    return kLongPathPrefix + path;
}

}  // namespace

TEST(Folders, CreateDirectoryW_tells_that_something_has_the_name) {
    const TempFolder folder;
    EXPECT_TRUE(CreateDirectoryW((folder / u"new").c_str()));
    EXPECT_EQ(Attributes(folder / u"new"), kAttributeDirectory);
    for (const auto& taken : {folder / u"new", folder.Write(u"file")}) {
        SetLastError(kErrorSuccess);
        EXPECT_FALSE(CreateDirectoryW(taken.c_str()));
        EXPECT_EQ(GetLastError(), kErrorAlreadyExists);
    }
}

TEST(Folders, CreateDirectoryW_makes_one_level_only) {
    const TempFolder folder;
    EXPECT_FALSE(CreateDirectoryW((folder / u"a/b").c_str()));
    EXPECT_FALSE(folder.Has(u"a"));
}

TEST(Folders, RemoveDirectoryW_takes_empty_folders_only) {
    const TempFolder folder;
    const auto full = folder.MakeFolder(u"full");
    folder.Write(u"full/file");
    EXPECT_FALSE(RemoveDirectoryW(full.c_str()));
    EXPECT_EQ(GetLastError(), kErrorDirectoryNotEmpty);
    EXPECT_TRUE(DeleteFileW((folder / u"full/file").c_str()));
    EXPECT_TRUE(RemoveDirectoryW(full.c_str()));
    EXPECT_FALSE(folder.Has(u"full"));
}

TEST(Folders, DeleteFileW_tells_that_a_file_is_missing) {
    const TempFolder folder;
    EXPECT_FALSE(DeleteFileW((folder / u"none").c_str()));
    EXPECT_EQ(GetLastError(), kErrorFileNotFound);
}

TEST(Folders, DeleteFileW_denies_a_read_only_file_until_it_is_writable) {
    const TempFolder folder;
    const auto path = folder.Write(u"file");
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), kAttributeReadOnly));
    EXPECT_EQ(Attributes(path), kAttributeReadOnly);
    EXPECT_FALSE(DeleteFileW(path.c_str()));
    EXPECT_EQ(GetLastError(), kErrorAccessDenied);
    ASSERT_TRUE(SetFileAttributesW(path.c_str(), kAttributeNormal));
    EXPECT_EQ(Attributes(path), 0u);
    EXPECT_TRUE(DeleteFileW(path.c_str()));
    EXPECT_FALSE(folder.Has(u"file"));
}

TEST(Folders, DeleteFileW_denies_a_folder) {
    const TempFolder folder;
    EXPECT_FALSE(DeleteFileW(folder.MakeFolder(u"inner").c_str()));
    EXPECT_EQ(GetLastError(), kErrorAccessDenied);
    EXPECT_TRUE(folder.Has(u"inner"));
}

TEST(Folders, CopyFileW_copies_all_bytes) {
    const TempFolder folder;
    std::string bytes(300000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 >> 3);
    const auto from = folder.Write(u"from", bytes);
    EXPECT_TRUE(CopyFileW(from.c_str(), (folder / u"to").c_str(), true));
    EXPECT_EQ(folder.Read(u"to"), bytes);
    EXPECT_EQ(folder.Read(u"from"), bytes);
}

TEST(Folders, CopyFileW_replaces_only_when_asked) {
    const TempFolder folder;
    const auto from = folder.Write(u"from", "new"), to = folder.Write(u"to", "former");
    EXPECT_FALSE(CopyFileW(from.c_str(), to.c_str(), true));
    EXPECT_EQ(GetLastError(), kErrorFileExists);
    EXPECT_EQ(folder.Read(u"to"), "former");
    EXPECT_TRUE(CopyFileW(from.c_str(), to.c_str(), false));
    EXPECT_EQ(folder.Read(u"to"), "new");
}

TEST(Folders, CopyFileW_of_nothing_makes_nothing) {
    const TempFolder folder;
    EXPECT_FALSE(CopyFileW((folder / u"none").c_str(), (folder / u"to").c_str(), false));
    EXPECT_EQ(GetLastError(), kErrorFileNotFound);
    EXPECT_FALSE(folder.Has(u"to"));
}

TEST(Folders, MoveFileExW_replaces_only_when_asked) {
    const TempFolder folder;
    const auto from = folder.Write(u"from", "new"), to = folder.Write(u"to", "former");
    EXPECT_FALSE(MoveFileExW(from.c_str(), to.c_str(), 0));
    EXPECT_EQ(folder.Read(u"from"), "new");
    EXPECT_EQ(folder.Read(u"to"), "former");
    EXPECT_TRUE(MoveFileExW(from.c_str(), to.c_str(), kMoveReplaceExisting | kMoveWriteThrough));
    EXPECT_FALSE(folder.Has(u"from"));
    EXPECT_EQ(folder.Read(u"to"), "new");
}

TEST(Folders, MoveFileExW_renames_to_a_free_name) {
    const TempFolder folder;
    const auto from = folder.Write(u"from", "bytes");
    for (const std::uint32_t flags : {0u, kMoveReplaceExisting}) {
        EXPECT_TRUE(MoveFileExW(from.c_str(), (folder / u"to").c_str(), flags));
        EXPECT_EQ(folder.Read(u"to"), "bytes");
        EXPECT_TRUE(MoveFileExW((folder / u"to").c_str(), from.c_str(), flags));
    }
    EXPECT_FALSE(MoveFileExW((folder / u"none").c_str(), from.c_str(), kMoveReplaceExisting));
    EXPECT_EQ(GetLastError(), kErrorFileNotFound);
    EXPECT_EQ(folder.Read(u"from"), "bytes");
}

TEST(Folders, GetFileAttributesW_knows_files_folders_and_nothing) {
    const TempFolder folder;
    EXPECT_EQ(Attributes(folder.Write(u"file")), 0u);
    EXPECT_EQ(Attributes(folder.Path()), kAttributeDirectory);
    EXPECT_EQ(GetFileAttributesW((folder / u"none").c_str()), kInvalidAttributes);
    EXPECT_EQ(GetLastError(), kErrorFileNotFound);
    EXPECT_FALSE(SetFileAttributesW((folder / u"none").c_str(), kAttributeNormal));
}

TEST(Folders, GetDriveTypeW_knows_existing_folders) {
    const TempFolder folder;
    const std::u16string separator(1, kPathSeparator);
    EXPECT_NE(GetDriveTypeW((folder.Path() + separator).c_str()), kDriveNoRoot);
    EXPECT_EQ(GetDriveTypeW((folder / u"none" + separator).c_str()), kDriveNoRoot);
    EXPECT_EQ(GetDriveTypeW((folder.Write(u"file") + separator).c_str()), kDriveNoRoot);
}

TEST(Folders, entries_may_have_any_name) {
    const TempFolder folder;
    for (const auto& name :
         {u"two words", u"a.b.c", u"\u00E9\u65E5\u672C", u"\U0001F3B5.mp3", u"quote'and,more", u"#%&+=@"}) {
        const auto path = folder / name;
        EXPECT_TRUE(IsOpen(OpenFile(path, kGenericWrite, kCreateNew)));
        FindData data;
        const Handle search = FindFirstFileW(path.c_str(), &data);
        ASSERT_NE(search, kInvalidHandle);
        EXPECT_EQ(std::u16string(data.name), name);
        EXPECT_TRUE(FindClose(search));
        EXPECT_TRUE(DeleteFileW(path.c_str()));
    }
}

TEST(Folders, a_path_may_be_long) {
    const TempFolder folder;
    std::u16string path = Unlimited(folder.Path());
    std::vector<std::u16string> levels;
    while (path.size() < 600) {
        path += kPathSeparator + std::u16string(100, u'x');
        ASSERT_TRUE(CreateDirectoryW(path.c_str()));
        levels.push_back(path);
    }
    const std::u16string file = path + kPathSeparator + u"file";
    EXPECT_TRUE(IsOpen(OpenFile(file, kGenericWrite, kCreateNew)));
    EXPECT_NE(GetFileAttributesW(file.c_str()), kInvalidAttributes);
    EXPECT_TRUE(DeleteFileW(file.c_str()));
    for (; !levels.empty(); levels.pop_back()) EXPECT_TRUE(RemoveDirectoryW(levels.back().c_str()));
}

TEST(TempNames, GetTempPathW_gives_an_existing_folder_with_its_separator) {
    char16_t buffer[300];
    const std::uint32_t length = GetTempPathW(300, buffer);
    const std::u16string path(buffer);
    ASSERT_GT(length, 0u);
    EXPECT_EQ(path.size(), length);
    EXPECT_EQ(path.back(), kPathSeparator);
    EXPECT_EQ(Attributes(path), kAttributeDirectory);
}

TEST(TempNames, GetTempPathW_tells_the_count_it_needs) {
    char16_t buffer[300];
    const std::uint32_t length = GetTempPathW(300, buffer);
    EXPECT_EQ(GetTempPathW(1, buffer), length + 1);
    EXPECT_EQ(GetTempPathW(length, buffer), length + 1);
    EXPECT_EQ(GetTempPathW(length + 1, buffer), length);
}

TEST(TempNames, GetTempFileNameW_makes_new_empty_files) {
    const TempFolder folder;
    std::set<std::u16string> names;
    for (int i = 0; i < 100; ++i) {
        char16_t path[260];
        ASSERT_NE(GetTempFileNameW(folder.Path().c_str(), u"qvt", 0, path), 0u);
        const std::u16string name = std::u16string(path).substr(folder.Path().size() + 1);
        EXPECT_TRUE(std::u16string(path).starts_with(folder.Path() + kPathSeparator + u"qvt"));
        EXPECT_TRUE(folder.Has(name));
        EXPECT_EQ(folder.Read(name), "");
        names.insert(name);
    }
    EXPECT_EQ(names.size(), 100u);
}

TEST(TempNames, GetTempFileNameW_takes_three_units_of_a_long_prefix_and_a_separator_behind_the_folder) {
    const TempFolder folder;
    char16_t path[260];
    ASSERT_NE(GetTempFileNameW((folder.Path() + kPathSeparator).c_str(), u"abcdef", 0, path), 0u);
    const std::u16string name = std::u16string(path).substr(folder.Path().size() + 1);
    EXPECT_TRUE(name.starts_with(u"abc"));
    EXPECT_FALSE(name.starts_with(u"abcd") && name.starts_with(u"abcdef"));
    EXPECT_TRUE(folder.Has(name));
}

TEST(TempNames, GetTempFileNameW_fails_in_a_folder_that_is_not_there) {
    const TempFolder folder;
    char16_t path[260];
    EXPECT_EQ(GetTempFileNameW((folder / u"none").c_str(), u"qvt", 0, path), 0u);
}
