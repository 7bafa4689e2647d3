// What every codec's modules have in common beside the sound.
#include <cstring>

#include "codecs/codec_table.h"
#include "foundation/id_tag_list.h"
#include "foundation/qv_text.h"
#include "support/handle_gauge.h"

namespace {

class Module : public CodecTest {};

TEST_P(Module, refuses_settings_it_does_not_know_and_leaves_the_file_alone) {
    const std::u16string file = folder.Write(GetParam().file, "something");
    for (const char16_t* settings : {GetParam().wrongSettings, u"nonsense", u"-", u"-a", u"-=1"}) {
        EXPECT_FALSE(modules.Encode(file, StereoFormat(GetParam().rate), MakeAudio(10, 1), {100}, settings));
        EXPECT_NE(modules.Log().TakeErrors(), u"");
        EXPECT_EQ(folder.Read(GetParam().file), "something");
    }
}

TEST_P(Module, refuses_formats_that_make_no_sense) {
    for (const int wrong : {0, 1, 2, 3}) {
        QvFormatExtensible format = StereoFormat(GetParam().rate);
        if (wrong == 0) format.Format.nChannels = 0;
        if (wrong == 1) format.Format.nSamplesPerSec = 0;
        if (wrong == 2) format.Format.wBitsPerSample = 17;
        if (wrong == 3) format.Format.nChannels = 65535;
        EXPECT_FALSE(modules.Encode(folder / GetParam().file, format, MakeAudio(10, 1))) << wrong;
        EXPECT_NE(modules.Log().TakeErrors(), u"") << wrong;
        EXPECT_FALSE(folder.Has(GetParam().file)) << wrong;
    }
}

TEST_P(Module, can_encode_again_after_an_encoding_that_was_never_ended) {
    clEncoderSessionRec session{};
    const std::u16string file = folder / GetParam().file;
    session.file = ToQvText(file.c_str());
    session.settings = ToQvText(GetParam().settings);
    const QvFormatExtensible format = StereoFormat(GetParam().rate);
    std::memcpy(session.format, &format, sizeof format);
    ASSERT_TRUE(modules.Encoder().Create(modules.Log().Log()));
    ASSERT_TRUE(modules.Encoder().BeginConversion(&session));
    EXPECT_EQ(modules.Decode(Encode(5000)).errors, u"");
}

TEST_P(Module, has_rows_to_show) {
    clOpenFileRec record;
    ASSERT_TRUE(modules.Open(Encode(GetParam().rate), QV_OPEN_PROPERTY_ROWS, record));
    clIDTagList rows;
    rows.Deserialise(record.propertyData, record.propertyDataSize);
    const auto value = [&](const char16_t* name) {
        for (std::int32_t i = 0; i < rows.Count(); ++i)
            if (rows.At(i).name == name) return std::u16string(rows.At(i).value.Text());
        return std::u16string();
    };
    EXPECT_NE(value(u"Codec"), u"");
    EXPECT_NE(value(u"Bit rate"), u"");
    EXPECT_EQ(value(u"Channels"), u"2");
    EXPECT_EQ(value(u"Sample rate"), GetParam().rate == 48000 ? u"48000 Hz" : u"44100 Hz");
    EXPECT_EQ(value(u"Length"), u"0:00:01.000");
    EXPECT_NE(value(u"File size"), u"");
}

TEST_P(Module, tells_numbers_without_decoding) {
    clOpenFileRec record;
    ASSERT_TRUE(modules.Open(Encode(GetParam().rate * 2), QV_OPEN_PROPERTIES, record));
    EXPECT_EQ(ValueOf(record.lengthMs), 2000u);
    EXPECT_EQ(ValueOf(record.fileSize), FileBytes().size());
    EXPECT_GT(ValueOf(record.property), 0);
}

// One time round: loaded, asked what it does, ended, unloaded.
void LoadAndAsk(const Codec& codec, const XLog& log) {
    clQvDecoder decoder;
    clQvEncoder encoder;
    ASSERT_TRUE(decoder.Load(TreeModule(u"decoder", codec.decoder).c_str()) && decoder.Create(log));
    ASSERT_TRUE(encoder.Load(TreeModule(u"encoder", codec.encoder).c_str()) && encoder.Create(log));
    clCodecQueryRec query{};
    ASSERT_TRUE(decoder.Get(u"Decodes", &query));
    ASSERT_TRUE(encoder.Get(u"Extension", &query));
    decoder.Unload();
    encoder.Unload();
}

TEST_P(Module, loaded_asked_and_unloaded_1000_times_leaves_things_as_they_were) {
    LogFiles log;
    for (int i = 0; i < 10; ++i) ASSERT_NO_FATAL_FAILURE(LoadAndAsk(GetParam(), log.Log()));
    const HandleGauge before;
    for (int i = 0; i < 1000; ++i) ASSERT_NO_FATAL_FAILURE(LoadAndAsk(GetParam(), log.Log()));
    EXPECT_EQ(HandleGauge(), before);
}

INSTANTIATE_TEST_SUITE_P(Codecs, Module, ::testing::ValuesIn(AllCodecs()), NameOf);

}  // namespace
