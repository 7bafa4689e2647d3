// Where the store lies and what is in it.
#include "platform/registry.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <optional>

#include "platform/error.h"
#include "support/temp_folder.h"

using namespace platform;

namespace {

// An environment variable for the length of a scope; null takes it away.
class Variable {
  public:
    Variable(const char* name, const char* value) : mName(name) {
        if (const char* former = getenv(name)) mFormer = former;
        Set(value);
    }
    ~Variable() { Set(mFormer ? mFormer->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    void Set(const char* value) { value ? setenv(mName, value, 1) : unsetenv(mName); }

    const char* mName;
    std::optional<std::string> mFormer;
};

std::string Narrow(const TempFolder& folder) {
    return std::filesystem::path(folder.Path());
}

void Store(const char16_t* path, const char16_t* name, const std::string& bytes) {
    Handle key = kNullHandle;
    ASSERT_EQ(RegCreateKeyExW(path, kKeyWrite, &key), kErrorSuccess);
    EXPECT_EQ(RegSetValueExW(key, name, 1, bytes.data(), static_cast<std::uint32_t>(bytes.size())),
              kErrorSuccess);
    EXPECT_EQ(RegCloseKey(key), kErrorSuccess);
}

struct stat StateOf(const std::string& path) {
    struct stat state {};
    EXPECT_EQ(stat(path.c_str(), &state), 0) << path;
    return state;
}
mode_t ModeOf(const std::string& path) {
    return StateOf(path).st_mode & 07777;
}
ino_t NumberOf(const std::string& path) {
    return StateOf(path).st_ino;
}

}  // namespace

TEST(PosixRegistry, lies_in_the_configured_folder_and_is_the_users_alone) {
    const TempFolder folder;
    const Variable variable("XDG_CONFIG_HOME", Narrow(folder).c_str());
    Store(u"Software\\Some Key", u"Name", "data");
    const std::string key = Narrow(folder) + "/quavermill/software/some%20key";
    EXPECT_EQ(ModeOf(key), 0700u);
    EXPECT_EQ(ModeOf(key + "/=name"), 0600u);
    EXPECT_EQ(folder.Read(u"quavermill/software/some%20key/=name"), std::string("\1\0\0\0data", 8));
}

TEST(PosixRegistry, lies_in_the_home_folder_where_none_is_configured) {
    const TempFolder folder;
    const Variable home("HOME", Narrow(folder).c_str());
    for (const char* configured : {static_cast<const char*>(nullptr), "", "relative/path"}) {
        const Variable variable("XDG_CONFIG_HOME", configured);
        Store(u"key", u"name", configured ? configured : "none");
        EXPECT_EQ(folder.Read(u".config/quavermill/key/=name").substr(4), configured ? configured : "none");
    }
}

TEST(PosixRegistry, writing_leaves_no_file_but_the_values) {
    const TempFolder folder;
    const Variable variable("XDG_CONFIG_HOME", Narrow(folder).c_str());
    for (int i = 0; i < 10; ++i) Store(u"key", u"name", std::to_string(i));
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Narrow(folder))) {
        files += entry.is_regular_file();
    }
    EXPECT_EQ(files, 1);
}

TEST(PosixRegistry, a_value_that_stands_there_already_is_not_written_again) {
    const TempFolder folder;
    const Variable variable("XDG_CONFIG_HOME", Narrow(folder).c_str());
    const std::string file = Narrow(folder) + "/quavermill/key/=name";
    Store(u"key", u"name", "data");
    const ino_t first = NumberOf(file);
    Store(u"key", u"name", "data");
    EXPECT_EQ(NumberOf(file), first);
    Store(u"key", u"name", "date");
    EXPECT_NE(NumberOf(file), first) << "a written value is another file, made beside the one before";
}

TEST(PosixRegistry, a_value_that_can_not_be_put_in_place_leaves_nothing) {
    const TempFolder folder;
    const Variable variable("XDG_CONFIG_HOME", Narrow(folder).c_str());
    folder.MakeFolder(u"quavermill/key/=name/occupied");
    Handle key = kNullHandle;
    ASSERT_EQ(RegCreateKeyExW(u"key", kKeyWrite | kKeyQueryValue, &key), kErrorSuccess);
    EXPECT_NE(RegSetValueExW(key, u"name", 1, "x", 1), kErrorSuccess);
    std::uint32_t size = 0;
    EXPECT_NE(RegQueryValueExW(key, u"name", nullptr, nullptr, &size), kErrorSuccess);
    EXPECT_EQ(RegCloseKey(key), kErrorSuccess);
    const std::filesystem::directory_iterator entries(Narrow(folder) + "/quavermill/key");
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST(PosixRegistry, a_folder_that_can_not_be_made_is_an_answer) {
    const TempFolder folder;
    folder.Write(u"quavermill", "a file in its place");
    const Variable variable("XDG_CONFIG_HOME", Narrow(folder).c_str());
    Handle key = 77;
    EXPECT_NE(RegCreateKeyExW(u"key", kKeyWrite, &key), kErrorSuccess);
    EXPECT_EQ(key, kNullHandle);
}

TEST(PosixRegistry, a_damaged_value_is_an_error_and_not_a_guess) {
    const TempFolder folder;
    folder.MakeFolder(u"quavermill/key");
    folder.Write(u"quavermill/key/=name", "abc");
    const Variable variable("XDG_CONFIG_HOME", Narrow(folder).c_str());
    Handle key = kNullHandle;
    ASSERT_EQ(RegCreateKeyExW(u"key", kKeyQueryValue, &key), kErrorSuccess);
    std::uint32_t size = 0;
    EXPECT_NE(RegQueryValueExW(key, u"name", nullptr, nullptr, &size), kErrorSuccess);
    EXPECT_EQ(RegCloseKey(key), kErrorSuccess);
}
