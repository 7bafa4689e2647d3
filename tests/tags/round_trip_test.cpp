// Two hundred generated sets of tags go into every container, from there into every other, and come back as
// they were but for what the target can't hold.
#include <algorithm>
#include <array>
#include <random>

#include "support/effort.h"
#include "tags/tag_files.h"

namespace {

constexpr int kSets = Times(200, 20, 20);

bool IsXiph(TagContainer container) {
    return container == TagContainer::flac || container == TagContainer::oggVorbis ||
           container == TagContainer::oggOpus;
}

// The rows that a container gives back for these, said a second time: no name beyond ASCII in Vorbis
// comments, and no peaks in Opus.
Rows Kept(TagContainer container, const Rows& rows) {
    Rows kept;
    for (const Row& row : rows) {
        const bool isForeign = row.name.find_first_of(u"Ä=") != std::u16string::npos;
        const bool isPeak = row.name.ends_with(u"_PEAK");
        if (!(isForeign && IsXiph(container)) && !(isPeak && container == TagContainer::oggOpus))
            kept.push_back(row);
    }
    return Sorted(std::move(kept));
}

class Generator {
  public:
    explicit Generator(int seed) : mRandom(static_cast<std::uint32_t>(seed)), mIsLarge(seed % 50 == 7) {}

    Rows Make() {
        Rows rows;
        for (const char16_t* name : {u"TITLE",
                                     u"ARTIST",
                                     u"ALBUM",
                                     u"ALBUMARTIST",
                                     u"DATE",
                                     u"GENRE",
                                     u"COMMENT",
                                     u"COMPOSER",
                                     u"ISRC",
                                     u"LYRICS",
                                     u"COPYRIGHT",
                                     u"PERFORMER:PIANO",
                                     u"ARRANGER",
                                     u"MUSICBRAINZ_TRACKID",
                                     u"MUSICBRAINZ_ALBUMID",
                                     u"ARTISTWEBPAGE",
                                     u"URL",
                                     u"OWN FIELD",
                                     u"BPM",
                                     u"ORIGINALDATE",
                                     u"Ä=LEGAL ONLY IN ID3"}) {
            if (Below(3) == 0) AddValues(rows, name);
        }
        AddNumbers(rows, u"TRACKNUMBER", u"TRACKTOTAL");
        AddNumbers(rows, u"DISCNUMBER", u"DISCTOTAL");
        AddGain(rows);
        AddArt(rows);
        if (rows.empty()) rows.push_back({u"TITLE", u"alone", ""});
        return rows;
    }

  private:
    std::uint32_t Below(std::uint32_t bound) { return static_cast<std::uint32_t>(mRandom()) % bound; }

    std::u16string Text() {
        constexpr std::array<std::u16string_view, 10> kPieces = {
            u"plain",      u" ",  u"Grüße",   u"日本語", u"\U0001F3B5",
            u"\U0001D11E", u"\"", u"a=b/c;d", u"\nline", u"Ж"};
        std::u16string text = u"T";
        for (std::uint32_t i = Below(mIsLarge ? 3000 : 12); i > 0; --i)
            text += kPieces[Below(kPieces.size())];
        return text + u".";
    }
    void AddValues(Rows& rows, const char16_t* name) {
        for (std::uint32_t i = Below(4) == 0 ? 3 : 1; i > 0; --i) rows.push_back({name, Text(), ""});
    }
    std::u16string Digits(std::uint32_t bound) {
        const std::string text = std::to_string(Below(bound));
        return std::u16string(text.begin(), text.end());
    }
    void AddNumbers(Rows& rows, const char16_t* number, const char16_t* total) {
        if (Below(2) == 0) rows.push_back({number, Digits(300), ""});
        if (Below(2) == 0) rows.push_back({total, Digits(300), ""});
    }
    void AddGain(Rows& rows) {
        for (const char16_t* of : {u"TRACK", u"ALBUM"}) {
            if (Below(2) == 0) continue;
            const std::u16string name = std::u16string(u"REPLAYGAIN_") + of;
            const std::u16string hundredths = Digits(90);
            const std::u16string sign = Below(2) == 0 ? u"-" : u"";
            rows.push_back(
                {name + u"_GAIN",
                 sign + u"1" + Digits(9) + u"." + (hundredths.size() < 2 ? u"0" : u"") + hundredths + u" dB",
                 ""});
            rows.push_back({name + u"_PEAK", u"0.98" + Digits(9999), ""});
        }
    }
    void AddArt(Rows& rows) {
        constexpr const char* kMagic[] = {"\xFF\xD8\xFF\xE0", "\x89PNG\r\n\x1A\n", "GIF89a", "BM",
                                          "anything"};
        for (const char16_t* name :
             {u"PICTURE", u"PICTURE:Back Cover", u"PICTURE:Other", u"PICTURE:Coloured Fish"}) {
            if (Below(4) != 0) continue;
            std::string bytes = kMagic[Below(std::size(kMagic))];
            for (std::uint32_t i = mIsLarge && rows.back().art.empty() ? 1200000 : Below(3000); i > 0; --i)
                bytes += static_cast<char>(mRandom());
            rows.push_back({name, Below(2) == 0 ? Text().substr(0, 100) : u"", bytes});
        }
    }

    std::mt19937 mRandom;
    const bool mIsLarge;
};

class RoundTrip : public TagTest {};

TEST_F(RoundTrip, Every_set_survives_the_way_through_any_two_containers) {
    const NoFlush quick;
    for (int seed = 0; seed < kSets; ++seed) {
        const Rows rows = Generator(seed).Make();
        for (const Sound& first : Sounds()) {
            Put(first);
            ASSERT_TRUE(Write(first, rows) || Kept(first.container, rows).empty()) << seed;
            const Rows between = Read(first);
            ASSERT_EQ(between, Kept(first.container, rows)) << seed;
            ASSERT_TRUE(AudioOf(first, Bytes(first)) == AudioOf(first, first.bytes)) << seed;
            for (const Sound& second : Sounds()) {
                Put(second);
                ASSERT_TRUE(Write(second, between) || Kept(second.container, between).empty()) << seed;
                ASSERT_EQ(Read(second), Kept(second.container, between)) << seed;
                ASSERT_TRUE(AudioOf(second, Bytes(second)) == AudioOf(second, second.bytes)) << seed;
            }
        }
        mLog.TakeInformation();
    }
    EXPECT_EQ(mLog.TakeErrors().find(u"does not read back"), std::u16string::npos);
}

TEST_F(RoundTrip, A_set_written_over_another_leaves_of_it_what_has_other_names) {
    const NoFlush quick;
    for (const Sound& sound : Sounds()) {
        Put(sound);
        Rows expected;
        for (int seed = 0; seed < 20; ++seed) {
            const Rows rows = Kept(sound.container, Generator(seed).Make());
            if (rows.empty()) continue;
            ASSERT_TRUE(Write(sound, rows)) << seed;
            std::erase_if(expected, [&](const Row& old) {
                return std::ranges::any_of(rows, [&](const Row& row) { return row.name == old.name; });
            });
            expected.insert(expected.end(), rows.begin(), rows.end());
            ASSERT_EQ(Read(sound), Sorted(expected)) << seed;
            ASSERT_TRUE(AudioOf(sound, Bytes(sound)) == AudioOf(sound, sound.bytes)) << seed;
        }
        ASSERT_TRUE(Delete(sound, u""));
        EXPECT_EQ(Read(sound), Rows{});
        EXPECT_TRUE(AudioOf(sound, Bytes(sound)) == AudioOf(sound, sound.bytes));
    }
}

}  // namespace
