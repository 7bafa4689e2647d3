// JSON as quaver writes it, read back by somebody else's reader.
#include "json.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "utf8.h"

namespace {

using Json = nlohmann::json;

// The text as it comes back in a document.
std::string RoundTrip(const std::u16string& text) {
    JsonWriter writer;
    writer.BeginObject().Key(text).Text(text).EndObject();
    const Json document = Json::parse(ToUtf8(writer.Document()));
    EXPECT_EQ(document.size(), 1u);
    EXPECT_EQ(document.begin().key(), document.begin().value());
    return document.begin().value();
}

}  // namespace

TEST(JsonWriter, Every_unit_that_is_text_comes_back) {
    for (char32_t unit = 1; unit <= 0xFFFF; ++unit) {
        if (unit >= 0xD800 && unit < 0xE000) continue;
        const std::u16string text = u"a" + std::u16string(1, static_cast<char16_t>(unit)) + u"b";
        EXPECT_EQ(RoundTrip(text), ToUtf8(text)) << static_cast<std::uint32_t>(unit);
    }
    EXPECT_EQ(RoundTrip(std::u16string(u"a\0b", 3)), std::string("a\0b", 3));
}

TEST(JsonWriter, Pairs_of_surrogates_stay_and_lone_ones_are_escaped) {
    EXPECT_EQ(RoundTrip(u"\U0001F3B5"), "\xF0\x9F\x8E\xB5");
    constexpr char16_t kHigh = 0xD83C, kLow = 0xDFB5;
    const std::pair<std::u16string, std::u16string> rows[] = {
        {{kHigh}, u"\\ud83c"},
        {{kLow}, u"\\udfb5"},
        {{kLow, kHigh}, u"\\udfb5\\ud83c"},
        {{kHigh, u'x'}, u"\\ud83cx"},
        {{kHigh, kHigh, kLow}, u"\\ud83c\U0001F3B5"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(JsonWriter().Text(text).Document(), u"\"" + expected + u"\"\n");
}

TEST(JsonWriter, Numbers_of_64_bits_come_back) {
    for (const std::int64_t number :
         {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(Json::parse(ToUtf8(JsonWriter().Number(number).Document())), number);
}

TEST(JsonWriter, Brackets_nest_and_empty_ones_stand_together) {
    JsonWriter writer;
    writer.BeginObject().Key(u"none").BeginArray().EndArray();
    writer.Key(u"rows")
        .BeginArray()
        .Number(1)
        .BeginObject()
        .EndObject()
        .BeginArray()
        .Text(u"x")
        .EndArray()
        .EndArray();
    writer.Key(u"last").BeginObject().Key(u"a").Number(2).EndObject().EndObject();
    EXPECT_EQ(writer.Document(),
              uR"({
  "none": [],
  "rows": [
    1,
    {},
    [
      "x"
    ]
  ],
  "last": {
    "a": 2
  }
}
)");
    const Json expected = {
        {"none", Json::array()}, {"rows", {1, Json::object(), Json::array({"x"})}}, {"last", {{"a", 2}}}};
    EXPECT_EQ(Json::parse(ToUtf8(writer.Document())), expected);
}
