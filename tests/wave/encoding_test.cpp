// What the encoder puts before the audio, and what it refuses.
#include <gtest/gtest.h>

#include <cstring>

#include "foundation/qv_text.h"
#include "modules/wave/wave_encoder.h"
#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

using namespace wave_bytes;

namespace {

class WaveEncoding : public testing::Test {
  protected:
    std::string Written(const QvFormatExtensible& format, const std::string& audio,
                        const char16_t* settings = u"") {
        EXPECT_TRUE(mModules.Encode(mFolder / u"a.wav", format, audio, {65536}, settings));
        EXPECT_EQ(mModules.Log().TakeErrors(), u"");
        return mFolder.Read(u"a.wav");
    }
    void ExpectRefusal(const QvFormatExtensible& format, const char16_t* settings, const char16_t* message) {
        mFolder.Write(u"a.wav", "what stood there");
        EXPECT_FALSE(mModules.Encode(mFolder / u"a.wav", format, "", {65536}, settings));
        EXPECT_EQ(mModules.Log().TakeErrors(), mFolder / u"a.wav" + u": " + message + u"\r\n");
        EXPECT_EQ(mFolder.Read(u"a.wav"), "what stood there");
    }

    WaveModules mModules;
    TempFolder mFolder;
};

const std::string kJunk = Chunk("JUNK", std::string(28, '\0'));
const QvFormatExtensible kStereo = Plain(QV_FORMAT_PCM, 2, 44100, 16);

std::string Bytes(const QvFormatExtensible& record, std::size_t count) {
    return std::string(reinterpret_cast<const char*>(&record), count);
}

std::string MsAdpcm(const std::string& pairs) {
    return U16(500) + U16(7) + pairs;
}

const std::string kPairs = U16(256) + U16(0) + U16(512) + U16(0xFF00) + U16(0) + U16(0) + U16(192) + U16(64) +
                           U16(240) + U16(0) + U16(460) + U16(0xFF30) + U16(392) + U16(0xFF18);

}  // namespace

TEST_F(WaveEncoding, Integer_samples_have_the_oldest_header_behind_room_for_64_bit_sizes) {
    EXPECT_EQ(Written(kStereo, Noise(8)), Riff(kJunk + StereoFormat() + Chunk("data", Noise(8))));
}

TEST_F(WaveEncoding, All_other_samples_have_a_count_of_frames) {
    const QvFormatExtensible formats[] = {Plain(QV_FORMAT_FLOAT, 2, 44100, 32),
                                          Plain(QV_FORMAT_ALAW, 8, 8000, 8)};
    for (const auto& format : formats)
        EXPECT_EQ(Written(format, Noise(16)), Riff(kJunk + Chunk("fmt ", Bytes(format, 18)) +
                                                   Chunk("fact", U32(2)) + Chunk("data", Noise(16))));
}

TEST_F(WaveEncoding, Audio_of_an_odd_length_is_padded) {
    const auto format = Plain(QV_FORMAT_PCM, 1, 8000, 8);
    EXPECT_EQ(Written(format, "abc"), Riff(kJunk + Chunk("fmt ", Bytes(format, 16)) + Chunk("data", "abc")));
}

TEST_F(WaveEncoding, An_extensible_record_is_written_as_it_is) {
    const auto format = Extensible(QV_FORMAT_PCM, 6, 48000, 24, 20, 0x3F);
    EXPECT_EQ(Written(format, Noise(18)),
              Riff(kJunk + Chunk("fmt ", Bytes(format, 40)) + Chunk("data", Noise(18))));
}

TEST_F(WaveEncoding, Coded_data_count_their_frames_where_the_record_tells_how) {
    const auto ima = Coded(0x11, 1, 8000, 4055, 256, 4, U16(505));
    EXPECT_EQ(Written(ima, Noise(512)), Riff(kJunk + Chunk("fmt ", Bytes(ima, 20)) +
                                             Chunk("fact", U32(1010)) + Chunk("data", Noise(512))));
    const auto other = Coded(0x1234, 1, 8000, 1000, 1, 0, "odd");
    EXPECT_EQ(Written(other, Noise(51)),
              Riff(kJunk + Chunk("fmt ", Bytes(other, 21)) + Chunk("data", Noise(51))));
}

TEST_F(WaveEncoding, The_known_coefficients_of_MS_ADPCM_are_completed) {
    const auto format = Coded(QV_FORMAT_ADPCM, 2, 22050, 22311, 1024, 4, MsAdpcm(kPairs.substr(0, 18)));
    const std::string chunk = Bytes(format, 16) + U16(32) + MsAdpcm(kPairs);
    EXPECT_EQ(Written(format, Noise(2048)),
              Riff(kJunk + Chunk("fmt ", chunk) + Chunk("fact", U32(1000)) + Chunk("data", Noise(2048))));
    QvFormatExtensible cut = format;
    cut.Format.cbSize = 32;  // a host that hands on 40 bytes of a record of 50
    EXPECT_EQ(Written(cut, Noise(2048)), mFolder.Read(u"a.wav"));
    EXPECT_EQ(Written(cut, Noise(2048)).substr(56, 50), chunk);
    const auto three = Coded(QV_FORMAT_ADPCM, 2, 22050, 22311, 1024, 4, U16(500) + U16(3) + Noise(12));
    EXPECT_EQ(Written(three, Noise(2048)).substr(56, 34), Bytes(three, 34));
}

TEST_F(WaveEncoding, Other_coefficients_that_the_record_has_no_room_for_are_refused) {
    const auto format = Coded(QV_FORMAT_ADPCM, 2, 22050, 22311, 1024, 4, MsAdpcm(Noise(18)));
    ExpectRefusal(format, u"", u"its ADPCM coefficients are incomplete");
    QvFormatExtensible damaged =
        Coded(QV_FORMAT_ADPCM, 2, 22050, 22311, 1024, 4, MsAdpcm(kPairs.substr(0, 4)));
    ExpectRefusal(damaged, u"", u"its ADPCM coefficients are incomplete");  // not cut by the record's room
}

TEST_F(WaveEncoding, Settings_choose_the_header) {
    const auto float32 = Plain(QV_FORMAT_FLOAT, 2, 44100, 32);
    const auto float32Extensible = Extensible(QV_FORMAT_FLOAT, 2, 44100, 32, 32, 0);
    const auto unknown = [] {
        QvFormatExtensible record = Extensible(QV_FORMAT_PCM, 2, 44100, 16, 16, 0);
        record.SubFormat[15] = 0;
        return record;
    }();
    const std::string plain = Written(float32, Noise(64), u"-header=auto");
    const std::string extensible = Written(float32Extensible, Noise(64), u" -header=auto ");
    EXPECT_EQ(plain, Written(float32, Noise(64)));
    EXPECT_NE(plain, extensible);
    EXPECT_EQ(Written(float32, Noise(64), u"-header=plain"), plain);
    EXPECT_EQ(Written(float32Extensible, Noise(64), u"-header=plain"), plain);
    EXPECT_EQ(Written(float32, Noise(64), u"-header=extensible"), extensible);
    EXPECT_EQ(Written(float32Extensible, Noise(64), u"-header=extensible"), extensible);
    ExpectRefusal(Coded(0x11, 1, 8000, 4055, 256, 4, U16(505)), u"-header=extensible",
                  u"this format has no extensible header");
    ExpectRefusal(unknown, u"-header=plain", u"this format has no plain header");
}

TEST_F(WaveEncoding, Settings_choose_the_depth) {
    const std::string shorts = U16(0x0102) + U16(0xFF80) + U16(0x7FFF) + U16(0x8000);
    const auto written = [&](const char16_t* settings, std::uint16_t tag, std::uint16_t bits,
                             const std::string& audio) {
        const auto format = Plain(tag, 2, 44100, bits);
        const bool isFloat = tag == QV_FORMAT_FLOAT;
        const std::string fact = isFloat ? Chunk("fact", U32(2)) : "";
        EXPECT_EQ(
            Written(kStereo, shorts, settings),
            Riff(kJunk + Chunk("fmt ", Bytes(format, isFloat ? 18 : 16)) + fact + Chunk("data", audio)));
    };
    const auto floats = [](std::initializer_list<float> values) {
        return std::string(reinterpret_cast<const char*>(values.begin()), values.size() * sizeof(float));
    };
    written(u"-bits=source", QV_FORMAT_PCM, 16, shorts);
    written(u"-bits=16", QV_FORMAT_PCM, 16, shorts);
    written(u"-bits=8", QV_FORMAT_PCM, 8, std::string("\x81\x7F\xFF\x00", 4));
    written(u"-bits=24", QV_FORMAT_PCM, 24, std::string("\0\2\1\0\x80\xFF\0\xFF\x7F\0\0\x80", 12));
    written(u"-bits=32", QV_FORMAT_PCM, 32,
            U32(0x01020000) + U32(0xFF800000) + U32(0x7FFF0000) + U32(0x80000000));
    written(u"-bits=float", QV_FORMAT_FLOAT, 32,
            floats({0x0102 / 32768.0F, -128 / 32768.0F, 32767 / 32768.0F, -1.0F}));
    ExpectRefusal(kStereo, u"-bits=double", u"integers can't become float of 64 bits, only of 32");
    ExpectRefusal(Plain(QV_FORMAT_ALAW, 1, 8000, 8), u"-bits=16", u"coded audio has no depth to change");
}

TEST_F(WaveEncoding, Another_depth_takes_all_its_bits_into_an_extensible_header) {
    const auto of24 = Extensible(QV_FORMAT_PCM, 6, 48000, 24, 20, 0x3F);
    EXPECT_EQ(Written(of24, std::string(36, '\0'), u"-bits=float"),
              Riff(kJunk + Chunk("fmt ", Bytes(Extensible(QV_FORMAT_FLOAT, 6, 48000, 32, 32, 0x3F), 40)) +
                   Chunk("fact", U32(2)) + Chunk("data", std::string(48, '\0'))));
    const auto of32 = Extensible(QV_FORMAT_PCM, 2, 48000, 32, 24, 3);
    EXPECT_EQ(Written(of32, std::string(8, '\0'), u"-bits=float").substr(56, 40),
              Bytes(Extensible(QV_FORMAT_FLOAT, 2, 48000, 32, 32, 3), 40));
}

TEST_F(WaveEncoding, Another_depth_comes_out_the_same_however_blocks_are_cut) {
    const std::string audio = Noise(4 * 997);
    for (const auto& format :
         {kStereo, Plain(QV_FORMAT_PCM, 1, 8000, 32), Plain(QV_FORMAT_PCM, 4, 8000, 8)}) {
        const std::string whole = Written(format, audio, u"-bits=24");
        for (const std::vector<std::uint32_t>& cuts :
             {std::vector<std::uint32_t>{1}, {3, 5, 2}, {4, 1, 8, 7}}) {
            EXPECT_TRUE(mModules.Encode(mFolder / u"b.wav", format, audio, cuts, u"-bits=24"));
            EXPECT_EQ(mFolder.Read(u"b.wav"), whole);
        }
    }
    EXPECT_FALSE(mModules.Encode(mFolder / u"b.wav", kStereo, audio + "abc", {65536}, u"-bits=24"));
    EXPECT_EQ(mModules.Log().TakeErrors(), mFolder / u"b.wav" + u": its audio ends within a frame\r\n");
}

TEST_F(WaveEncoding, Settings_may_ask_for_64_bit_sizes_at_any_length) {
    const std::string sizes = Chunk("ds64", U64(80) + U64(8) + U64(2) + U32(0));
    EXPECT_EQ(Written(kStereo, Noise(8), u"-header=rf64"),
              Claiming("RF64", 0xFFFFFFFF,
                       "WAVE" + sizes + StereoFormat() + Claiming("data", 0xFFFFFFFF, Noise(8))));
    EXPECT_EQ(mModules.Decode(mFolder / u"a.wav").audio, Noise(8));
}

TEST_F(WaveEncoding, Settings_that_are_not_known_are_refused) {
    constexpr struct {
        const char16_t* settings;
        const char16_t* message;
    } kRows[] = {
        {u"-header=", u"the setting -header is \"\", but must be one of auto plain extensible rf64"},
        {u"-header=Plain",
         u"the setting -header is \"Plain\", but must be one of auto plain extensible rf64"},
        {u"-header=rf64x",
         u"the setting -header is \"rf64x\", but must be one of auto plain extensible rf64"},
        {u"-header=plain -header=plain", u"the setting -header is given twice"},
        {u"-header", u"the setting \"-header\" does not have the form -name=value"},
        {u"plain", u"the setting \"plain\" does not have the form -name=value"},
        {u"-depth=16", u"the setting -depth is not known"},
        {u"\"-header=plain\"", u"the setting \"\"-header=plain\"\" does not have the form -name=value"},
        {u"\t", u"the setting \"\t\" does not have the form -name=value"},
    };
    for (const auto& row : kRows) ExpectRefusal(kStereo, row.settings, row.message);
}

TEST_F(WaveEncoding, Formats_that_contradict_themselves_are_refused) {
    QvFormatExtensible record = kStereo;
    record.Format.nChannels = 0;
    ExpectRefusal(record, u"", u"it claims 0 channels, where 1 to 64 are possible");
    record = kStereo;
    record.Format.nBlockAlign = 3;
    ExpectRefusal(record, u"", u"it claims frames of 3 bytes, where its channels and bits make 4");
    ExpectRefusal(QvFormatExtensible{}, u"", u"it claims 0 channels, where 1 to 64 are possible");
}

TEST_F(WaveEncoding, Audio_that_ends_within_a_frame_fails_at_the_end) {
    EXPECT_FALSE(mModules.Encode(mFolder / u"a.wav", kStereo, Noise(10), {3}));
    EXPECT_EQ(mModules.Log().TakeErrors(), mFolder / u"a.wav" + u": its audio ends within a frame\r\n");
}

TEST_F(WaveEncoding, A_file_that_outgrows_32_bits_becomes_one_of_64) {
    const QvLog log{};
    const std::u16string path = mFolder / u"a.wav";
    for (const std::uint32_t bytes : {996u, 1000u, 1004u}) {
        clWaveEncoder encoder(clModuleLog(&log), 1072);  // RIFF sizes up to those of 1000 bytes of audio
        const std::string audio = Noise(bytes);
        ASSERT_TRUE(encoder.Begin(path.c_str(), u"", kStereo));
        EXPECT_TRUE(encoder.Encode(reinterpret_cast<const std::uint8_t*>(audio.data()), bytes));
        EXPECT_TRUE(encoder.End());
        const std::string sizes = Chunk("ds64", U64(bytes + 72) + U64(bytes) + U64(bytes / 4) + U32(0));
        const std::string small = Riff(kJunk + StereoFormat() + Chunk("data", audio));
        const std::string large = Claiming(
            "RF64", 0xFFFFFFFF, "WAVE" + sizes + StereoFormat() + Claiming("data", 0xFFFFFFFF, audio));
        EXPECT_EQ(mFolder.Read(u"a.wav"), bytes > 1000 ? large : small) << bytes;
        EXPECT_EQ(mModules.Decode(path).audio, audio);
    }
}

TEST_F(WaveEncoding, A_file_that_was_never_ended_is_readable_up_to_where_it_came) {
    clEncoderSessionRec session{};
    const std::u16string path = mFolder / u"a.wav";
    session.file = ToQvText(path.c_str());  // settings are null: none
    std::memcpy(session.format, &kStereo, sizeof kStereo);
    ASSERT_TRUE(mModules.Encoder().Create(mModules.Log().Log()));
    ASSERT_TRUE(mModules.Encoder().BeginConversion(&session));
    const std::string audio = Noise(400);
    clBlockRec block{};
    block.data = reinterpret_cast<const std::uint8_t*>(audio.data());
    block.bytes = 400;
    EXPECT_TRUE(mModules.Encoder().EncodeBlock(&block));
    mModules.Encoder().Destroy();
    EXPECT_EQ(mModules.Decode(path).audio, audio);
}

TEST_F(WaveEncoding, An_encoding_that_never_began_does_not_end) {
    clEncoderSessionRec session{};
    clBlockRec block{};
    ASSERT_TRUE(mModules.Encoder().Create(mModules.Log().Log()));
    EXPECT_FALSE(mModules.Encoder().BeginConversion(&session));  // names no file
    EXPECT_FALSE(mModules.Encoder().EncodeBlock(&block));
    EXPECT_FALSE(mModules.Encoder().EndConversion(&session));
    EXPECT_TRUE(mModules.Encode(mFolder / u"a.wav", kStereo, ""));
    EXPECT_FALSE(mModules.Encoder().EndConversion(&session));  // the second time
    EXPECT_FALSE(mModules.Encoder().EncodeBlock(&block));
    EXPECT_EQ(mModules.Log().TakeErrors(), u"");
}

TEST_F(WaveEncoding, An_empty_last_block_is_a_block) {
    clEncoderSessionRec session{};
    const std::u16string path = mFolder / u"a.wav";
    session.file = ToQvText(path.c_str());
    std::memcpy(session.format, &kStereo, sizeof kStereo);
    ASSERT_TRUE(mModules.Encoder().Create(mModules.Log().Log()));
    ASSERT_TRUE(mModules.Encoder().BeginConversion(&session));
    clBlockRec block{};
    block.finished = 1;
    EXPECT_TRUE(mModules.Encoder().EncodeBlock(&block));
    EXPECT_TRUE(mModules.Encoder().EndConversion(&session));
    EXPECT_EQ(mFolder.Read(u"a.wav"), Riff(kJunk + StereoFormat() + Chunk("data", "")));
}

TEST_F(WaveEncoding, The_encoder_names_its_extension_and_gives_back_its_settings) {
    clCodecQueryRec query{};
    ASSERT_TRUE(mModules.Encoder().Create(mModules.Log().Log()));
    EXPECT_TRUE(mModules.Encoder().Get(u"Extension", &query));
    EXPECT_TRUE(XString(u".wav") == FromQvText(query.text));
    EXPECT_FALSE(mModules.Encoder().Get(u"Decodes", &query));
    EXPECT_FALSE(mModules.Encoder().Set(u"Extension", &query));
    EXPECT_EQ(mModules.Encoder().RemoveConfigBit(0), nullptr);
    mModules.Encoder().ShowConfigBit(0, 0, 0, u" -header=rf64 ");
    EXPECT_TRUE(XString(u"-header=rf64") == mModules.Encoder().RemoveConfigBit(0));
    EXPECT_EQ(mModules.Encoder().RemoveConfigBit(0), nullptr);
}

TEST_F(WaveEncoding, A_file_that_can_not_be_created_is_refused) {
    const std::u16string path = mFolder / u"missing/a.wav";
    EXPECT_FALSE(mModules.Encode(path, kStereo, ""));
    EXPECT_TRUE(mModules.Log().TakeErrors().starts_with(path + u": can't be created (error "));
}
