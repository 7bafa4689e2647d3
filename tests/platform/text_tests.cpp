#include "platform/text.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

using namespace platform;

TEST(Text, counts_include_the_NUL) {
    char16_t wide[8];
    char narrow[8];
    EXPECT_EQ(MultiByteToWideChar("", nullptr, 0), 1);
    EXPECT_EQ(MultiByteToWideChar("abc", nullptr, 0), 4);
    EXPECT_EQ(MultiByteToWideChar("abc", wide, 8), 4);
    EXPECT_EQ(std::u16string(wide), u"abc");
    EXPECT_EQ(WideCharToMultiByte(u"", nullptr, 0), 1);
    EXPECT_EQ(WideCharToMultiByte(u"abc", nullptr, 0), 4);
    EXPECT_EQ(WideCharToMultiByte(u"abc", narrow, 8), 4);
    EXPECT_EQ(std::string(narrow), "abc");
}

TEST(Text, what_fits_exactly_is_stored_and_what_does_not_is_refused) {
    char16_t wide[] = u"xxxxx";
    char narrow[] = "xxxxx";
    EXPECT_EQ(MultiByteToWideChar("abc", wide, 4), 4);
    EXPECT_EQ(std::u16string(wide, std::size(wide)), std::u16string(u"abc\0x\0", 6));
    EXPECT_EQ(WideCharToMultiByte(u"abc", narrow, 4), 4);
    EXPECT_EQ(std::string(narrow, std::size(narrow)), std::string("abc\0x\0", 6));
    EXPECT_EQ(MultiByteToWideChar("abcd", wide, 4), 0);
    EXPECT_EQ(WideCharToMultiByte(u"abcd", narrow, 4), 0);
    EXPECT_EQ(wide[4], u'x');
    EXPECT_EQ(narrow[4], 'x');
}

TEST(Text, every_ASCII_character_is_itself) {
    for (char c = 1; c > 0; ++c) {
        const char narrow[] = {c, 0};
        char16_t wide[2];
        ASSERT_EQ(MultiByteToWideChar(narrow, wide, 2), 2);
        EXPECT_EQ(wide[0], static_cast<char16_t>(c));
        char back[2];
        ASSERT_EQ(WideCharToMultiByte(wide, back, 2), 2);
        EXPECT_EQ(back[0], c);
        if (c == 127) break;
    }
}

TEST(Text, a_letter_of_the_code_page_survives_the_way_to_8_bits_and_back) {
    const std::u16string text = u"Caf\u00E9";
    char narrow[16];
    char16_t wide[16];
    ASSERT_GT(WideCharToMultiByte(text.c_str(), narrow, 16), 0);
    ASSERT_EQ(MultiByteToWideChar(narrow, wide, 16), 5);
    EXPECT_EQ(std::u16string(wide), text);
}
