#include "platform/names.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/file.h"
#include "platform/module.h"
#include "support/temp_folder.h"

using namespace platform;

TEST(Names, the_separator_is_the_one_that_the_system_answers_with) {
    char16_t path[4096];
    ASSERT_GT(GetModuleFileNameW(nullptr, path, 4096), 0u);
    EXPECT_NE(std::u16string(path).find(kPathSeparator), std::u16string::npos);
}

TEST(Names, the_root_behind_the_first_separator_exists) {
    const TempFolder folder;
    const std::u16string path = folder.Path();
    const auto separator = path.find(kPathSeparator, static_cast<std::size_t>(kFirstRootSeparator) - 1);
    ASSERT_NE(separator, std::u16string::npos);
    EXPECT_NE(GetDriveTypeW(path.substr(0, separator + 1).c_str()), kDriveNoRoot);
}

TEST(Names, the_long_path_prefix_names_the_same_file) {
    const TempFolder folder;
    const auto path = folder.Write(u"file");
    EXPECT_NE(GetFileAttributesW((kLongPathPrefix + path).c_str()), kInvalidAttributes);
}

TEST(Names, extensions_begin_with_a_dot_and_folders_end_without_a_separator) {
    EXPECT_EQ(kModuleExtension[0], u'.');
    EXPECT_EQ(kNamedModuleExtension[0], u'.');
    EXPECT_NE(std::u16string(kDefaultTempFolder).back(), kPathSeparator);
    EXPECT_TRUE(std::u16string(kConverterFileName).starts_with(u"Quavercore"));
}
