// What a change changes, and what it leaves alone.
#include <algorithm>
#include <filesystem>

#include "tags/tag_files.h"

namespace {

class Change : public TagTest {
  protected:
    const NoFlush mQuick;
};

const Rows kSong = {{u"ALBUM", u"An album", ""},
                    {u"ARTIST", u"One", ""},
                    {u"ARTIST", u"Other", ""},
                    {u"PICTURE", u"front", "\xFF\xD8\xFF one"},
                    {u"PICTURE:Back Cover", u"back", "GIF89a"},
                    {u"TITLE", u"A song", ""},
                    {u"TRACKNUMBER", u"3", ""},
                    {u"TRACKTOTAL", u"12", ""}};

Rows Without(Rows rows, const std::u16string& name) {
    std::erase_if(rows, [&](const Row& row) { return row.name == name; });
    return rows;
}

TEST_F(Change, An_untagged_file_has_no_rows) {
    for (const Sound& sound : Sounds()) {
        Put(sound);
        Delete(sound, u"");  // the encoders leave their own names behind
        EXPECT_EQ(Read(sound), Rows{});
    }
    EXPECT_EQ(mLog.TakeErrors(), u"");
}

TEST_F(Change, Names_are_found_in_any_case) {
    for (const Sound& sound : Sounds()) {
        Put(sound);
        ASSERT_TRUE(Delete(sound, u"") && Write(sound, kSong));
        ASSERT_EQ(Read(sound), kSong);
        for (const char16_t* name : {u"artist", u"TrackTotal", u"Picture", u"picture:back cover", u"nothing"})
            EXPECT_TRUE(Delete(sound, name));
        Rows rest = kSong;
        for (const char16_t* name : {u"ARTIST", u"TRACKTOTAL", u"PICTURE", u"PICTURE:Back Cover"})
            rest = Without(rest, name);
        EXPECT_EQ(Read(sound), rest);
        EXPECT_TRUE(Write(sound, {{u"tItLe", u"New", ""}}));
        EXPECT_EQ(Read(sound), (Rows{rest[0], {u"TITLE", u"New", ""}, rest[2]}));
        EXPECT_EQ(mLog.TakeErrors(), u"");
    }
}

TEST_F(Change, Only_what_is_named_is_replaced) {
    for (const Sound& sound : Sounds()) {
        Put(sound);
        ASSERT_TRUE(Delete(sound, u"") && Write(sound, kSong));
        ASSERT_TRUE(Write(sound, {{u"TRACKTOTAL", u"13", ""}, {u"PICTURE", u"", "BM new"}}));
        Rows expected = Without(Without(kSong, u"TRACKTOTAL"), u"PICTURE");
        expected.insert(expected.end(), {{u"TRACKTOTAL", u"13", ""}, {u"PICTURE", u"", "BM new"}});
        EXPECT_EQ(Read(sound), Sorted(expected));
        ASSERT_TRUE(Delete(sound, u"TRACKNUMBER"));
        EXPECT_EQ(Read(sound), Sorted(Without(expected, u"TRACKNUMBER")));
    }
}

TEST_F(Change, A_value_may_be_several_and_a_number_may_bring_its_total) {
    const Rows given = {{u"Genre", u"A\u001FB\u001F\u001FC", ""},
                        {u"TrackNumber", u"3/12", ""},
                        {u"TotalDiscs", u"2", ""},
                        {u"Album Artist", u"Band", ""}};
    const Rows expected = {{u"ALBUMARTIST", u"Band", ""}, {u"DISCTOTAL", u"2", ""},
                           {u"GENRE", u"A", ""},          {u"GENRE", u"B", ""},
                           {u"GENRE", u"C", ""},          {u"TRACKNUMBER", u"3", ""},
                           {u"TRACKTOTAL", u"12", ""}};
    for (const Sound& sound : Sounds()) {
        Put(sound);
        ASSERT_TRUE(Delete(sound, u"") && Write(sound, given));
        EXPECT_EQ(Read(sound), expected);
    }
}

TEST_F(Change, Rows_that_say_nothing_are_left_out) {
    const Rows nothing = {{u"", u"no name", ""},
                          {u"TITLE", u"", ""},
                          {u"PICTURE", u"no bytes", ""},
                          {u"", u"", "bytes"},
                          {u"TITLE", u"", "bytes under a name of text"}};
    Rows more = nothing;
    more.push_back({u"ARTIST", u"\xD800 half", ""});
    for (const Sound& sound : Sounds()) {
        Put(sound);
        ASSERT_TRUE(Delete(sound, u""));
        const std::string before = Bytes(sound);
        EXPECT_FALSE(Write(sound, nothing));
        EXPECT_EQ(mLog.TakeErrors(),
                  mFolder / sound.name + u": its tags are not changed: it can hold none of these\r\n");
        EXPECT_NE(mLog.TakeInformation().find(u"TITLE is left out: only pictures are kept as bytes"),
                  std::u16string::npos);
        EXPECT_TRUE(Bytes(sound) == before);
        EXPECT_TRUE(Write(sound, {}));
        EXPECT_TRUE(Write(sound, more));
        EXPECT_EQ(Read(sound), (Rows{{u"ARTIST", u"\uFFFD half", ""}}));
    }
}

TEST_F(Change, A_name_that_a_container_can_not_have_is_told) {
    const Sound& flac = SoundOf(TagContainer::flac);
    Put(flac);
    EXPECT_FALSE(Write(flac, {{u"Größe", u"12", ""}}));
    EXPECT_NE(mLog.TakeErrors().find(u"can hold none of these"), std::u16string::npos);
    EXPECT_NE(mLog.TakeInformation().find(u"GRößE is left out"), std::u16string::npos);
    EXPECT_TRUE(Write(flac, {{u"Größe", u"12", ""}, {u"A=B", u"c", ""}, {u"TITLE", u"held", ""}}));
    EXPECT_EQ(Read(flac), (Rows{{u"TITLE", u"held", ""}}));
    const Sound& opus = SoundOf(TagContainer::oggOpus);
    Put(opus);
    ASSERT_TRUE(Delete(opus, u""));
    EXPECT_TRUE(Write(opus, {{u"REPLAYGAIN_TRACK_PEAK", u"1.0", ""}, {u"TITLE", u"held", ""}}));
    EXPECT_EQ(Read(opus), (Rows{{u"TITLE", u"held", ""}}));
    EXPECT_NE(mLog.TakeInformation().find(u"REPLAYGAIN_TRACK_PEAK is left out"), std::u16string::npos);
}

TEST_F(Change, Gain_in_Opus_is_its_own_and_reads_as_everywhere) {
    const Sound& opus = SoundOf(TagContainer::oggOpus);
    const std::pair<const char16_t*, const char*> rows[] = {{u"-7.03 dB", "R128_TRACK_GAIN=-3080"},
                                                            {u"5.00 dB", "R128_TRACK_GAIN=0"},
                                                            {u"+6.00 dB", "R128_TRACK_GAIN=256"},
                                                            {u"0", "R128_TRACK_GAIN=-1280"},
                                                            {u"-122.99 dB", "R128_TRACK_GAIN=-32765"}};
    for (const auto& [gain, text] : rows) {
        Put(opus);
        ASSERT_TRUE(Delete(opus, u"") && Write(opus, {{u"REPLAYGAIN_TRACK_GAIN", gain, ""}}));
        EXPECT_NE(Bytes(opus).find(text), std::string::npos) << text;
        EXPECT_EQ(Bytes(opus).find("REPLAYGAIN"), std::string::npos);
        EXPECT_EQ(Read(opus).at(0).name, u"REPLAYGAIN_TRACK_GAIN");
    }
    EXPECT_EQ(Read(opus).at(0).value, u"-122.99 dB");
    for (const char16_t* none : {u"loud", u"200 dB", u"-130 dB", u"nan", u"inf"}) {
        EXPECT_TRUE(Write(opus, {{u"REPLAYGAIN_ALBUM_GAIN", none, ""}, {u"TITLE", u"x", ""}}));
        EXPECT_NE(mLog.TakeInformation().find(u"REPLAYGAIN_ALBUM_GAIN is left out"), std::u16string::npos);
        EXPECT_EQ(Read(opus).size(), 2u);
    }
    EXPECT_TRUE(Delete(opus, u"r128_track_gain"));
    EXPECT_EQ(Read(opus), (Rows{{u"TITLE", u"x", ""}}));
}

TEST_F(Change, A_change_that_changes_nothing_does_not_touch_the_file) {
    for (const Sound& sound : Sounds()) {
        Put(sound);
        ASSERT_TRUE(Delete(sound, u"") && Write(sound, kSong));
        Faulty<platform::WriteFile> writes;
        Faulty<platform::MoveFileExW> moves;
        EXPECT_TRUE(Write(sound, kSong));
        EXPECT_TRUE(Write(sound, {{u"title", u"A song", ""}}));
        EXPECT_TRUE(Delete(sound, u"COMPOSER"));
        EXPECT_TRUE(Delete(sound, u"PICTURE:Other"));
        EXPECT_EQ(writes.Calls() + moves.Calls(), 0);
    }
}

TEST_F(Change, Files_of_another_kind_and_of_none_are_refused) {
    const std::string junk(3000, 'j');
    for (const Sound& sound : Sounds()) {
        for (const Sound& other : Sounds()) {
            if (other.container == sound.container || sound.container == TagContainer::mpeg) continue;
            mFolder.Write(sound.name, other.bytes);
            EXPECT_FALSE(Write(sound, kSong));
            EXPECT_TRUE(Bytes(sound) == other.bytes);
            EXPECT_NE(mLog.TakeErrors().find(u"its tags are not changed: "), std::u16string::npos);
        }
    }
    const std::u16string path = mFolder.Write(u"plain", junk);
    clIDTagList list;
    EXPECT_TRUE(ReadFileTags(TagContainer::none, path.c_str(), list, Log()));
    EXPECT_EQ(list.Count(), 0);
    list.Add(u"TITLE", u"x");
    EXPECT_FALSE(WriteFileTags(TagContainer::none, path.c_str(), list, Log()));
    EXPECT_FALSE(DeleteFileTags(TagContainer::none, path.c_str(), u"", Log()));
    EXPECT_TRUE(mFolder.Read(u"plain") == junk);
}

TEST_F(Change, A_read_only_file_is_refused_and_stays) {
    for (const Sound& sound : Sounds()) {
        Put(sound);
        mFolder.SetReadOnly(sound.name);
        EXPECT_FALSE(Write(sound, kSong));
        EXPECT_EQ(mLog.TakeErrors(),
                  mFolder / sound.name + u": its tags are not changed: it is read-only\r\n");
        EXPECT_TRUE(Bytes(sound) == sound.bytes);
    }
    EXPECT_EQ(NamesInFolder().size(), Sounds().size());
}

TEST_F(Change, Permissions_of_the_old_file_stay) {
    namespace fs = std::filesystem;
    const Sound& flac = SoundOf(TagContainer::flac);
    const fs::path path(Put(flac));
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    const fs::perms before = fs::status(path).permissions();
    ASSERT_TRUE(Write(flac, kSong));
    EXPECT_EQ(fs::status(path).permissions(), before);
}

}  // namespace
