// Positions: what XString answers inside, at and far outside the text.
#include <gtest/gtest.h>

#include <limits>

#include "foundation/wide_string.h"
#include "support/wide_text.h"

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

TEST(WideString, GetAt_counts_from_1_and_answers_0_outside) {
    const XString text(u"abc");
    struct Row {
        std::int32_t position;
        char16_t unit;
    } const rows[] = {{1, u'a'}, {3, u'c'}, {kLengthDefault, u'c'}, {0, 0},       {-1, 0},
                      {4, 0},    {5, 0},    {kLowest, 0},           {kHighest, 0}};
    for (const Row& row : rows) EXPECT_EQ(text.GetAt(row.position), row.unit) << row.position;
    EXPECT_EQ(text.GetAt(), u'c');
}

TEST(WideString, GetAt_of_an_empty_string_is_0_everywhere) {
    for (const std::int32_t position : {kLengthDefault, 0, 1, 2, -1})
        EXPECT_EQ(XString().GetAt(position), 0) << position;
}

TEST(WideString, Mid_is_inclusive_and_clamps_the_end_alone) {
    const XString text(u"abcde");
    struct Row {
        std::int32_t first, last;
        const char16_t* slice;
    } const rows[] = {
        {1, 5, u"abcde"},
        {2, 3, u"bc"},
        {3, 3, u"c"},
        {2, 1000, u"bcde"},
        {1, kHighest, u"abcde"},
        {0, 3, u""},
        {3, 2, u""},
        {6, 6, u""},
        {6, 1000, u""},
        {5, 5, u"e"},
        {-1, 5, u""},
        {kLowest, 5, u""},
        {1, 0, u""},
        {1, -1, u""},
        {1, kLengthDefault, u""},
        {1, kLowest, u""},
        {kHighest, kHighest, u""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Units(text.Mid(row.first, row.last)), row.slice) << row.first << " " << row.last;
    for (const std::int32_t n : {1, 2, 5, 6}) EXPECT_TRUE(text.Mid(n, n - 1).IsEmpty()) << n;
    EXPECT_EQ(Units(text), u"abcde");
}

TEST(WideString, Left_Right_and_MidToEnd_take_what_there_is) {
    const XString text(u"abcde");
    struct Row {
        std::int32_t length;
        const char16_t *left, *right;
    } const rows[] = {
        {0, u"", u""},  {1, u"a", u"e"},     {5, u"abcde", u"abcde"},       {100, u"abcde", u"abcde"},
        {-1, u"", u""}, {kLowest, u"", u""}, {kHighest, u"abcde", u"abcde"}};
    for (const Row& row : rows) {
        EXPECT_EQ(Units(text.Left(row.length)), row.left) << row.length;
        EXPECT_EQ(Units(text.Right(row.length)), row.right) << row.length;
    }
    EXPECT_EQ(Units(text.MidToEnd(4)), u"de");
    EXPECT_EQ(Units(text.MidToEnd(6)), u"");
    EXPECT_EQ(Units(text.MidToEnd(0)), u"");
    EXPECT_TRUE(XString().Right(3).IsEmpty());
}

TEST(WideString, A_slice_beyond_the_inline_room_is_sized_exactly) {
    const XString text(Repeated(u'a', 500).c_str());
    EXPECT_EQ(text.Mid(1, 127).Capacity(), 128);
    EXPECT_EQ(text.Mid(1, 128).Capacity(), 129);
    EXPECT_EQ(text.ToUpper().Capacity(), 501);
}

TEST(WideString, Find_gives_a_position_or_0) {
    const XString text(u"abcabc");
    struct Row {
        const char16_t* pattern;
        std::int32_t first, position;
    } const rows[] = {
        {u"abc", 1, 1},  {u"abc", 2, 4},     {u"abc", 4, 4},      {u"abc", 5, 0}, {u"c", 6, 6},
        {u"c", 7, 0},    {u"c", 100, 0},     {u"abcabcd", 1, 0},  {u"x", 1, 0},   {u"abc", 0, 1},
        {u"abc", -5, 1}, {u"c", kLowest, 3}, {u"c", kHighest, 0}, {u"", 2, 2},    {u"", 7, 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(text.Find(row.pattern, row.first), row.position) << row.first;
        const bool isUnit = row.pattern[0] && !row.pattern[1];
        const std::int32_t position = isUnit ? text.Find(row.pattern[0], row.first) : row.position;
        EXPECT_EQ(position, row.position) << row.first;
    }
    EXPECT_EQ(text.Find(u'b'), 2);
    EXPECT_EQ(text.Find(u"b"), 2);
    EXPECT_EQ(text.Find(char16_t{0}), 0);
    EXPECT_EQ(XString().Find(u'a'), 0);
    EXPECT_EQ(XString().Find(u"", 0), 0);
}

TEST(WideString, Case_is_ASCII_alone) {
    const XString text(u"az{`AZ[@ \u00E9\u00C9\u0131\u0430");
    EXPECT_EQ(Units(text.ToUpper()), u"AZ{`AZ[@ \u00E9\u00C9\u0131\u0430");
    EXPECT_EQ(Units(text.ToLower()), u"az{`az[@ \u00E9\u00C9\u0131\u0430");
}

TEST(WideString, Equality_is_exact) {
    const XString text(u"abc");
    EXPECT_TRUE(text == u"abc");
    EXPECT_TRUE(text == XString(u"abc"));
    for (const char16_t* other : {u"", u"ab", u"abcd", u"abC", u"abd"})
        EXPECT_FALSE(text == other) << Narrow(other);
    EXPECT_FALSE(text == static_cast<const char16_t*>(nullptr));
    EXPECT_FALSE(XString() == static_cast<const char16_t*>(nullptr));
    EXPECT_TRUE(XString() == u"");
}

TEST(WideString, Truncate_never_goes_below_empty) {
    XString text(u"abcde");
    for (const std::int32_t nothing : {0, -1, kLowest}) {
        text.Truncate(nothing);
        EXPECT_EQ(Units(text), u"abcde") << nothing;
    }
    text.Truncate(2);
    EXPECT_EQ(Units(text), u"abc");
    text.Truncate(100);
    EXPECT_TRUE(text.IsEmpty());
    text.Truncate(1);
    EXPECT_TRUE(text.IsEmpty() && IsSound(text));
    text = u"abcde";
    text.Truncate(kHighest);
    EXPECT_TRUE(text.IsEmpty() && IsSound(text));
}

TEST(WideString, RemoveAt_takes_one_character_inside_the_text) {
    struct Row {
        std::int32_t position;
        const char16_t* left;
    } const rows[] = {{1, u"bc"},  {2, u"ac"},   {3, u"ab"},         {4, u"abc"},
                      {0, u"abc"}, {-1, u"abc"}, {kHighest, u"abc"}, {kLowest, u"abc"}};
    for (const Row& row : rows) {
        XString text(u"abc");
        text.RemoveAt(row.position);
        EXPECT_EQ(Units(text), row.left) << row.position;
        EXPECT_TRUE(IsSound(text)) << row.position;
    }
}

TEST(WideString, Insert_goes_before_a_position_up_to_the_count) {
    struct Row {
        std::int32_t position;
        const char16_t* result;
    } const rows[] = {{1, u"XYabc"}, {2, u"aXYbc"}, {4, u"abcXY"},      {5, u"abc"},
                      {0, u"abc"},   {-1, u"abc"},  {kHighest, u"abc"}, {kLowest, u"abc"}};
    for (const Row& row : rows) {
        XString text(u"abc");
        text.Insert(u"XY", row.position);
        EXPECT_EQ(Units(text), row.result) << row.position;
        EXPECT_TRUE(IsSound(text)) << row.position;
    }
    XString empty;
    empty.Insert(u"", 1);
    EXPECT_TRUE(empty.IsEmpty());
    empty.Insert(u"a", 1);
    EXPECT_EQ(Units(empty), u"a");
}

TEST(WideString, Insert_outside_the_text_takes_the_room_all_the_same) {
    XString text(u"abc");
    text.Insert(Repeated(u'y', 200).c_str(), 100);
    EXPECT_EQ(Units(text), u"abc");
    EXPECT_EQ(text.Capacity(), 204 + 32);
}

}  // namespace
