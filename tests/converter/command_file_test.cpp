// The command file is taken, and only a command file.
#include "converter/command_file.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace {

std::string Bytes(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

TEST(CommandFile, Is_read_whole_and_deleted) {
    const TempFolder folder;
    const std::u16string command = u" -infile=\"" + std::u16string(100000, u'x') + u"\"";
    std::u16string text;
    EXPECT_TRUE(TakeCommandFile(folder.Write(u"command.tmp", Bytes(command)), &text));
    EXPECT_EQ(text, command);
    EXPECT_FALSE(folder.Has(u"command.tmp"));
}

TEST(CommandFile, What_does_not_begin_like_one_is_not_deleted) {
    const TempFolder folder;
    for (const std::string& bytes : {std::string("RIFFabcd"), std::string(), Bytes(u"-infile=\"a\"")}) {
        std::u16string text;
        EXPECT_TRUE(TakeCommandFile(folder.Write(u"song.wav", bytes), &text));
        EXPECT_EQ(Bytes(text), bytes);
        EXPECT_EQ(folder.Read(u"song.wav"), bytes);
        EXPECT_TRUE(folder.Has(u"song.wav"));
    }
}

TEST(CommandFile, One_that_is_missing_or_ends_within_a_unit_is_refused) {
    const TempFolder folder;
    std::u16string text;
    EXPECT_FALSE(TakeCommandFile(folder / u"none.tmp", &text));
    EXPECT_FALSE(TakeCommandFile(folder.Write(u"odd.tmp", Bytes(u" -infile=") + 'x'), &text));
    EXPECT_TRUE(folder.Has(u"odd.tmp"));
}

}  // namespace
