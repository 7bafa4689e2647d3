// A file's tags and its picture go along through a conversion, whatever the two formats.
#include <map>
#include <set>
#include <sstream>

#include "endtoend/conversion.h"
#include "endtoend/recordings.h"
#include "endtoend/stage.h"
#include "foundation/qv_text.h"

namespace {

using Tags = std::multiset<std::pair<std::u16string, std::u16string>>;

const std::map<std::string, std::u16string> kEncoders = {{"wav", u"Wave"},       {"flac", u"FLAC"},
                                                         {"ogg", u"Ogg Vorbis"}, {"opus", u"Opus"},
                                                         {"mp3", u"MP3"},        {"aiff", u"AIFF"}};

std::vector<std::string> Extensions() {
    std::istringstream words(QV_EXTENSIONS);
    std::vector<std::string> extensions;
    for (std::string word; words >> word;) extensions.push_back(word);
    return extensions;
}

// A picture as far as anybody looks: the first bytes of a PNG file, and noise.
std::string Picture() {
    std::string bytes = "\x89PNG\r\n\x1A\n";
    for (unsigned i = 0; i < 50000; ++i) bytes += static_cast<char>(i * i >> 3);
    return bytes;
}

class Carry : public Stage {
  protected:
    std::u16string Name(const char16_t* stem, const std::string& extension) const {
        return files / (std::u16string(stem) + u"." + std::u16string(extension.begin(), extension.end()));
    }

    Outcome Convert(const std::u16string& from, const std::u16string& to, const std::string& extension) {
        Order order{from, to};
        order.encoder = kEncoders.at(extension);
        return host.Convert(order);
    }

    void Write(const std::u16string& file, const char16_t* name, const char16_t* value,
               const std::string& art = "") {
        const auto size = static_cast<std::uint32_t>(art.size());
        EXPECT_EQ(
            library.QACWriteIDTag(host.Handle(), ToQvText(file.c_str()), ToQvText(name), ToQvText(value),
                                  reinterpret_cast<const std::uint8_t*>(art.data()), &size),
            QV_DONE);
        library.QACClearIDTagList(host.Handle());
    }

    // All rows but the encoder's own, art among them as its bytes.
    Tags Read(const std::u16string& file) {
        Tags tags;
        std::vector<QvChar> name(4096), value(65536);
        std::vector<std::uint8_t> art(1000000);
        for (std::int32_t index = 0;; ++index) {
            std::uint64_t size = art.size();
            const std::int32_t result = library.QACReadIDTag(host.Handle(), ToQvText(file.c_str()), index,
                                                             name.data(), value.data(), art.data(), &size);
            if (result != QV_DONE && result != QV_NO_ART) break;
            const std::u16string key = FromQvText(name.data());
            if (key == u"ENCODER" || key == u"ENCODING" || key == u"ENCODEDBY" || key == u"ENCODER_OPTIONS" ||
                key.empty())
                continue;
            tags.emplace(
                key, size > 0 ? std::u16string(art.begin(), art.begin() + static_cast<std::ptrdiff_t>(size))
                              : std::u16string(FromQvText(value.data())));
        }
        library.QACClearIDTagList(host.Handle());
        return tags;
    }

    Host host{library};
};

}  // namespace

TEST_F(Carry, Takes_tags_and_art_from_any_format_to_any_other) {
    const std::u16string source = files.Write(u"source.wav", Recording(48000));
    const std::string picture = Picture();
    const Tags expected = {
        {u"TITLE", u"\u00C4 song \u266B \U0001F3B5"},
        {u"ARTIST", u"One"},
        {u"ARTIST", u"Another"},
        {u"TRACKNUMBER", u"3"},
        {u"TRACKTOTAL", u"12"},
        {u"MY OWN FIELD", u"something = else"},
        {u"PICTURE", std::u16string(reinterpret_cast<const std::uint8_t*>(picture.data()),
                                    reinterpret_cast<const std::uint8_t*>(picture.data()) + picture.size())}};
    for (const std::string& from : Extensions()) {
        const std::u16string tagged = Name(u"tagged", from);
        ASSERT_TRUE(Convert(source, tagged, from).Succeeded()) << from;
        Write(tagged, u"TITLE", u"\u00C4 song \u266B \U0001F3B5");
        Write(tagged, u"ARTIST", u"One\u001FAnother");
        Write(tagged, u"TRACKNUMBER", u"3");
        Write(tagged, u"TRACKTOTAL", u"12");
        Write(tagged, u"MY OWN FIELD", u"something = else");
        Write(tagged, u"PICTURE", u"", picture);
        ASSERT_EQ(Read(tagged), expected) << from;
        for (const std::string& to : Extensions()) {
            const std::u16string converted = Name(u"converted", to);
            const Outcome outcome = Convert(tagged, converted, to);
            EXPECT_TRUE(outcome.Succeeded()) << from << " to " << to;
            EXPECT_EQ(Read(converted), expected) << from << " to " << to;
        }
    }
}
