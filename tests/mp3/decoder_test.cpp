#include <random>

#include "foundation/id_tag_list.h"
#include "mp3/mp3_file.h"

namespace {

class Mp3Decoder : public Mp3 {
  protected:
    Mp3Decoder() {
        Encode(u"-bitrate=128");
        good = folder.Read(u"a.mp3");
        frames = FramesOf(good);
    }

    Decoding DecodeBytes(std::string_view bytes) { return modules.Decode(folder.Write(u"b.mp3", bytes)); }

    std::string good;
    std::vector<std::size_t> frames;
};

TEST_F(Mp3Decoder, tells_damaged_frame_headers) {
    std::mt19937 random(95);
    ASSERT_GT(frames.size(), 80u);
    int told = 0;
    for (int i = 0; i < 100; ++i) {
        std::string bad = good;
        const std::size_t frame = 1 + random() % (frames.size() - 1);
        // A bit of the synchronisation, the version, the layer, the bit rate or the sample rate.
        const std::size_t bit = random() % 22;
        char& byte = bad[frames[frame] + bit / 8];
        byte = static_cast<char>(byte ^ (0x80 >> bit % 8));
        const Decoding decoding = DecodeBytes(bad);
        EXPECT_TRUE(decoding.finished);
        told += !decoding.errors.empty();
    }
    EXPECT_GE(told, 95);
}

TEST_F(Mp3Decoder, tells_bytes_that_belong_to_no_frame_and_goes_on_behind_them) {
    const std::size_t at = frames[frames.size() / 2];
    const std::string bad = good.substr(0, at) + std::string(1000, 'x') + good.substr(at);
    const Decoding decoding = DecodeBytes(bad);
    EXPECT_NE(decoding.errors.find(u"1000 bytes at"), std::u16string::npos);
    EXPECT_EQ(decoding.audio.size(), kFrames * 8u);
}

TEST_F(Mp3Decoder, counts_the_frames_of_a_file_without_a_description) {
    const std::string bare = good.substr(frames[1]);
    const Decoding decoding = DecodeBytes(bare);
    EXPECT_EQ(decoding.errors, u"");
    EXPECT_EQ(decoding.audio.size(), (frames.size() - 1) * 1152 * 8);
    EXPECT_EQ(ValueOf(decoding.record.lengthMs), (frames.size() - 1) * 1152 * 1000 / 44100);
    for (const std::size_t cut : {std::size_t{1}, std::size_t{50}, std::size_t{400}})
        EXPECT_NE(DecodeBytes(bare.substr(0, bare.size() - cut)).errors, u"") << cut;
}

TEST_F(Mp3Decoder, passes_over_tags_at_both_ends) {
    const std::string id3v2 = std::string("ID3\4\0\0\0\0\x10\0", 10) + std::string(2048, '\0');
    const std::string id3v1 = "TAG" + std::string(125, ' ');
    const std::string whole = DecodeBytes(good).audio;
    for (const std::string& bytes : {id3v2 + good, good + id3v1, id3v2 + id3v2 + good + id3v1}) {
        const Decoding decoding = DecodeBytes(bytes);
        EXPECT_EQ(decoding.errors, u"");
        EXPECT_EQ(decoding.audio, whole);
    }
}

TEST_F(Mp3Decoder, leaves_out_a_stream_of_another_sample_rate_and_says_so) {
    const std::string first = good.substr(frames[1]);
    Encode(u"-bitrate=128", 48000);
    const std::string other = folder.Read(u"a.mp3").substr(384);
    for (const std::string& begin : {first, good}) {
        const Decoding decoding = DecodeBytes(begin + other);
        EXPECT_TRUE(decoding.finished);
        EXPECT_NE(decoding.errors.find(u"a stream of another format"), std::u16string::npos);
        EXPECT_GE(decoding.audio.size() / 8, kFrames);
    }
}

TEST_F(Mp3Decoder, believes_a_check_sum_where_there_is_one) {
    // The bit that says there is none, cleared: two bytes of the frame now count as its check sum.
    std::string bad = good;
    bad[frames[20] + 1] = static_cast<char>(bad[frames[20] + 1] & ~1);
    EXPECT_NE(DecodeBytes(bad).errors.find(u"check sum"), std::u16string::npos);
}

TEST_F(Mp3Decoder, tells_what_the_file_tells_of_itself) {
    clOpenFileRec record;
    ASSERT_TRUE(modules.Open(folder / u"a.mp3", QV_OPEN_PROPERTY_ROWS, record));
    clIDTagList rows;
    rows.Deserialise(record.propertyData, record.propertyDataSize);
    std::u16string text;
    for (std::int32_t i = 0; i < rows.Count(); ++i)
        text += std::u16string(rows.At(i).name.Text()) + u"=" + rows.At(i).value.Text() + u"\n";
    for (const char16_t* row :
         {u"Container=MPEG\n", u"Codec=MP3\n", u"Version=MPEG 1 layer 3\n", u"Bit rate=128 kbit/s\n",
          u"Bit rate mode=constant\n", u"Frames=100000\n", u"Encoder=LAME3.100\n"})
        EXPECT_NE(text.find(row), std::u16string::npos) << std::string(text.begin(), text.end());
}

TEST_F(Mp3Decoder, gives_up_a_file_of_nothing_but_zeros_soon) {
    const Decoding decoding = DecodeBytes(std::string(20u << 20, '\0'));
    EXPECT_FALSE(decoding.opened);
    EXPECT_NE(decoding.errors.find(u"holds no MPEG audio"), std::u16string::npos);
}

}  // namespace
