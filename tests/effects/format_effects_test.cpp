// What holds for Resample, Channels and Depth alike.
#include <gtest/gtest.h>

#include <cstring>

#include "effects/effect_run.h"
#include "support/codec/codec_modules.h"

namespace {

struct Conversion {
    const char16_t* effect;
    const char16_t* settings;
};

class FormatEffects : public testing::Test {
  protected:
    EffectModule& Effect(std::u16string_view name) {
        return name == u"Resample" ? mResample : name == u"Channels" ? mChannels : mDepth;
    }
    EffectRun Run(const Conversion& conversion, const QvFormatExtensible& format, std::string_view audio,
                  const std::vector<std::size_t>& pieces = {4096}) {
        return Effect(conversion.effect).Run(conversion.settings, format, audio, pieces);
    }

    EffectModule mResample{u"Resample"}, mChannels{u"Channels"}, mDepth{u"Depth"};
};

// One that changes 16-bit stereo at 44100 Hz, for each.
constexpr Conversion kChanges[] = {
    {u"Resample", u"-rate=48000"}, {u"Channels", u"-channels=6"}, {u"Depth", u"-bits=24"}};

QvFormatExtensible Stereo() {
    return SampleFormat(16, false, 2, 44100);
}

// With loudspeakers and a type code that is whole.
QvFormatExtensible Surround(std::uint16_t channels, std::uint16_t bits, std::uint16_t validBits,
                            bool isFloat) {
    constexpr std::uint8_t kTail[] = {0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
    QvFormatExtensible format = SampleFormat(bits, isFloat, channels, 48000, validBits);
    format.dwChannelMask = 0x60F;
    std::memcpy(format.SubFormat + 2, kTail, sizeof kTail);
    return format;
}

TEST_F(FormatEffects, leave_every_bit_of_what_is_to_stay) {
    const QvFormatExtensible formats[] = {Stereo(),
                                          SampleFormat(8, false, 1, 8000),
                                          SampleFormat(64, true, 3, 96000),
                                          SampleFormat(24, false, 9, 44100),
                                          SampleFormat(32, true, 2, 44100),
                                          Surround(6, 24, 20, false),
                                          Surround(6, 32, 32, true),
                                          SampleFormat(32, false, 2, 7, 25)};
    for (const QvFormatExtensible& format : formats) {
        const QvFormat& head = format.Format;
        const std::string audio =
            Noise(SampleFormat(8, false, 1), 999u * head.nBlockAlign);  // float of any bits
        const std::u16string rate =
            u"-rate=" + std::u16string(XString::FromUInt64(head.nSamplesPerSec).Text());
        const std::u16string count =
            u"-channels=" + std::u16string(XString::FromUInt64(head.nChannels).Text());
        const std::u16string bits =
            u"-bits=" + std::u16string(XString::FromUInt64(head.wBitsPerSample).Text());
        const Conversion conversions[] = {{u"Resample", u""}, {u"Resample", rate.c_str()},
                                          {u"Channels", u""}, {u"Channels", count.c_str()},
                                          {u"Depth", u""},    {u"Depth", bits.c_str()}};
        for (const Conversion& conversion : conversions) {
            const EffectRun run = Run(conversion, format, audio, {100});
            EXPECT_TRUE(run.good) << testing::PrintToString(run.errors);
            EXPECT_TRUE(run.audio == audio) << testing::PrintToString(conversion.settings);
            EXPECT_EQ(std::memcmp(&run.format, &format, sizeof format), 0)
                << testing::PrintToString(conversion.settings);
            EXPECT_EQ(run.tailBlocks, 1u);
        }
    }
}

TEST_F(FormatEffects, tell_the_format_that_they_will_give) {
    const struct {
        Conversion conversion;
        std::uint16_t channels, bits;
        std::uint32_t rate, type;
    } rows[] = {{kChanges[0], 2, 16, 48000, QV_FORMAT_PCM},
                {kChanges[1], 6, 16, 44100, QV_FORMAT_PCM},
                {kChanges[2], 2, 24, 44100, QV_FORMAT_PCM},
                {{u"Depth", u"-bits=32 -type=float"}, 2, 32, 44100, QV_FORMAT_FLOAT}};
    for (const auto& row : rows) {
        const EffectRun run = Run(row.conversion, Stereo(), "");
        ASSERT_TRUE(run.began) << testing::PrintToString(run.errors);
        QvFormatExtensible expected =
            SampleFormat(row.bits, row.type == QV_FORMAT_FLOAT, row.channels, row.rate);
        EXPECT_EQ(std::memcmp(&run.format, &expected, sizeof expected), 0)
            << testing::PrintToString(row.conversion.settings);
        EXPECT_EQ(ValueOf(Effect(row.conversion.effect).Session().lengthMs), 12345u);
    }
}

// Channels that were mixed stand on no loudspeakers that a mask of before could name, and where samples were
// computed every bit of them is used.
TEST_F(FormatEffects, keep_an_extensible_record_true) {
    const struct {
        Conversion conversion;
        std::uint32_t mask;
        std::uint16_t bits;
        std::uint8_t type;
    } rows[] = {{{u"Resample", u"-rate=44100"}, 0x60F, 24, QV_FORMAT_PCM},
                {{u"Channels", u"-channels=2"}, 0, 24, QV_FORMAT_PCM},
                {{u"Depth", u"-bits=16"}, 0x60F, 16, QV_FORMAT_PCM},
                {{u"Depth", u"-bits=32 -type=float"}, 0x60F, 32, QV_FORMAT_FLOAT}};
    for (const auto& row : rows) {
        const EffectRun run = Run(row.conversion, Surround(6, 24, 20, false), "");
        ASSERT_TRUE(run.began) << testing::PrintToString(run.errors);
        const QvFormatExtensible& format = run.format;
        EXPECT_EQ(format.Format.wFormatTag, std::uint16_t{QV_FORMAT_EXTENSIBLE});
        EXPECT_EQ(format.Format.cbSize, 22);
        EXPECT_EQ(format.dwChannelMask, row.mask);
        EXPECT_EQ(format.Format.wBitsPerSample, row.bits);
        EXPECT_EQ(format.wValidBitsPerSample, row.bits);
        EXPECT_EQ(format.SubFormat[0], row.type);
        EXPECT_EQ(std::memcmp(format.SubFormat + 1, Surround(6, 24, 20, false).SubFormat + 1, 15), 0);
    }
}

TEST_F(FormatEffects, do_not_care_how_the_audio_is_cut) {
    const std::string audio = Noise(Stereo(), 30000);
    for (const Conversion& conversion : kChanges) {
        const EffectRun whole = Run(conversion, Stereo(), audio, {30000});
        EXPECT_TRUE(whole.good) << testing::PrintToString(whole.errors);
        EXPECT_FALSE(whole.audio.empty());
        for (const std::vector<std::size_t>& pieces :
             {std::vector<std::size_t>{7}, {29999, 1}, {0, 1, 0, 4099}, {16384}, {1, 2, 3, 5, 8, 13000, 1}}) {
            const EffectRun run = Run(conversion, Stereo(), audio, pieces);
            EXPECT_TRUE(run.good && run.audio == whole.audio) << testing::PrintToString(conversion.effect);
        }
    }
}

// Each run is a new stream, also one behind a run that was broken off.
TEST_F(FormatEffects, begin_every_run_from_nothing) {
    const std::string audio = Noise(Stereo(), 5000);
    for (const Conversion& conversion : kChanges) {
        const std::string first = Run(conversion, Stereo(), audio).audio;
        EffectModule& effect = Effect(conversion.effect);
        std::string dropped;
        bool finished = true;
        ASSERT_TRUE(effect.Begin(conversion.settings, Stereo()));
        EXPECT_TRUE(effect.Pass(audio, false, dropped, &finished));
        EXPECT_FALSE(finished);
        EXPECT_TRUE(effect.End());
        EXPECT_TRUE(Run({conversion.effect, u""}, SampleFormat(8, false, 1), audio).audio == audio);
        EXPECT_TRUE(Run(conversion, Stereo(), audio).audio == first);
    }
}

TEST_F(FormatEffects, give_nothing_of_nothing) {
    for (const Conversion& conversion : kChanges) {
        const EffectRun run = Run(conversion, Stereo(), "");
        EXPECT_TRUE(run.good) << testing::PrintToString(run.errors);
        EXPECT_EQ(run.audio, "");
        EXPECT_EQ(run.tailBlocks, 1u);
    }
}

TEST_F(FormatEffects, refuse_in_words_what_they_can_not_do) {
    const QvFormatExtensible stereo = Stereo(), floats = SampleFormat(32, true, 2, 44100);
    const std::u16string rates = u", but must be a whole number from 1 to 2147483647\r\n";
    const std::u16string counts = u", but must be a whole number from 1 to 65535\r\n";
    const std::u16string depths = u", but must be one of 8 16 24 32 64\r\n";
    const std::u16string outOfReach =
        u": in lowest terms the lower rate must be 1 or a multiple of 2 or 3, and the filters must fit into "
        u"512 "
        u"MiB\r\n";
    const struct {
        Conversion conversion;
        QvFormatExtensible format;
        std::u16string error;
    } rows[] = {
        {{u"Resample", u"-rate=0"}, stereo, u"Resample: the setting -rate is \"0\"" + rates},
        {{u"Resample", u"-rate=-44100"}, stereo, u"Resample: the setting -rate is \"-44100\"" + rates},
        {{u"Resample", u"-rate=44.1"}, stereo, u"Resample: the setting -rate is \"44.1\"" + rates},
        {{u"Resample", u"-rate=2147483648"},
         stereo,
         u"Resample: the setting -rate is \"2147483648\"" + rates},
        {{u"Resample", u"-rate="}, stereo, u"Resample: the setting -rate is \"\"" + rates},
        {{u"Resample", u"-bits=16"}, stereo, u"Resample: the setting -bits is not known\r\n"},
        {{u"Resample", u"-rate=1 -rate=2"}, stereo, u"Resample: the setting -rate is given twice\r\n"},
        {{u"Resample", u"48000"},
         stereo,
         u"Resample: the setting \"48000\" does not have the form -name=value\r\n"},
        {{u"Resample", u"-rate=30000"},
         SampleFormat(16, false, 2, 25000),
         u"Resample: 25000 Hz can't be brought to 30000 Hz" + outOfReach},
        {{u"Resample", u"-rate=25000"},
         SampleFormat(16, false, 2, 30000),
         u"Resample: 30000 Hz can't be brought to 25000 Hz" + outOfReach},
        {{u"Resample", u""},
         SampleFormat(12, false),
         u"Resample: samples of type 1 with 12 bits can't be changed\r\n"},
        {{u"Channels", u"-channels=0"}, stereo, u"Channels: the setting -channels is \"0\"" + counts},
        {{u"Channels", u"-channels=65536"}, stereo, u"Channels: the setting -channels is \"65536\"" + counts},
        {{u"Channels", u"-channels=two"}, stereo, u"Channels: the setting -channels is \"two\"" + counts},
        {{u"Channels", u"-channels=9"},
         stereo,
         u"Channels: 2 channels can't be mixed to 9: 1 to 8 can be mixed to 1 to 8\r\n"},
        {{u"Channels", u"-channels=8"},
         SampleFormat(16, false, 9),
         u"Channels: 9 channels can't be mixed to 8: 1 to 8 can be mixed to 1 to 8\r\n"},
        {{u"Channels", u""}, SampleFormat(16, false, 0), u"Channels: 0 channels can't be changed\r\n"},
        {{u"Depth", u"-bits=12"}, stereo, u"Depth: the setting -bits is \"12\"" + depths},
        {{u"Depth", u"-bits=16.0"}, stereo, u"Depth: the setting -bits is \"16.0\"" + depths},
        {{u"Depth", u"-type=double"},
         stereo,
         u"Depth: the setting -type is \"double\", but must be one of integer float\r\n"},
        {{u"Depth", u"-bits=64"}, stereo, u"Depth: integers have 8, 16, 24 or 32 bits\r\n"},
        {{u"Depth", u"-bits=64 -type=float"},
         stereo,
         u"Depth: integers can't become float of 64 bits, only of 32\r\n"},
        {{u"Depth", u"-type=float"}, stereo, u"Depth: float has 32 or 64 bits\r\n"},
        {{u"Depth", u"-bits=24 -type=float"}, floats, u"Depth: float has 32 or 64 bits\r\n"},
        {{u"Depth", u"-bits=64 -type=integer"}, floats, u"Depth: integers have 8, 16, 24 or 32 bits\r\n"},
        {{u"Depth", u"-type=integer"},
         SampleFormat(64, true),
         u"Depth: integers have 8, 16, 24 or 32 bits\r\n"},
        {{u"Depth", u"-bits=32"},
         SampleFormat(16, false, 20000, 48000),
         u"Depth: 20000 channels of 32 bits at 48000 Hz are more than a format can say\r\n"},
        {{u"Depth", u"-bits=32"},
         SampleFormat(16, false, 2, 0x7FFFFFFF),
         u"Depth: 2 channels of 32 bits at 2147483647 Hz are more than a format can say\r\n"},
    };
    for (const auto& row : rows) {
        const EffectRun run = Run(row.conversion, row.format, "");
        EXPECT_FALSE(run.began) << testing::PrintToString(row.error);
        EXPECT_EQ(run.errors, row.error);
        EXPECT_FALSE(Effect(row.conversion.effect).End());
    }
}

TEST_F(FormatEffects, refuse_a_block_that_ends_within_a_frame_and_the_run_with_it) {
    for (const Conversion& conversion : kChanges) {
        EffectModule& effect = Effect(conversion.effect);
        ASSERT_TRUE(effect.Begin(conversion.settings, Stereo()));
        std::string audio;
        bool finished = false;
        EXPECT_FALSE(effect.Pass("123", false, audio, &finished));
        EXPECT_FALSE(effect.Pass("1234", true, audio, &finished));
        EXPECT_FALSE(effect.End());
        EXPECT_EQ(effect.Log().TakeErrors(),
                  std::u16string(conversion.effect) + u": a block ends within a frame\r\n");
    }
}

}  // namespace
