// Opening, reading, writing and sizes.
#include <gtest/gtest.h>

#include "open_file.h"
#include "platform/error.h"
#include "support/temp_folder.h"

using namespace platform;

namespace {

std::string ReadUpTo(Handle file, std::uint32_t count) {
    std::string bytes(count, '\0');
    std::uint32_t read = 99;
    EXPECT_TRUE(ReadFile(file, bytes.data(), count, &read));
    bytes.resize(read);
    return bytes;
}

void Write(Handle file, const std::string& bytes) {
    std::uint32_t written = 0;
    EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written));
    EXPECT_EQ(written, bytes.size());
}

}  // namespace

TEST(Files, CreateFileW_tells_that_a_file_is_missing) {
    const TempFolder folder;
    EXPECT_EQ(OpenFile(folder / u"none", kGenericRead, kOpenExisting), kInvalidHandle);
    EXPECT_EQ(GetLastError(), kErrorFileNotFound);
}

TEST(Files, CreateFileW_new_refuses_an_existing_file_and_leaves_it_alone) {
    const TempFolder folder;
    const auto path = folder.Write(u"old", "kept");
    EXPECT_EQ(OpenFile(path, kGenericWrite, kCreateNew), kInvalidHandle);
    EXPECT_EQ(GetLastError(), kErrorFileExists);
    EXPECT_EQ(folder.Read(u"old"), "kept");
    EXPECT_TRUE(IsOpen(OpenFile(folder / u"new", kGenericWrite, kCreateNew)));
    EXPECT_TRUE(folder.Has(u"new"));
}

TEST(Files, CreateFileW_always_truncates) {
    const TempFolder folder;
    const auto path = folder.Write(u"file", "a long text");
    { Write(OpenFile(path, kGenericWrite, kCreateAlways), "ab"); }
    EXPECT_EQ(folder.Read(u"file"), "ab");
}

TEST(Files, CreateFileW_existing_keeps_what_is_there) {
    const TempFolder folder;
    const auto path = folder.Write(u"file", "a long text");
    { Write(OpenFile(path, kGenericWrite, kOpenExisting), "A"); }
    EXPECT_EQ(folder.Read(u"file"), "A long text");
}

TEST(Files, CreateFileW_denies_a_folder) {
    const TempFolder folder;
    const auto path = folder.MakeFolder(u"inner");
    for (const std::uint32_t access : {kGenericRead, kGenericWrite, kGenericRead | kGenericWrite}) {
        SetLastError(kErrorSuccess);
        EXPECT_EQ(OpenFile(path, access, kOpenExisting), kInvalidHandle);
        EXPECT_EQ(GetLastError(), kErrorAccessDenied);
    }
    EXPECT_EQ(OpenFile(path, kGenericWrite, kCreateAlways), kInvalidHandle);
    EXPECT_EQ(GetLastError(), kErrorAccessDenied);
}

TEST(Files, ReadFile_reads_nothing_at_the_end_and_succeeds) {
    const TempFolder folder;
    const OpenFile file(folder.Write(u"file", "12345"), kGenericRead, kOpenExisting);
    EXPECT_EQ(ReadUpTo(file, 3), "123");
    EXPECT_EQ(ReadUpTo(file, 3), "45");
    EXPECT_EQ(ReadUpTo(file, 3), "");
    EXPECT_EQ(ReadUpTo(file, 0), "");
}

TEST(Files, a_call_that_fails_moved_nothing) {
    const TempFolder folder;
    const auto path = folder.Write(u"file", "12345");
    char byte = 'x';
    std::uint32_t read = 9, written = 9;
    EXPECT_FALSE(ReadFile(OpenFile(path, kGenericWrite, kOpenExisting), &byte, 1, &read));
    EXPECT_FALSE(WriteFile(OpenFile(path, kGenericRead, kOpenExisting), &byte, 1, &written));
    EXPECT_EQ(read, 0u);
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(byte, 'x');
    EXPECT_EQ(folder.Read(u"file"), "12345");
}

TEST(Files, no_handle_reads_writes_sizes_or_closes) {
    for (const Handle none : {kNullHandle, kInvalidHandle}) {
        char byte = 0;
        std::uint32_t moved = 9;
        std::int64_t size = 77;
        EXPECT_FALSE(ReadFile(none, &byte, 1, &moved));
        EXPECT_EQ(moved, 0u);
        moved = 9;
        EXPECT_FALSE(WriteFile(none, &byte, 1, &moved));
        EXPECT_EQ(moved, 0u);
        EXPECT_FALSE(GetFileSizeEx(none, &size));
        EXPECT_EQ(size, 77);
        EXPECT_FALSE(SetFilePointerEx(none, 0));
        EXPECT_FALSE(FlushFileBuffers(none));
        EXPECT_FALSE(CloseHandle(none));
        EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
    }
}

TEST(Files, SetFilePointerEx_counts_from_the_start) {
    const TempFolder folder;
    const OpenFile file(folder.Write(u"file", "abcdef"), kGenericRead | kGenericWrite, kOpenExisting);
    EXPECT_TRUE(SetFilePointerEx(file, 4));
    EXPECT_EQ(ReadUpTo(file, 9), "ef");
    EXPECT_TRUE(SetFilePointerEx(file, 1));
    Write(file, "B");
    EXPECT_EQ(ReadUpTo(file, 2), "cd");
    EXPECT_FALSE(SetFilePointerEx(file, -1));
    EXPECT_EQ(ReadUpTo(file, 1), "e");
}

TEST(Files, a_gap_behind_the_end_reads_as_zeros) {
    const TempFolder folder;
    {
        const OpenFile file(folder / u"file", kGenericWrite, kCreateNew);
        EXPECT_TRUE(SetFilePointerEx(file, 3));
        Write(file, "x");
        EXPECT_TRUE(FlushFileBuffers(file));
    }
    EXPECT_EQ(folder.Read(u"file"), std::string("\0\0\0x", 4));
}

TEST(Files, sizes_and_positions_go_beyond_32_bits) {
    const TempFolder folder;
    const std::int64_t far = (std::int64_t{1} << 32) + 5;
    const OpenFile file(folder / u"sparse", kGenericRead | kGenericWrite, kCreateNew);
    ASSERT_TRUE(SetFilePointerEx(file, far));
    Write(file, "x");
    std::int64_t size = 0;
    EXPECT_TRUE(GetFileSizeEx(file, &size));
    EXPECT_EQ(size, far + 1);
    EXPECT_TRUE(SetFilePointerEx(file, far));
    EXPECT_EQ(ReadUpTo(file, 2), "x");
}
