// quaver in front of a person: the bar, and what Ctrl-C does.
#include "terminal.h"

#include <signal.h>

#include "endtoend/converters.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"

namespace {

constexpr const char* kCtrlC = "\x03";

enum Exit { kDone = 0, kCancelled = 4 };

class OnTerminal : public Stage {
  protected:
    OnTerminal() { WriteVastRecording(source, 3072u << 20); }

    // The whole of a small conversion, as the screen shows it.
    std::string ScreenOf(unsigned short columns) {
        WriteVastRecording(source, 64 << 20);
        QuaverOnTerminal quaver({u"convert", u"-f", source, destination}, columns);
        EXPECT_EQ(quaver.Finish(), kDone);
        EXPECT_TRUE(HaveSameAudio(source, destination));
        return quaver.Screen();
    }

    void ExpectCancelled(QuaverOnTerminal& quaver) {
        EXPECT_EQ(quaver.Finish(), kCancelled);
        EXPECT_NE(quaver.Screen().find("Cancelled; nothing was written."), std::string::npos)
            << quaver.Screen();
        EXPECT_TRUE(ConvertersOf(temporaries.Path()).empty());
        EXPECT_EQ(NamesIn(files.Path()), std::set<std::u16string>{u"vast.wav"});
    }

    const std::u16string source = files / u"vast.wav", destination = files / u"out.wav";
};

// The lines that were drawn one over the other.
std::vector<std::string> Lines(const std::string& screen) {
    std::vector<std::string> lines(1);
    for (const char unit : screen) {
        if (unit == '\r' || unit == '\n')
            lines.emplace_back();
        else
            lines.back() += unit;
    }
    return lines;
}

std::size_t Longest(const std::vector<std::string>& lines, std::string_view without) {
    std::size_t longest = 0;
    for (const std::string& line : lines) {
        if (!line.starts_with(without)) longest = std::max(longest, line.size());
    }
    return longest;
}

}  // namespace

TEST_F(OnTerminal, A_bar_shows_how_far_it_is) {
    const std::string screen = ScreenOf(100);
    EXPECT_NE(screen.find("\r[" + std::string(40, '=') + "] 100%"), std::string::npos) << screen;
    EXPECT_NE(screen.find(" MB/s  0:00 left"), std::string::npos) << screen;
    EXPECT_NE(screen.find("Converted '"), std::string::npos) << screen;
}

TEST_F(OnTerminal, A_terminal_that_does_not_know_its_width_gets_a_bar_too) {
    const std::string screen = ScreenOf(0);
    EXPECT_NE(screen.find("=] 100%"), std::string::npos) << screen;
    EXPECT_LT(Longest(Lines(screen), "Converted"), 80u);
}

TEST_F(OnTerminal, A_narrow_terminal_gets_figures_that_fit) {
    const std::string screen = ScreenOf(12);
    EXPECT_NE(screen.find("\r100%"), std::string::npos) << screen;
    EXPECT_EQ(screen.find('['), std::string::npos) << screen;
    EXPECT_LT(Longest(Lines(screen), "Converted"), 12u);
}

TEST_F(OnTerminal, Ctrl_C_cancels_and_leaves_nothing) {
    QuaverOnTerminal quaver({u"convert", source, destination}, 100);
    ASSERT_TRUE(quaver.ReadUntil("1%"));
    quaver.Type(kCtrlC);
    ExpectCancelled(quaver);
}

TEST_F(OnTerminal, A_request_to_end_cancels_and_leaves_nothing) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        QuaverOnTerminal quaver({u"convert", u"-f", source, destination}, 100);
        ASSERT_TRUE(quaver.ReadUntil("1%"));
        quaver.Signal(number);
        ExpectCancelled(quaver);
    }
}

// The converter is stopped meanwhile, so the first Ctrl-C can't have been what ended it.
TEST_F(OnTerminal, A_second_Ctrl_C_ends_it_at_once_and_its_converter_with_it) {
    QuaverOnTerminal quaver({u"convert", source, destination}, 100);
    ASSERT_TRUE(quaver.ReadUntil("1%"));
    const std::vector<int> converters = ConvertersOf(temporaries.Path());
    ASSERT_EQ(converters.size(), 1u);
    ASSERT_EQ(kill(converters[0], SIGSTOP), 0);
    EXPECT_TRUE(Eventually([&] {
        quaver.Type(kCtrlC);
        return quaver.HasEnded();
    }));
    EXPECT_EQ(quaver.Finish(), kCancelled);
    EXPECT_EQ(quaver.Screen().find("Cancelled"), std::string::npos);
    EXPECT_TRUE(Eventually([this] { return ConvertersOf(temporaries.Path()).empty(); }));
    EXPECT_FALSE(files.Has(u"out.wav"));
}
