// Walks over folders.
#include <gtest/gtest.h>

#include <map>

#include "platform/error.h"
#include "platform/file.h"
#include "support/temp_folder.h"

using namespace platform;

namespace {

using Entries = std::map<std::u16string, FindData>;

Entries Walk(const std::u16string& pattern) {
    Entries found;
    FindData data;
    const Handle search = FindFirstFileW(pattern.c_str(), &data);
    if (search == kInvalidHandle) return found;
    do {
        EXPECT_TRUE(found.emplace(data.name, data).second) << "an entry came twice";
    } while (FindNextFileW(search, &data));
    EXPECT_EQ(GetLastError(), kErrorNoMoreFiles);
    EXPECT_TRUE(FindClose(search));
    return found;
}

std::string Names(const Entries& entries) {
    std::string names;
    for (const auto& [name, data] : entries) names += std::string(name.begin(), name.end()) + " ";
    return names;
}

}  // namespace

TEST(Find, wildcards_match_the_last_part) {
    const TempFolder folder;
    for (const auto& name : {u"abc.txt", u"axc.txt", u"abc.dat", u"abbc.txt", u"plain", u"two.dots.txt"})
        folder.Write(name);
    const struct {
        const char16_t* pattern;
        const char* names;
    } rows[] = {
        {u"*", ". .. abbc.txt abc.dat abc.txt axc.txt plain two.dots.txt "},
        {u"*.txt", "abbc.txt abc.txt axc.txt two.dots.txt "},
        {u"a?c.txt", "abc.txt axc.txt "},
        {u"a*c.txt", "abbc.txt abc.txt axc.txt "},
        {u"abc.*", "abc.dat abc.txt "},
        {u"*bc*", "abbc.txt abc.dat abc.txt "},
        {u"*.*.txt", "two.dots.txt "},
        {u"??bc.txt", "abbc.txt "},
        {u"plain", "plain "},
        {u"abc.txt", "abc.txt "},
    };
    for (const auto& row : rows) EXPECT_EQ(Names(Walk(folder / row.pattern)), row.names);
}

TEST(Find, an_entry_comes_with_its_size_and_kind) {
    const TempFolder folder;
    folder.Write(u"file", "12345");
    folder.Write(u"locked");
    folder.SetReadOnly(u"locked");
    folder.MakeFolder(u"inner");
    const Entries found = Walk(folder / u"*");
    EXPECT_EQ(found.at(u"file").size, 5u);
    EXPECT_EQ(found.at(u"locked").size, 0u);
    const std::uint32_t mask = kAttributeDirectory | kAttributeReadOnly;
    EXPECT_EQ(found.at(u"file").attributes & mask, 0u);
    EXPECT_EQ(found.at(u"locked").attributes & mask, kAttributeReadOnly);
    EXPECT_EQ(found.at(u"inner").attributes & mask, kAttributeDirectory);
}

TEST(Find, the_search_looks_into_the_named_folder_only) {
    const TempFolder folder;
    folder.MakeFolder(u"inner");
    folder.Write(u"inner/deep.txt");
    EXPECT_EQ(Names(Walk(folder / u"*.txt")), "");
    EXPECT_EQ(Names(Walk(folder / u"inner/*.txt")), "deep.txt ");
}

TEST(Find, nothing_that_matches_is_a_file_not_found) {
    const TempFolder folder;
    FindData data;
    for (const auto& pattern : {u"none", u"*.none"}) {
        SetLastError(kErrorSuccess);
        EXPECT_EQ(FindFirstFileW((folder / pattern).c_str(), &data), kInvalidHandle);
        EXPECT_EQ(GetLastError(), kErrorFileNotFound);
    }
    EXPECT_EQ(FindFirstFileW((folder / u"none/*").c_str(), &data), kInvalidHandle);
}

TEST(Find, a_search_may_end_early_and_beside_others) {
    const TempFolder folder;
    folder.Write(u"a");
    folder.Write(u"b");
    FindData first, second;
    const Handle one = FindFirstFileW((folder / u"*").c_str(), &first);
    const Handle two = FindFirstFileW((folder / u"b").c_str(), &second);
    EXPECT_TRUE(FindNextFileW(one, &first));
    EXPECT_FALSE(FindNextFileW(two, &second));
    EXPECT_TRUE(FindClose(one));
    EXPECT_TRUE(FindClose(two));
}
