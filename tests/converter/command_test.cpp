// The command file's one order of switches, and everything that is refused.
#include "converter/command.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/names.h"

namespace {

const std::u16string kHead =
    u" -infile=\"in.wav\" -outfile=\"out.wav\" -convert_to=\"Wave\" -evtquit=\"quit\" -evtwatchdog=\"watch\"";

Command Parsed(const std::u16string& text) {
    CommandError error{};
    const std::optional<Command> command = ParseCommand(text, &error);
    EXPECT_TRUE(command.has_value()) << "refused at " << error.position;
    return command.value_or(Command{});
}

TEST(Command, Smallest_command_takes_every_default) {
    const Command command = Parsed(kHead + u" ");
    EXPECT_EQ(command.source, u"in.wav");
    EXPECT_EQ(command.destination, u"out.wav");
    EXPECT_EQ(command.encoder, u"Wave");
    EXPECT_EQ(command.cancelEvent, u"quit");
    EXPECT_EQ(command.watchdogEvent, u"watch");
    EXPECT_EQ(command.processor, -1);
    EXPECT_EQ(command.priority, 0u);
    EXPECT_TRUE(command.carryTags);
    EXPECT_TRUE(command.effects.empty());
    EXPECT_TRUE(command.tags.empty());
    EXPECT_EQ(command.settings, u"");
}

TEST(Command, All_switches_in_their_order) {
    const Command command =
        Parsed(kHead +
               u" -processor=\"3\" -priority=\"idle\" -dspeffect1=\"Volume=-6 dB\" "
               u"-dspeffect2=\"Fade=in=2\"  -noidtag -tag=\"Title=One=1\" -tag=\"=odd\" -q=5 -x");
    EXPECT_EQ(command.processor, 3);
    EXPECT_EQ(command.priority, 2u);
    ASSERT_EQ(command.effects.size(), 2u);
    EXPECT_EQ(command.effects[0].name, u"Volume");
    EXPECT_EQ(command.effects[0].value, u"-6 dB");
    EXPECT_EQ(command.effects[1].name, u"Fade");
    EXPECT_EQ(command.effects[1].value, u"in=2");
    EXPECT_FALSE(command.carryTags);
    ASSERT_EQ(command.tags.size(), 2u);
    EXPECT_EQ(command.tags[0].name, u"Title");
    EXPECT_EQ(command.tags[0].value, u"One=1");
    EXPECT_EQ(command.tags[1].name, u"");
    EXPECT_EQ(command.tags[1].value, u"odd");
    EXPECT_EQ(command.settings, u"-q=5 -x");
}

TEST(Command, Quote_marks_turn_back_in_tags_and_effects_only) {
    const Command command =
        Parsed(kHead + u" -dspeffect1=\"E={qt}a{qt}\"  -tag=\"{qt}n{qt}=say {qt}hi{qt} {qt\" {qt}settings");
    EXPECT_EQ(command.effects[0].value, u"\"a\"");
    EXPECT_EQ(command.tags[0].name, u"\"n\"");
    EXPECT_EQ(command.tags[0].value, u"say \"hi\" {qt");
    EXPECT_EQ(command.settings, u"{qt}settings");
}

TEST(Command, Processor_values) {
    const std::pair<const char16_t*, std::int64_t> rows[] = {{u"-1", -1}, {u"0", -1}, {u"1", 1}, {u"64", 64}};
    for (const auto& [text, processor] : rows) {
        EXPECT_EQ(Parsed(kHead + u" -processor=\"" + text + u"\" ").processor, processor);
    }
}

TEST(Command, Settings_may_hold_anything_but_begin_with_a_switch) {
    for (const char16_t* settings :
         {u"\"quoted\"", u"text -tag=\"x=y\"", u" two blanks first", u"-bits=\"16\""}) {
        EXPECT_EQ(Parsed(kHead + u" " + settings).settings, settings);
    }
}

TEST(Command, Slashes_in_paths_become_the_systems_separator) {
    const Command command = Parsed(
        u" -infile=\"a/b.wav\" -outfile=\"c/d.wav\" -convert_to=\"e/f\" -evtquit=\"q\" "
        u"-evtwatchdog=\"w\" g/h");
    EXPECT_EQ(command.source, std::u16string(u"a") + platform::kPathSeparator + u"b.wav");
    EXPECT_EQ(command.destination, std::u16string(u"c") + platform::kPathSeparator + u"d.wav");
    EXPECT_EQ(command.encoder, u"e/f");
    EXPECT_EQ(command.settings, u"g/h");
}

TEST(Command, Refusals_name_their_position) {
    const struct {
        std::u16string text;
        std::size_t position;
    } rows[] = {
        {u"", 1},
        {u"-infile=\"a\"", 1},
        {u" -outfile=\"a\"", 1},
        {u" -infile=\"a", 11},
        {u" -infile=a", 10},
        {u" -infile=\"a\" -infile=\"b\"", 13},
        {u" -infile=\"a\"  -outfile=\"b\"", 13},
        {kHead, kHead.size() + 1},
        {kHead + u"x", kHead.size() + 1},
        {kHead + u" -outfile=\"other\" ", kHead.size() + 2},
        {kHead + u" -priority=\"low\" -processor=\"1\" ", kHead.size() + 18},
        {kHead + u" -noidtag -noidtag ", kHead.size() + 11},
        {kHead + u" -tag=\"a=b\" -noidtag ", kHead.size() + 13},
        {kHead + u" -tag=\"a=b", kHead.size() + 8},
        {kHead + u" -dspeffect2=\"a=b\"  ", kHead.size() + 12},
        {kHead + u" -dspeffect1=\"a=b\" -dspeffect1=\"a=b\"  ", kHead.size() + 30},
        {kHead + u" -dspeffect1=\"a=b\"", kHead.size() + 19},
        {kHead + u" -processor=\"\" ", kHead.size() + 15},
        {kHead + u" -processor=\"-2\" ", kHead.size() + 17},
        {kHead + u" -processor=\"12345678901\" ", kHead.size() + 26},
        {kHead + u" -priority=\"urgent\" ", kHead.size() + 20},
    };
    for (const auto& row : rows) {
        CommandError error{};
        EXPECT_FALSE(ParseCommand(row.text, &error).has_value()) << row.position;
        EXPECT_EQ(error.position, row.position);
        EXPECT_FALSE(error.reason.empty());
    }
}

TEST(Command, A_thousand_effects_are_enough) {
    std::u16string effects;
    for (int number = 1; number <= 1000; ++number) {
        const std::string digits = std::to_string(number);
        effects += u"-dspeffect" + std::u16string(digits.begin(), digits.end()) + u"=\"V=\" ";
    }
    CommandError error{};
    const std::optional<Command> command = ParseCommand(kHead + u" " + effects + u" ", &error);
    ASSERT_TRUE(command.has_value());
    EXPECT_EQ(command->effects.size(), 1000u);
    EXPECT_FALSE(ParseCommand(kHead + u" " + effects + u"-dspeffect1001=\"V=\"  ", &error).has_value());
}

TEST(Command, A_file_name_with_a_quote_smuggles_no_switch_in) {
    CommandError error{};
    const std::u16string text =
        u" -infile=\"x\" -outfile=\"y\" -outfile=\"real\" -convert_to=\"Wave\" -evtquit=\"q\" "
        u"-evtwatchdog=\"w\" ";
    EXPECT_FALSE(ParseCommand(text, &error).has_value());
    EXPECT_EQ(error.position, 26u);
}

TEST(Command, Every_cut_of_a_full_command_is_read_or_refused_without_a_fault) {
    const std::u16string text =
        kHead + u" -processor=\"3\" -priority=\"low\" -dspeffect1=\"V=1\"  -noidtag -tag=\"a=b\" s";
    int refused = 0;
    for (std::size_t length = 0; length <= text.size(); ++length) {
        CommandError error{};
        const std::u16string cut = text.substr(0, length);
        if (!ParseCommand(cut, &error)) {
            ++refused;
            EXPECT_LE(error.position, length + 1);
        }
    }
    EXPECT_GT(refused, 0);
}

}  // namespace
