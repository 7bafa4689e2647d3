#include "supervisor/quotes.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/log.h"
#include "supervisor/owner.h"

TEST(ReplaceQuotes, turns_each_quote_into_four_characters_and_leaves_the_rest) {
    const struct {
        const char16_t *before, *after;
    } rows[] = {{u"", u""},
                {u"a", u"a"},
                {u"\"", u"{qt}"},
                {u"\"\"\"", u"{qt}{qt}{qt}"},
                {u"\"a\"", u"{qt}a{qt}"},
                {u"a\"b\"c", u"a{qt}b{qt}c"},
                {u"{qt}\"{qt}", u"{qt}{qt}{qt}"},
                {u"'\u201c`\\\"", u"'\u201c`\\{qt}"}};
    for (const auto& row : rows) {
        XString text(row.before);
        ReplaceQuotes(text, XLog(), "here");
        EXPECT_EQ(std::u16string(text.Text()), row.after);
        EXPECT_EQ(text.Length(), static_cast<std::int32_t>(std::u16string(row.after).size()));
    }
}

TEST(ReplaceQuotes, takes_a_hundred_thousand_quotes) {
    std::u16string many;
    for (int index = 0; index < 100000; ++index) many += u"\"x";
    XString text(many.c_str());
    ReplaceQuotes(text, XLog(), "here");
    EXPECT_EQ(text.Length(), 500000);
    EXPECT_EQ(CountOf(text.Text(), u"{qt}x"), 100000u);
}

TEST(ReplaceQuotes, marks_the_call_under_the_name_given) {
    Owner owner;
    XString text;
    ReplaceQuotes(text, owner.Log(), "Somebody::ReplaceQuotes");
    EXPECT_EQ(owner.trace.Text(), u"->->  [Somebody::ReplaceQuotes]\r\n<-<-  [Somebody::ReplaceQuotes]\r\n");
}
