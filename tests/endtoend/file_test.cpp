// What the library says of a real file and does to its tags, by the module that came with it.
#include "endtoend/recordings.h"
#include "endtoend/stage.h"

namespace {

const QvChar* In(const char16_t* text) {
    return reinterpret_cast<const QvChar*>(text);
}
QvChar* Out(char16_t* buffer) {
    return reinterpret_cast<QvChar*>(buffer);
}

using Rows = std::vector<std::pair<std::u16string, std::u16string>>;

class FileOfAHost : public Stage {
  protected:
    void SetUp() override {
        Stage::SetUp();
        converter = library.QACCreate();
    }
    void TearDown() override {
        library.QACDestroy(converter);
        Stage::TearDown();
    }

    Rows PropertyRows() const {
        char16_t name[256], value[1024];
        Rows rows;
        while (library.QACReadAudioPropStrings(converter, In(file.c_str()),
                                               static_cast<std::int32_t>(rows.size()), Out(name),
                                               Out(value)) == QV_DONE)
            rows.emplace_back(name, value);
        return rows;
    }
    Rows Tags() const {
        char16_t name[256], value[1024];
        Rows rows;
        while (library.QACReadIDTag(converter, In(file.c_str()), static_cast<std::int32_t>(rows.size()),
                                    Out(name), Out(value), nullptr, nullptr) == QV_NO_ART)
            rows.emplace_back(name, value);
        return rows;
    }
    std::int32_t Write(const char16_t* name, const char16_t* value) const {
        return library.QACWriteIDTag(converter, In(file.c_str()), In(name), In(value), nullptr, nullptr);
    }

    QvConverter* converter = nullptr;
    const std::u16string file = files.Write(u"song.wav", Recording(176400));
};

}  // namespace

TEST_F(FileOfAHost, Has_its_numbers) {
    QvFormat format = {};
    std::uint64_t lengthMs = 0, size = 0;
    std::int64_t property = 99;
    EXPECT_EQ(
        library.QACReadAudioProperties(converter, In(file.c_str()), &format, &lengthMs, &size, &property),
        QV_DONE);
    EXPECT_EQ(+format.wFormatTag, QV_FORMAT_PCM);
    EXPECT_EQ(+format.nChannels, 2u);
    EXPECT_EQ(+format.nBlockAlign, 4u);
    EXPECT_EQ(lengthMs, std::uint64_t{176400} * 1000 / format.nAvgBytesPerSec);
    EXPECT_EQ(size, files.Read(u"song.wav").size());
}

TEST_F(FileOfAHost, Has_texts_to_show) {
    const Rows rows = PropertyRows();
    ASSERT_GT(rows.size(), 1u);
    EXPECT_EQ(rows[0], (Rows::value_type{u"Container", u"WAVE"}));
    for (const auto& [name, value] : rows) EXPECT_FALSE(name.empty() || value.empty());
}

TEST_F(FileOfAHost, Takes_tags_one_by_one_and_gives_them_back) {
    EXPECT_EQ(Tags(), Rows());
    EXPECT_EQ(Write(u"Title", u"One"), QV_DONE);
    EXPECT_EQ(Write(u"Artist", u"Somebody"), QV_DONE);
    EXPECT_EQ(Write(u"Title", u"Two"), QV_DONE);
    const Rows tags = Tags();
    EXPECT_EQ(tags.size(), 2u);
    for (const auto& [name, value] : tags) EXPECT_TRUE(value == u"Two" || value == u"Somebody");
    EXPECT_EQ(library.QACDeleteIDTag(converter, In(file.c_str()), In(u"Title")), QV_DONE);
    EXPECT_EQ(Tags().size(), 1u);
    EXPECT_EQ(library.QACDeleteIDTag(converter, In(file.c_str()), nullptr), QV_DONE);
    EXPECT_EQ(Tags(), Rows());
}

TEST_F(FileOfAHost, Keeps_its_audio_whatever_its_tags) {
    const std::u16string before = files.Write(u"before.wav", files.Read(u"song.wav"));
    EXPECT_EQ(Write(u"Title", u"One"), QV_DONE);
    EXPECT_TRUE(HaveSameAudio(before, file));
}
