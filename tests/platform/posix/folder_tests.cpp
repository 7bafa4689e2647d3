// What only this side has in its folders.
#include <gtest/gtest.h>

#include "platform/file.h"

using namespace platform;

TEST(PosixFolders, what_is_neither_file_nor_folder_is_a_device) {
    const std::uint32_t attributes = GetFileAttributesW(u"/dev/null");
    ASSERT_NE(attributes, kInvalidAttributes);
    EXPECT_EQ(attributes & (kAttributeDevice | kAttributeDirectory), kAttributeDevice);
    EXPECT_EQ(GetFileAttributesW(u"/dev") & (kAttributeDevice | kAttributeDirectory), kAttributeDirectory);
    EXPECT_EQ(GetFileAttributesW(u"/etc/passwd") & (kAttributeDevice | kAttributeDirectory), 0u);
}
