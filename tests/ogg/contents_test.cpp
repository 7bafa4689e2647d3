// Files whose name promises something else than they hold.
#include "ogg/ogg_codecs.h"

using namespace ogg_file;

namespace {

class OggContentsTest : public OggTest {
  protected:
    std::u16string RefusalOf(std::string_view bytes) {
        const Decoding decoding = ogg.Decode(bytes);
        EXPECT_FALSE(decoding.opened);
        return ogg.Told(decoding.errors);
    }
    static std::string FileWith(std::string_view packet) {
        Page first = PageOf({std::string(packet)}, 1, 0), last = PageOf({std::string(packet)}, 1, 1);
        first.flags = kBegins;
        last.flags = kEnds;
        return first.Bytes() + last.Bytes();
    }
};

TEST_P(OggContentsTest, Another_codec_is_named) {
    const struct {
        std::string_view packet;
        std::u16string name;
    } rows[] = {
        {"\177FLAC\1\0\0\1fLaC....", u"FLAC"},
        {"Speex   1.2.0       ....", u"Speex"},
        {"\200theora....", u"Theora"},
        {"hello", u"an unknown format"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(RefusalOf(FileWith(row.packet)),
                  u"holds " + row.name + u" in Ogg and no " + ogg.codec.codec);
}

TEST_P(OggContentsTest, The_other_of_the_two_is_named) {
    OggModules other(&ogg.codec == &kVorbis ? kOpus : kVorbis);
    EXPECT_EQ(RefusalOf(other.Encode(5000)),
              u"holds " + std::u16string(other.codec.codec) + u" in Ogg and no " + ogg.codec.codec);
}

TEST_P(OggContentsTest, What_is_not_Ogg_is_told) {
    for (const std::string_view bytes : {"", "O", "fLaC", "RIFF....WAVE"})
        EXPECT_EQ(RefusalOf(bytes), u"is no Ogg file");
    EXPECT_EQ(RefusalOf(std::string(200000, 'O')), u"is no Ogg file");
}

TEST_P(OggContentsTest, Headers_that_make_no_sense_are_told) {
    const std::string magic = &ogg.codec == &kVorbis ? "\1vorbis" : "OpusHead";
    const std::u16string text = RefusalOf(FileWith(magic + std::string(22, '\xFF')));
    EXPECT_TRUE(text.starts_with(u"its " + std::u16string(ogg.codec.codec) + u" headers can't be used: "))
        << Narrow(text.c_str());
}

OGG_TESTS(OggContentsTest);

}  // namespace
