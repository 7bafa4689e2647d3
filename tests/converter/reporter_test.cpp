// What goes to the host is lines, whatever they are about.
#include "converter/reporter.h"

#include <gtest/gtest.h>

#include "converter/streams.h"

namespace {

TEST(Reporter, Sends_lines_to_both_streams) {
    StandardStreams streams;
    Reporter reporter;
    reporter.Error(u"trouble");
    reporter.Information(u"news");
    EXPECT_EQ(streams.Errors(), u"trouble\r\n");
    EXPECT_EQ(streams.Output(), u"news\r\n");
}

TEST(Reporter, A_percentage_is_sent_when_it_has_risen) {
    StandardStreams streams;
    Reporter reporter;
    for (const int percent : {0, 0, 5, 4, 5, 100}) reporter.Percent(percent);
    EXPECT_EQ(streams.Output(),
              u"MSGTO: qMC: PCDone: 0\r\nMSGTO: qMC: PCDone: 5\r\nMSGTO: qMC: PCDone: 100\r\n");
}

TEST(Reporter, A_line_end_within_a_text_makes_no_second_line) {
    StandardStreams streams;
    Reporter reporter;
    reporter.Action(u"Converting", u"a\r\nMSGTO: qMC: PCDone: 100\r\n.wav", u"b\nc");
    reporter.Error(u"no \r\n file");
    EXPECT_EQ(streams.Output(),
              u"MSGTO: qMC: ActionInput: a  MSGTO: qMC: PCDone: 100  .wav\r\n"
              u"MSGTO: qMC: ActionOutput: b c\r\nMSGTO: qMC: Action: Converting\r\n");
    EXPECT_EQ(streams.Errors(), u"no    file\r\n");
}

}  // namespace
