// What encoders take, what they refuse, and that the same sound makes the same file.
#include "ogg/ogg_codecs.h"

using namespace ogg_file;

namespace {

class OggEncoder : public OggTest {
  protected:
    std::string Encode(const char16_t* settings, std::uint32_t frames = 50000) {
        return ogg.Encode(frames, 1, 2, settings);
    }
};

TEST_P(OggEncoder, Makes_the_same_file_of_the_same_sound) {
    const std::vector<float> sound = MakeSound(30011, 2);
    const QvFormatExtensible format = FloatFormat(ogg.codec.rate, 2);
    const std::string first = ogg.Encode(sound, format);
    EXPECT_EQ(ogg.Encode(sound, format), first);
    for (const std::vector<std::uint32_t>& pieces :
         {std::vector<std::uint32_t>{1, 7, 4000, 9999}, {240088}, {32768}}) {
        ASSERT_TRUE(ogg.modules.Encode(ogg.folder / u"other name", format, BytesOf(sound), pieces));
        EXPECT_TRUE(ogg.folder.Read(u"other name") == first);
    }
}

TEST_P(OggEncoder, Gives_other_streams_other_numbers) {
    const auto serial = [&](const std::string& file) { return Pages(file)[0].serial; };
    const std::uint32_t first = serial(ogg.Encode(5000, 1));
    EXPECT_NE(serial(ogg.Encode(5000, 2)), first);
    EXPECT_NE(serial(ogg.Encode(5001, 1, 1)), first);
    EXPECT_NE(serial(ogg.Encode(5000, 1, 2, ogg.codec.fine)), first);
    EXPECT_EQ(serial(ogg.Encode(9000, 1)), first);  // from its beginning alone
}

TEST_P(OggEncoder, Begins_and_ends_its_stream_once) {
    for (const std::uint32_t frames : {0u, 1u, 30000u, 200000u}) {
        const std::vector<Page> pages = Pages(Encode(u"", frames));
        for (std::size_t i = 0; i < pages.size(); ++i) {
            EXPECT_EQ((pages[i].flags & kBegins) != 0, i == 0) << frames;
            EXPECT_EQ((pages[i].flags & kEnds) != 0, i + 1 == pages.size()) << frames;
            EXPECT_EQ(pages[i].number, i) << frames;
        }
        const std::size_t first = frames == 0 ? 0 : FirstAudioPage(pages);
        EXPECT_TRUE(frames == 0 || (pages[first].flags & kContinued) == 0) << frames;
    }
}

TEST_P(OggEncoder, Takes_samples_of_every_kind) {
    constexpr std::uint32_t kFrames = 9001;
    for (const int width : {8, 16, 24, 32, 64}) {
        const auto bits = static_cast<std::uint16_t>(width);
        QvFormatExtensible format = FloatFormat(ogg.codec.rate, 2);
        format.Format.wFormatTag = bits == 64 ? QV_FORMAT_FLOAT : QV_FORMAT_PCM;
        format.Format.wBitsPerSample = bits;
        format.Format.nBlockAlign = static_cast<std::uint16_t>(bits / 4);
        format.Format.nAvgBytesPerSec = ogg.codec.rate * bits / 4;
        const std::string audio(std::size_t{kFrames} * bits / 4, '\x10');
        ASSERT_TRUE(ogg.modules.Encode(ogg.folder / ogg.codec.file, format, audio)) << bits;
        EXPECT_EQ(ogg.Decode(ogg.folder.Read(ogg.codec.file)).audio.size(), kFrames * 8) << bits;
    }
}

TEST_P(OggEncoder, Refuses_what_it_can_not_put_into_a_file) {
    EXPECT_EQ(ogg.Refusal(FloatFormat(ogg.codec.rate, 9), u""), u"9 channels can't be encoded");
    EXPECT_EQ(ogg.Refusal(FloatFormat(0, 2), u""), u"a sample rate of 0 can't be encoded");
    EXPECT_NE(ogg.Refusal(FloatFormat(0xFFFFFFFF, 2), u""), u"");
    EXPECT_NE(ogg.Refusal(FloatFormat(2000000, 2), u""), u"");
}

TEST_P(OggEncoder, Fails_for_audio_that_ends_within_a_frame) {
    const QvFormatExtensible format = FloatFormat(ogg.codec.rate, 2);
    EXPECT_FALSE(
        ogg.modules.Encode(ogg.folder / ogg.codec.file, format, BytesOf(MakeSound(100, 2)).substr(0, 799)));
    EXPECT_EQ(ogg.Told(ogg.modules.Log().TakeErrors()), u"its audio ends within a frame");
}

TEST_P(OggEncoder, Leaves_no_trace_of_an_encoding_in_the_next_one) {
    const std::string first = Encode(u"", 5000);
    ogg.Encode(70000, 9, 5, ogg.codec.fine);
    ogg.Refusal(FloatFormat(ogg.codec.rate, 9), u"");
    EXPECT_EQ(Encode(u"", 5000), first);
}

OGG_TESTS(OggEncoder);

TEST(VorbisEncoder, Settings_do_what_they_say) {
    OggModules ogg(kVorbis);
    const auto kbits = [&](const char16_t* settings) {
        return static_cast<double>(ogg.Encode(441000, 1, 2, settings).size()) * 8 / 10000;
    };
    const double low = kbits(u"-quality=-1"), middle = kbits(u"-quality=5"), high = kbits(u"-quality=10");
    EXPECT_LT(low * 1.5, middle);
    EXPECT_LT(middle * 1.5, high);
    EXPECT_EQ(kbits(u""), middle);
    EXPECT_GT(kbits(u"-quality=5.5"), middle);
    EXPECT_NEAR(kbits(u"-bitrate=96"), 96, 20);
    EXPECT_NEAR(kbits(u"-bitrate=192"), 192, 20);
}

TEST(VorbisEncoder, Settings_that_make_no_sense_are_refused_in_words) {
    OggModules ogg(kVorbis);
    const struct {
        const char16_t* settings;
        const char16_t* told;
    } rows[] = {
        {u"-quality=11", u"the setting -quality is \"11\", but must be a number from -1 to 10"},
        {u"-quality=-1.1", u"the setting -quality is \"-1.1\", but must be a number from -1 to 10"},
        {u"-quality=high", u"the setting -quality is \"high\", but must be a number from -1 to 10"},
        {u"-bitrate=31", u"the setting -bitrate is \"31\", but must be a whole number from 32 to 500"},
        {u"-bitrate=501", u"the setting -bitrate is \"501\", but must be a whole number from 32 to 500"},
        {u"-bitrate=128 -quality=5", u"the settings -quality and -bitrate exclude each other"},
        {u"-mode=cbr", u"the setting -mode is not known"},
    };
    for (const auto& row : rows) EXPECT_EQ(ogg.Refusal(FloatFormat(44100, 2), row.settings), row.told);
    EXPECT_EQ(ogg.Refusal(FloatFormat(200001, 2), u""), u"Vorbis has no mode for 2 channels at 200001 Hz");
    EXPECT_EQ(ogg.Refusal(FloatFormat(8000, 1), u"-bitrate=500"),
              u"Vorbis has no bit rate of 500 kbit/s for 1 channels at 8000 Hz");
}

TEST(VorbisEncoder, Takes_every_rate_it_has_a_mode_for) {
    OggModules ogg(kVorbis);
    for (const std::uint32_t rate :
         {1u, 100u, 4000u, 7999u, 8000u, 11025u, 12000u, 16000u, 22050u, 24000u, 32000u, 44100u, 48000u,
          50001u, 88200u, 96000u, 176400u, 192000u, 200000u})
        for (const std::uint32_t channels : {1u, 2u, 6u}) {
            const Decoding decoding =
                ogg.Decode(ogg.Encode(MakeSound(12345, channels), FloatFormat(rate, channels)));
            EXPECT_EQ(ValueOf(decoding.Format().Format.nSamplesPerSec), rate);
            EXPECT_EQ(decoding.audio.size(), std::size_t{12345} * channels * 4) << rate;
        }
}

TEST(VorbisEncoder, Rows_tell_of_the_file) {
    OggModules ogg(kVorbis);
    const std::string file = ogg.Encode(44100, 1, 2, u"-bitrate=128");
    EXPECT_EQ(ogg.Row(file, u"Container"), u"Ogg");
    EXPECT_EQ(ogg.Row(file, u"Codec"), u"Vorbis");
    EXPECT_EQ(ogg.Row(file, u"Nominal bit rate"), u"128 kbit/s");
    EXPECT_NE(ogg.Row(file, u"Encoder").find(u"Vorbis"), std::u16string::npos);
}

}  // namespace
