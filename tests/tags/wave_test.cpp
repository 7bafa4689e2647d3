// The two places that a WAVE file has for text.
#include "tags/tag_files.h"
#include "wave/wave_bytes.h"

using namespace wave_bytes;

namespace {

class WaveTags : public TagTest {
  protected:
    void PutTagged(const std::string& before, const std::string& behind) {
        mFolder.Write(mWave.name, Riff(before + mAudio + behind));
    }
    bool Has(const std::string& text) const { return Bytes(mWave).find(text) != std::string::npos; }

    const Sound& mWave = SoundOf(TagContainer::wave);
    const std::string mAudio = mWave.bytes.substr(12);
    const NoFlush mQuick;
};

std::string Info(const std::string& fields) {
    return Chunk("LIST", "INFO" + fields);
}

TEST_F(WaveTags, What_is_written_stands_in_both) {
    PutTagged("", "");
    ASSERT_TRUE(Write(mWave, {{u"TITLE", u"Song", ""},
                              {u"ARTIST", u"A", ""},
                              {u"ARTIST", u"B", ""},
                              {u"TRACKNUMBER", u"3", ""},
                              {u"TRACKTOTAL", u"12", ""},
                              {u"MINE", u"own", ""}}));
    EXPECT_TRUE(Has("INAM") && Has("IART") && Has("A; B") && Has("TIT2") && Has("3/12"));
    EXPECT_EQ(Read(mWave).size(), 6u);
    ASSERT_TRUE(Delete(mWave, u"artist"));
    EXPECT_FALSE(Has("IART") || Has("TPE1"));
    ASSERT_TRUE(Delete(mWave, u""));
    EXPECT_TRUE(Bytes(mWave) == mWave.bytes);
}

TEST_F(WaveTags, Fields_that_are_not_changed_keep_their_text) {
    PutTagged(Info(Chunk("INAM", "B\xFCrger") + Chunk("IXYZ", "un\xE9known")) +
                  Chunk("bext", std::string(602, 'b')),
              Info(Chunk("IGNR", "Jazz") + Chunk("IPRT", "4")) + Chunk("cue ", "none"));
    ASSERT_EQ(Read(mWave),
              (Rows{{u"GENRE", u"Jazz", ""}, {u"TITLE", u"B\u00FCrger", ""}, {u"TRACKNUMBER", u"4", ""}}));
    ASSERT_TRUE(Write(mWave, {{u"ALBUM", u"New", ""}, {u"TRACKTOTAL", u"9", ""}}));
    EXPECT_TRUE(Has("un\xC3\xA9known") && Has("bext") && Has("cue "));
    EXPECT_FALSE(Has("IPRT"));  // said by ITRK now
    EXPECT_EQ(Read(mWave), (Rows{{u"ALBUM", u"New", ""},
                                 {u"GENRE", u"Jazz", ""},
                                 {u"TITLE", u"B\u00FCrger", ""},
                                 {u"TRACKNUMBER", u"4", ""},
                                 {u"TRACKTOTAL", u"9", ""}}));
    EXPECT_TRUE(Has(mWave.bytes.substr(44)));
    EXPECT_EQ(mLog.TakeErrors(), u"");
}

TEST_F(WaveTags, RF64_is_read_and_not_changed) {
    const std::string info = Info(Chunk("INAM", "Song"));
    for (const std::string& bytes :
         {Riff64("RF64", 2000, info + mAudio), Riff64("RF64", 2000, mAudio + info)}) {
        mFolder.Write(mWave.name, bytes);
        EXPECT_EQ(Read(mWave), (Rows{{u"TITLE", u"Song", ""}}));
        EXPECT_FALSE(Write(mWave, {{u"TITLE", u"New", ""}}));
        EXPECT_NE(mLog.TakeErrors().find(u"those of RF64 files are only read"), std::u16string::npos);
        EXPECT_TRUE(Bytes(mWave) == bytes);
    }
}

TEST_F(WaveTags, A_file_whose_audio_is_cut_or_of_open_length_is_not_changed) {
    const std::string format = mAudio.substr(0, 24), audio = mAudio.substr(32);
    for (const std::uint32_t claimed : {0xFFFFFFFFu, 5000u}) {
        mFolder.Write(mWave.name, Riff(format + Claiming("data", claimed, audio)));
        const std::string before = Bytes(mWave);
        EXPECT_FALSE(Write(mWave, {{u"TITLE", u"New", ""}}));
        EXPECT_NE(mLog.TakeErrors().find(u"it is damaged"), std::u16string::npos);
        EXPECT_TRUE(Bytes(mWave) == before);
    }
}

}  // namespace
