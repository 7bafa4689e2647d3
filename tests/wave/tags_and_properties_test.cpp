#include <gtest/gtest.h>

#include <cstring>

#include "foundation/id_tag_list.h"
#include "foundation/qv_text.h"
#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

using namespace wave_bytes;

namespace {

using Rows = std::vector<std::pair<std::u16string, std::u16string>>;

class WaveRows : public testing::Test {
  protected:
    bool Open(const std::string& bytes, std::uint32_t request) {
        mPath = mFolder.Write(u"a.wav", bytes);
        return mModules.Open(mPath, request, mRecord);
    }
    Rows Tags(const std::string& bytes) {
        EXPECT_TRUE(Open(bytes, QV_OPEN_TAGS));
        EXPECT_LT(ValueOf(mRecord.tagDataSize), 1000000u);
        return Read(mRecord.tagData, mRecord.tagDataSize);
    }
    Rows Properties(const std::string& bytes) {
        EXPECT_TRUE(Open(bytes, QV_OPEN_PROPERTY_ROWS));
        return Read(mRecord.propertyData, mRecord.propertyDataSize);
    }
    static Rows Read(const std::uint8_t* flat, std::uint32_t size) {
        clIDTagList list;
        if (flat) list.Deserialise(flat, size);
        Rows rows;
        for (std::int32_t i = 0; i < list.Count(); ++i)
            rows.emplace_back(list.At(i).name.Text(), list.At(i).value.Text());
        return rows;
    }

    WaveModules mModules;
    TempFolder mFolder;
    std::u16string mPath;
    clOpenFileRec mRecord{};
};

const std::string kAudio = StereoFormat() + Chunk("data", Noise(44100 * 4));

std::string Info(const std::string& fields) {
    return Chunk("LIST", "INFO" + fields);
}

}  // namespace

TEST_F(WaveRows, Every_known_field_has_its_name) {
    const std::pair<const char*, const char16_t*> fields[] = {
        {"IPRD", u"ALBUM"},     {"IART", u"ARTIST"},     {"ICMT", u"COMMENT"},   {"IMUS", u"COMPOSER"},
        {"ICOP", u"COPYRIGHT"}, {"ICRD", u"DATE"},       {"ISFT", u"ENCODEDBY"}, {"IENG", u"ENGINEER"},
        {"IGNR", u"GENRE"},     {"IKEY", u"KEYWORDS"},   {"ILNG", u"LANGUAGE"},  {"ISBJ", u"SUBJECT"},
        {"INAM", u"TITLE"},     {"ITRK", u"TRACKNUMBER"}};
    std::string list;
    Rows expected;
    for (const auto& [id, name] : fields) {
        list += Chunk(id, std::string(id) + " text\0" + '\0');
        expected.emplace_back(name, std::u16string(id, id + 4) + u" text");
    }
    EXPECT_EQ(Tags(Riff(kAudio + Info(list))), expected);
    EXPECT_EQ(Tags(Riff(Info(list) + kAudio)), expected);
    EXPECT_EQ(Tags(Riff(kAudio + Info(Chunk("IPRT", "7")))), (Rows{{u"TRACKNUMBER", u"7"}}));
}

TEST_F(WaveRows, Text_is_UTF8_or_else_Windows_1252_and_trimmed) {
    const std::pair<std::string, std::u16string> rows[] = {
        {"plain", u"plain"},
        {"  both ends \r\n", u"both ends"},
        {std::string("cut\0here", 8), u"cut"},
        {"B\xC3\xBC\xE2\x82\xAC\xF0\x9D\x84\x9E", u"B\u00FC\u20AC\U0001D11E"},
        {"B\xFC\x80\x9F", u"B\u00FC\u20AC\u0178"},
        {"B\xFCrger", u"B\u00FCrger"},  // a lead, but nothing that follows one
        {"\xC3(", u"\u00C3("},
        {"\xC3", u"\u00C3"},                                // UTF-8 that is cut
        {"\xC0\x80", u"\u00C0\u20AC"},                      // longer than it need be
        {"\xED\xA0\x80", u"\u00ED\u00A0\u20AC"},            // a surrogate
        {"\xF4\x90\x80\x80", u"\u00F4\u0090\u20AC\u20AC"},  // beyond the last character
        {"\xFF", u"\u00FF"},
    };
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(Tags(Riff(kAudio + Info(Chunk("INAM", bytes)))), (Rows{{u"TITLE", text}})) << bytes;
}

TEST_F(WaveRows, Of_two_fields_with_one_meaning_the_first_that_says_anything_counts) {
    const std::string first =
        Info(Chunk("INAM", "") + Chunk("INAM", " ") + Chunk("INAM", "one") + Chunk("ITRK", "1"));
    const std::string second = Info(Chunk("INAM", "two") + Chunk("IPRT", "2") + Chunk("XXXX", "?"));
    EXPECT_EQ(Tags(Riff(first + kAudio + second)), (Rows{{u"TITLE", u"one"}, {u"TRACKNUMBER", u"1"}}));
}

TEST_F(WaveRows, A_file_without_tags_hands_out_no_block) {
    for (const std::string& extra : {std::string(), Info(""), Chunk("LIST", "adtl" + Chunk("INAM", "no")),
                                     Chunk("LIST", "INF"), Chunk("id3 ", Noise(40))}) {
        EXPECT_EQ(Tags(Riff(kAudio + extra)), Rows{});
        EXPECT_EQ(ValueOf(mRecord.tagData), nullptr);
        EXPECT_EQ(ValueOf(mRecord.tagDataSize), 0u);
    }
    EXPECT_EQ(mModules.Log().TakeErrors(), u"");
}

TEST_F(WaveRows, A_list_that_is_cut_yields_what_stands_before_the_cut) {
    const std::string whole = Riff(kAudio + Info(Chunk("INAM", "Title") + Chunk("IART", "Artist")));
    for (std::size_t cut = whole.size() - 40; cut < whole.size(); ++cut) {
        const Rows rows = Tags(whole.substr(0, cut));
        EXPECT_LE(rows.size(), 2u);
        const bool hasTitle = cut >= whole.size() - 14;
        EXPECT_TRUE(!hasTitle || rows.back() == Rows::value_type(u"TITLE", u"Title")) << cut;
    }
    EXPECT_EQ(Tags(Riff(kAudio + Info(Claiming("INAM", 0xFFFFFFFF, "to the end")))),
              (Rows{{u"TITLE", u"to the end"}}));
}

TEST_F(WaveRows, A_list_of_any_size_stays_below_what_the_library_takes) {
    const std::string huge(3000000, 'x');
    const Rows rows =
        Tags(Riff(kAudio + Info(Chunk("INAM", huge) + Chunk("IART", "never")) + Info(Chunk("IGNR", huge))));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].second, std::u16string(400000 - 12, u'x'));
}

TEST_F(WaveRows, Tags_are_written_and_removed_through_the_module) {
    const std::string bytes = Riff(kAudio + Info(Chunk("INAM", "Old") + Chunk("XXXX", "kept")));
    const std::u16string path = mFolder.Write(u"a.wav", bytes);
    clIDTagList list;
    clByteStore flat;
    list.Add(u"title", u"New");
    list.Add(u"TrackNumber", u"3/12");
    ASSERT_TRUE(list.Serialise(flat));
    clCodecQueryRec query{};
    query.text = ToQvText(path.c_str());
    query.data = flat.Data();
    query.dataSize = flat.Size();
    ASSERT_TRUE(mModules.Decoder().Create(mModules.Log().Log()));
    EXPECT_TRUE(mModules.Decoder().Set(u"IDTags", &query));
    EXPECT_EQ(Tags(mFolder.Read(u"a.wav")),
              (Rows{{u"TITLE", u"New"}, {u"TRACKNUMBER", u"3"}, {u"TRACKTOTAL", u"12"}}));
    EXPECT_NE(mFolder.Read(u"a.wav").find("kept"), std::string::npos);
    EXPECT_TRUE(mModules.Decoder().DeleteATag(path.c_str(), u"Title"));
    EXPECT_EQ(Tags(mFolder.Read(u"a.wav")), (Rows{{u"TRACKNUMBER", u"3"}, {u"TRACKTOTAL", u"12"}}));
    EXPECT_TRUE(mModules.Decoder().DeleteATag(path.c_str(), nullptr));
    EXPECT_TRUE(mFolder.Read(u"a.wav") == Riff(kAudio));
    EXPECT_EQ(mModules.Log().TakeErrors(), u"");
}

TEST_F(WaveRows, Properties_are_rows_for_display) {
    EXPECT_EQ(Properties(Riff(kAudio)), (Rows{{u"Container", u"WAVE"},
                                              {u"Codec", u"PCM"},
                                              {u"Channels", u"2"},
                                              {u"Sample rate", u"44100 Hz"},
                                              {u"Bits per sample", u"16"},
                                              {u"Bit rate", u"1411 kbit/s"},
                                              {u"Length", u"0:00:01.000"},
                                              {u"File size", u"176444 bytes"}}));
    const QvFormatExtensible record = Extensible(QV_FORMAT_PCM, 6, 8000, 24, 20, 0x3F);
    const std::string format(reinterpret_cast<const char*>(&record), sizeof record);
    const std::string chunks =
        Chunk("fmt ", format) + Claiming("data", 0xFFFFFFFF, Noise(18 * 8000 * 61 + 18));
    EXPECT_EQ(Properties(Riff64("RF64", 18 * 8000 * 61 + 18, chunks)),
              (Rows{{u"Container", u"WAVE (RF64)"},
                    {u"Codec", u"PCM"},
                    {u"Channels", u"6"},
                    {u"Channel mask", u"0x3F"},
                    {u"Sample rate", u"8000 Hz"},
                    {u"Bits per sample", u"24"},
                    {u"Valid bits", u"20"},
                    {u"Bit rate", u"1152 kbit/s"},
                    {u"Length", u"0:01:01.000"},
                    {u"File size", u"8784122 bytes"}}));
    const std::string unknown = Chunk("fmt ", U16(0xABCD) + U16(1) + U32(8000) + U32(0) + U16(1) + U16(0));
    const Rows rows = Properties(Riff(unknown + Chunk("data", "1234")));
    EXPECT_EQ(rows.at(1).second, u"format tag 0xABCD");
    EXPECT_EQ(rows.at(4).first, u"Bit rate");  // no row for bits
}

TEST_F(WaveRows, Information_is_the_format_the_lengths_and_the_bit_rate) {
    ASSERT_TRUE(Open(Riff(kAudio), QV_OPEN_PROPERTIES));
    QvFormat format;
    std::memcpy(&format, mRecord.format, sizeof format);
    EXPECT_EQ(format.nChannels, 2);
    EXPECT_EQ(format.nAvgBytesPerSec, 176400u);
    EXPECT_EQ(ValueOf(mRecord.property), 1411200);
    EXPECT_EQ(ValueOf(mRecord.lengthMs), 1000u);
    EXPECT_EQ(ValueOf(mRecord.fileSize), 44u + 176400u);
    for (std::size_t i = sizeof format; i < sizeof mRecord.format; ++i) EXPECT_EQ(mRecord.format[i], 0);

    ASSERT_TRUE(
        Open(Riff(Chunk("fmt ", Head(1, 1, 0xFFFFFFFF, 1, 8)) + Chunk("data", "1234")), QV_OPEN_PROPERTIES));
    EXPECT_EQ(ValueOf(mRecord.property), 0x7FFFFFFF);  // the most that the field holds
}

TEST_F(WaveRows, No_kind_of_reading_takes_a_bad_file) {
    for (const std::uint32_t request : {QV_OPEN_PROPERTIES, QV_OPEN_TAGS, QV_OPEN_PROPERTY_ROWS}) {
        EXPECT_FALSE(Open("RIFF", request));
        EXPECT_EQ(mModules.Log().TakeErrors(), mPath + u": it is no WAVE file\r\n");
    }
    EXPECT_FALSE(Open(Riff(kAudio), 2));
    EXPECT_EQ(mModules.Log().TakeErrors(), mPath + u": opened for something that is not known\r\n");
}

TEST_F(WaveRows, Reading_about_a_file_while_it_is_decoded_is_possible) {
    ASSERT_TRUE(Open(Riff(kAudio), QV_OPEN_DECODING));
    clQvDecoder other;
    ASSERT_TRUE(other.Load(TreeModule(u"decoder", u"Wave").c_str()));
    ASSERT_TRUE(other.Create(mModules.Log().Log()));
    clOpenFileRec record{};
    record.file = ToQvText(mPath.c_str());
    record.request = QV_OPEN_PROPERTIES;
    EXPECT_TRUE(other.Open(&record));
    std::string audio;
    while (mModules.DecodeBlock(audio)) {
    }
    EXPECT_EQ(audio.size(), 176400u);
}

TEST_F(WaveRows, Types_are_listed_until_the_first_row_that_does_not_exist) {
    clQvDecoder& decoder = mModules.Decoder();
    ASSERT_TRUE(decoder.Create(mModules.Log().Log()));
    const char16_t* const extensions[] = {u".wav", u".wave", u".rf64", u".bwf"};
    for (std::uint32_t i = 0; i < 4; ++i) {
        clCodecQueryRec query{};
        query.index = i;
        ASSERT_TRUE(decoder.Get(u"Decodes", &query));
        EXPECT_TRUE(XString(extensions[i]) == FromQvText(query.text));
        EXPECT_NE(ValueOf(query.description), nullptr);
    }
    for (const std::uint32_t index : {4u, 5u, 0xFFFFFFFFu}) {
        clCodecQueryRec query{};
        query.index = index;
        EXPECT_FALSE(decoder.Get(u"Decodes", &query));
        EXPECT_EQ(ValueOf(query.text), nullptr);
    }
    clCodecQueryRec query{};
    EXPECT_FALSE(decoder.Get(u"Extension", &query));
    EXPECT_FALSE(decoder.Set(u"Decodes", &query));
}
