// The settings store. The keys used here stand apart from any real ones.
#include "platform/registry.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/error.h"
#include "unique_name.h"

using namespace platform;

namespace {

constexpr std::uint32_t kErrorMoreData = 234;
constexpr std::uint32_t kKeyAll = kKeyQueryValue | kKeyWrite;

class Key {
  public:
    explicit Key(const std::u16string& path, std::uint32_t access = kKeyAll) {
        EXPECT_EQ(RegCreateKeyExW(path.c_str(), access, &mKey), kErrorSuccess);
        EXPECT_NE(mKey, kNullHandle);
    }
    ~Key() { EXPECT_EQ(RegCloseKey(mKey), kErrorSuccess); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    operator Handle() const { return mKey; }

    // A string type would get its NUL added on Windows, so bytes are stored as numbers as a rule.
    std::uint32_t Set(const char16_t* name, const std::string& bytes, std::uint32_t type = kRegDword) const {
        return RegSetValueExW(mKey, name, type, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }
    // None when there is no such value.
    std::optional<std::string> Get(const char16_t* name, std::uint32_t* type = nullptr) const {
        std::string bytes(100000, '?');
        auto size = static_cast<std::uint32_t>(bytes.size());
        const std::uint32_t error = RegQueryValueExW(mKey, name, type, bytes.data(), &size);
        if (error != kErrorSuccess) {
            EXPECT_EQ(error, kErrorFileNotFound);
            return std::nullopt;
        }
        return bytes.substr(0, size);
    }

  private:
    Handle mKey = kNullHandle;
};

class Registry : public testing::Test {
  protected:
    // A key of the test's own, below the folder that is this system's.
    const std::u16string mBase = u"Software\\QuavermillTests\\" + UniqueName("key");
};

}  // namespace

TEST_F(Registry, a_value_comes_back_as_it_was_stored) {
    struct Row {
        const char16_t* name;
        std::uint32_t type;
        std::string bytes;
    };
    const Row rows[] = {
        {u"text", kRegString, std::string("a\0b\0\0\0", 6)},
        {u"path", kRegExpandString, std::string("%\0\0\0", 4)},
        {u"number", kRegDword, "\x78\x56\x34\x12"},
        {u"nothing", kRegDword, ""},
        {u"large", kRegDword, std::string(50000, '\x01')},
    };
    const Key key(mBase + u"\\values");
    for (const Row& row : rows) EXPECT_EQ(key.Set(row.name, row.bytes, row.type), kErrorSuccess);
    for (const Row& row : rows) {
        std::uint32_t type = 77;
        EXPECT_TRUE(key.Get(row.name, &type) == row.bytes) << row.type;
        EXPECT_EQ(type, row.type);
    }
}

TEST_F(Registry, what_was_never_stored_is_not_found) {
    const Key key(mBase + u"\\nothing");
    EXPECT_EQ(key.Get(u"nothing"), std::nullopt);
    EXPECT_EQ(key.Get(u""), std::nullopt);
}

TEST_F(Registry, a_key_is_there_for_whoever_opens_it_next) {
    { EXPECT_EQ(Key(mBase + u"\\deep\\er\\still").Set(u"name", "kept"), kErrorSuccess); }
    EXPECT_EQ(Key(mBase + u"\\deep\\er\\still", kKeyQueryValue).Get(u"name"), "kept");
    EXPECT_EQ(Key(mBase + u"\\deep\\er", kKeyQueryValue).Get(u"name"), std::nullopt);
}

TEST_F(Registry, keys_and_names_know_no_ASCII_case) {
    EXPECT_EQ(Key(mBase + u"\\MiXed").Set(u"NaMe", "one"), kErrorSuccess);
    const Key key(mBase + u"\\mIxED");
    EXPECT_EQ(key.Get(u"nAmE"), "one");
    EXPECT_EQ(key.Set(u"NAME", "two"), kErrorSuccess);
    EXPECT_EQ(key.Get(u"name"), "two");
}

TEST_F(Registry, a_shorter_value_leaves_nothing_of_the_longer) {
    const Key key(mBase + u"\\shorter");
    EXPECT_EQ(key.Set(u"name", std::string(1000, 'x')), kErrorSuccess);
    EXPECT_EQ(key.Set(u"name", std::string("y\0\0\0", 4), kRegString), kErrorSuccess);
    std::uint32_t type = 0;
    EXPECT_EQ(key.Get(u"name", &type), std::string("y\0\0\0", 4));
    EXPECT_EQ(type, kRegString);
}

TEST_F(Registry, a_query_tells_the_size_before_it_gives_the_bytes) {
    const Key key(mBase + u"\\size");
    EXPECT_EQ(key.Set(u"name", "twelve bytes"), kErrorSuccess);
    std::uint32_t size = 0;
    EXPECT_EQ(RegQueryValueExW(key, u"name", nullptr, nullptr, &size), kErrorSuccess);
    EXPECT_EQ(size, 12u);
    char bytes[12];
    size = 11;
    EXPECT_EQ(RegQueryValueExW(key, u"name", nullptr, bytes, &size), kErrorMoreData);
    EXPECT_EQ(size, 12u);
    EXPECT_EQ(RegQueryValueExW(key, u"name", nullptr, bytes, &size), kErrorSuccess);
    EXPECT_EQ(std::string(bytes, size), "twelve bytes");
    std::uint32_t type = 0;
    EXPECT_EQ(RegQueryValueExW(key, u"name", &type, nullptr, nullptr), kErrorSuccess);
    EXPECT_EQ(type, kRegDword);
}

TEST_F(Registry, no_name_is_the_default_value) {
    const Key key(mBase + u"\\default");
    EXPECT_EQ(key.Set(nullptr, "by null"), kErrorSuccess);
    EXPECT_EQ(key.Get(u""), "by null");
    EXPECT_EQ(key.Set(u"", "by nothing"), kErrorSuccess);
    EXPECT_EQ(key.Get(nullptr), "by nothing");
}

TEST_F(Registry, a_key_and_a_value_may_have_one_name) {
    const Key key(mBase + u"\\same");
    EXPECT_EQ(key.Set(u"twin", "value"), kErrorSuccess);
    EXPECT_EQ(Key(mBase + u"\\same\\twin").Set(u"inner", "inner value"), kErrorSuccess);
    EXPECT_EQ(key.Get(u"twin"), "value");
    EXPECT_EQ(Key(mBase + u"\\same\\twin").Get(u"inner"), "inner value");
}

TEST_F(Registry, any_text_is_a_name_of_its_own) {
    std::vector<std::u16string> names = {
        u".",      u"..",      u"...",        u".hidden", u"a/b", u"a b",       u"a%20b",   u"%",
        u"=x",     u"~x",      u"x.",         u"x",       u"x.y", u"con",       u"nul.txt", u"*?<>|",
        u"\u00E9", u"e\u0301", u"\U0001F3B5", u"\xDC80",  u"\n",  u"\"quoted\""};
    names.push_back(std::u16string(200, u'l') + u"1");
    names.push_back(std::u16string(200, u'l') + u"2");
    const Key key(mBase + u"\\names");
    std::size_t number = 0;
    for (const auto& name : names) EXPECT_EQ(key.Set(name.c_str(), std::to_string(number++)), kErrorSuccess);
    for (const auto& name : names) {
        const Key inner(mBase + u"\\names\\" + name);
        EXPECT_EQ(inner.Get(u"x"), std::nullopt);
        EXPECT_EQ(inner.Set(u"x", std::to_string(number++)), kErrorSuccess);
    }
    number = 0;
    for (const auto& name : names) EXPECT_EQ(key.Get(name.c_str()), std::to_string(number++));
    for (const auto& name : names)
        EXPECT_EQ(Key(mBase + u"\\names\\" + name).Get(u"x"), std::to_string(number++));
    EXPECT_EQ(key.Set(u"a\\b", "a value may have a backslash"), kErrorSuccess);
    EXPECT_EQ(key.Get(u"A\\B"), "a value may have a backslash");
}

TEST_F(Registry, a_key_gives_the_access_it_was_opened_with) {
    const auto path = mBase + u"\\access";
    EXPECT_EQ(Key(path, kKeyWrite).Set(u"name", "x"), kErrorSuccess);
    EXPECT_EQ(Key(path, kKeyQueryValue).Set(u"name", "y"), kErrorAccessDenied);
    EXPECT_EQ(Key(path, kKeyQueryValue).Get(u"name"), "x");
}

TEST_F(Registry, no_key_is_refused) {
    std::uint32_t size = 0;
    EXPECT_EQ(RegCloseKey(kNullHandle), kErrorInvalidHandle);
    EXPECT_EQ(RegQueryValueExW(kNullHandle, u"name", nullptr, nullptr, &size), kErrorInvalidHandle);
    EXPECT_EQ(RegSetValueExW(kNullHandle, u"name", kRegString, "x", 1), kErrorInvalidHandle);
}

TEST_F(Registry, the_answer_is_the_result_and_no_last_error) {
    SetLastError(77);
    const Key key(mBase + u"\\errors", kKeyQueryValue);
    key.Get(u"none");
    RegSetValueExW(key, u"name", kRegString, "x", 1);
    EXPECT_EQ(GetLastError(), 77u);
}

TEST_F(Registry, a_reader_beside_two_writers_sees_whole_values) {
    const auto path = mBase + u"\\busy";
    const Key key(path);
    EXPECT_EQ(key.Set(u"name", std::string(3000, 'a')), kErrorSuccess);
    std::atomic<bool> done = false;
    const auto write = [&](std::size_t length, char letter) {
        const Key own(path, kKeyWrite);
        while (!done) EXPECT_EQ(own.Set(u"name", std::string(length, letter)), kErrorSuccess);
    };
    std::thread one(write, 3000, 'a'), other(write, 5000, 'b');
    std::map<std::string, int> seen;
    for (int i = 0; i < 300; ++i) ++seen[key.Get(u"name").value_or("none")];
    done = true;
    one.join();
    other.join();
    seen.erase(std::string(3000, 'a'));
    seen.erase(std::string(5000, 'b'));
    EXPECT_TRUE(seen.empty()) << seen.begin()->first.size();
}
