// quaver where this system has what the other has not: devices, full disks, names that are no text.
#include <signal.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "endtoend/posix/terminal.h"
#include "endtoend/quaver_run.h"

namespace fs = std::filesystem;

namespace {

class QuaverOnPosix : public QuaverRun {
  protected:
    // A shell's command in which quaver takes the place of $0 and the source that of $1.
    int Shell(const std::string& command) const {
        const std::string line = "sh -c '" + command + "' '" + fs::path(Quaver::File()).string() + "' '" +
                                 fs::path(source).string() + "'";
        const int status = std::system(line.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    const std::u16string source = files.Write(u"in.wav", Recording(1 << 20));
};

}  // namespace

TEST_F(QuaverOnPosix, Never_puts_a_file_in_a_devices_place) {
    ASSERT_EQ(mkfifo(fs::path(files / u"fifo.wav").c_str(), 0600), 0);
    for (const std::u16string& device : {std::u16string(u"/dev/null"), files / u"fifo.wav"}) {
        ExpectNothingWritten({u"decode", u"-f", source, u"-o", device}, kRefused,
                             "no file that could be replaced");
        ExpectNothingWritten({u"convert", u"-f", u"-e", u"Wave", source, device}, kRefused,
                             "no file that could be replaced");
    }
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_TRUE(fs::is_fifo(fs::path(files / u"fifo.wav")));
}

TEST_F(QuaverOnPosix, Says_when_standard_output_takes_no_more) {
    for (const char* command :
         {"\"$0\" list", "\"$0\" list --json", "\"$0\" info \"$1\"", "\"$0\" tags --json \"$1\"",
          "\"$0\" decode \"$1\"", "\"$0\" decode --raw \"$1\""}) {
        EXPECT_EQ(Shell(std::string(command) + " >/dev/full 2>/dev/null"), int{kOutput}) << command;
    }
    EXPECT_EQ(Shell("\"$0\" info \"$1\" >&- 2>/dev/null"), int{kOutput});
}

TEST_F(QuaverOnPosix, Leaves_nothing_where_the_disk_takes_no_more) {
    files.Write(u"out.wav", "old");
    const std::string target = "-o \"" + fs::path(files / u"out.wav").string() + "\"";
    EXPECT_EQ(Shell("ulimit -f 1024; \"$0\" decode -q -f \"$1\" " + target + " 2>/dev/null"), int{kOutput});
    EXPECT_EQ(files.Read(u"out.wav"), "old");
    EXPECT_EQ(NamesIn(files.Path()), (std::set<std::u16string>{u"in.wav", u"out.wav"}));
    EXPECT_EQ(Shell("ulimit -f 4096; \"$0\" decode -q -f \"$1\" " + target), int{kDone});
    EXPECT_TRUE(HaveSameAudio(source, files / u"out.wav"));
}

// Two bytes that are no UTF-8 stand as lone surrogates in text, and JSON names them by their numbers.
TEST_F(QuaverOnPosix, Takes_a_name_that_is_no_text_and_tells_it_to_programs) {
    const fs::path folder = files.Path();
    const std::string name = "caf\xE9\xFF.wav";
    fs::rename(fs::path(source), folder / name);
    const std::u16string path = files.Path() + u"/caf\xDCE9\xDCFF.wav";
    Expect({u"info", path, u"--json"}, kDone);
    ExpectOutput("caf\\udce9\\udcff.wav\"");
    Expect({u"info", path}, kDone);
    ExpectOutput(name + "\n");
    Expect({u"decode", u"-q", path, u"-o", files.Path() + u"/\xDCF6.wav"}, kDone);
    EXPECT_TRUE(fs::exists(folder / "\xF6.wav"));
    // The folder of the test takes only names that are text away with it.
    fs::rename(folder / name, folder / "in.wav");
    fs::rename(folder / "\xF6.wav", folder / "out.wav");
    EXPECT_TRUE(files.Read(u"out.wav").ends_with(Recording(1 << 20).substr(44)));
}

TEST_F(QuaverOnPosix, Writes_no_audio_to_a_terminal) {
    QuaverOnTerminal quaver({u"decode", source}, 80);
    EXPECT_EQ(quaver.Finish(), int{kRefused});
    EXPECT_NE(quaver.Screen().find("Audio is not written to a terminal"), std::string::npos)
        << quaver.Screen();
}

TEST_F(QuaverOnPosix, Ends_a_decoding_that_is_interrupted_and_leaves_nothing) {
    WriteVastRecording(files / u"vast.wav", 3072u << 20);
    const std::set<std::u16string> before = NamesIn(files.Path());
    for (const int number : {SIGINT, SIGTERM}) {
        QuaverOnTerminal quaver({u"decode", files / u"vast.wav", u"-o", files / u"out.wav"}, 80);
        ASSERT_TRUE(Eventually([&] { return NamesIn(files.Path()) != before; }));
        quaver.Signal(number);
        EXPECT_EQ(quaver.Finish(), int{kCancelled});
        EXPECT_NE(quaver.Screen().find("Cancelled; nothing was written."), std::string::npos)
            << quaver.Screen();
        EXPECT_EQ(NamesIn(files.Path()), before);
    }
}
