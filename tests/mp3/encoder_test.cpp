#include "mp3/mp3_file.h"

namespace {

using Mp3Encoder = Mp3;

TEST_F(Mp3Encoder, takes_its_settings) {
    for (const char16_t* settings :
         {u"", u"-bitrate=128", u"-bitrate=320", u"-quality=0", u"-quality=4.5", u" -quality=9 ",
          u"-bitrate=64 -mode=stereo", u"-algorithm=7  -mode=joint"}) {
        const Decoding decoding = modules.Decode(Encode(settings));
        EXPECT_EQ(decoding.errors, u"");
        EXPECT_EQ(decoding.audio.size(), kFrames * 8u);
    }
}

TEST_F(Mp3Encoder, refuses_what_it_does_not_know) {
    const struct {
        const char16_t* settings;
        const char16_t* why;
    } rows[] = {
        {u"-bitrate=100", u"MP3 has no bit rate of 100 kbit/s at 44100 Hz"},
        {u"-bitrate=8", u"MP3 has no bit rate of 8 kbit/s at 44100 Hz"},
        {u"-bitrate=0", u"the setting -bitrate is \"0\", but must be a whole number from 8 to 320"},
        {u"-bitrate=128k", u"the setting -bitrate is \"128k\", but must be a whole number from 8 to 320"},
        {u"-bitrate=", u"the setting -bitrate is \"\", but must be a whole number from 8 to 320"},
        {u"-quality=10", u"the setting -quality is \"10\", but must be a number from 0 to 9.999"},
        {u"-quality=-1", u"the setting -quality is \"-1\", but must be a number from 0 to 9.999"},
        {u"-quality=nan", u"the setting -quality is \"nan\", but must be a number from 0 to 9.999"},
        {u"-quality=2 -bitrate=128", u"the settings -bitrate and -quality exclude each other"},
        {u"-quality=2 -quality=2", u"the setting -quality is given twice"},
        {u"-mode=mono", u"the setting -mode is \"mono\", but must be one of joint stereo"},
        {u"-vbr=1", u"the setting -vbr is not known"},
        {u"quality=2", u"the setting \"quality=2\" does not have the form -name=value"},
    };
    for (const auto& row : rows) {
        EXPECT_FALSE(
            modules.Encode(folder / u"b.mp3", PcmFormat(44100, 2), Tones(10, 2), {100}, row.settings));
        const std::u16string expected = (folder / u"b.mp3") + u": " + row.why + u"\r\n";
        EXPECT_EQ(modules.Log().TakeErrors(), expected);
    }
    EXPECT_FALSE(folder.Has(u"b.mp3"));
}

TEST_F(Mp3Encoder, has_the_rates_of_the_format_and_no_others) {
    for (const std::uint32_t rate : {8000u, 11025u, 12000u, 16000u, 22050u, 24000u, 32000u, 44100u, 48000u}) {
        for (const std::uint16_t channels : {std::uint16_t{1}, std::uint16_t{2}}) {
            const Decoding decoding = modules.Decode(Encode(u"", rate, channels));
            EXPECT_EQ(decoding.errors, u"") << rate;
            EXPECT_EQ(decoding.Format().Format.nSamplesPerSec, rate);
            EXPECT_EQ(decoding.Format().Format.nChannels, channels);
            EXPECT_EQ(decoding.audio.size(), kFrames * channels * 4u) << rate;
        }
    }
    for (const std::uint32_t rate : {1u, 7999u, 44101u, 88200u, 96000u, 4000000000u}) {
        EXPECT_FALSE(modules.Encode(folder / u"b.mp3", PcmFormat(rate, 2), Tones(10, 2)));
        EXPECT_NE(modules.Log().TakeErrors().find(u"MP3 has no sample rate of"), std::u16string::npos)
            << rate;
    }
    EXPECT_FALSE(modules.Encode(folder / u"b.mp3", PcmFormat(44100, 3), Tones(10, 3)));
    EXPECT_NE(modules.Log().TakeErrors().find(u"3 channels can't be encoded"), std::u16string::npos);
}

TEST_F(Mp3Encoder, fails_at_the_end_when_the_audio_ends_within_a_frame) {
    EXPECT_FALSE(modules.Encode(folder / u"b.mp3", PcmFormat(44100, 2), Tones(10, 2) + "abc"));
    EXPECT_NE(modules.Log().TakeErrors().find(u"its audio ends within a frame"), std::u16string::npos);
}

}  // namespace
