#include "foundation/paths.h"

#include <gtest/gtest.h>

#include <vector>

#include "foundation/native_text.h"

namespace {

struct Row {
    const char16_t* path;
    const char16_t* expected;
};

void ExpectRows(XString (*function)(const XString&), const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const XString path(Native(row.path).c_str());
        EXPECT_EQ(Units(function(path)), Native(row.expected)) << testing::PrintToString(row.path);
        EXPECT_EQ(Units(path), Native(row.path));
    }
}

TEST(Paths, GetExtension_is_what_follows_the_last_dot_of_the_last_part) {
    ExpectRows(&paths::GetExtension, {{u"track.MP3", u".MP3"},
                                      {u"C:\\dir\\track.tar.gz", u".gz"},
                                      {u".hidden", u".hidden"},
                                      {u"a.b\\.c", u".c"}});
}

TEST(Paths, GetExtension_is_a_dot_when_there_is_none) {
    ExpectRows(&paths::GetExtension,
               {{u"a.b\\c", u"."}, {u"", u"."}, {u"track", u"."}, {u"track.", u"."}, {u"C:\\x.y\\", u"."}});
}

TEST(Paths, GetFileName_is_what_stands_behind_the_last_separator) {
    ExpectRows(
        &paths::GetFileName,
        {{u"C:\\dir\\track.mp3", u"track.mp3"}, {u"track", u"track"}, {u"C:\\dir\\", u""}, {u"", u""}});
}

TEST(Paths, GetFileTitle_is_the_name_without_its_extension) {
    ExpectRows(&paths::GetFileTitle, {{u"C:\\Music.old\\track", u"track"},
                                      {u"C:\\dir\\track.mp3", u"track"},
                                      {u"C:\\dir\\a.b.c", u"a.b"},
                                      {u"C:\\dir\\", u""}});
}

TEST(Paths, StripExtension_cuts_at_the_last_dot_even_in_a_folder) {
    ExpectRows(&paths::StripExtension, {{u"a.b\\c", u"a"},
                                        {u"C:\\Music.old\\track", u"C:\\Music"},
                                        {u"a.b.c", u"a.b"},
                                        {u".x", u""},
                                        {u"track", u"track"},
                                        {u"", u""}});
}

TEST(Paths, GetFolder_keeps_the_last_separator) {
    ExpectRows(&paths::GetFolder, {{u"C:\\dir\\track.mp3", u"C:\\dir\\"},
                                   {u"C:\\dir\\", u"C:\\dir\\"},
                                   {u"\\x", u"\\"},
                                   {u"x", u"x"},
                                   {u"", u""}});
}

TEST(Paths, Only_the_platforms_own_separator_parts_a_path) {
    const char16_t other[] = {u'a', platform::kPathSeparator == u'/' ? u'\\' : u'/', u'b', 0};
    EXPECT_EQ(Units(paths::GetFileName(other)), other);
    EXPECT_EQ(Units(paths::GetFolder(other)), other);
}

TEST(Paths, Trailing_separators_are_added_once_and_removed_all) {
    struct {
        const char16_t *path, *stripped, *added;
    } const rows[] = {{u"C:\\dir", u"C:\\dir", u"C:\\dir\\"},
                      {u"C:\\dir\\", u"C:\\dir", u"C:\\dir\\"},
                      {u"C:\\dir\\\\\\", u"C:\\dir", u"C:\\dir\\\\\\"},
                      {u"\\\\", u"", u"\\\\"},
                      {u"", u"", u""}};
    for (const auto& row : rows) {
        XString stripped(Native(row.path).c_str()), added(stripped);
        paths::StripTrailingSeparators(stripped);
        paths::AddTrailingSeparator(added);
        EXPECT_EQ(Units(stripped), Native(row.stripped));
        EXPECT_EQ(Units(added), Native(row.added));
    }
}

// A drive's root begins a path of one family of systems, a single separator one of the other.
TEST(Paths, GetRootEnd_is_the_position_behind_the_root) {
    const bool hasDrives = platform::kFirstRootSeparator == 3;
    struct {
        const char16_t* path;
        std::int32_t withDrives, without;
    } const rows[] = {{u"C:\\a\\b", 4, 4},
                      {u"C:\\", 4, 4},
                      {u"C:", 1, 1},
                      {u"track", 1, 1},
                      {u"", 1, 1},
                      {u"\\a", 1, 2},
                      {u"\\home\\a", 7, 2},
                      {u"\\\\server", 1, 2},
                      {u"\\\\server\\share\\x", 10, 2},
                      {u"\\\\?\\C:\\a\\b", 8, 2},
                      {u"\\\\?\\UNC\\server\\x", 9, 2},
                      {u"ab\\c", 4, 4}};
    for (const auto& row : rows)
        EXPECT_EQ(paths::GetRootEnd(Native(row.path).c_str()), hasDrives ? row.withDrives : row.without)
            << testing::PrintToString(row.path);
}

TEST(Paths, SplitLastFolder_cuts_the_last_part_off) {
    struct {
        const char16_t *path, *part, *rest;
    } const rows[] = {{u"C:\\Music\\Old\\\\", u"Old", u"C:\\Music\\"},
                      {u"C:\\Music\\Old", u"Old", u"C:\\Music\\"},
                      {u"C:\\Music", u"Music", u"C:\\"},
                      {u"C:\\\\Music", u"Music", u"C:\\\\"}};
    for (const auto& row : rows) {
        XString path(Native(row.path).c_str());
        EXPECT_EQ(Units(paths::SplitLastFolder(path)), Native(row.part));
        EXPECT_EQ(Units(path), Native(row.rest));
    }
}

TEST(Paths, SplitLastFolder_leaves_a_root_and_a_path_without_one_alone) {
    for (const char16_t* row : {u"C:\\", u"C:\\\\", u"C:", u"track", u""}) {
        XString path(Native(row).c_str());
        EXPECT_TRUE(paths::SplitLastFolder(path).IsEmpty()) << testing::PrintToString(row);
        EXPECT_EQ(Units(path), Native(row));
    }
}

TEST(Paths, ToLongPath_prefixes_from_the_limit_on) {
    for (const std::int32_t limit : {paths::kOtherLimit, paths::kCreateLimit}) {
        const std::u16string below = PathOfLength(static_cast<std::size_t>(limit) - 1);
        const std::u16string at = PathOfLength(static_cast<std::size_t>(limit));
        EXPECT_EQ(Units(paths::ToLongPath(below.c_str(), limit)), below);
        EXPECT_EQ(Units(paths::ToLongPath(at.c_str(), limit)), LongForm(at));
    }
}

TEST(Paths, ToLongPath_prefixes_a_relative_path_as_well) {
    const std::u16string path(300, u'x');
    EXPECT_EQ(Units(paths::ToLongPath(path.c_str(), 248)), LongForm(path));
}

TEST(Paths, ToLongPath_leaves_network_paths_and_prefixed_ones_alone) {
    for (const char16_t* begin : {u"\\\\server\\share\\", u"\\\\?\\C:\\"}) {
        std::u16string path = Native(begin);
        path.resize(300, u'x');
        EXPECT_EQ(Units(paths::ToLongPath(path.c_str(), 248)), path);
    }
}

}  // namespace
