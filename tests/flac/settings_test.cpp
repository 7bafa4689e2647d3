#include <cstring>

#include "flac/flac_file.h"
#include "foundation/qv_text.h"

namespace {

using FlacSettings = Flac;

}  // namespace

TEST_F(FlacSettings, All_levels_give_the_same_audio_the_higher_ones_in_fewer_bytes) {
    std::string tones;
    for (std::uint32_t i = 0; i < kFrames; ++i) {
        const auto sample = static_cast<std::int16_t>(i * i / 50 % 8192);
        tones.append(reinterpret_cast<const char*>(&sample), 2)
            .append(reinterpret_cast<const char*>(&sample), 2);
    }
    std::vector<std::size_t> sizes;
    for (const char16_t* settings :
         {u"-compression-level=0", u"-compression-level=5", u"", u"-compression-level=8 -verify=yes"}) {
        const std::string file = Encode(stereo, tones, settings);
        sizes.push_back(file.size());
        EXPECT_TRUE(Decode(file).audio == tones);
    }
    EXPECT_LT(sizes[1], sizes[0]);
    EXPECT_EQ(sizes[2], sizes[1]);
    EXPECT_LE(sizes[3], sizes[2]);
}

TEST_F(FlacSettings, What_is_wrong_is_refused_in_words) {
    constexpr struct {
        const char16_t* settings;
        const char16_t* words;
    } kRows[] = {
        {u"-compression-level=9",
         u"the setting -compression-level is \"9\", but must be a whole number from 0 to 8"},
        {u"-bits=20", u"the setting -bits is \"20\", but must be one of 24 16"},
        {u"-bits=24", u"the setting -bits is for float samples, and these are integers of 16 bits"},
        {u"-verify=1", u"the setting -verify is \"1\", but must be one of no yes"},
        {u"-level=5", u"the setting -level is not known"},
    };
    for (const auto& row : kRows) {
        EXPECT_FALSE(modules.Encode(folder / u"b.flac", stereo, audio, {65536}, row.settings));
        EXPECT_EQ(modules.Log().TakeErrors(), folder / u"b.flac: " + row.words + u"\r\n");
        EXPECT_FALSE(folder.Has(u"b.flac"));
    }
}

TEST_F(FlacSettings, A_depth_that_the_samples_have_anyway_is_no_error) {
    EXPECT_TRUE(Decode(Encode(stereo, audio, u"-bits=16")).audio == audio);
}

TEST_F(FlacSettings, Room_for_tags_stands_in_front_of_the_audio) {
    const FlacParts parts = Split(Encode(stereo, audio), kFrames);
    EXPECT_GE(parts.headers.size(), 8192u);
    EXPECT_LE(parts.headers.size(), 8192u + 200);
}

TEST_F(FlacSettings, An_encoding_that_is_never_ended_leaves_a_file_of_open_length) {
    clEncoderSessionRec session{};
    const std::u16string file = folder / u"a.flac";
    session.file = ToQvText(file.c_str());
    session.settings = ToQvText(u"");
    std::memcpy(session.format, &stereo, sizeof session.format);
    ASSERT_TRUE(modules.Encoder().Create(modules.Log().Log()));
    ASSERT_TRUE(modules.Encoder().BeginConversion(&session));
    clBlockRec block{};
    block.data = reinterpret_cast<const std::uint8_t*>(audio.data());
    block.bytes = static_cast<std::uint32_t>(audio.size());
    modules.Encoder().EncodeBlock(&block);
    modules.Encoder().Destroy();
    const Decoding decoding = modules.Decode(file);
    EXPECT_TRUE(decoding.audio == audio.substr(0, kFrames / kBlockFrames * kBlockFrames * 4));
    EXPECT_EQ(decoding.errors, u"");
}
