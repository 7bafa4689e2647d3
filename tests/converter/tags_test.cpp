// What tags a conversion carries, shown by what the module for the destination's type is asked to write.
#include <gtest/gtest.h>

#include "converter/conversion_stage.h"

namespace {

class Tags : public ConversionStage {
  protected:
    Tags() { command.carryTags = true; }

    // The rows written, as "name|value|bytes" in order, parted by blanks.
    std::string Written(const std::string& decoding) {
        EXPECT_EQ(Run("decodes|.wav|The destination\n" + decoding), ExitCode::kDone);
        journal = decoder.TakeJournal();
        std::string rows;
        constexpr std::string_view kRow = "Set row ";
        for (std::size_t at = 0; (at = journal.find(kRow, at)) != std::string::npos; at += kRow.size())
            rows += journal.substr(at + kRow.size(), journal.find('\n', at) - at - kRow.size()) + " ";
        return rows;
    }
    bool Asked(const char* request) const { return journal.find(request) != std::string::npos; }

    std::string journal;
};

TEST_F(Tags, of_the_source_go_along_with_its_art) {
    EXPECT_EQ(Written("tag|Title|a|0\ntag|Picture|front|10\n"), "Title|a|0 Picture|front|10 ");
    command.tags = {{u"Album", u"b"}};
    EXPECT_EQ(Written("tag|Title|a|0\n"), "Title|a|0 Album|b|0 ");
    command.carryTags = false;
    EXPECT_EQ(Written("tag|Title|a|0\n"), "Album|b|0 ");
}

TEST_F(Tags, are_asked_for_whatever_their_size) {
    const std::string large = "tag|Picture|front|2000000\n";
    EXPECT_EQ(Written(large), "Picture|front|2000000 ");
    EXPECT_TRUE(Asked("Open 32 "));
    EXPECT_FALSE(Asked("Open 8 "));
}

TEST_F(Tags, of_a_module_that_knows_no_such_request_come_up_to_their_limit) {
    EXPECT_EQ(Written("open|32|0\ntag|Title|a|0\n"), "Title|a|0 ");
    EXPECT_TRUE(Asked("Open 32 ") && Asked("Open 8 "));
    EXPECT_EQ(Written("silent|32\ntag|Title|a|0\n"), "Title|a|0 ");
    EXPECT_EQ(Written("open|32|0\ntag|Picture|front|1000000\n"), "");
    EXPECT_EQ(Written("open|32|0\nopen|8|0\ntag|Title|a|0\n"), "");
}

TEST_F(Tags, of_the_host_take_the_place_of_carried_ones) {
    command.tags = {{u"title", u"new"}, {u"TITLE", u"other"}, {u"Year", u"5"}};
    EXPECT_EQ(Written("tag|Title|old|0\ntag|TITLE|older|0\ntag|Titles|x|0\ntag|Artist|y|0\n"),
              "Titles|x|0 Artist|y|0 title|new|0 TITLE|other|0 Year|5|0 ");
}

// A host that read all tags of the source hands the art's name back, but can't hand its bytes back.
TEST_F(Tags, of_the_host_do_not_displace_art) {
    command.tags = {{u"Picture", u"front"}};
    EXPECT_EQ(Written("tag|Picture|front|10\n"), "Picture|front|10 Picture|front|0 ");
}

}  // namespace
