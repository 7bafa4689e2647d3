// UTF-8 on the 8-bit side, and bytes that are none.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/text.h"

using namespace platform;

namespace {

std::u16string Widen(const std::string& narrow) {
    const auto count = MultiByteToWideChar(narrow.c_str(), nullptr, 0);
    std::u16string wide(static_cast<std::size_t>(count), u'x');
    EXPECT_EQ(MultiByteToWideChar(narrow.c_str(), wide.data(), count), count);
    EXPECT_EQ(wide.back(), u'\0');
    wide.pop_back();
    return wide;
}

std::string Narrow(const std::u16string& wide) {
    const auto count = WideCharToMultiByte(wide.c_str(), nullptr, 0);
    std::string narrow(static_cast<std::size_t>(count), 'x');
    EXPECT_EQ(WideCharToMultiByte(wide.c_str(), narrow.data(), count), count);
    EXPECT_EQ(narrow.back(), '\0');
    narrow.pop_back();
    return narrow;
}

}  // namespace

TEST(PosixText, is_UTF_8) {
    const struct {
        const char* narrow;
        const char16_t* wide;
    } rows[] = {
        {"\x7F", u"\x7F"},
        {"\xC2\x80", u"\x80"},
        {"\xDF\xBF", u"\x7FF"},
        {"\xE0\xA0\x80", u"\x800"},
        {"\xED\x9F\xBF", u"\xD7FF"},
        {"\xEE\x80\x80", u"\xE000"},
        {"\xEF\xBF\xBF", u"\xFFFF"},
        {"\xF0\x90\x80\x80", u"\xD800\xDC00"},
        {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Widen(row.narrow), row.wide);
        EXPECT_EQ(Narrow(row.wide), row.narrow);
    }
}

TEST(PosixText, bytes_that_are_no_UTF_8_become_lone_low_surrogates) {
    const struct {
        const char* narrow;
        const char16_t* wide;
    } rows[] = {
        {"a\x80z", u"a\xDC80z"},        // a continuation alone
        {"\xC3", u"\xDCC3"},            // cut short by the end
        {"\xC3z", u"\xDCC3z"},          // cut short by a letter
        {"\xC0\xAF", u"\xDCC0\xDCAF"},  // longer than need be
        {"\xE0\x80\xAF", u"\xDCE0\xDC80\xDCAF"},
        {"\xED\xA0\x80", u"\xDCED\xDCA0\xDC80"},            // a surrogate's number
        {"\xF4\x90\x80\x80", u"\xDCF4\xDC90\xDC80\xDC80"},  // beyond the last character
        {"\xFF\xFE", u"\xDCFF\xDCFE"},
        {"\xF0\x9F\x8E", u"\xDCF0\xDC9F\xDC8E"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Widen(row.narrow), row.wide);
        EXPECT_EQ(Narrow(row.wide), row.narrow);
    }
}

TEST(PosixText, any_bytes_survive_the_way_to_16_bits_and_back) {
    std::mt19937 random(1);
    // Mostly bytes from the edges of the encoding, where mistakes live.
    const std::string edges = "\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xED\xEF\xF0\xF4\xF5\xFF";
    for (int round = 0; round < 20000; ++round) {
        std::string bytes(random() % 9, '\0');
        for (char& byte : bytes) byte = edges[random() % edges.size()];
        EXPECT_EQ(Narrow(Widen(bytes)), bytes);
    }
}

TEST(PosixText, other_lone_surrogates_become_the_three_bytes_of_their_number) {
    EXPECT_EQ(Narrow(u"\xD800"), "\xED\xA0\x80");
    EXPECT_EQ(Narrow(u"a\xDBFFz"), "a\xED\xAF\xBFz");
    EXPECT_EQ(Narrow(u"\xDC00"), "\xED\xB0\x80");
    EXPECT_EQ(Narrow(u"\xDC7F"), "\xED\xB1\xBF");
    EXPECT_EQ(Narrow(u"\xDD00"), "\xED\xB4\x80");
    EXPECT_EQ(Narrow(u"\xD800\xD800\xDC00"), "\xED\xA0\x80\xF0\x90\x80\x80");
}
