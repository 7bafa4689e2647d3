// Tags of other programs' making in MPEG files: three kinds at once, older versions, frames that are no rows.
#include "tags/tag_files.h"

namespace {

std::string Size28(std::size_t size) {
    std::string bytes;
    for (int shift = 21; shift >= 0; shift -= 7) bytes += static_cast<char>(size >> shift & 0x7F);
    return bytes;
}

std::string Frame(const std::string& id, const std::string& contents) {
    return id + Size28(contents.size()) + std::string(2, '\0') + contents;
}

std::string Text(const std::string& id, const std::string& text) {
    return Frame(id, '\3' + text);
}

std::string Id3v2(const std::string& frames, char version = 4) {
    return std::string("ID3") + version + std::string(2, '\0') + Size28(frames.size()) + frames;
}

std::string Fixed(std::string text, std::size_t size) {
    text.resize(size);
    return text;
}

std::string Id3v1(const std::string& title, char genre) {
    return "TAG" + Fixed(title, 30) + Fixed("Old artist", 30) + Fixed("", 30) + "1999" + Fixed("remark", 28) +
           std::string(1, '\0') + '\7' + genre;
}

std::string Number(std::size_t number) {
    return {static_cast<char>(number), static_cast<char>(number >> 8), '\0', '\0'};
}

std::string ApeItem(const std::string& key, const std::string& value, char flags = 0) {
    return Number(value.size()) + Number(static_cast<std::size_t>(flags)) + key + '\0' + value;
}

std::string Ape(const std::string& items, std::size_t count) {
    return items + "APETAGEX" + Number(2000) + Number(items.size() + 32) + Number(count) +
           std::string(12, '\0');
}

// 2000 fits two bytes; the rest of the numbers are small.
class OtherTags : public TagTest {
  protected:
    void PutTagged(const std::string& before, const std::string& behind) {
        const std::string& bytes = mMpeg.bytes;
        mFolder.Write(mMpeg.name, before + bytes.substr(bytes.find("\xFF\xF3")) + behind);
    }
    bool Has(const std::string& text) const { return Bytes(mMpeg).find(text) != std::string::npos; }
    void ExpectAudio() {
        EXPECT_TRUE(AudioOf(mMpeg, Bytes(mMpeg)) == AudioOf(mMpeg, mMpeg.bytes));
        EXPECT_EQ(mLog.TakeErrors(), u"");
    }

    const Sound& mMpeg = SoundOf(TagContainer::mpeg);
    const NoFlush mQuick;
};

TEST_F(OtherTags, What_one_tag_does_not_name_the_next_does) {
    PutTagged(Id3v2(Text("TIT2", "New")),
              Ape(ApeItem("Title", "Ape title") + ApeItem("Album", "Ape album") + ApeItem("Track", "7/9") +
                      ApeItem("Cover Art (front)", std::string("f.gif\0GIF89a", 12), 2),
                  4) +
                  Id3v1("Old", 17));
    EXPECT_EQ(Read(mMpeg), (Rows{{u"ALBUM", u"Ape album", ""},
                                 {u"ARTIST", u"Old artist", ""},
                                 {u"COMMENT", u"remark", ""},
                                 {u"DATE", u"1999", ""},
                                 {u"GENRE", u"Rock", ""},
                                 {u"PICTURE", u"", "GIF89a"},
                                 {u"TITLE", u"New", ""},
                                 {u"TRACKNUMBER", u"7", ""},
                                 {u"TRACKTOTAL", u"9", ""}}));
    ASSERT_TRUE(Write(mMpeg, {{u"ALBUM", u"Better", ""}}));
    EXPECT_FALSE(Has("Ape album"));
    EXPECT_TRUE(Has("Ape title"));
    ASSERT_TRUE(Delete(mMpeg, u"TITLE"));
    ASSERT_TRUE(Delete(mMpeg, u"DATE"));
    ASSERT_TRUE(Delete(mMpeg, u"PICTURE"));
    EXPECT_EQ(Read(mMpeg), (Rows{{u"ALBUM", u"Better", ""},
                                 {u"ARTIST", u"Old artist", ""},
                                 {u"COMMENT", u"remark", ""},
                                 {u"GENRE", u"Rock", ""},
                                 {u"TRACKNUMBER", u"7", ""},
                                 {u"TRACKTOTAL", u"9", ""}}));
    ExpectAudio();
    ASSERT_TRUE(Delete(mMpeg, u""));
    const std::string bytes = mMpeg.bytes.substr(mMpeg.bytes.find("\xFF\xF3"));
    EXPECT_TRUE(Bytes(mMpeg) == bytes);
}

TEST_F(OtherTags, An_ID3v1_tag_follows_and_none_is_made) {
    PutTagged("", "");
    ASSERT_TRUE(Write(mMpeg, {{u"TITLE", u"Song", ""}}));
    EXPECT_EQ(Bytes(mMpeg).rfind("TAG"), std::string::npos);
    PutTagged("", Id3v1("Old", 17));
    ASSERT_TRUE(
        Write(mMpeg, {{u"TITLE", u"A title of more than thirty letters", ""}, {u"TRACKNUMBER", u"8", ""}}));
    const std::string bytes = Bytes(mMpeg);
    EXPECT_EQ(bytes.substr(bytes.size() - 128, 33), "TAGA title of more than thirty le");
    EXPECT_EQ(bytes[bytes.size() - 2], '\10');
    EXPECT_EQ(Read(mMpeg).at(4).value, u"A title of more than thirty letters");
    ExpectAudio();
}

TEST_F(OtherTags, Frames_that_are_no_rows_stay) {
    PutTagged(Id3v2(Frame("PRIV", std::string("owner\0secret", 12)) + Text("TIT2", "Song") +
                    Frame("POPM", std::string("me\0\xFF", 4)) +
                    Text("TXXX", std::string("Mine\0first\0second", 17))),
              "");
    EXPECT_EQ(Read(mMpeg),
              (Rows{{u"MINE", u"first", ""}, {u"MINE", u"second", ""}, {u"TITLE", u"Song", ""}}));
    ASSERT_TRUE(Delete(mMpeg, u"TITLE"));
    EXPECT_TRUE(Has("secret"));
    EXPECT_TRUE(Has("POPM"));
    EXPECT_EQ(Read(mMpeg), (Rows{{u"MINE", u"first", ""}, {u"MINE", u"second", ""}}));
    ASSERT_TRUE(Delete(mMpeg, u""));
    EXPECT_FALSE(Has("secret"));
    ExpectAudio();
}

TEST_F(OtherTags, Older_versions_are_read_and_become_the_newest) {
    const std::string utf16("\1\xFF\xFE\x4A\xD8\xB5\xDF",
                            7);  // not a picture of any note, but beyond 16 bits
    PutTagged(Id3v2(Frame("TIT2", utf16) + Frame("TYER", std::string("\0", 1) + "2001") +
                        Frame("TCON", std::string("\0", 1) + "(17)"),
                    3),
              "");
    const Rows rows = Read(mMpeg);
    EXPECT_EQ(rows, (Rows{{u"DATE", u"2001", ""}, {u"GENRE", u"Rock", ""}, {u"TITLE", u"\xD84A\xDFB5", ""}}));
    ASSERT_TRUE(Write(mMpeg, {{u"ARTIST", u"x", ""}}));
    EXPECT_EQ(Bytes(mMpeg)[3], '\4');
    EXPECT_EQ(Read(mMpeg).size(), 4u);
    ExpectAudio();
}

TEST_F(OtherTags, People_are_told_apart_by_what_they_do) {
    PutTagged(Id3v2(Text("TIPL", std::string("producer\0Ann, Bob\0cook\0Eve", 26)) +
                    Text("TMCL", std::string("piano\0Ann", 9))),
              "");
    EXPECT_EQ(Read(mMpeg), (Rows{{u"PERFORMER:PIANO", u"Ann", ""}, {u"PRODUCER", u"Ann, Bob", ""}}));
    ASSERT_TRUE(
        Write(mMpeg, {{u"PRODUCER", u"Dan", ""}, {u"Performer:Harp", u"Joe", ""}, {u"MIXER", u"Kim", ""}}));
    EXPECT_TRUE(Has("cook"));
    EXPECT_EQ(Read(mMpeg), (Rows{{u"MIXER", u"Kim", ""},
                                 {u"PERFORMER:HARP", u"Joe", ""},
                                 {u"PERFORMER:PIANO", u"Ann", ""},
                                 {u"PRODUCER", u"Dan", ""}}));
    ExpectAudio();
}

TEST_F(OtherTags, Fields_of_many_kinds_find_their_frames) {
    const std::pair<const char16_t*, const char*> frames[] = {
        {u"TITLE", "TIT2"},
        {u"ALBUMARTIST", "TPE2"},
        {u"COMMENT", "COMM"},
        {u"LYRICS", "USLT"},
        {u"ISRC", "TSRC"},
        {u"URL", "WXXX"},
        {u"ARTISTWEBPAGE", "WOAR"},
        {u"MUSICBRAINZ_TRACKID", "UFID"},
        {u"DATE", "TDRC"},
        {u"MUSICBRAINZ_ALBUMID", "MusicBrainz Album Id"},
        {u"REPLAYGAIN_TRACK_GAIN", "REPLAYGAIN_TRACK_GAIN"},
        {u"ARRANGER", "TIPL"},
        {u"MINE", "TXXX"}};
    for (const auto& [name, frame] : frames) {
        PutTagged("", "");
        ASSERT_TRUE(Write(mMpeg, {{name, u"value", ""}}));
        EXPECT_TRUE(Has(frame)) << frame;
        EXPECT_EQ(Read(mMpeg), (Rows{{name, u"value", ""}}));
    }
    for (const char16_t* name : {u"COMMENT", u"LYRICS", u"URL", u"ARTISTWEBPAGE", u"MUSICBRAINZ_TRACKID"}) {
        const Rows several = {{name, u"one", ""}, {name, u"\U0001F3B5", ""}};
        PutTagged("", "");
        ASSERT_TRUE(Write(mMpeg, several));
        EXPECT_EQ(Read(mMpeg), several);
    }
}

TEST_F(OtherTags, Genres_are_made_what_ID3_takes_them_for) {
    const std::pair<const char16_t*, const char16_t*> genres[] = {
        {u"Rock", u"Rock"},   {u"17", u"Rock"},   {u"(17)", u"Rock"}, {u"(4)Disco fever", u"Disco fever"},
        {u"(open", u"(open"}, {u"2001", u"2001"}, {u"255", u"255"}};
    for (const auto& [given, read] : genres) {
        PutTagged("", "");
        ASSERT_TRUE(Write(mMpeg, {{u"GENRE", given, ""}})) << testing::PrintToString(given);
        EXPECT_EQ(Read(mMpeg), (Rows{{u"GENRE", read, ""}}));
    }
}

}  // namespace
