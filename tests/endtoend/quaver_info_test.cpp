// quaver info: what files hold, for people and for programs.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "endtoend/quaver_run.h"
#include "wave/wave_bytes.h"

namespace fs = std::filesystem;
using namespace wave_bytes;

namespace {

using Json = nlohmann::json;

std::string Utf8(const std::u16string& text) {
    const std::u8string utf8 = fs::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}

class QuaverInfo : public QuaverRun {
  protected:
    Json Ask(const std::vector<std::u16string>& paths, Exit exit) {
        Arguments arguments = {u"info", u"--json"};
        arguments.insert(arguments.end(), paths.begin(), paths.end());
        Expect(arguments, exit);
        return Json::parse(output).at("files");
    }

    // A second of stereo.
    const std::u16string good = files.Write(u"good.wav", Recording(176400)), none = files / u"none.wav",
                         other = files.Write(u"text.txt", "text"), bad = files.Write(u"bad.wav", "RIFFbad");
};

}  // namespace

TEST_F(QuaverInfo, Shows_what_the_decoder_tells) {
    Expect({u"info", good}, kDone);
    EXPECT_TRUE(output.starts_with(Utf8(good) + "\n  ")) << output;
    ExpectOutput("  Container         WAVE\n");
    ExpectOutput("  Sample rate       44100 Hz\n");
    ExpectOutput("  Length            0:00:01.000\n");
    EXPECT_EQ(errors, "");
}

TEST_F(QuaverInfo, Tells_programs_numbers_and_rows) {
    const Json answers = Ask({good}, kDone);
    ASSERT_EQ(answers.size(), 1u);
    const Json format = {
        {"tag", 1},           {"channels", 2},      {"sampleRate", 44100}, {"bytesPerSecond", 176400},
        {"bytesPerFrame", 4}, {"bitsPerSample", 16}};
    EXPECT_EQ(answers[0]["file"], Utf8(good));
    EXPECT_EQ(answers[0]["format"], format);
    EXPECT_EQ(answers[0]["lengthMs"], 1000);
    EXPECT_EQ(answers[0]["fileSize"], fs::file_size(fs::path(good)));
    EXPECT_EQ(answers[0]["property"], 1411200);
    EXPECT_EQ(answers[0]["properties"][0], (Json{{"name", "Container"}, {"value", "WAVE"}}));
    EXPECT_FALSE(answers[0].contains("error"));
}

TEST_F(QuaverInfo, Tells_why_a_file_gives_no_answer) {
    Expect({u"info", none}, kFailed, "file does not exist '" + Utf8(none) + "'");
    Expect({u"info", other}, kFailed,
           "Failed to find decoder to read audio info from file '" + Utf8(other) + "'");
    Expect({u"info", bad}, kFailed, "Failed to read audio info from file '" + Utf8(bad) + "'");
    EXPECT_EQ(output, "");
    Expect({u"info", u""}, kFailed, "does not exist ''");
}

TEST_F(QuaverInfo, Goes_on_to_the_next_file_when_one_fails) {
    Expect({u"info", none, good, bad, good}, kSomeFailed, "does not exist");
    EXPECT_NE(errors.find("bad.wav"), std::string::npos) << errors;
    EXPECT_NE(output.find("good.wav\n"), output.rfind("good.wav\n")) << output;
    Expect({u"info", none, bad}, kFailed, "does not exist");

    const Json answers = Ask({none, good, bad}, kSomeFailed);
    ASSERT_EQ(answers.size(), 3u);
    EXPECT_EQ(answers[0]["file"], Utf8(none));
    EXPECT_NE(answers[0]["error"].get<std::string>().find("does not exist"), std::string::npos);
    EXPECT_FALSE(answers[0].contains("format"));
    EXPECT_EQ(answers[1]["lengthMs"], 1000);
    EXPECT_TRUE(answers[2].contains("error"));
}

// What the decoder tells of one file is never shown for another.
TEST_F(QuaverInfo, Keeps_files_apart) {
    const std::u16string mono = files.Write(
        u"mono.wav", Riff(Chunk("fmt ", Head(QV_FORMAT_PCM, 1, 8000, 1, 8)) + Chunk("data", Noise(4000))));
    const Json answers = Ask({good, mono, bad, good}, kSomeFailed);
    ASSERT_EQ(answers.size(), 4u);
    EXPECT_EQ(answers[1]["format"]["channels"], 1);
    EXPECT_EQ(answers[1]["format"]["bitsPerSample"], 8);
    EXPECT_EQ(answers[1]["lengthMs"], 500);
    EXPECT_FALSE(answers[2].contains("properties"));
    EXPECT_EQ(answers[3], answers[0]);
}

TEST_F(QuaverInfo, Takes_names_of_all_kinds) {
    const char16_t* const names[] = {u"two words.wav",  u"it's 100%.wav", u"-leading.wav",
                                     u"a=b;c,d[e].wav", u"list",          u"Größe \U0001F3B5 日本.wav",
                                     u"..dots...wav",   u"{curly}.WAV"};
    for (const std::u16string name : names) {
        const std::u16string path = files.Write(name, Recording(17640));
        // Without an extension there is no decoder, but the name is a name.
        const bool known = name.find(u'.') != std::u16string::npos;
        const Json answer = Ask({path}, known ? kDone : kFailed).at(0);
        EXPECT_EQ(answer["file"], Utf8(path));
        EXPECT_EQ(answer.value("lengthMs", 0), known ? 100 : 0) << answer;
    }
}

TEST_F(QuaverInfo, Takes_a_command_for_a_file_behind_a_command) {
    Expect({u"info", u"list"}, kFailed, "does not exist 'list'");
    Expect({u"info", u"--", u"--json"}, kFailed, "does not exist '--json'");
}
