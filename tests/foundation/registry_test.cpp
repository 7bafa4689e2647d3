#include "foundation/registry.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "foundation/native_text.h"
#include "platform/registry.h"
#include "support/faults.h"

namespace {

// A key that no other run uses.
const char16_t* Key() {
    static const std::u16string key = [] {
        const std::string number = std::to_string(std::random_device()());
        return u"Software\\Brindleway\\QuavermillTest-" + std::u16string(number.begin(), number.end());
    }();
    return key.c_str();
}

bool WriteBytes(const char16_t* name, const void* data, std::uint32_t size, std::uint32_t type) {
    return XRegistry::WriteValue(data, size, type, name, Key());
}

// Keys opened and closed while it stands.
struct KeyCount {
    KeyCount() {
        opens.Replace([this](const char16_t* path, std::uint32_t access, platform::Handle* key) {
            lastAccess = access;
            return opens.Native(path, access, key);
        });
    }
    Faulty<platform::RegCreateKeyExW> opens;
    Faulty<platform::RegCloseKey> closes;
    std::uint32_t lastAccess = 0;
};

TEST(Registry, Gives_back_the_text_that_was_written) {
    for (const std::u16string& text : {std::u16string(u"text"), std::u16string(u"\x00E9\x4E2D\xD834\xDD1E"),
                                       std::u16string(5000, u'x'), std::u16string()}) {
        EXPECT_TRUE(XRegistry::WriteString(text.c_str(), u"text", Key()));
        EXPECT_EQ(Units(XRegistry::ReadString(u"text", Key())), text);
    }
}

TEST(Registry, WriteString_counts_bytes_and_the_end) {
    Faulty<platform::RegSetValueExW> writes;
    writes.Replace(
        [](platform::Handle, const char16_t*, std::uint32_t type, const void*, std::uint32_t size) {
            EXPECT_EQ(type, 1u);
            EXPECT_EQ(size, 8u);
            return 0u;
        });
    EXPECT_TRUE(XRegistry::WriteString(u"abc", u"counted", Key()));
    EXPECT_EQ(writes.Calls(), 1);
}

TEST(Registry, Without_a_sub_key_there_is_no_key) {
    Faulty<platform::RegCreateKeyExW> opens;
    char16_t buffer[4] = u"abc";
    bool failed = false;
    for (const char16_t* subKey : {static_cast<const char16_t*>(nullptr), u""}) {
        EXPECT_EQ(XRegistry::OpenKey(platform::kKeyQueryValue, subKey), platform::kNullHandle);
        EXPECT_TRUE(XRegistry::ReadString(u"text", subKey).IsEmpty());
        EXPECT_FALSE(XRegistry::WriteString(u"x", u"text", subKey));
        XRegistry::ReadValue(buffer, sizeof buffer, u"text", subKey, &failed);
        EXPECT_TRUE(failed);
        EXPECT_EQ(std::u16string(buffer, 4), std::u16string(4, u'\0'));
    }
    EXPECT_EQ(opens.Calls(), 0);
}

TEST(Registry, OpenKey_makes_the_key_and_leaves_the_closing_to_the_caller) {
    const KeyCount keys;
    const platform::Handle key = XRegistry::OpenKey(platform::kKeyQueryValue, Key());
    ASSERT_NE(key, platform::kNullHandle);
    EXPECT_EQ(keys.closes.Calls(), 0);
    EXPECT_EQ(platform::RegCloseKey(key), 0u);
}

TEST(Registry, Asks_for_the_access_it_needs_and_closes_every_key) {
    const KeyCount keys;
    EXPECT_TRUE(XRegistry::WriteString(u"x", u"access", Key()));
    EXPECT_EQ(keys.lastAccess, 0x20006u);
    EXPECT_EQ(Units(XRegistry::ReadString(u"access", Key())), u"x");
    EXPECT_EQ(keys.lastAccess, 1u);
    EXPECT_TRUE(XRegistry::ReadString(u"no such value", Key()).IsEmpty());
    EXPECT_EQ(keys.opens.Calls(), keys.closes.Calls());
}

TEST(Registry, ReadValue_fills_the_buffer) {
    ASSERT_TRUE(XRegistry::WriteString(u"abc", u"value", Key()));
    char16_t buffer[4];
    bool failed = true;
    XRegistry::ReadValue(buffer, sizeof buffer, u"value", Key(), &failed);
    EXPECT_FALSE(failed);
    EXPECT_EQ(std::u16string(buffer), u"abc");
    XRegistry::ReadValue(buffer, sizeof buffer, u"value", Key(), nullptr);
    EXPECT_EQ(std::u16string(buffer), u"abc");
}

TEST(Registry, ReadValue_zeroes_the_buffer_for_what_is_no_text_or_does_not_fit) {
    const std::uint32_t number = 0x41424344;
    ASSERT_TRUE(WriteBytes(u"number", &number, sizeof number, platform::kRegDword));
    ASSERT_TRUE(XRegistry::WriteString(u"too long", u"long", Key()));
    for (const char16_t* name : {u"number", u"long", u"no such value"}) {
        char16_t buffer[4] = u"abc";
        bool failed = false;
        XRegistry::ReadValue(buffer, sizeof buffer, name, Key(), &failed);
        EXPECT_TRUE(failed);
        EXPECT_EQ(std::u16string(buffer, 4), std::u16string(4, u'\0')) << testing::PrintToString(name);
    }
    EXPECT_TRUE(XRegistry::ReadString(u"number", Key()).IsEmpty());
    XRegistry::ReadValue(nullptr, 0, u"no such value", Key(), nullptr);
}

TEST(Registry, A_text_to_be_expanded_is_a_text) {
    const char16_t text[] = u"%PATH%";
    ASSERT_TRUE(WriteBytes(u"expand", text, sizeof text, platform::kRegExpandString));
    EXPECT_EQ(Units(XRegistry::ReadString(u"expand", Key())), text);
}

TEST(Registry, A_value_without_an_end_or_of_odd_size_is_read_no_further_than_it_goes) {
    const char16_t text[] = u"abcdef";
    ASSERT_TRUE(WriteBytes(u"endless", text, 8, platform::kRegString));
    EXPECT_EQ(Units(XRegistry::ReadString(u"endless", Key())), u"abcd");
    ASSERT_TRUE(WriteBytes(u"odd", text, 5, platform::kRegString));
    EXPECT_EQ(Units(XRegistry::ReadString(u"odd", Key())).substr(0, 2), u"ab");
    EXPECT_LE(XRegistry::ReadString(u"odd", Key()).Length(), 3);
    ASSERT_TRUE(WriteBytes(u"byte", text, 1, platform::kRegString));
    EXPECT_LE(XRegistry::ReadString(u"byte", Key()).Length(), 1);
    ASSERT_TRUE(WriteBytes(u"inner", u"a\0b", 8, platform::kRegString));
    EXPECT_EQ(Units(XRegistry::ReadString(u"inner", Key())), u"a");
}

TEST(Registry, A_value_that_grows_while_it_is_read_gives_nothing) {
    ASSERT_TRUE(XRegistry::WriteString(u"short", u"growing", Key()));
    Faulty<platform::RegQueryValueExW> queries;
    queries.Replace([&](auto... arguments) {
        if (queries.Calls() == 2) XRegistry::WriteString(u"longer than before", u"growing", Key());
        return queries.Native(arguments...);
    });
    EXPECT_TRUE(XRegistry::ReadString(u"growing", Key()).IsEmpty());
}

TEST(Registry, A_platform_that_fails_gives_nothing_and_leaks_no_key) {
    ASSERT_TRUE(XRegistry::WriteString(u"text", u"failing", Key()));
    char16_t buffer[8] = u"abcdefg";
    bool failed = false;
    {
        Faulty<platform::RegCreateKeyExW> opens;
        opens.FailAlways(5u);
        EXPECT_EQ(XRegistry::OpenKey(platform::kKeyWrite, Key()), platform::kNullHandle);
        EXPECT_TRUE(XRegistry::ReadString(u"failing", Key()).IsEmpty());
        EXPECT_FALSE(XRegistry::WriteString(u"x", u"failing", Key()));
        XRegistry::ReadValue(buffer, sizeof buffer, u"failing", Key(), &failed);
        EXPECT_TRUE(failed);
        EXPECT_EQ(std::u16string(buffer, 8), std::u16string(8, u'\0'));
    }
    const KeyCount keys;
    for (const int call : {1, 2}) {
        Faulty<platform::RegQueryValueExW> queries;
        queries.FailCall(call, 5u);
        EXPECT_TRUE(XRegistry::ReadString(u"failing", Key()).IsEmpty());
    }
    Faulty<platform::RegSetValueExW> writes;
    writes.FailAlways(5u);
    EXPECT_FALSE(XRegistry::WriteString(u"x", u"failing", Key()));
    EXPECT_EQ(keys.opens.Calls(), keys.closes.Calls());
    EXPECT_EQ(Units(XRegistry::ReadString(u"failing", Key())), u"text");
}

TEST(Registry, A_value_that_claims_an_impossible_size_gives_nothing) {
    Faulty<platform::RegQueryValueExW> queries;
    queries.Replace([](platform::Handle, const char16_t*, std::uint32_t*, void*, std::uint32_t* size) {
        *size = 0xFFFFFFFF;
        return 0u;
    });
    EXPECT_TRUE(XRegistry::ReadString(u"claim", Key()).IsEmpty());
    EXPECT_EQ(queries.Calls(), 1);
}

}  // namespace
