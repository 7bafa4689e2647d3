// Pages found in files, and what is wrong with them.
#include <gtest/gtest.h>

#include "modules/support/ogg_watch.h"
#include "ogg/ogg_file.h"
#include "support/temp_folder.h"
#include "support/wide_text.h"

using namespace ogg_file;

namespace {

Page MakePage(std::uint32_t serial, std::uint32_t number, std::uint8_t flags, std::size_t bytes = 100) {
    std::string packet(bytes, 'x');
    for (std::size_t i = 0; i < bytes; ++i) packet[i] = static_cast<char>(i * i % 251);
    Page page = PageOf({packet}, serial, number);
    page.flags = flags;
    page.granule = number * 1000;
    return page;
}

// Pages 0 to 4 of one stream, the last with its end.
std::vector<Page> Stream(std::uint32_t serial) {
    std::vector<Page> pages;
    for (std::uint32_t i = 0; i < 5; ++i)
        pages.push_back(MakePage(serial, i, i == 0 ? kBegins : i == 4 ? kEnds : 0));
    return pages;
}

class OggPages : public testing::Test {
  protected:
    clFileReader& Open(std::string_view bytes) {
        mReader.Close();  // an open file can't be written everywhere
        EXPECT_TRUE(mReader.Open(mFolder.Write(u"a", bytes).c_str()));
        return mReader;
    }
    std::u16string Watched(std::string_view bytes) {
        clOggWatch watch(Open(bytes));
        return Units(watch.LookToEnd());
    }
    std::u16string Contents(std::string_view packet) {
        Page page = PageOf({std::string(packet)}, 1, 0);
        page.flags = kBegins;
        return Units(OggContents(Open(page.Bytes() + MakePage(1, 1, 0).Bytes())));
    }

    TempFolder mFolder;
    clFileReader mReader;
};

}  // namespace

TEST_F(OggPages, Of_every_size_are_found_with_their_fields) {
    std::string bytes;
    std::vector<Page> pages;
    for (std::uint32_t i = 0; i < 40; ++i) {
        pages.push_back(MakePage(0xFEDCBA98, i, static_cast<std::uint8_t>(i % 8), i * 1666));
        pages.back().granule = i % 3 == 0 ? -1 : 0x123456789A + i;
        bytes += pages.back().Bytes();
    }
    clOggPages found(Open(bytes));
    clOggPage page;
    std::uint64_t position = 0;
    for (const Page& expected : pages) {
        ASSERT_TRUE(found.Next(page));
        EXPECT_EQ(page.position, position);
        EXPECT_EQ(page.skipped, 0u);
        EXPECT_EQ(page.serial, expected.serial);
        EXPECT_EQ(page.number, expected.number);
        EXPECT_EQ(page.granule, expected.granule);
        EXPECT_EQ(page.begins, (expected.flags & kBegins) != 0);
        EXPECT_EQ(page.ends, (expected.flags & kEnds) != 0);
        EXPECT_EQ(std::string(page.lacing.begin(), page.lacing.end()), expected.lacing);
        EXPECT_EQ(std::string(page.body.begin(), page.body.end()), expected.body);
        position += expected.Bytes().size();
        EXPECT_EQ(page.End(), position);
    }
    EXPECT_FALSE(found.Next(page));
    EXPECT_EQ(page.position, position);
    EXPECT_EQ(page.skipped, 0u);
}

TEST_F(OggPages, Are_found_behind_bytes_that_only_look_like_them) {
    const std::string good = MakePage(1, 7, 0).Bytes();
    std::string wrong = good;
    wrong.back() = static_cast<char>(wrong.back() ^ 1);
    const std::string junk[] = {"x",
                                "Ogg",
                                "OggOggS",
                                "OggS",
                                good.substr(0, 30),
                                wrong,
                                wrong + "OggSOggSOggS",
                                std::string(300000, 'O'),
                                std::string(131072 - 3, '\0') + "Og"};
    for (const std::string& before : junk) {
        clOggPages found(Open(before + good + before));
        clOggPage page;
        ASSERT_TRUE(found.Next(page)) << before.size();
        EXPECT_EQ(page.number, 7u);
        EXPECT_EQ(page.skipped, before.size());
        EXPECT_EQ(page.position, before.size());
        EXPECT_FALSE(found.Next(page)) << before.size();
        EXPECT_EQ(page.skipped, before.size());
        EXPECT_EQ(page.position, 2 * before.size() + good.size());
    }
}

TEST_F(OggPages, Of_another_version_are_none) {
    std::string bytes = MakePage(1, 7, 0).Bytes();
    bytes[4] = 1;
    clOggPages found(Open(bytes));
    clOggPage page;
    EXPECT_FALSE(found.Next(page));
}

TEST_F(OggPages, Can_be_gone_back_to) {
    const std::string bytes = Bytes(Stream(5));
    clOggPages found(Open(bytes));
    clOggPage page;
    while (found.Next(page)) {
    }
    found.GoTo(1);
    ASSERT_TRUE(found.Next(page));
    EXPECT_EQ(page.number, 1u);
    EXPECT_EQ(page.position, bytes.size() / 5);
}

TEST_F(OggPages, Tell_by_their_first_packet_what_they_hold) {
    const struct {
        std::string_view packet;
        const char16_t* name;
    } rows[] = {
        {"\1vorbis....", u"Vorbis"},       {"OpusHead....", u"Opus"},
        {"\177FLAC....", u"FLAC"},         {"fLaC....", u"FLAC"},
        {"Speex   1.2", u"Speex"},         {"\200theora", u"Theora"},
        {"\1vorbi", u"an unknown format"}, {"", u"an unknown format"},
    };
    for (const auto& row : rows) EXPECT_EQ(Contents(row.packet), row.name);
    Page first = PageOf({"\200theora"}, 1, 0), second = PageOf({"\1vorbis"}, 2, 0);
    first.flags = second.flags = kBegins;
    EXPECT_EQ(Units(OggContents(Open(first.Bytes() + second.Bytes()))), u"Theora and Vorbis");
    EXPECT_EQ(Units(OggContents(Open("fLaC and so on"))), u"");
    EXPECT_EQ(Units(OggContents(Open(""))), u"");
    EXPECT_EQ(Units(OggContents(Open(MakePage(1, 3, 0).Bytes()))), u"");
}

TEST_F(OggPages, Watched_are_told_when_something_is_wrong) {
    const auto join = [](std::vector<Page> first, const std::vector<Page>& second) {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    };
    const auto without = [](std::size_t index) {
        std::vector<Page> pages = Stream(1);
        pages.erase(pages.begin() + static_cast<std::ptrdiff_t>(index));
        return pages;
    };
    std::vector<Page> endless = Stream(1), bothAtOnce, elsewhere = Stream(1);
    endless[4].flags = 0;
    for (std::size_t i = 0; i < 5; ++i) bothAtOnce.insert(bothAtOnce.end(), {Stream(1)[i], Stream(2)[i]});
    for (Page& page : elsewhere) page.number += 0xFFFFFFFE;
    const std::string good = Bytes(Stream(1));
    std::string changed = good;
    changed[300] = static_cast<char>(changed[300] ^ 64);
    const std::string pageBytes = std::to_string(good.size() / 5);
    ASSERT_EQ(pageBytes, "128");
    const struct {
        const char* what;
        std::string bytes;
        const char16_t* told;
    } rows[] = {
        {"nothing", good, u""},
        {"numbers that begin anew", Bytes(elsewhere), u""},
        {"a second part", Bytes(join(Stream(1), Stream(2))), u""},
        {"a second part with the same number", Bytes(join(Stream(1), Stream(1))),
         u"the stream that begins at byte 640 has the number of that before it"},
        {"two streams at once", Bytes(bothAtOnce), u""},
        {"the second page lost", Bytes(without(1)), u"pages are missing in front of byte 128"},
        {"the fourth page lost", Bytes(without(3)), u"pages are missing in front of byte 384"},
        {"the last page lost", Bytes(without(4)), u"its last page is missing"},
        {"no end", Bytes(endless), u"its last page is missing"},
        {"no end but a second part", Bytes(join(endless, Stream(2))),
         u"a stream has no end before that at byte 640 begins"},
        {"the second part without an end", Bytes(join(Stream(2), endless)), u"its last page is missing"},
        {"a changed bit", changed, u"128 bytes in front of byte 384 are no whole page of Ogg"},
        {"a cut within the last page", good.substr(0, 600), u"its last 88 bytes are no whole page of Ogg"},
        {"something in front", "ID3" + good, u"3 bytes in front of byte 3 are no whole page of Ogg"},
        {"something behind", good + "TAG...", u"its last 6 bytes are no whole page of Ogg"},
        {"nothing at all", "", u""},
    };
    for (const auto& row : rows) EXPECT_EQ(Watched(row.bytes), row.told) << row.what;
}

TEST_F(OggPages, Watched_from_the_middle_are_not_taken_for_torn) {
    const std::string bytes = Bytes(Stream(1));
    clOggWatch watch(Open(std::string(70000, 'x') + bytes));
    watch.GoTo(70000 + 300);
    EXPECT_EQ(Units(watch.LookTo(70000 + 400)), u"");
    EXPECT_EQ(Units(watch.LookToEnd()), u"");
    clOggWatch cut(Open(bytes.substr(0, 512)));
    cut.GoTo(500);
    EXPECT_EQ(Units(cut.LookToEnd()), u"its last page is missing");
    EXPECT_EQ(Units(cut.LookToEnd()), u"");  // once
}

TEST_F(OggPages, Watched_are_looked_at_no_further_than_asked) {
    std::string bytes = Bytes(Stream(1));
    bytes[300] = static_cast<char>(bytes[300] ^ 1);
    clOggWatch watch(Open(bytes));
    EXPECT_EQ(Units(watch.LookTo(256)), u"");
    EXPECT_NE(Units(watch.LookTo(257)), u"");
    EXPECT_EQ(Units(watch.LookTo(640)), u"");
}
