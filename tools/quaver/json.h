// JsonWriter: one JSON document, indented, built from the outside in.
//
// A key precedes every value inside an object and none inside an array; the caller keeps that order. Text is
// UTF-16 and stays as it is except where JSON asks for an escape, and except for lone surrogates, which file
// names may hold and UTF-8 can't: they are escaped too, so that every name survives.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class JsonWriter {
  public:
    JsonWriter& Key(std::u16string_view key);
    JsonWriter& Text(std::u16string_view text);
    JsonWriter& Number(std::int64_t number);
    JsonWriter& BeginObject() { return Begin(u'{'); }
    JsonWriter& EndObject() { return End(u'}'); }
    JsonWriter& BeginArray() { return Begin(u'['); }
    JsonWriter& EndArray() { return End(u']'); }

    // The document, complete once everything begun has ended, with a line end behind it.
    std::u16string Document() const { return mText + u"\n"; }

  private:
    JsonWriter& Begin(char16_t bracket);
    JsonWriter& End(char16_t bracket);
    void NewElement();
    void NewLine();
    void Quote(std::u16string_view text);

    std::u16string mText;
    std::size_t mDepth = 0;
    bool mEmpty = true;      // nothing stands yet in the innermost brackets
    bool mAfterKey = false;  // the next value belongs to the key before it
};
