// XString's storage: where the units lie, how they grow, the 8-bit view, and memory that runs out.
#include "foundation/wide_string.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <type_traits>
#include <vector>

#include "platform/text.h"
#include "support/allocation_faults.h"
#include "support/faults.h"
#include "support/wide_string_twin.h"
#include "support/wide_text.h"

namespace {

// Longer than the inline room, so that it lies on the heap.
const std::u16string kLong = Repeated(u'x', 200);

TEST(WideString, An_empty_string_has_count_1_and_lies_inside_the_object) {
    const XString empty;
    EXPECT_EQ(empty.Count(), 1);
    EXPECT_EQ(empty.Length(), 0);
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_EQ(empty.Text()[0], 0);
    EXPECT_EQ(empty.Capacity(), 128);
    EXPECT_EQ(empty.Tag(), 0u);
}

TEST(WideString, Null_text_constructs_the_empty_string) {
    EXPECT_TRUE(XString(static_cast<const char16_t*>(nullptr)).IsEmpty());
    EXPECT_TRUE(XString(static_cast<const char*>(nullptr)).IsEmpty());
}

TEST(WideString, Construction_from_numbers_gives_decimal_text) {
    EXPECT_EQ(Units(XString(std::int32_t{-2147483647 - 1})), u"-2147483648");
    EXPECT_EQ(Units(XString(std::int64_t{4294967296})), u"4294967296");
}

TEST(WideString, A_text_of_127_characters_stays_inline_and_128_move_to_the_heap) {
    EXPECT_EQ(XString(Repeated(u'a', 127).c_str()).Capacity(), 128);
    EXPECT_EQ(XString(Repeated(u'a', 128).c_str()).Capacity(), 129);
    XString grown(Repeated(u'a', 127).c_str());
    grown += u"b";
    EXPECT_EQ(grown.Capacity(), 129 + 25);
    EXPECT_EQ(Units(grown), Repeated(u'a', 127) + u'b');
}

TEST(WideString, Each_way_of_growing_has_its_own_slack) {
    struct Row {
        const char* way;
        void (*grow)(XString& text);
        int capacity;
    } const rows[] = {
        {"+= text", [](XString& text) { text += u"abc"; }, 129 + 25},
        {"+= string", [](XString& text) { text += XString(u"abc"); }, 129 + 25},
        {"Append", [](XString& text) { text.Append(u"abc"); }, 129 + 129 / 3},
        {"Append a part", [](XString& text) { text.Append(u"abcdef", 3); }, 129 + 129 / 3},
        {"Insert", [](XString& text) { text.Insert(u"abc", 1); }, 129 + 32},
        {"assign", [](XString& text) { text = Repeated(u'y', 128).c_str(); }, 129},
    };
    for (const Row& row : rows) {
        XString text(Repeated(u'x', 125).c_str());
        row.grow(text);
        EXPECT_EQ(text.Length(), 128) << row.way;
        EXPECT_EQ(text.Capacity(), row.capacity) << row.way;
    }
}

TEST(WideString, A_block_is_kept_when_the_text_shrinks) {
    XString text(kLong.c_str());
    const char16_t* const block = text.Text();
    text = u"short";
    EXPECT_EQ(Units(text), u"short");
    EXPECT_EQ(text.Text(), block);
    EXPECT_EQ(text.Capacity(), 201);
}

TEST(WideString, Assigning_null_keeps_the_block_and_empties_the_text) {
    XString text(kLong.c_str());
    const char16_t* const block = text.Text();
    text = static_cast<const char16_t*>(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.Text(), block);
    EXPECT_EQ(text.Text()[0], 0);
    EXPECT_EQ(text.Capacity(), 201);
}

TEST(WideString, Assign_takes_a_count_that_includes_the_NUL_and_measures_at_0) {
    XString text;
    text.Assign(u"abcdef", 4);
    EXPECT_EQ(Units(text), u"abc");
    EXPECT_EQ(text.Count(), 4);
    text.Assign(u"abcdef", 0);
    EXPECT_EQ(Units(text), u"abcdef");
    text.Assign(u"abcdef", 1);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(WideString, Copying_carries_the_tag_and_assigning_does_not) {
    XString tagged(u"a");
    tagged.SetTag(0x123456789ABCDEF0);
    EXPECT_EQ(XString(tagged).Tag(), 0x123456789ABCDEF0u);
    XString assigned(u"b");
    assigned = tagged;
    EXPECT_EQ(assigned.Tag(), 0u);
    EXPECT_EQ(Units(assigned), u"a");
}

TEST(WideString, A_copy_sizes_itself_exactly_and_shares_nothing) {
    XString grown(Repeated(u'a', 127).c_str());
    grown += u"bc";
    XString copy(grown);
    EXPECT_EQ(copy.Capacity(), 130);
    copy += u"d";
    EXPECT_EQ(grown.Length(), 129);
}

TEST(WideString, Assignment_and_concatenation_give_the_whole_string_by_value) {
    XString text(u"a");
    static_assert(std::is_same_v<decltype(text = u"b"), XString>);
    static_assert(std::is_same_v<decltype(text = "b"), XString>);
    static_assert(std::is_same_v<decltype(text = text), XString>);
    static_assert(std::is_same_v<decltype(text += u"b"), XString>);
    static_assert(std::is_same_v<decltype(text += text), XString>);
    (text += u"b") += u"c";  // reaches the copy alone
    EXPECT_EQ(Units(text), u"ab");
    EXPECT_EQ(Units(text += u"d"), u"abd");
}

TEST(WideString, Plus_grows_its_left_side) {
    XString folder(u"folder");
    const XString path = folder + u"\\";
    EXPECT_EQ(Units(path), u"folder\\");
    EXPECT_EQ(Units(folder), u"folder\\");
    EXPECT_EQ(Units(folder + XString(u"file")), u"folder\\file");
    EXPECT_EQ(Units(folder), u"folder\\file");
}

TEST(WideString, Append_of_nothing_does_nothing) {
    XString text(u"a");
    text.Append(u"");
    text.Append(u"bc", 0);
    text.Append(u"bc", -1);
    EXPECT_EQ(Units(text), u"a");
}

TEST(WideString, A_text_may_be_assigned_added_and_inserted_into_itself) {
    for (const int length : {0, 5, 100, 127, 128, 500}) {
        const std::u16string start = Repeated(u'a', length) + u"z";
        XString text(start.c_str());
        text = *&text;
        EXPECT_EQ(Units(text), start);
        text += text;
        EXPECT_EQ(Units(text), start + start);
        text += text.Text();
        EXPECT_EQ(Units(text), start + start + start + start);
        text = start.c_str();
        text.Append(text.Text());
        EXPECT_EQ(Units(text), start + start);
        text = start.c_str();
        text.Insert(text.Text() + length, 1);
        EXPECT_EQ(Units(text), u"z" + start);
        text = text.Text() + length + 1;
        EXPECT_EQ(Units(text), u"z");
        EXPECT_TRUE(IsSound(text));
    }
}

TEST(WideString, Quote_wraps_the_text_in_place) {
    XString text(u"a b");
    text.SetTag(7);
    text.Quote();
    EXPECT_EQ(Units(text), u"\"a b\"");
    EXPECT_EQ(text.Tag(), 7u);
    XString empty;
    empty.Quote();
    EXPECT_EQ(Units(empty), u"\"\"");
}

TEST(WideString, Narrow_text_is_converted_at_its_exact_size) {
    EXPECT_EQ(Units(XString("converter")), u"converter");
    const XString text(std::string(300, 'n').c_str());
    EXPECT_EQ(Units(text), Repeated(u'n', 300));
    EXPECT_EQ(text.Capacity(), 301);
    XString assigned(kLong.c_str());
    assigned = "short";
    EXPECT_EQ(Units(assigned), u"short");
    EXPECT_EQ(assigned.Capacity(), 201);
}

TEST(WideString, Narrow_text_is_sized_by_one_call_and_converted_by_the_next) {
    Faulty<platform::MultiByteToWideChar> conversions;
    std::vector<bool> sizing;
    conversions.Replace([&](const char* narrow, char16_t* wide, std::int32_t count) {
        sizing.push_back(wide == nullptr && count == 0);
        return conversions.Native(narrow, wide, count);
    });
    EXPECT_EQ(Units(XString("ab")), u"ab");
    EXPECT_EQ(sizing, (std::vector<bool>{true, false}));
}

TEST(WideString, Narrow_text_that_cannot_be_converted_gives_the_empty_string) {
    Faulty<platform::MultiByteToWideChar> conversions;
    for (const int call : {1, 2}) {
        XString text(u"old");
        conversions.FailCall(call);
        text = "";
        EXPECT_TRUE(text.IsEmpty()) << call;
        EXPECT_TRUE(IsSound(text)) << call;
    }
}

TEST(WideString, ToNarrow_stands_until_the_next_ToNarrow) {
    XString text(u"first");
    const char* const narrow = text.ToNarrow();
    EXPECT_STREQ(narrow, "first");
    text = u"second";
    EXPECT_STREQ(narrow, "first");
    EXPECT_STREQ(text.ToNarrow(), "second");
    text = u"";
    EXPECT_STREQ(text.ToNarrow(), "");
}

TEST(WideString, ToNarrow_takes_a_block_only_when_the_size_changes) {
    struct Row {
        const char16_t* text;
        int allocations;
    } const rows[] = {{u"abc", 1}, {u"abc", 0}, {u"xyz", 0}, {u"ab", 1}, {u"abcd", 1}};
    XString text;
    for (const Row& row : rows) {
        text.Assign(row.text, 0);
        int calls = 0;
        {
            AllocationFaults memory;
            text.ToNarrow();
            calls = memory.Calls();
        }
        EXPECT_EQ(calls, row.allocations) << Narrow(row.text);
        EXPECT_EQ(Units(XString(text.ToNarrow())), row.text);
    }
}

TEST(WideString, ToNarrow_that_cannot_convert_gives_the_empty_text) {
    XString text(u"text");
    EXPECT_STREQ(text.ToNarrow(), "text");
    Faulty<platform::WideCharToMultiByte> conversions;
    conversions.FailAlways(0);
    EXPECT_STREQ(text.ToNarrow(), "");
    conversions.FailCall(2);
    EXPECT_STREQ(text.ToNarrow(), "");
    EXPECT_EQ(Units(text), u"text");
}

TEST(WideString, Memory_that_runs_out_raises_and_leaves_nothing_behind) {
    const int allocations = FailEachAllocation([] {
        XString text(kLong.c_str());
        XString copy(text);
        copy += text;
        copy.Append(kLong.c_str());
        copy.Append(kLong.c_str());
        copy.Insert(kLong.c_str(), 3);
        copy.Quote();
        XString upper = text.ToUpper();
        copy = upper + XString(text.ToNarrow());
        text = copy.Mid(2, 190);
        XString narrow(copy.ToNarrow());
        narrow.Format(u"%s%d", kLong.c_str(), 1);
        narrow.FormatFallback(u"%s%i", kLong.c_str(), 1);
    });
    EXPECT_GT(allocations, 20);
}

TEST(WideString, A_failed_assignment_leaves_an_empty_string_and_a_failed_growth_the_old_one) {
    XString assigned(kLong.c_str()), grown(kLong.c_str());
    const std::u16string more = kLong + kLong;
    EXPECT_TRUE(RaisesWithoutMemory([&] { assigned.Assign(more.c_str(), 0); }));
    EXPECT_TRUE(RaisesWithoutMemory([&] { grown.Append(more.c_str()); }));
    EXPECT_TRUE(assigned.IsEmpty());
    EXPECT_EQ(assigned.Capacity(), 128);
    EXPECT_EQ(Units(grown), kLong);
    EXPECT_TRUE(IsSound(assigned) && IsSound(grown));
}

TEST(WideString, Random_operations_agree_with_the_obvious_twin) {
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> script(2000);
        for (std::uint8_t& byte : script) byte = static_cast<std::uint8_t>(random());
        ASSERT_EQ(WideStringTwin(script.data(), script.size()).Run(), "") << "seed " << seed;
    }
}

}  // namespace
