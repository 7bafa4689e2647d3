// Whatever is done to a file, it ends, and what is wrong is said once, in words that say where.
#include "ogg/ogg_codecs.h"

using namespace ogg_file;

namespace {

constexpr std::uint32_t kFrames = 200001;

class OggDamage : public OggTest {
  protected:
    std::u16string ToldOf(std::string_view bytes) { return ogg.Told(ogg.Decode(bytes).errors); }

    const std::string mGood = ogg.Encode(kFrames);
    const std::vector<Page> mPages = Pages(mGood);
    const std::size_t mFirstAudio = FirstAudioPage(mPages);
};

TEST_P(OggDamage, A_good_file_is_not_called_damaged) {
    EXPECT_GT(mPages.size(), mFirstAudio + 2);
    EXPECT_EQ(Bytes(mPages), mGood);
    EXPECT_EQ(ToldOf(mGood), u"");
}

TEST_P(OggDamage, A_lost_page_is_told_with_its_place_and_costs_little_more_than_itself) {
    for (std::size_t lost = 0; lost < mPages.size(); ++lost) {
        std::vector<Page> pages = mPages;
        pages.erase(pages.begin() + static_cast<std::ptrdiff_t>(lost));
        const std::string before =
            Bytes({mPages.begin(), mPages.begin() + static_cast<std::ptrdiff_t>(lost)});
        const Decoding decoding = ogg.Decode(Bytes(pages));
        const std::u16string told = ogg.Told(decoding.errors);
        EXPECT_EQ(decoding.opened, lost >= mFirstAudio) << lost;
        if (!decoding.opened) {
            EXPECT_NE(told, u"") << lost;
            continue;
        }
        const std::string place = std::to_string(before.size());
        const std::u16string expected =
            lost + 1 == mPages.size()
                ? u"its last page is missing"
                : u"pages are missing in front of byte " + std::u16string(place.begin(), place.end());
        EXPECT_TRUE(told.starts_with(expected)) << lost << Narrow(told.c_str());
        EXPECT_LT(decoding.audio.size() / 8, kFrames) << lost;
        EXPECT_GT(decoding.audio.size() / 8, kFrames - 60000) << lost;
    }
}

TEST_P(OggDamage, A_changed_bit_is_told_wherever_it_is) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < mPages.size(); ++i) {
        const std::size_t size = mPages[i].Bytes().size();
        for (const std::size_t offset :
             {std::size_t{0}, std::size_t{5}, std::size_t{9}, std::size_t{15}, std::size_t{20},
              std::size_t{24}, std::size_t{26}, std::size_t{27}, size / 2, size - 1}) {
            std::string bad = mGood;
            bad[at + offset] = static_cast<char>(bad[at + offset] ^ 4);
            EXPECT_NE(ToldOf(bad), u"") << "page " << i << ", byte " << offset;
        }
        at += size;
    }
}

TEST_P(OggDamage, A_cut_between_pages_is_told) {
    for (std::size_t kept = mFirstAudio + 1; kept < mPages.size(); ++kept) {
        const std::vector<Page> pages(mPages.begin(), mPages.begin() + static_cast<std::ptrdiff_t>(kept));
        const Decoding decoding = ogg.Decode(Bytes(pages));
        EXPECT_EQ(ogg.Told(decoding.errors), u"its last page is missing") << kept;
        EXPECT_GT(decoding.audio.size(), 0u) << kept;
    }
}

TEST_P(OggDamage, A_cut_within_a_page_is_told) {
    const std::size_t last = mPages.back().Bytes().size();
    for (const std::size_t kept : {std::size_t{1}, std::size_t{27}, last / 2, last - 1}) {
        const std::string count = std::to_string(kept);
        EXPECT_EQ(
            ToldOf(std::string_view(mGood).substr(0, mGood.size() - last + kept)),
            u"its last " + std::u16string(count.begin(), count.end()) + u" bytes are no whole page of Ogg");
    }
}

TEST_P(OggDamage, A_file_of_headers_alone_is_empty_and_cut) {
    const std::vector<Page> pages(mPages.begin(), mPages.begin() + static_cast<std::ptrdiff_t>(mFirstAudio));
    const Decoding decoding = ogg.Decode(Bytes(pages));
    EXPECT_EQ(decoding.audio, "");
    EXPECT_NE(decoding.errors, u"");
}

TEST_P(OggDamage, Headers_cut_anywhere_are_refused) {
    std::size_t headers = 0;
    for (std::size_t i = 0; i < mFirstAudio; ++i) headers += mPages[i].Bytes().size();
    for (std::size_t kept = 0; kept < headers; kept += 7) {
        const Decoding decoding = ogg.Decode(std::string_view(mGood).substr(0, kept));
        EXPECT_FALSE(decoding.opened) << kept;
        EXPECT_NE(decoding.errors, u"") << kept;
    }
}

TEST_P(OggDamage, A_missing_end_mark_is_told_and_costs_nothing) {
    std::vector<Page> pages = mPages;
    pages.back().flags = 0;
    const Decoding decoding = ogg.Decode(Bytes(pages));
    EXPECT_EQ(ogg.Told(decoding.errors), u"its last page is missing");
    EXPECT_EQ(decoding.audio.size() / 8, kFrames);
}

TEST_P(OggDamage, Something_between_the_pages_costs_nothing_and_is_told) {
    const std::string sound = ogg.Decode(mGood).audio;
    std::size_t middle = 0;
    for (std::size_t i = 0; i <= mFirstAudio; ++i) middle += mPages[i].Bytes().size();
    for (const std::size_t at : {middle, mGood.size()}) {
        std::string bytes = mGood;
        bytes.insert(at, "twelve bytes");
        const Decoding decoding = ogg.Decode(bytes);
        EXPECT_EQ(decoding.audio, sound) << at;
        const std::u16string told = ogg.Told(decoding.errors);
        EXPECT_NE(told.find(u"12 bytes"), std::u16string::npos) << Narrow(told.c_str());
    }
}

TEST_P(OggDamage, Is_told_once_however_often_the_file_is_played) {
    std::string bad = mGood;
    bad[bad.size() / 2] = static_cast<char>(bad[bad.size() / 2] ^ 1);
    ogg.Decode(bad);
    ASSERT_TRUE(ogg.Open());
    for (int i = 0; i < 3; ++i) ogg.DecodeFrom(1, kFrames);
    const std::u16string told = ogg.modules.Log().TakeErrors();
    const std::size_t first = told.find(u"no whole page");
    ASSERT_NE(first, std::u16string::npos);
    EXPECT_EQ(told.find(u"no whole page", first + 1), std::u16string::npos);
}

TEST_P(OggDamage, Behind_a_place_that_was_sought_is_told) {
    std::vector<Page> pages = mPages;
    pages.erase(pages.end() - 2);
    ogg.Decode(Bytes(pages));
    ASSERT_TRUE(ogg.Open());
    EXPECT_LT(ogg.DecodeFrom(kFrames / 2, kFrames).size() / 2, kFrames / 2);
    EXPECT_NE(ogg.modules.Log().TakeErrors().find(u"pages are missing"), std::u16string::npos);
}

TEST_P(OggDamage, A_packet_that_makes_no_sense_on_a_good_page_is_survived) {
    for (const std::string& packet :
         {std::string(), std::string("\1"), std::string(50, '\xFF'), std::string(300, '\0')}) {
        std::vector<Page> pages = mPages;
        Page& page = pages[mFirstAudio + 1];
        const Page bad = PageOf({packet}, page.serial, page.number);
        page.lacing = bad.lacing;
        page.body = bad.body;
        const Decoding decoding = ogg.Decode(Bytes(pages));
        EXPECT_TRUE(decoding.finished);
        EXPECT_LE(decoding.audio.size() / 8, kFrames);
        EXPECT_NE(decoding.errors, u"") << packet.size();
    }
}

OGG_TESTS(OggDamage);

}  // namespace
