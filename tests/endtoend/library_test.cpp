// The library as a host meets it: loaded from its file, called by name.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "endtoend/library.h"
#include "endtoend/stage.h"
#include "support/handle_gauge.h"

namespace {

const QvChar* In(const char16_t* text) {
    return reinterpret_cast<const QvChar*>(text);
}
QvChar* Out(char16_t* buffer) {
    return reinterpret_cast<QvChar*>(buffer);
}

class BuiltLibrary : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(library.IsLoaded()); }

    Library library;
};

}  // namespace

TEST_F(BuiltLibrary, Has_every_export_under_its_plain_name) {
#define QV_EXPECT(name) EXPECT_NE(library.name, nullptr) << #name;
    QV_EXPORTS(QV_EXPECT)
#undef QV_EXPECT
    EXPECT_EQ(library.Entry("XLog"), nullptr);
}

TEST_F(BuiltLibrary, Refuses_a_null_handle_everywhere_and_writes_nothing) {
    char16_t first[] = u"#1", second[] = u"#2";
    const QvChar* const text = In(u"text");
    std::uint32_t percent = 77;
    const std::pair<const char*, std::int32_t> results[] = {
        {"QACGetLastError", library.QACGetLastError(nullptr, Out(first))},
        {"QACGetLastInfo", library.QACGetLastInfo(nullptr, Out(first))},
        {"QACReadAudioProperties",
         library.QACReadAudioProperties(nullptr, text, nullptr, nullptr, nullptr, nullptr)},
        {"QACReadAudioPropStrings",
         library.QACReadAudioPropStrings(nullptr, text, 0, Out(first), Out(second))},
        {"QACReadIDTag", library.QACReadIDTag(nullptr, text, 0, Out(first), Out(second), nullptr, nullptr)},
        {"QACWriteIDTag", library.QACWriteIDTag(nullptr, text, text, text, nullptr, nullptr)},
        {"QACDeleteIDTag", library.QACDeleteIDTag(nullptr, text, text)},
        {"QACAddIDTagToList", library.QACAddIDTagToList(nullptr, text, text)},
        {"QACClearIDTagList", library.QACClearIDTagList(nullptr)},
        {"QACReadIDTagList", library.QACReadIDTagList(nullptr, 0, Out(first), Out(second))},
        {"QACRemoveFromIDTagList", library.QACRemoveFromIDTagList(nullptr, 0)},
        {"QACSetTagWriteThrough", library.QACSetTagWriteThrough(nullptr, 1)},
        {"QACAddDSPToList", library.QACAddDSPToList(nullptr, text, text)},
        {"QACClearDSPList", library.QACClearDSPList(nullptr)},
        {"QACReadDSPList", library.QACReadDSPList(nullptr, 0, Out(first), Out(second))},
        {"QACRemoveFromDSPList", library.QACRemoveFromDSPList(nullptr, 0)},
        {"QACConvertAudio", library.QACConvertAudio(nullptr, text, text, text, text)},
        {"QACGetProgress", library.QACGetProgress(nullptr, &percent)},
        {"QACSetPriority", library.QACSetPriority(nullptr, QV_PRIORITY_LOW)},
        {"QACSetPause", library.QACSetPause(nullptr, 1)},
        {"QACSetCancelled", library.QACSetCancelled(nullptr)},
        {"QACSetCPU", library.QACSetCPU(nullptr, 1)},
        {"QACShowSettings", library.QACShowSettings(nullptr, text, text, Out(first), Out(second))},
        {"QACShowSettingsOnForm", library.QACShowSettingsOnForm(nullptr, text, text, 1, 2, 3)},
        {"QACRemoveSettings", library.QACRemoveSettings(nullptr, 1, Out(first))},
        {"QACShowDSPSettings", library.QACShowDSPSettings(nullptr, text, text, Out(first), Out(second))},
        {"QADOpenFile", library.QADOpenFile(nullptr, text, nullptr, nullptr)},
        {"QADDecodeBlock", library.QADDecodeBlock(nullptr, nullptr, &percent, &percent, nullptr)},
        {"QADSetPosition", library.QADSetPosition(nullptr, 1)},
        {"QADCloseFile", library.QADCloseFile(nullptr)},
        {"QAEOpenFile", library.QAEOpenFile(nullptr, text, text, text, nullptr)},
        {"QAEEncodeBlock", library.QAEEncodeBlock(nullptr, nullptr, &percent, &percent)},
        {"QAECloseFile", library.QAECloseFile(nullptr)},
    };
    for (const auto& [name, result] : results) EXPECT_EQ(result, QV_NOTHING) << name;
    EXPECT_EQ(std::u16string(first), u"#1");
    EXPECT_EQ(std::u16string(second), u"#2");
    EXPECT_EQ(percent, 77u);
    EXPECT_EQ(library.QACDestroy(nullptr), QV_DONE);
}

TEST_F(BuiltLibrary, Creates_and_destroys_without_leaving_anything) {
    library.QACDestroy(library.QACCreate());
    const HandleGauge before;
    std::vector<QvConverter*> converters;
    for (int number = 0; number < 20; ++number) converters.push_back(library.QACCreate());
    for (QvConverter* converter : converters) {
        EXPECT_NE(converter, nullptr);
        EXPECT_EQ(library.QACDestroy(converter), QV_DONE);
    }
    EXPECT_EQ(HandleGauge(), before);
}

TEST_F(BuiltLibrary, Keeps_lists_and_reports_through_the_systems_timer) {
    QvConverter* const converter = library.QACCreate();
    EXPECT_EQ(library.QACAddIDTagToList(converter, In(u"Title"), In(u"Song")), QV_DONE);
    EXPECT_EQ(library.QACAddDSPToList(converter, In(u"Echo"), In(u"delay=1")), QV_DONE);
    char16_t first[16] = {}, second[16] = {};
    EXPECT_EQ(library.QACReadIDTagList(converter, 0, Out(first), Out(second)), QV_DONE);
    EXPECT_EQ(std::u16string(first) + second, u"TitleSong");
    EXPECT_EQ(library.QACReadDSPList(converter, 0, Out(first), Out(second)), QV_DONE);
    EXPECT_EQ(std::u16string(first) + second, u"Echodelay=1");
    EXPECT_EQ(library.QACSetPriority(converter, 4), QV_NOTHING);

    library.QACConvertAudio(converter, In(u"no such file.wav"), In(u"nowhere"), In(u"None"), In(u""));
    std::vector<char16_t> text(1 << 20);
    ASSERT_TRUE(Eventually([&] { return library.QACGetLastInfo(converter, Out(text.data())) == QV_DONE; }));
    EXPECT_TRUE(
        std::u16string(text.data()).starts_with(u"Converting 'no such file.wav' to 'nowhere' [None]\r\n"));
    library.QACSetCancelled(converter);
    EXPECT_TRUE(Eventually([&] {
        std::uint32_t percent = 0;
        return library.QACGetProgress(converter, &percent) == QV_DONE && percent == 100;
    }));
    EXPECT_EQ(library.QACDestroy(converter), QV_DONE);
}

TEST(BuiltLibraryAgain, Can_be_unloaded_and_loaded_again) {
    for (int round = 0; round < 3; ++round) {
        const Library library;
        ASSERT_TRUE(library.IsLoaded());
        EXPECT_EQ(library.QACDestroy(library.QACCreate()), QV_DONE);
    }
}
