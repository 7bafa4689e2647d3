#include <gtest/gtest.h>

#include <cstdint>
#include <new>

#include "foundation/wide_string.h"
#include "support/allocation_faults.h"
#include "support/wide_text.h"

namespace {

template <class... Values>
std::u16string Formatted(const char16_t* format, Values... values) {
    XString text(u"old");
    text.Format(format, values...);
    EXPECT_TRUE(IsSound(text));
    return Units(text);
}

template <class... Values>
std::u16string FellBack(const char16_t* format, Values... values) {
    XString text(u"old");
    text.FormatFallback(format, values...);
    EXPECT_TRUE(IsSound(text));
    return Units(text);
}

TEST(WideStringFormat, Format_names_a_temporary_file) {
    EXPECT_EQ(Formatted(u"%s%s%d.tmp", u"C:\\Temp\\", u"qv", 42), u"C:\\Temp\\qv42.tmp");
    EXPECT_EQ(Formatted(u"%s%s%d.tmp", u"", u"", -1), u"-1.tmp");
}

TEST(WideStringFormat, Format_knows_s_d_and_percent) {
    EXPECT_EQ(Formatted(u""), u"");
    EXPECT_EQ(Formatted(u"plain"), u"plain");
    EXPECT_EQ(Formatted(u"100%%"), u"100%");
    EXPECT_EQ(Formatted(u"%d|%d", 0, -2147483647 - 1), u"0|-2147483648");
    EXPECT_EQ(Formatted(u"<%s>", static_cast<const char16_t*>(nullptr)), u"<>");
}

TEST(WideStringFormat, Format_leaves_every_other_conversion_to_the_fallback) {
    EXPECT_EQ(Formatted(u"%5d", 42), u"00042");
    EXPECT_EQ(Formatted(u"%s %i", u"a", -1), u"a -1");
    EXPECT_EQ(Formatted(u"%d %x", -1, 255), u"4294967295 ff");  // all of it, also the d
    EXPECT_EQ(Formatted(u"100%"), u"");
}

TEST(WideStringFormat, Format_tries_again_with_five_times_the_buffer) {
    for (const int length : {998, 999, 1000, 4999, 5000, 25000, 130000}) {
        const std::u16string text = Repeated(u'x', length);
        EXPECT_EQ(Formatted(u"%s", text.c_str()), text) << length;
    }
    struct Row {
        int length, attempts;
    } const rows[] = {{999, 1}, {1000, 2}, {4999, 2}, {5000, 3}};
    for (const Row& row : rows) {
        const std::u16string text = Repeated(u'x', row.length);
        XString result(text.c_str());  // has the room, so that only the attempts' buffers are counted
        int calls = 0;
        {
            AllocationFaults memory;
            result.Format(u"%s", text.c_str());
            calls = memory.Calls();
        }
        EXPECT_EQ(calls, row.attempts) << row.length;
    }
}

// The sign tells who wrote the number: only the fallback writes d unsigned.
TEST(WideStringFormat, Format_gives_up_behind_its_largest_buffer) {
    constexpr int kLargest = 78125000, kSecondLargest = kLargest / 5;
    const std::u16string half = Repeated(u'x', kLargest / 2);
    XString text;
    text.Format(u"%s%d", half.c_str() + kLargest / 2 - kSecondLargest, -1);
    EXPECT_EQ(text.Length(), kSecondLargest + 2);
    EXPECT_EQ(Units(text.Right(3)), u"x-1");
    text.Format(u"%d%s%s", -1, half.c_str() + 2, half.c_str());  // with its NUL one unit too many
    EXPECT_EQ(text.Length(), kLargest - 2 + 10);
    EXPECT_EQ(Units(text.Left(11)), u"4294967295x");
}

TEST(WideStringFormat, Format_empties_the_string_before_it_reads_its_arguments) {
    XString text(u"abc");
    text.Format(u"<%s>", text.Text());
    EXPECT_EQ(Units(text), u"<>");
}

TEST(WideStringFormat, Fallback_writes_d_and_u_unsigned) {
    EXPECT_EQ(FellBack(u"%d", 42), u"42");
    EXPECT_EQ(FellBack(u"%d", -1), u"4294967295");
    EXPECT_EQ(FellBack(u"%u", -1), u"4294967295");
    EXPECT_EQ(FellBack(u"%d", 0), u"0");
}

TEST(WideStringFormat, Fallback_pads_with_zeros_alone) {
    EXPECT_EQ(FellBack(u"%5d", 42), u"00042");
    EXPECT_EQ(FellBack(u"%05d", 42), u"00042");
    EXPECT_EQ(FellBack(u"%-5d", 42), u"00042");
    EXPECT_EQ(FellBack(u"%2u", 12345), u"12345");
    EXPECT_EQ(FellBack(u"%4x|%4X", 0xAB, 0xAB), u"00ab|00AB");
    EXPECT_EQ(FellBack(u"%x", -1), u"ffffffff");
    EXPECT_EQ(FellBack(u"%200d", 7), Repeated(u'0', 199) + u"7");
}

TEST(WideStringFormat, Fallback_counts_the_sign_of_i_in_the_width) {
    EXPECT_EQ(FellBack(u"%3i", -5), u"-05");
    EXPECT_EQ(FellBack(u"%3i", 5), u"005");
    EXPECT_EQ(FellBack(u"%i", -5), u"-5");
    EXPECT_EQ(FellBack(u"%1i", -5), u"-5");
    EXPECT_EQ(FellBack(u"%i", -2147483647 - 1), u"-2147483648");
}

TEST(WideStringFormat, Fallback_reads_and_drops_the_precision_of_an_integer) {
    EXPECT_EQ(FellBack(u"%.3d", 5), u"5");
    EXPECT_EQ(FellBack(u"%4.9d", 5), u"0005");
}

TEST(WideStringFormat, Fallback_writes_f_by_FromDouble) {
    EXPECT_EQ(FellBack(u"%f", 1.5), u"1.5");
    EXPECT_EQ(FellBack(u"%f", 1.123456789), u"1.12346");
    EXPECT_EQ(FellBack(u"%.2f", 2.675), u"2.67");
    EXPECT_EQ(FellBack(u"%.f", 3.7), u"4");
    EXPECT_EQ(FellBack(u"%12.1f", 3.74), u"3.7");
    EXPECT_EQ(FellBack(u"%.99999999999f", 0.0).front(), u'0');
}

TEST(WideStringFormat, Fallback_ignores_width_and_precision_of_a_text) {
    EXPECT_EQ(FellBack(u"[%10.2s]", u"text"), u"[text]");
    EXPECT_EQ(FellBack(u"[%s]", static_cast<const char16_t*>(nullptr)), u"[]");
    EXPECT_EQ(FellBack(u"%5%"), u"%");
}

TEST(WideStringFormat, Fallback_skips_what_it_does_not_know) {
    EXPECT_EQ(FellBack(u"%ld %hu", 1, 2), u"1 2");
    EXPECT_EQ(FellBack(u"%I64d", 3),
              Repeated(u'0', 63) + u"3");  // digits count into the width wherever they stand
    EXPECT_EQ(FellBack(u"%q z%|%d", 5), u"%|5");
}

TEST(WideStringFormat, Fallback_gives_nothing_for_a_malformed_format) {
    for (const char16_t* format : {u"100%", u"%", u"text %5", u"%.", u"%l", u"%1.2.3d", u"a%..d"})
        EXPECT_EQ(FellBack(format, 1), u"") << Narrow(format);
    EXPECT_EQ(FellBack(u"%d %.2.f", 1, 2.0), u"");
}

TEST(WideStringFormat, Fallback_copies_what_is_no_conversion) {
    EXPECT_EQ(FellBack(u"1.2.3"), u"1.2.3");
    EXPECT_EQ(FellBack(u""), u"");
    EXPECT_EQ(FellBack(u"a%db%dc", 1, 2), u"a1b2c");
    EXPECT_EQ(FellBack(u"%%d"), u"%d");
}

TEST(WideStringFormat, Fallback_takes_the_low_half_of_a_64_bit_argument) {
    EXPECT_EQ(
        FellBack(u"%d %x %i", std::int64_t{0x100000005}, std::uint64_t{0xFFFFFFFF000000AB}, std::int64_t{-1}),
        u"5 ab -1");
}

TEST(WideStringFormat, Fallback_finds_arguments_of_every_kind_behind_the_registers) {
    EXPECT_EQ(FellBack(u"%d%s%f%d%s%f%d%s%f%i%s%f%d%f%d%f%d%f%d%f%i%f%s", 1, u"a", 0.5, 2, u"b", 1.5, 3, u"c",
                       2.5, -4, u"d", 3.5, 5, 4.5, 6, 5.5, 7, 6.5, 8, 7.5, -9, 8.5, u"z"),
              u"1a0.52b1.53c2.5-4d3.554.565.576.587.5-98.5z");
}

TEST(WideStringFormat, Fallback_may_read_the_text_it_fills) {
    XString text(u"abc%s");
    text.FormatFallback(text.Text(), text.Text());
    EXPECT_EQ(Units(text), u"abcabc%s");
}

TEST(WideStringFormat, Fallback_grows_by_a_third_and_keeps_the_exact_result) {
    XString text;
    text.FormatFallback(u"%s%s", Repeated(u'a', 100).c_str(), Repeated(u'b', 100).c_str());
    EXPECT_EQ(Units(text), Repeated(u'a', 100) + Repeated(u'b', 100));
    EXPECT_EQ(text.Capacity(), 201);
}

TEST(WideStringFormat, A_width_that_no_text_can_have_raises) {
    XString text(u"old");
    EXPECT_THROW(text.FormatFallback(u"%2147483647d", 1), std::bad_alloc);
    EXPECT_THROW(text.FormatFallback(u"%99999999999999999999d", 1), std::bad_alloc);
    EXPECT_EQ(Units(text), u"old");
}

}  // namespace
