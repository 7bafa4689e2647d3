// Tags that are damaged in every way: reading them ends, and a change either succeeds with the audio as it was
// or leaves the file alone.
#include <algorithm>
#include <random>

#include "tags/tag_files.h"

namespace {

const Rows kRows = {{u"ALBUM", u"An album of some length", ""},
                    {u"ARTIST", u"One", ""},
                    {u"ARTIST", u"Other", ""},
                    {u"COMMENT", u"remark", ""},
                    {u"LYRICS", u"la", ""},
                    {u"PERFORMER:HARP", u"Ann", ""},
                    {u"PICTURE", u"front", "\xFF\xD8\xFF" + std::string(300, 'p')},
                    {u"TITLE", u"A song", ""},
                    {u"TRACKNUMBER", u"3", ""},
                    {u"URL", u"http://x", ""}};

class Damage : public TagTest {
  protected:
    std::string Tagged(const Sound& sound) {
        Put(sound);
        EXPECT_TRUE(Write(sound, kRows));
        return Bytes(sound);
    }

    // Neither may crash, and what they say of success must hold.
    void Try(const Sound& sound, const std::string& damaged, const std::string& what) {
        const std::u16string path = mFolder.Write(sound.name, damaged);
        clIDTagList list;
        const bool isRead = ReadFileTags(sound.container, path.c_str(), list, Log());
        EXPECT_EQ(isRead, mLog.TakeErrors().empty()) << what;
        const bool isWritten = Write(sound, {{u"TITLE", u"changed", ""}});
        const std::u16string errors = mLog.TakeErrors();
        EXPECT_EQ(isWritten, errors.empty()) << what;
        if (!isWritten) {
            EXPECT_TRUE(Bytes(sound) == damaged) << what;
            return;
        }
        const Rows rows = Read(sound);
        const bool hasTitle = std::ranges::find(rows, Row{u"TITLE", u"changed", ""}) != rows.end();
        EXPECT_TRUE(hasTitle) << what;
        ++mWritten;
    }

    const NoFlush mQuick;
    int mWritten = 0;
};

// Of the audio as a test finds it: damage may have hit what a test looks for.
bool HoldsAudio(const Sound& sound, const std::string& file) {
    const std::string& bytes = sound.bytes;
    return file.find(bytes.substr(bytes.size() - 600)) != std::string::npos;
}

TEST_F(Damage, Flipped_bits) {
    for (const Sound& sound : Sounds()) {
        const std::string whole = Tagged(sound);
        std::mt19937 random(11);
        mWritten = 0;
        for (int round = 0; round < 400; ++round) {
            std::string damaged = whole;
            std::vector<std::size_t> places;
            for (std::size_t flips = 1 + random() % 3; flips > 0; --flips) {
                places.push_back(random() % std::min<std::size_t>(whole.size(), 1500));
                damaged[places.back()] = static_cast<char>(damaged[places.back()] ^ 1 << random() % 8);
            }
            const bool heldAudio = HoldsAudio(sound, damaged);
            const std::string what = testing::PrintToString(sound.name) + testing::PrintToString(places);
            Try(sound, damaged, what);
            const bool isOgg =
                sound.container == TagContainer::oggVorbis || sound.container == TagContainer::oggOpus;
            EXPECT_TRUE(isOgg || HoldsAudio(sound, Bytes(sound)) == heldAudio) << what;
        }
        // Of headers in Ogg every bit counts for a check sum.
        EXPECT_EQ(mWritten > 20, sound.container != TagContainer::oggVorbis) << mWritten;
    }
}

TEST_F(Damage, Cuts) {
    for (const Sound& sound : Sounds()) {
        const std::string whole = Tagged(sound);
        for (std::size_t length = 0; length < whole.size(); length += length < 200 ? 1 : 37)
            Try(sound, whole.substr(0, length), testing::PrintToString(sound.name) + std::to_string(length));
    }
}

TEST_F(Damage, Pieces_taken_out_or_doubled) {
    for (const Sound& sound : Sounds()) {
        const std::string whole = Tagged(sound);
        std::mt19937 random(12);
        for (int round = 0; round < 150; ++round) {
            std::string damaged = whole;
            const std::size_t at = random() % whole.size(), length = 1 + random() % 40;
            if (round % 2 == 0)
                damaged.erase(at, length);
            else
                damaged.insert(at, whole.substr(random() % whole.size(), length));
            Try(sound, damaged, testing::PrintToString(sound.name) + std::to_string(at));
        }
    }
}

}  // namespace
