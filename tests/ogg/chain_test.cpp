// Several streams in one file: one behind the other, and one among the other.
#include "ogg/ogg_codecs.h"

#include <algorithm>

using namespace ogg_file;

namespace {

class OggChain : public OggTest {
  protected:
    std::string Part(std::uint32_t frames, std::uint32_t serial, std::uint32_t channels = 2) {
        return Bytes(WithSerial(Pages(ogg.Encode(frames, serial, channels)), serial));
    }
};

TEST_P(OggChain, Parts_of_one_format_play_on) {
    const std::string first = Part(50001, 1), second = Part(30003, 2), third = Part(1, 3);
    const std::string sound = ogg.Decode(first).audio + ogg.Decode(second).audio + ogg.Decode(third).audio;
    const Decoding decoding = ogg.Decode(first + second + third);
    EXPECT_EQ(decoding.errors, u"");
    EXPECT_EQ(decoding.audio.size() / 8, 50001u + 30003u + 1u);
    EXPECT_TRUE(decoding.audio == sound);
    EXPECT_EQ(ValueOf(decoding.record.lengthMs), 80005ull * 1000 / ogg.codec.rate);
    EXPECT_EQ(ogg.Row(first + second + third, u"Parts"), u"3");
    EXPECT_EQ(ogg.Row(first, u"Parts"), u"");
}

TEST_P(OggChain, A_seek_finds_its_way_over_the_seams) {
    const std::vector<float> all = Floats(ogg.Decode(Part(50001, 1) + Part(30003, 2) + Part(40005, 3)).audio);
    ASSERT_EQ(all.size(), 120009u * 2);
    ASSERT_TRUE(ogg.Open());
    for (const std::uint32_t frame :
         {100000u, 50001u, 0u, 50000u, 80003u, 80004u, 120008u, 50002u, 49000u, 79999u}) {
        const std::vector<float> some = ogg.DecodeFrom(frame, 4000);
        ASSERT_GE(some.size(), std::min(4000u, 120009u - frame) * 2) << frame;
        EXPECT_TRUE(std::equal(some.begin(), some.end(), all.begin() + frame * 2)) << frame;
    }
    EXPECT_EQ(ogg.modules.Log().TakeErrors(), u"");
}

TEST_P(OggChain, A_part_with_other_channels_ends_it) {
    const std::string first = Part(50001, 1), second = Part(20000, 2), mono = Part(30003, 3, 1);
    const std::string sound = ogg.Decode(first + second).audio;
    for (const std::string& rest : {mono, mono + Part(10, 4), Part(2000, 5, 6)}) {
        const Decoding decoding = ogg.Decode(first + second + rest);
        EXPECT_TRUE(decoding.audio == sound);
        EXPECT_EQ(ValueOf(decoding.record.lengthMs), 70001ull * 1000 / ogg.codec.rate);
        EXPECT_EQ(
            ogg.Told(decoding.errors),
            u"goes on behind frame 70001 with another sample rate or other channels, which is left out");
    }
    ASSERT_TRUE(ogg.Open());
    EXPECT_TRUE(ogg.DecodeFrom(70001, 10).empty());
    EXPECT_TRUE(ogg.DecodeFrom(100000, 10).empty());
    EXPECT_EQ(ogg.modules.Log().TakeErrors(), u"");
}

TEST_P(OggChain, A_first_part_without_its_end_is_told) {
    std::vector<Page> first = Pages(Part(50001, 1));
    first.pop_back();
    const Decoding decoding = ogg.Decode(Bytes(first) + Part(30003, 2));
    EXPECT_TRUE(ogg.Told(decoding.errors).starts_with(u"a stream has no end before that at byte "));
    EXPECT_GT(decoding.audio.size() / 8, 30003u);
}

TEST_P(OggChain, A_file_put_behind_itself_is_told) {
    const std::string part = Part(50001, 1);
    const Decoding decoding = ogg.Decode(part + part);
    EXPECT_GE(decoding.audio.size() / 8, 50001u);
    const std::string place = std::to_string(part.size());
    EXPECT_EQ(ogg.Told(decoding.errors), u"the stream that begins at byte " +
                                             std::u16string(place.begin(), place.end()) +
                                             u" has the number of that before it");
}

TEST_P(OggChain, A_part_with_broken_headers_is_left_out_and_told) {
    const std::string first = Part(50001, 1), third = Part(30003, 3);
    std::vector<Page> second = Pages(Part(20000, 2));
    second.erase(second.begin() + 1);
    const std::string place = std::to_string(first.size());
    const std::string sound = ogg.Decode(first).audio + ogg.Decode(third).audio;
    const Decoding decoding = ogg.Decode(first + Bytes(second) + third);
    EXPECT_TRUE(decoding.audio == sound);
    EXPECT_EQ(ValueOf(decoding.record.lengthMs), 80004ull * 1000 / ogg.codec.rate);
    const std::u16string told = ogg.Told(decoding.errors);
    EXPECT_TRUE(told.starts_with(u"its part at byte " + std::u16string(place.begin(), place.end()) +
                                 u" can't be decoded: "))
        << Narrow(told.c_str());
}

TEST_P(OggChain, A_part_whose_beginning_is_lost_is_left_out_and_told) {
    std::vector<Page> second = Pages(Part(20000, 2));
    second.erase(second.begin());
    const std::string first = Part(50001, 1), third = Part(30003, 3);
    const std::string sound = ogg.Decode(first).audio + ogg.Decode(third).audio;
    const Decoding decoding = ogg.Decode(first + Bytes(second) + third);
    EXPECT_TRUE(decoding.audio == sound);
    EXPECT_NE(decoding.errors, u"");
}

TEST_P(OggChain, Long_parts_are_told_apart) {
    std::string bytes;
    std::uint64_t frames = 0;
    for (const std::uint32_t length : {700001u, 3u, 900001u, 40000u}) {
        bytes += Bytes(WithSerial(Pages(ogg.Encode(length, 1, 2, ogg.codec.fine)), length));
        frames += length;
    }
    const Decoding decoding = ogg.Decode(bytes);
    EXPECT_EQ(decoding.errors, u"");
    EXPECT_EQ(decoding.audio.size() / 8, frames);
    EXPECT_EQ(ogg.Row(bytes, u"Parts"), u"4");
}

TEST_P(OggChain, Hundreds_of_parts_play_on) {
    std::string bytes;
    for (std::uint32_t i = 0; i < 200; ++i) bytes += Part(100 + i, i + 1);
    const Decoding decoding = ogg.Decode(bytes);
    EXPECT_EQ(decoding.errors, u"");
    EXPECT_EQ(decoding.audio.size() / 8, 200u * 100 + 199 * 200 / 2);
}

TEST_P(OggChain, Of_thousands_of_parts_the_first_thousand_play) {
    const std::vector<Page> pages = Pages(ogg.Encode(1));
    std::string bytes;
    for (std::uint32_t i = 0; i < 3000; ++i) bytes += Bytes(WithSerial(pages, i + 1));
    const Decoding decoding = ogg.Decode(bytes);
    EXPECT_EQ(decoding.audio.size() / 8, 1000u);
    EXPECT_EQ(ogg.Told(decoding.errors), u"has more than 1000 parts, which are left out");
}

TEST_P(OggChain, A_stream_of_something_else_among_the_pages_is_passed_over) {
    const std::string good = ogg.Encode(100001);
    const std::string sound = ogg.Decode(good).audio;
    const std::vector<Page> pages = Pages(good);
    for (const bool isFirst : {false, true}) {
        std::string bytes;
        std::uint32_t number = 0;
        const auto addForeign = [&](std::uint8_t flags) {
            Page page = PageOf({"\200theora" + std::string(5000, 'x')}, 77, number++);
            page.flags = flags;
            page.granule = number;
            bytes += page.Bytes();
        };
        for (std::size_t i = 0; i < pages.size(); ++i) {
            if (i == 0 && isFirst) addForeign(kBegins);
            bytes += pages[i].Bytes();
            if (i == 0 && !isFirst) addForeign(kBegins);
            if (i > 1 && i + 1 < pages.size()) addForeign(i + 2 == pages.size() ? kEnds : 0);
        }
        const Decoding decoding = ogg.Decode(bytes);
        EXPECT_EQ(decoding.errors, u"") << isFirst;
        EXPECT_TRUE(decoding.audio == sound) << isFirst;
    }
}

OGG_TESTS(OggChain);

}  // namespace
