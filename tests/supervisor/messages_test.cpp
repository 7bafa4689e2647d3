// The message stream, without a process: bytes go in where a pipe's would.
#include <gtest/gtest.h>

#include <random>

#include "supervisor/doubles.h"
#include "supervisor/message_twin.h"
#include "supervisor/owner.h"

namespace {

using Stream = CPUEncoder::Stream;

// An encoder whose clock stands still, so that no blank line is ever due.
struct Listener {
    Listener() { owner.Create(); }

    std::u16string Shown() {  // the line that a poll writes, without its line end; "-" for none
        owner.information.Take();
        owner.Poll();
        std::u16string line = owner.information.Take();
        if (line.empty()) return u"-";
        return line.substr(0, line.size() - 2);
    }

    TestClock clock;
    Owner owner;
};

std::u16string Line(std::u16string_view text) {
    return std::u16string(text) + u"\r\n";
}

const std::uint8_t* Bytes(std::u16string_view text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

}  // namespace

TEST(ConverterMessages, percent_takes_what_is_above_it) {
    const struct {
        std::u16string text;
        std::int32_t percent;
    } rows[] = {
        {u"MSGTO: qMC: PCDone: 55", 55},
        {u"MSGTO: qMC: PCDone: 50\r\nMSGTO: qMC: PCDone: 40\r\n", 50},
        {u"MSGTO: qMC: PCDone: 40\r\nMSGTO: qMC: PCDone: 50\r\n", 50},
        {u"MSGTO: qMC: PCDone:55", 55},
        {u"MSGTO: qMC: PCDone: 0", 0},
        {u"MSGTO: qMC: PCDone: -1", 0},
        {u"MSGTO: qMC: PCDone: 101", 101},
        {u"MSGTO: qMC: PCDone: 12 percent", 12},
        {u"MSGTO: qMC: PCDone: ", 0},
        {u"MSGTO: qMC: PCDone: x", 0},
        {u"MSGTO: qMC: PCDone: 7: 8", 7},
        {u"MSGTO: qMC: PCDone: 2147483647", 2147483647},
        {u"MSGTO: qMC: PCDone: -9223372036854775808", 0},
        {u"text MSGTO: qMC: PCDone: 9", 9},
    };
    for (const auto& row : rows) {
        Listener listener;
        listener.owner.Say(row.text);
        EXPECT_EQ(listener.owner.encoder.Percent(), row.percent)
            << std::string(row.text.begin(), row.text.end());
        EXPECT_EQ(listener.owner.information.Text(), u"");
    }
}

TEST(ConverterMessages, percent_beyond_32_bits_is_the_largest_there_is) {
    for (const char16_t* value : {u"2147483648", u"4294967297", u"9223372036854775807"}) {
        Listener listener;
        listener.owner.Say(Line(u"MSGTO: qMC: PCDone: " + std::u16string(value)));
        EXPECT_EQ(listener.owner.encoder.Percent(), 2147483647);
    }
}

TEST(ConverterMessages, percent_of_400_digits_raises_or_leaves_what_stands) {
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        const std::u16string value(400, digit);
        const std::int64_t number = XString(value.c_str()).ToInt64();
        Listener listener;
        listener.owner.Say(Line(u"MSGTO: qMC: PCDone: 5"));
        listener.owner.Say(Line(u"MSGTO: qMC: PCDone: " + value));
        EXPECT_EQ(listener.owner.encoder.Percent(), number > 2147483647 ? 2147483647
                                                    : number > 5        ? number
                                                                        : 5);
    }
}

TEST(ConverterMessages, messages_that_name_nobody_or_somebody_else_are_swallowed) {
    for (const char16_t* text :
         {u"MSGTO: other: PCDone: 50", u"MSGTO: QMC: PCDone: 50", u"MSGTO: qmc: PCDone: 50",
          u"MSGTO: qMC : PCDone: 50", u"MSGTO:  qMC: PCDone: 50", u"MSGTO: qMC: pcdone: 50",
          u"MSGTO: qMC: PCDone : 50", u"MSGTO: qMC:  PCDone: 50", u"MSGTO: qMC: Volume: 50",
          u"MSGTO: qMC: Action", u"MSGTO: qMC: PCDone 50", u"MSGTO: qMC", u"MSGTO: ", u"MSGTO: :::",
          u"note: MSGTO: qMC: PCDone: 50", u": MSGTO: qMC: PCDone: 50"}) {
        Listener listener;
        listener.owner.Say(Line(text));
        EXPECT_EQ(listener.owner.encoder.Percent(), 0);
        EXPECT_EQ(listener.owner.information.Text(), u"");
        EXPECT_EQ(listener.owner.errors.Text(), u"");
        EXPECT_EQ(listener.Shown(), u"-");
    }
}

TEST(ConverterMessages, line_without_the_token_is_information) {
    for (const char16_t* text :
         {u"hello", u" ", u"MSGTO:qMC: PCDone: 50", u"msgto: qMC: PCDone: 50", u"MSGTO", u"a\rb\nc",
          u"it is not true that Encoding finished here", u"Encoding finished"}) {
        Listener listener;
        listener.owner.Say(Line(text));
        EXPECT_EQ(listener.owner.information.Text(), Line(text));
        EXPECT_EQ(listener.owner.errors.Text(), u"");
        EXPECT_FALSE(listener.owner.encoder.Finished());
    }
}

TEST(ConverterMessages, every_line_of_the_error_stream_is_an_error) {
    Listener listener;
    listener.owner.Say(u"one\r\n\r\nMSGTO: qMC: PCDone: 50\r\nthree", Stream::kError);
    EXPECT_EQ(listener.owner.errors.Text(), u"one\r\nMSGTO: qMC: PCDone: 50\r\nthree\r\n");
    EXPECT_EQ(listener.owner.information.Text(), u"");
    EXPECT_EQ(listener.owner.encoder.Percent(), 0);
}

TEST(ConverterMessages, empty_lines_are_dropped_on_both_streams) {
    for (const Stream stream : {Stream::kOutput, Stream::kError}) {
        Listener listener;
        listener.owner.Say(u"\r\n\r\n\r\n", stream);
        listener.owner.Say(u"", stream);
        EXPECT_EQ(listener.owner.information.Text() + listener.owner.errors.Text(), u"");
    }
}

TEST(ConverterMessages, text_behind_the_last_line_end_is_a_line) {
    Listener listener;
    listener.owner.Say(u"one\r\ntwo");
    EXPECT_EQ(listener.owner.information.Text(), u"one\r\ntwo\r\n");
}

TEST(ConverterMessages, value_keeps_its_colons_and_all_blanks_but_one) {
    const struct {
        std::u16string value, shown;
    } rows[] = {{u" x", u"x"},       {u"  x", u" x"},
                {u"x", u"x"},        {u" C: D: E", u"C: D: E"},
                {u" a::b", u"a::b"}, {u" : x", u": x"},
                {u" x ", u"x "},     {u" MSGTO: qMC: PCDone: 5", u"MSGTO: qMC: PCDone: 5"}};
    for (const auto& row : rows) {
        Listener listener;
        listener.owner.Say(Line(u"MSGTO: qMC: Action:" + row.value));
        EXPECT_EQ(listener.Shown(), row.shown);
        EXPECT_EQ(listener.owner.encoder.Percent(), 0);
    }
}

TEST(ConverterMessages, input_text_keeps_the_second_of_two_blanks) {
    Listener listener;
    listener.owner.Say(u"MSGTO: qMC: Action: a\r\nMSGTO: qMC: ActionInput:  x\r\n");
    for (int poll = 1; poll < 16; ++poll) EXPECT_EQ(listener.Shown(), u"a");
    EXPECT_EQ(listener.Shown(), u" x");
}

TEST(ConverterMessages, text_ends_at_its_first_NUL) {
    Listener listener;
    listener.owner.Say(std::u16string_view(u"one\r\ntw\0o\r\nMSGTO: qMC: PCDone: 5\r\n", 34));
    EXPECT_EQ(listener.owner.information.Text(), u"one\r\ntw\r\n");
    EXPECT_EQ(listener.owner.encoder.Percent(), 0);
}

TEST(ConverterMessages, half_a_unit_at_the_end_is_a_unit_below_256) {
    Listener listener;
    const std::vector<std::uint8_t> bytes = {'a', 0, 'b'};  // exactly so many, for the sanitizer
    listener.owner.encoder.TakeText(Stream::kOutput, bytes.data(), 3);
    listener.owner.encoder.TakeText(Stream::kOutput, bytes.data(), 1);
    EXPECT_EQ(listener.owner.information.Text(), u"ab\r\na\r\n");
}

// Whatever the cut does to a message, it does it as told: no byte is carried over, none is read twice.
TEST(ConverterMessages, message_cut_at_each_byte_gives_two_lines) {
    for (std::size_t cut = 0; cut <= 2 * kCutMessage.size(); ++cut) {
        Listener listener;
        MessageTwin twin;
        const std::vector<std::uint8_t> whole(Bytes(kCutMessage),
                                              Bytes(kCutMessage) + 2 * kCutMessage.size());
        const std::vector<std::uint8_t> first(whole.begin(),
                                              whole.begin() + static_cast<std::ptrdiff_t>(cut));
        const std::vector<std::uint8_t> second(whole.begin() + static_cast<std::ptrdiff_t>(cut), whole.end());
        for (const auto& half : {first, second}) {
            listener.owner.encoder.TakeText(Stream::kOutput, half.data(),
                                            static_cast<std::uint32_t>(half.size()));
            twin.Take(false, half.data(), half.size());
        }
        EXPECT_EQ(listener.owner.encoder.Percent(), twin.percent) << cut;
        EXPECT_EQ(listener.owner.information.Text(), twin.information) << cut;
    }
}

TEST(ConverterMessages, message_cut_inside_its_number_counts_what_stands_there) {
    Listener listener;
    listener.owner.Say(u"MSGTO: qMC: PCDone: 5");
    EXPECT_EQ(listener.owner.encoder.Percent(), 5);
    listener.owner.Say(u"5\r\n");
    EXPECT_EQ(listener.owner.encoder.Percent(), 5);
    EXPECT_EQ(listener.owner.information.Text(), u"5\r\n");
}

TEST(ConverterMessages, message_cut_at_each_byte_in_a_real_pipe) {
    TestClock clock;
    Owner owner;
    MessageTwin twin;
    const Signal half, more;
    const Launch launch("cuts_each_message", half.As("half") + u" " + more.As("more"));
    owner.Create();
    owner.Start();
    clock.Hold();
    const std::size_t size = 2 * kCutMessage.size();
    for (std::size_t cut = 1; cut < size; ++cut) {
        for (const auto& [first, end] : {std::pair<std::size_t, std::size_t>{0, cut}, {cut, size}}) {
            ASSERT_TRUE(half.Wait());
            half.Reset();
            owner.Poll();
            twin.Take(false, Bytes(kCutMessage) + first, end - first);
            EXPECT_EQ(owner.encoder.Percent(), twin.percent);
            more.Set();
        }
    }
    EXPECT_TRUE(owner.PollUntilEnd());
    EXPECT_EQ(owner.information.Text(), twin.information + u"Encoding finished\r\n");
}

TEST(ConverterMessages, any_stream_in_any_pieces_does_what_the_slow_twin_does) {
    const std::u16string words[] = {u"MSGTO: ",
                                    u"qMC: ",
                                    u"qMC:",
                                    u"PCDone: ",
                                    u"Action: ",
                                    u"ActionInput: ",
                                    u"ActionOutput: ",
                                    u"\r\n",
                                    u"\r\n",
                                    u"\r",
                                    u"\n",
                                    u":",
                                    u" ",
                                    u"12",
                                    u"-3",
                                    u"999999999999",
                                    u"x",
                                    u"\u0101\u0d0a",
                                    u"MSGTO: qMC: PCDone: 31\r\n"};
    std::mt19937 random(20);
    for (int round = 0; round < 150; ++round) {
        Listener listener;
        MessageTwin twin;
        std::u16string text;
        for (auto count = random() % 40; count > 0; --count) text += words[random() % std::size(words)];
        if (random() % 8 == 0 && !text.empty()) text[random() % text.size()] = 0;
        for (std::size_t at = 0; at < 2 * text.size();) {
            const std::size_t piece = std::min<std::size_t>(1 + random() % 60, 2 * text.size() - at);
            const std::vector<std::uint8_t> bytes(Bytes(text) + at, Bytes(text) + at + piece);
            const bool error = random() % 4 == 0;
            listener.owner.encoder.TakeText(error ? Stream::kError : Stream::kOutput, bytes.data(),
                                            static_cast<std::uint32_t>(piece));
            twin.Take(error, bytes.data(), piece);
            at += piece;
        }
        ASSERT_EQ(listener.owner.encoder.Percent(), twin.percent) << round;
        ASSERT_EQ(listener.owner.information.Text(), twin.information) << round;
        ASSERT_EQ(listener.owner.errors.Text(), twin.errors) << round;
        ASSERT_EQ(listener.Shown(), twin.action.empty() ? u"-" : twin.action) << round;
    }
}
