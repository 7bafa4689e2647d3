#include "foundation/find_file.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "foundation/native_text.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

std::set<std::u16string> Names(XFindFile& walk) {
    std::set<std::u16string> names;
    while (walk.Next()) EXPECT_TRUE(names.insert(Units(walk.Name())).second);
    return names;
}

// A folder whose walk is told by a list of entries; a name of its own for each platform call that walks it.
class FakeFolder {
  public:
    explicit FakeFolder(std::vector<platform::FindData> entries) : mEntries(std::move(entries)) {
        mFirst.Replace([this](const char16_t* pattern, platform::FindData* data) {
            mPattern = pattern;
            return Step(data) ? platform::Handle{77} : platform::kInvalidHandle;
        });
        mNext.Replace([this](platform::Handle, platform::FindData* data) { return Step(data); });
        mClose.Replace([](platform::Handle handle) { return handle == 77; });
    }

    const std::u16string& Pattern() const { return mPattern; }
    int Closes() const { return mClose.Calls(); }

    static platform::FindData Entry(std::u16string_view name, std::uint32_t attributes = 0) {
        platform::FindData data;
        name.copy(data.name, name.size());
        data.attributes = attributes;
        return data;
    }

  private:
    bool Step(platform::FindData* data) {
        EXPECT_EQ(data->name[0], 0) << "cleared before each step";
        EXPECT_EQ(data->attributes, 0u);
        if (mAt == mEntries.size()) return false;
        *data = mEntries[mAt++];
        return true;
    }

    std::vector<platform::FindData> mEntries;
    std::size_t mAt = 0;
    std::u16string mPattern;
    Faulty<platform::FindFirstFileW> mFirst;
    Faulty<platform::FindNextFileW> mNext;
    Faulty<platform::FindClose> mClose;
};

TEST(FindFile, Walks_the_entries_that_match) {
    const TempFolder temp;
    const std::u16string first = temp.Write(u"one.dll"), second = temp.Write(u"two.dll");
    temp.Write(u"three.txt");
    for (const std::u16string& folder : {temp.Path(), temp.Path() + platform::kPathSeparator}) {
        XFindFile walk(u"*.dll", folder.c_str());
        EXPECT_EQ(Names(walk), (std::set{first, second}));
        EXPECT_FALSE(walk.Next());
    }
}

TEST(FindFile, Describes_the_entry) {
    const TempFolder temp;
    temp.Write(u"file", "12345");
    temp.MakeFolder(u"folder");
    XFindFile file((temp / u"file").c_str()), folder((temp / u"folder").c_str());
    ASSERT_TRUE(file.Next());
    EXPECT_EQ(file.Data().size, 5u);
    EXPECT_EQ(std::u16string(file.Data().name), u"file");
    EXPECT_FALSE(file.IsFolder());
    ASSERT_TRUE(folder.Next());
    EXPECT_TRUE(folder.IsFolder());
}

TEST(FindFile, Never_reports_the_folder_itself_nor_its_parent) {
    const TempFolder temp;
    XFindFile empty(u"*", temp.Path().c_str());
    EXPECT_FALSE(empty.Next());
    const std::u16string inside = temp.Write(u".hidden");
    XFindFile walk(u"*", temp.Path().c_str());
    EXPECT_EQ(Names(walk), std::set{inside});
}

TEST(FindFile, Can_pass_over_what_is_no_folder) {
    const TempFolder temp;
    temp.Write(u"a");
    temp.Write(u"z");
    const std::u16string folder = temp.MakeFolder(u"m");
    XFindFile walk(u"*", temp.Path().c_str());
    EXPECT_FALSE(walk.mFoldersOnly);
    walk.mFoldersOnly = true;
    EXPECT_EQ(Names(walk), std::set{folder});
    XFindFile none(u"a", temp.Path().c_str());
    none.mFoldersOnly = true;
    EXPECT_FALSE(none.Next());
}

TEST(FindFile, Looks_at_one_entry_whatever_separators_trail_it) {
    const TempFolder temp;
    const std::u16string folder = temp.MakeFolder(u"folder");
    XFindFile entry((folder + std::u16string(2, platform::kPathSeparator)).c_str());
    ASSERT_TRUE(entry.Next());
    EXPECT_EQ(Units(entry.Name()), folder);
    EXPECT_FALSE(entry.Next());
}

TEST(FindFile, Finds_nothing_again_and_again) {
    const TempFolder temp;
    Faulty<platform::FindClose> closes;
    {
        XFindFile entry((temp / u"nothing").c_str());
        EXPECT_FALSE(entry.Next());
        EXPECT_FALSE(entry.Next());
        EXPECT_TRUE(entry.Name().IsEmpty());
    }
    EXPECT_EQ(closes.Calls(), 0);
}

TEST(FindFile, Closes_its_search_once) {
    const FakeFolder folder({FakeFolder::Entry(u"x")});
    {
        XFindFile walk(u"*", u"f");
        while (walk.Next()) {
        }
        EXPECT_FALSE(walk.Next());
    }
    EXPECT_EQ(folder.Closes(), 1);
}

TEST(FindFile, Steps_over_dots_and_files_wherever_they_come) {
    const std::uint32_t isFolder = platform::kAttributeDirectory;
    const FakeFolder folder({FakeFolder::Entry(u".", isFolder), FakeFolder::Entry(u"a"),
                             FakeFolder::Entry(u"b", isFolder), FakeFolder::Entry(u"..", isFolder),
                             FakeFolder::Entry(u"..c", isFolder), FakeFolder::Entry(u".")});
    XFindFile walk(u"*", u"f");
    walk.mFoldersOnly = true;
    EXPECT_EQ(Names(walk), (std::set{Native(u"f\\b"), Native(u"f\\..c")}));
}

TEST(FindFile, Ends_at_an_entry_without_a_name) {
    const FakeFolder folder({FakeFolder::Entry(u"")});
    XFindFile walk(u"*", u"f");
    EXPECT_FALSE(walk.Next());
}

TEST(FindFile, Names_an_entry_that_was_given_without_a_folder_by_its_name_alone) {
    const FakeFolder folder({FakeFolder::Entry(u"track")});
    XFindFile walk(u"track");
    ASSERT_TRUE(walk.Next());
    EXPECT_EQ(Units(walk.Name()), u"track");
}

TEST(FindFile, Gives_the_pattern_in_its_long_form_and_names_without_it) {
    const FakeFolder folder({FakeFolder::Entry(u"x"), FakeFolder::Entry(u"y")});
    const std::u16string below = PathOfLength(247), at = PathOfLength(248);
    XFindFile plain(below.c_str()), longer(at.c_str());
    ASSERT_TRUE(plain.Next());
    EXPECT_EQ(folder.Pattern(), below);
    ASSERT_TRUE(longer.Next());
    EXPECT_EQ(folder.Pattern(), LongForm(at));
    EXPECT_EQ(Units(longer.Name()), Native(u"C:\\y"));
}

TEST(FindFile, An_empty_path_never_reaches_the_platform) {
    Faulty<platform::FindFirstFileW> walks;
    XFindFile nothing(u"");
    EXPECT_FALSE(nothing.Next());
    EXPECT_EQ(walks.Calls(), 0);
}

}  // namespace
