#include "foundation/string_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "support/allocation_faults.h"
#include "support/wide_text.h"

namespace {

using Texts = std::vector<std::u16string>;

Texts Contents(const XStringList& list) {
    Texts contents;
    for (int index = 0; index < list.Count(); ++index) contents.push_back(Units(list.At(index)));
    return contents;
}

void Fill(XStringList& list, const Texts& texts) {
    for (const std::u16string& text : texts) list.Add(text.c_str());
}

TEST(StringList, Add_appends_a_copy_with_tag_0) {
    XStringList list;
    XString text(u"a");
    text.SetTag(5);
    list.Add(text.Text());
    text = u"changed";
    list.Add(nullptr);
    EXPECT_EQ(Contents(list), (Texts{u"a", u""}));
    EXPECT_EQ(list.At(0).Tag(), 0u);
}

TEST(StringList, Insert_appends_at_minus_1_and_behind_the_end) {
    XStringList list;
    Fill(list, {u"b", u"c"});
    list.Insert(0, u"a");
    list.Insert(-1, u"y");
    list.Insert(1000, u"z");
    list.Insert(2, u"bb");
    EXPECT_EQ(Contents(list), (Texts{u"a", u"b", u"bb", u"c", u"y", u"z"}));
}

TEST(StringList, RemoveAt_outside_does_nothing) {
    XStringList list;
    Fill(list, {u"a", u"b", u"c"});
    for (const int index : {-1, 3, 1000}) list.RemoveAt(index);
    EXPECT_EQ(list.Count(), 3);
    list.RemoveAt(1);
    EXPECT_EQ(Contents(list), (Texts{u"a", u"c"}));
}

TEST(StringList, A_cleared_list_fills_again) {
    XStringList list;
    Fill(list, Texts(50, u"a"));
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
    list.Clear();
    Fill(list, {u"b"});
    EXPECT_EQ(Contents(list), Texts{u"b"});
}

TEST(StringList, Less_compares_units_and_folds_ASCII_alone) {
    struct Row {
        const char16_t *first, *second;
        bool exact, folded;
    } const rows[] = {
        {u"a", u"b", true, true},
        {u"b", u"a", false, false},
        {u"a", u"a", false, false},
        {u"", u"a", true, true},
        {u"a", u"", false, false},
        {u"", u"", false, false},
        {u"ab", u"abc", true, true},
        {u"abc", u"ab", false, false},
        {u"B", u"a", true, false},
        {u"a", u"B", false, true},
        {u"A", u"a", true, false},
        {u"Z", u"[", true, false},
        {u"z", u"{", true, true},
        {u"\u00C9", u"\u00E9", true, true},
        {u"\u00E9", u"\u00C9", false, false},
        {u"\uFFFD", u"\U0001F600", false, false},  // unit by unit, not by character
        {u"a", nullptr, false, false},
        {u"", nullptr, false, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(XStringList::Less(row.first, row.second, false), row.exact)
            << Narrow(row.first) << " " << Narrow(row.second);
        EXPECT_EQ(XStringList::Less(row.first, row.second, true), row.folded)
            << Narrow(row.first) << " " << Narrow(row.second);
    }
    EXPECT_TRUE(XStringList::Less(XString(u"A"), XString(u"a"), 0));
    EXPECT_FALSE(XStringList::Less(XString(u"A"), XString(u"a"), 1));
}

TEST(StringList, Sort_orders_any_list) {
    std::mt19937 random(4);
    for (unsigned round = 0; round < 200; ++round) {
        Texts texts(round % 60);
        for (std::u16string& text : texts)
            text = {static_cast<char16_t>(u'a' + random() % (1 + round % 26)), u'a'};
        for (std::u16string& text : texts) text[1] = static_cast<char16_t>(u'a' + random() % 3);
        XStringList list;
        Fill(list, texts);
        list.Sort(&XStringList::Less, 0);
        std::sort(texts.begin(), texts.end());
        EXPECT_EQ(Contents(list), texts);
    }
}

TEST(StringList, Sort_touches_its_range_alone) {
    struct Row {
        int first, last;
        Texts sorted;
    } const rows[] = {
        {-1, -1, {u"a", u"b", u"c", u"d", u"e"}}, {0, 4, {u"a", u"b", u"c", u"d", u"e"}},
        {1, 3, {u"e", u"b", u"c", u"d", u"a"}},   {-1, 2, {u"c", u"d", u"e", u"b", u"a"}},
        {3, -1, {u"e", u"d", u"c", u"a", u"b"}},  {2, 2, {u"e", u"d", u"c", u"b", u"a"}},
        {3, 1, {u"e", u"d", u"c", u"b", u"a"}},   {0, 5, {u"e", u"d", u"c", u"b", u"a"}},
        {5, 9, {u"e", u"d", u"c", u"b", u"a"}},   {0, -2, {u"e", u"d", u"c", u"b", u"a"}},
    };
    for (const Row& row : rows) {
        XStringList list;
        Fill(list, {u"e", u"d", u"c", u"b", u"a"});
        list.Sort(&XStringList::Less, 0, row.first, row.last);
        EXPECT_EQ(Contents(list), row.sorted) << row.first << " " << row.last;
    }
    XStringList empty;
    empty.Sort(&XStringList::Less, 0);
    EXPECT_EQ(empty.Count(), 0);
}

TEST(StringList, Sort_hands_the_user_value_to_the_compare) {
    XStringList list;
    Fill(list, {u"b", u"A", u"c"});
    const XStringList::Compare backwards = [](const XString& first, const XString& second,
                                              std::intptr_t user) {
        return XStringList::Less(second, first, user == 77);
    };
    list.Sort(backwards, 77);
    EXPECT_EQ(Contents(list), (Texts{u"c", u"b", u"A"}));
}

TEST(StringList, Sort_is_not_stable) {
    // The two b stand at either end of the range, and the partition around the middle one exchanges equal
    // entries.
    XStringList list;
    Fill(list, {u"B", u"b"});
    list.Sort(&XStringList::Less, 1);
    EXPECT_EQ(Contents(list), (Texts{u"b", u"B"}));
}

TEST(StringList, A_compare_that_contradicts_itself_ends_and_keeps_every_entry) {
    static std::mt19937 random;
    random.seed(5);
    const XStringList::Compare compares[] = {
        [](const XString&, const XString&, std::intptr_t) { return true; },
        [](const XString&, const XString&, std::intptr_t) { return false; },
        [](const XString&, const XString&, std::intptr_t) { return random() % 2 == 0; },
    };
    for (const XStringList::Compare compare : compares) {
        XStringList list;
        std::multiset<std::u16string> before;
        for (int number = 0; number < 200; ++number) {
            list.Add(XString(number).Text());
            before.insert(Units(XString(number)));
        }
        list.Sort(compare, 0);
        const Texts after = Contents(list);
        EXPECT_EQ(std::multiset<std::u16string>(after.begin(), after.end()), before);
    }
}

TEST(StringList, The_two_ways_to_split_differ_in_empty_lines) {
    struct Row {
        const char16_t* text;
        Texts lines, pieces;
    } const rows[] = {
        {u"", {}, {}},
        {u"a", {u"a"}, {u"a"}},
        {u"a\r\nb", {u"a", u"b"}, {u"a", u"b"}},
        {u"a\r\n", {u"a"}, {u"a", u""}},
        {u"\r\n", {u""}, {u"", u""}},
        {u"\r\n\r\n", {u"", u""}, {u"", u"", u""}},
        {u"a\r\n\n\nb", {u"a", u"b"}, {u"a", u"\n\nb"}},
        {u"a\rb", {u"a", u"b"}, {u"a\rb"}},
        {u"a\r\rb", {u"a", u"", u"b"}, {u"a\r\rb"}},
        {u"a\nb", {u"a\nb"}, {u"a\nb"}},
        {u"\n", {u"\n"}, {u"\n"}},
        {u"a\n\rb", {u"a\n", u"b"}, {u"a\n\rb"}},
        {u"\r", {u""}, {u"\r"}},
        {u"a\r\r\nb\r", {u"a", u"", u"b"}, {u"a\r", u"b\r"}},
    };
    for (const Row& row : rows) {
        XStringList lines, pieces;
        lines.Add(u"old");
        pieces.Add(u"old");
        XStringList::SplitLines(XString(row.text), lines);
        XStringList::SplitOnLineEnd(pieces, XString(row.text));
        Texts withOld = row.pieces;
        withOld.insert(withOld.begin(), u"old");
        EXPECT_EQ(Contents(lines), row.lines) << testing::PrintToString(row.text);
        EXPECT_EQ(Contents(pieces), withOld) << testing::PrintToString(row.text);
    }
}

TEST(StringList, A_list_may_be_split_from_an_entry_of_its_own) {
    XStringList list;
    list.Add(u"a\r\nb\r\nc");
    XStringList::SplitLines(list.At(0), list);
    EXPECT_EQ(Contents(list), (Texts{u"a", u"b", u"c"}));
    list.Clear();
    list.Add(u"x\r\ny");
    XStringList::SplitOnLineEnd(list, list.At(0));
    EXPECT_EQ(Contents(list), (Texts{u"x\r\ny", u"x", u"y"}));
}

TEST(StringList, Memory_that_runs_out_raises_and_leaves_nothing_behind) {
    const std::u16string text = Repeated(u'x', 200) + u"\r\nb\r\n" + Repeated(u'y', 300);
    const int allocations = FailEachAllocation([&] {
        XStringList list;
        for (int count = 0; count < 20; ++count) list.Add(text.c_str());
        list.Insert(3, u"a");
        XStringList::SplitLines(XString(text.c_str()), list);
        XStringList::SplitOnLineEnd(list, XString(text.c_str()));
        list.Sort(&XStringList::Less, 1);
    });
    EXPECT_GT(allocations, 40);
}

TEST(StringList, A_failed_addition_leaves_the_list_as_it_was) {
    XStringList list;
    Fill(list, Texts(16, u"a"));
    const std::u16string longText = Repeated(u'x', 200);
    for (int call = 1; call <= 3; ++call) {  // the entry, its text, the array
        bool raised = false;
        {
            AllocationFaults memory;
            memory.FailCall(call);
            try {
                list.Insert(2, longText.c_str());
            } catch (const std::bad_alloc&) {
                raised = true;
            }
        }
        EXPECT_TRUE(raised) << call;
        EXPECT_EQ(Contents(list), Texts(16, u"a")) << call;
    }
}

}  // namespace
