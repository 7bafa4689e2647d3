#include "foundation/temp_file.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "foundation/native_text.h"
#include "foundation/paths.h"
#include "platform/file.h"
#include "support/allocation_faults.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

// The system's folder for temporary files is this one while it stands.
class TempFolderIs {
  public:
    explicit TempFolderIs(const std::u16string& folder) {
        mFault.Replace([folder](std::uint32_t, char16_t* buffer) {
            return static_cast<std::uint32_t>(folder.copy(buffer, folder.size()));
        });
    }

  private:
    Faulty<platform::GetTempPathW> mFault;
};

std::u16string NameOf(const XTempFile& file) {
    return Units(paths::GetFileName(file));
}

// "QvT", a number below 9999 and ".tmp".
void ExpectRandomName(const XTempFile& file) {
    const std::u16string name = NameOf(file);
    ASSERT_GT(name.size(), 7u);
    EXPECT_EQ(name.substr(0, 3), u"QvT");
    EXPECT_EQ(name.substr(name.size() - 4), u".tmp");
    const std::u16string number = name.substr(3, name.size() - 7);
    EXPECT_EQ(number.find_first_not_of(u"0123456789"), number.npos);
    EXPECT_LT(XString(number.c_str()).ToInt64(), 9999);
}

TEST(TempFile, Is_empty_in_the_folder_for_it_and_goes_with_its_owner) {
    const TempFolder temp;
    const TempFolderIs here(temp.Path());
    std::u16string name;
    {
        XTempFile file;
        EXPECT_TRUE(file.IsEmpty());
        file.Generate();
        name = NameOf(file);
        EXPECT_EQ(Units(file), temp / name);
        EXPECT_EQ(name.substr(0, 3), u"QvT");
        EXPECT_TRUE(temp.Has(name));
        EXPECT_EQ(temp.Read(name), "");
    }
    EXPECT_FALSE(temp.Has(name));
}

TEST(TempFile, Every_one_has_its_own_name_and_a_new_name_ends_the_old_file) {
    const TempFolder temp;
    const TempFolderIs here(temp.Path());
    XTempFile one, other;
    one.Generate();
    other.Generate();
    const std::u16string first = NameOf(one);
    EXPECT_NE(first, NameOf(other));
    Faulty<platform::DeleteFileW> deletions;
    one.Generate();
    EXPECT_EQ(deletions.Calls(), 1);
    EXPECT_TRUE(temp.Has(NameOf(one)));
    EXPECT_TRUE(temp.Has(NameOf(other)));
}

TEST(TempFile, An_empty_one_deletes_nothing) {
    Faulty<platform::DeleteFileW> deletions;
    { const XTempFile file; }
    EXPECT_EQ(deletions.Calls(), 0);
}

TEST(TempFile, Can_be_destroyed_when_memory_has_ended) {
    const TempFolder temp;
    const TempFolderIs here(temp.MakeFolder(std::u16string(150, u'x')));
    auto file = std::make_unique<XTempFile>();
    file->Generate();
    ASSERT_FALSE(file->IsEmpty());
    bool failed = false;
    {
        AllocationFaults memory;
        memory.FailFrom(1);
        file.reset();
        failed = memory.HasFailed();
    }
    EXPECT_TRUE(failed);
}

TEST(TempFile, Takes_a_random_number_where_the_platform_gives_no_name) {
    const TempFolder temp;
    const TempFolderIs here(temp.Path());
    std::u16string name;
    {
        Faulty<platform::GetTempFileNameW> names;
        names.FailAlways(0u);
        XTempFile file;
        file.Generate();
        ExpectRandomName(file);
        name = NameOf(file);
        EXPECT_EQ(Units(file), temp / name);
        EXPECT_TRUE(temp.Has(name));
        EXPECT_EQ(temp.Read(name), "");
        EXPECT_EQ(names.Calls(), 1);
    }
    EXPECT_FALSE(temp.Has(name));
}

TEST(TempFile, Takes_a_random_number_where_the_platforms_name_is_empty) {
    const TempFolder temp;
    const TempFolderIs here(temp.Path());
    Faulty<platform::GetTempFileNameW> names;
    names.Replace([](const char16_t*, const char16_t* prefix, std::uint32_t unique, char16_t*) {
        EXPECT_EQ(std::u16string(prefix), u"QvT");
        EXPECT_EQ(unique, 0u);
        return 1u;
    });
    XTempFile file;
    file.Generate();
    ExpectRandomName(file);
}

TEST(TempFile, Makes_the_folder_that_is_missing) {
    const TempFolder temp;
    const TempFolderIs here(temp / u"not/here/yet");
    XTempFile file;
    file.Generate();
    ExpectRandomName(file);
    EXPECT_TRUE(temp.Has(u"not/here/yet/" + NameOf(file)));
}

TEST(TempFile, Says_nothing_where_the_folder_cant_be_written_to) {
    const TempFolder temp;
    const TempFolderIs here(temp.Path());
    Faulty<platform::GetTempFileNameW> names;
    names.FailAlways(0u);
    Faulty<platform::CreateFileW> opens;
    opens.FailAlways(platform::kInvalidHandle, platform::kErrorAccessDenied);
    Faulty<platform::CreateDirectoryW> levels;
    XTempFile file;
    file.Generate();
    EXPECT_FALSE(file.IsEmpty());
    EXPECT_FALSE(temp.Has(NameOf(file)));
    EXPECT_EQ(opens.Calls(), 2);
    EXPECT_GT(levels.Calls(), 0);
}

}  // namespace
