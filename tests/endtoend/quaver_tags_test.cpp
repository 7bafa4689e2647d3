// quaver tags: shown, set, deleted and carried along, in files of every kind that a build can write.
#include <nlohmann/json.hpp>
#include <sstream>

#include "endtoend/quaver_run.h"

namespace {

using Json = nlohmann::json;

// Each is enough of a picture to be known as one.
const std::string kPng = std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16) + std::string(2000, 'p'),
                  kJpeg = "\xFF\xD8\xFF\xE0" + std::string(500, 'j');

std::vector<std::string> Extensions() {
    std::istringstream all(QV_EXTENSIONS);
    return {std::istream_iterator<std::string>(all), {}};
}

class QuaverTags : public QuaverRun, public testing::WithParamInterface<std::string> {
  protected:
    void SetUp() override {
        QuaverRun::SetUp();
        song = files / (u"song." + std::u16string(GetParam().begin(), GetParam().end()));
        Expect({u"convert", u"-q", u"--no-tags", files.Write(u"source.wav", Recording(176400)), song}, kDone);
        ASSERT_TRUE(Values("TITLE").empty());
    }

    void Change(Arguments arguments) {
        arguments.insert(arguments.begin(), {u"tags", song});
        Expect(arguments, kDone, "Changed the tags of '");
        EXPECT_EQ(output, "");
    }

    Json Ask() {
        Expect({u"tags", u"--json", song}, kDone);
        return Json::parse(output).at("files").at(0);
    }
    std::vector<std::string> Values(const std::string& name) {
        std::vector<std::string> values;
        const Json answer = Ask();
        for (const Json& row : answer.at("tags")) {
            if (row.at("name") == name) values.push_back(row.at("value"));
        }
        return values;
    }

    std::u16string song;
};

using Texts = std::vector<std::string>;

}  // namespace

TEST_P(QuaverTags, Are_set_and_shown) {
    Change({u"--set", u"TITLE=A = B", u"-s", u"ARTIST=Größe \U0001F3B5"});
    EXPECT_EQ(Values("TITLE"), Texts{"A = B"});
    EXPECT_EQ(Values("ARTIST"), Texts{reinterpret_cast<const char*>(u8"Größe \U0001F3B5")});
    Expect({u"tags", song}, kDone);
    ExpectOutput("\n  TITLE=A = B\n");
}

TEST_P(QuaverTags, Are_replaced_name_by_name) {
    Change({u"-s", u"TITLE=one", u"-s", u"ARTIST=nobody"});
    Change({u"-s", u"title=two"});
    EXPECT_EQ(Values("TITLE"), Texts{"two"});
    EXPECT_EQ(Values("ARTIST"), Texts{"nobody"});
}

TEST_P(QuaverTags, Have_several_values_when_a_name_comes_several_times) {
    Change({u"-s", u"ARTIST=A", u"-s", u"TITLE=t", u"-s", u"Artist=B", u"-s", u"ARTIST=C"});
    EXPECT_EQ(Values("ARTIST"), (Texts{"A", "B", "C"}));
    EXPECT_EQ(Values("TITLE"), Texts{"t"});
}

TEST_P(QuaverTags, Are_deleted_by_name_or_all_at_once) {
    Change({u"-s", u"TITLE=t", u"-s", u"ARTIST=a", u"-s", u"ALBUM=b"});
    Change({u"--delete", u"title", u"-d", u"ALBUM"});
    EXPECT_TRUE(Values("TITLE").empty());
    EXPECT_TRUE(Values("ALBUM").empty());
    EXPECT_EQ(Values("ARTIST"), Texts{"a"});
    Change({u"--delete-all", u"-s", u"GENRE=g"});
    EXPECT_TRUE(Values("ARTIST").empty());
    EXPECT_EQ(Values("GENRE"), Texts{"g"});
}

TEST_P(QuaverTags, Hold_pictures_of_several_kinds) {
    files.Write(u"a=b.png", kPng);
    Change({u"--art-in", files / u"a=b.png", u"--art-in", u"Back Cover=" + files.Write(u"back.jpg", kJpeg)});
    const Json art = Ask().at("art");
    ASSERT_EQ(art.size(), 2u) << art;
    EXPECT_EQ(
        art[0],
        (Json{{"name", "PICTURE"}, {"description", ""}, {"bytes", kPng.size()}, {"type", "image/png"}}));
    EXPECT_EQ(art[1]["name"], "PICTURE:Back Cover");
    EXPECT_EQ(art[1]["type"], "image/jpeg");

    Expect({u"tags", song, u"--art-out", files / u"out.png"}, kDone, "Wrote '");
    Expect({u"tags", u"--art-out", files / u"out.jpg", u"back cover", song}, kDone, "Wrote '");
    EXPECT_EQ(files.Read(u"out.png"), kPng);
    EXPECT_EQ(files.Read(u"out.jpg"), kJpeg);
    ExpectNothingWritten({u"tags", song, u"--art-out", files / u"no.png", u"Artist"}, kFailed,
                         "has no picture");
    ExpectNothingWritten({u"tags", song, u"--art-out", files / u"out.png"}, kRefused,
                         "--overwrite replaces it");
    Expect({u"tags", u"-f", song, u"--art-out", files / u"out.png", u"Back Cover"}, kDone);
    EXPECT_EQ(files.Read(u"out.png"), kJpeg);
}

TEST_P(QuaverTags, Say_what_is_too_large_to_be_shown) {
    const std::u16string large = files.Write(u"large.jpg", kJpeg + std::string(1200000, 'l'));
    Change({u"-s", u"TITLE=t", u"--art-in", large});
    EXPECT_EQ(Values("TITLE"), Texts{"t"});
    EXPECT_TRUE(Ask().at("art").empty());
    Expect({u"tags", song}, kDone, "PICTURE of 1200504 bytes is left out");
    Expect({u"tags", u"-q", song}, kDone);
    EXPECT_EQ(errors, "");
}

TEST_P(QuaverTags, Leave_the_audio_as_it_is) {
    Expect({u"decode", u"--raw", song}, kDone);
    const std::string audio = output;
    Change({u"-s", u"TITLE=t", u"--art-in", files.Write(u"front.png", kPng)});
    Expect({u"decode", u"--raw", song}, kDone);
    EXPECT_TRUE(output == audio);
    EXPECT_FALSE(audio.empty());
}

TEST_P(QuaverTags, Go_along_with_a_conversion_unless_told) {
    Change({u"-s", u"TITLE=t", u"-s", u"ARTIST=a"});
    const std::u16string origin = song;
    song = files / u"copy.wav";
    Expect({u"convert", u"-q", origin, song, u"--tag", u"ALBUM=b"}, kDone);
    EXPECT_EQ(Values("TITLE"), Texts{"t"});
    EXPECT_EQ(Values("ALBUM"), Texts{"b"});
    Expect({u"convert", u"-q", u"-f", u"--no-tags", origin, song, u"-t", u"ALBUM=c"}, kDone);
    EXPECT_TRUE(Values("TITLE").empty());
    EXPECT_EQ(Values("ALBUM"), Texts{"c"});
}

INSTANTIATE_TEST_SUITE_P(Of, QuaverTags, testing::ValuesIn(Extensions()),
                         [](const auto& row) { return row.param; });

namespace {

class QuaverTagsOfFiles : public QuaverRun {
  protected:
    const std::u16string first = files.Write(u"first.wav", Recording(1000)),
                         second = files.Write(u"-second.wav", Recording(1000, 1)), none = files / u"none.wav";
};

}  // namespace

TEST_F(QuaverTagsOfFiles, Are_none_at_first) {
    Expect({u"tags", first}, kDone);
    ExpectOutput("first.wav\n  no tags\n");
    EXPECT_EQ(errors, "");
}

TEST_F(QuaverTagsOfFiles, Are_changed_in_all_that_can_be) {
    Expect({u"tags", first, none, second, u"-s", u"ALBUM=both"}, kSomeFailed, "does not exist");
    Expect({u"tags", u"--json", first, second, none}, kSomeFailed, "does not exist");
    const Json answers = Json::parse(output).at("files");
    const Json album = Json::array({{{"name", "ALBUM"}, {"value", "both"}}});
    EXPECT_EQ(answers[0]["tags"], album);
    EXPECT_EQ(answers[1]["tags"], album);
    EXPECT_TRUE(answers[2].contains("error"));
    EXPECT_FALSE(answers[2].contains("tags"));
    Expect({u"tags", none, none, u"-s", u"ALBUM=both"}, kFailed, "does not exist");
}

TEST_F(QuaverTagsOfFiles, Are_shown_after_a_change_when_programs_ask) {
    Expect({u"tags", first, u"-s", u"TITLE=t", u"--json"}, kDone);
    EXPECT_EQ(Json::parse(output)["files"][0]["tags"][0]["value"], "t");
}

TEST_F(QuaverTagsOfFiles, Are_not_touched_when_a_picture_can_not_be_had) {
    const std::string before = files.Read(u"first.wav");
    for (const std::u16string& picture : {none, files.Write(u"empty.png"), files.MakeFolder(u"folder")}) {
        ExpectNothingWritten({u"tags", first, u"-s", u"TITLE=t", u"--art-in", picture}, kRefused,
                             "The picture '");
    }
    EXPECT_EQ(files.Read(u"first.wav"), before);
}

TEST_F(QuaverTagsOfFiles, Write_out_one_picture_of_one_file) {
    ExpectNothingWritten({u"tags", first, u"--art-out", files / u"x.png", u"-s", u"TITLE=t"}, kRefused,
                         "stands alone");
    ExpectNothingWritten({u"tags", first, second, u"--art-out", files / u"x.png"}, kRefused, "of one file");
    ExpectNothingWritten({u"tags", first, u"--art-out", first, u"-f"}, kRefused, "are the same file");
    ExpectNothingWritten({u"tags", first, u"--art-out", files / u"x.png"}, kFailed,
                         "has no picture 'PICTURE'");
    ExpectNothingWritten({u"tags", none, u"--art-out", files / u"x.png"}, kFailed, "does not exist");
}
