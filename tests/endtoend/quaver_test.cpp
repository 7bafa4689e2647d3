// quaver and its conversions as a user meets them: what it says, how it ends, and what it leaves on the disk.
#include <filesystem>

#include "endtoend/quaver_run.h"

namespace fs = std::filesystem;

namespace {

// The working folder, for the life of the object.
class CurrentFolder {
  public:
    explicit CurrentFolder(const std::u16string& folder) { fs::current_path(fs::path(folder)); }
    ~CurrentFolder() { fs::current_path(mFormer); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

  private:
    const fs::path mFormer = fs::current_path();
};

class QuaverConversion : public QuaverRun {
  protected:
    QuaverConversion() : source(files.Write(u"in.wav", Recording(400000))), destination(files / u"out.wav") {}

    // With the ordinary source and destination behind the options.
    void ExpectConverted(Arguments options, const std::string& words) {
        fs::remove(fs::path(destination));
        options.insert(options.begin(), u"convert");
        options.insert(options.end(), {source, destination});
        Expect(options, kDone, words);
        EXPECT_TRUE(HaveSameAudio(source, destination));
    }

    const std::u16string source, destination;
};

}  // namespace

TEST_F(QuaverConversion, Converts_and_says_so) {
    ExpectConverted({}, "Converted '");
    EXPECT_EQ(output, "");
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"in.wav", u"out.wav"}));
}

TEST_F(QuaverConversion, Writes_plain_lines_where_there_is_no_terminal) {
    ExpectConverted({}, " MB/s  0:00 left\n");
    EXPECT_NE(("\n" + errors).find("\n100%  "), std::string::npos) << errors;
    EXPECT_EQ(errors.find_first_of("\r["), std::string::npos) << errors;
}

TEST_F(QuaverConversion, Says_nothing_when_it_is_to_be_quiet) {
    ExpectConverted({u"--quiet"}, "");
    EXPECT_EQ(output + errors, "");
    Expect({u"convert", u"-q", source, files / u"out.unknown"}, kRefused, "No encoder is known");
}

TEST_F(QuaverConversion, Helps) {
    for (const char16_t* command : {u"convert", u"decode", u"info", u"list", u"settings", u"tags"}) {
        Expect({command, u"--help"}, kDone);
        ExpectOutput("Usage: quaver ");
        Expect({u"--help"}, kDone);
        ExpectOutput(fs::path(command).string());
    }
    Expect({u"--version"}, kDone, "");
    EXPECT_TRUE(output.starts_with("quaver " QV_VERSION)) << output;
}

TEST_F(QuaverConversion, Tells_a_command_line_that_it_does_not_understand) {
    const Arguments wrong[] = {{},
                               {u"transmogrify"},
                               {u"info"},
                               {u"tags"},
                               {u"decode"},
                               {u"list", u"all"},
                               {u"settings"},
                               {u"settings", u"Wave", u"--dsp", u"Fade"},
                               {u"settings", u"Wave", u"--set", u"a", u"--print"},
                               {u"settings", u"--dsp", u"Fade", u"--set", u"a"},
                               {u"decode", source, source},
                               {u"decode", source, u"--rate", u"0"},
                               {u"decode", source, u"--rate", u"fast"},
                               {u"decode", source, u"--channels", u"65536"},
                               {u"decode", source, u"--bits", u"12"},
                               {u"tags", source, u"--set", u"TITLE"},
                               {u"tags", source, u"--set", u"=x"},
                               {u"tags", source, u"--delete", u""},
                               {u"convert"},
                               {u"convert", source},
                               {u"convert", source, destination, u"third"},
                               {u"convert", source, destination, u"--rate", u"0"},
                               {u"convert", source, destination, u"--rate", u"48k"},
                               {u"convert", source, destination, u"--channels", u"0"},
                               {u"convert", source, destination, u"--bits", u"20"},
                               {u"convert", source, destination, u"--loud"},
                               {u"convert", source, destination, u"--encoder"}};
    for (const Arguments& arguments : wrong) {
        ExpectNothingWritten(arguments, kUsage, "");
        EXPECT_NE(errors, "");
    }
}

TEST_F(QuaverConversion, Replaces_a_destination_only_when_told) {
    files.Write(u"out.wav", "old");
    Expect({u"convert", source, destination}, kRefused, "exists; --overwrite replaces it");
    EXPECT_EQ(files.Read(u"out.wav"), "old");
    Expect({u"convert", source, destination, u"--overwrite"}, kDone, "Converted");
    EXPECT_TRUE(HaveSameAudio(source, destination));
    files.Write(u"out.wav", "old");
    Expect({u"convert", u"-f", source, destination}, kDone, "Converted");
    EXPECT_TRUE(HaveSameAudio(source, destination));
}

TEST_F(QuaverConversion, Refuses_a_destination_that_is_the_source) {
    const std::string content = files.Read(u"in.wav");
    fs::create_hard_link(fs::path(source), fs::path(files / u"link.wav"));
    for (const std::u16string& same : {source, files / u"./in.wav", files / u"link.wav"})
        ExpectNothingWritten({u"convert", u"-f", source, same}, kRefused,
                             "Source and destination are the same file");
    EXPECT_EQ(files.Read(u"in.wav"), content);
}

TEST_F(QuaverConversion, Refuses_what_it_can_not_begin) {
    ExpectNothingWritten({u"convert", files / u"none.wav", destination}, kRefused, "There is no file");
    ExpectNothingWritten({u"convert", source, files / u"out.xyz"}, kRefused, "No encoder is known for");
    ExpectNothingWritten({u"convert", source, files / u"out"}, kRefused, "name one with --encoder");
    ExpectNothingWritten({u"convert", files / u"a\"b.wav", destination}, kRefused, "double quote");
    ExpectNothingWritten({u"convert", source, files / u"a\"b.wav"}, kRefused, "double quote");
}

TEST_F(QuaverConversion, Takes_the_encoder_that_is_named) {
    Expect({u"convert", u"--encoder", u"Wave", source, files / u"out.xyz"}, kDone, "Converted");
    EXPECT_TRUE(HaveSameAudio(source, files / u"out.xyz"));
    ExpectNothingWritten({u"convert", u"-e", u"Wavelet", source, destination}, kFailed,
                         "There is no encoder 'Wavelet'");
}

// Also when only a decoder of the same name knows the extension.
TEST_F(QuaverConversion, Finds_the_encoder_by_the_extension_whatever_its_case) {
    for (const char16_t* name : {u"a.wav", u"b.WAV", u"c.wave", u"d.Rf64"}) {
        Expect({u"convert", source, files / name}, kDone, "Converted");
        EXPECT_TRUE(HaveSameAudio(source, files / name));
    }
}

TEST_F(QuaverConversion, Refuses_a_folder_in_the_destinations_place) {
    files.MakeFolder(u"folder.wav");
    ExpectNothingWritten({u"convert", u"-f", source, files / u"folder.wav"}, kRefused,
                         "no file that could be replaced");
}

TEST_F(QuaverConversion, Hands_settings_on) {
    ExpectConverted({u"--settings", u"-header=extensible"}, "Converted");
    fs::remove(fs::path(destination));
    for (const Arguments& settings : {Arguments{u"--settings", u"nonsense"}, {u"-s", u"-header=huge"}}) {
        Arguments arguments = {u"convert", source, destination};
        arguments.insert(arguments.end(), settings.begin(), settings.end());
        ExpectNothingWritten(arguments, kFailed, "The encoder refuses to write");
    }
}

// A quote travels to the converter as {qt}, so that is what {qt} means to it.
TEST_F(QuaverConversion, Hands_tags_on) {
    const std::pair<Arguments, std::string> rows[] = {
        {{u"--tag", u"Title=A \"quoted\" {qt} song"}, "A \"quoted\" \" song"},
        {{u"-t", u"Title=a=b", u"-t", u"Artist=", u"--tag", u"Größe=\U0001F3B5"}, "\xF0\x9F\x8E\xB5"},
        {{u"-t", u"Title=given", u"--no-tags"}, "given"}};
    for (const auto& [arguments, text] : rows) {
        ExpectConverted(arguments, "Converted");
        EXPECT_EQ(errors.find("No tags were written"), std::string::npos) << errors;
        EXPECT_NE(files.Read(u"out.wav").find(text), std::string::npos) << text;
    }
}

TEST_F(QuaverConversion, Tells_why_a_conversion_failed) {
    const std::u16string cut = files.Write(u"cut.wav", CutRecording(300000, 4000));
    ExpectNothingWritten({u"convert", cut, destination}, kFailed, "cut.wav");
    EXPECT_NE(errors.find("The conversion failed; nothing was written."), std::string::npos) << errors;
    EXPECT_EQ(errors.find("100%"), std::string::npos) << errors;
    ExpectNothingWritten({u"convert", u"--effect", u"Echo=1", source, destination}, kFailed,
                         "There is no effect 'Echo'");
    ExpectNothingWritten({u"convert", source, files / u"missing/out.wav"}, kFailed, "Can't write beside");
    files.Write(u"out.wav", "old");
    Expect({u"convert", u"-f", u"-q", cut, destination}, kFailed, "cut.wav");
    EXPECT_EQ(files.Read(u"out.wav"), "old");
}

TEST_F(QuaverConversion, Takes_names_that_begin_with_a_dash) {
    const CurrentFolder here(files.Path());
    files.Write(u"-in.wav", Recording(5000));
    Expect({u"convert", u"--", u"-in.wav", u"-f"}, kRefused, "No encoder is known for '-f'");
    Expect({u"convert", u"--", u"-in.wav", u"--out.wav"}, kDone, "Converted '-in.wav' to '--out.wav'");
    EXPECT_TRUE(HaveSameAudio(files / u"-in.wav", files / u"--out.wav"));
}

TEST_F(QuaverConversion, Takes_names_of_all_languages_and_shows_them) {
    const std::u16string from = files.Write(u"Grüße \U0001F3B5 日本.wav", Recording(5000)),
                         to = files / u"ответ ß.wav";
    Expect({u"convert", from, to}, kDone, reinterpret_cast<const char*>(u8"Grüße \U0001F3B5 日本.wav' to '"));
    EXPECT_NE(errors.find(reinterpret_cast<const char*>(u8"ответ ß.wav'\n")), std::string::npos) << errors;
    EXPECT_TRUE(HaveSameAudio(from, to));
}
