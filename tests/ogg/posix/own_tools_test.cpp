// Beside the tools that most people use for Vorbis and Opus.
#include <algorithm>
#include <cstdlib>

#include "ogg/ogg_codecs.h"

namespace {

class OggTools : public OggTest {
  protected:
    void Run(const std::string& command) {
        const std::u16string path = ogg.folder.Path();
        ASSERT_EQ(
            std::system(
                ("cd '" + std::string(path.begin(), path.end()) + "' && " + command + " >log 2>&1").c_str()),
            0)
            << command << ": " << ogg.folder.Read(u"log");
    }
    bool IsVorbis() const { return &ogg.codec == &kVorbis; }
    std::string Encoder() const {
        return IsVorbis() ? "oggenc --quiet -o c b.wav" : "opusenc --quiet b.wav c";
    }
    // To 16 bits by the one, to float by the other.
    void DecodeWithTool() {
        Run(IsVorbis() ? "oggdec --quiet -o b.wav a.ogg" : "opusdec --quiet --float a.opus b.wav");
    }
    std::vector<double> ToolSamples() {
        const Decoding decoding = wave.Decode(ogg.folder / u"b.wav");
        std::vector<double> samples;
        if (!IsVorbis()) {
            const std::vector<float> floats = Floats(decoding.audio);
            return {floats.begin(), floats.end()};
        }
        for (std::size_t i = 0; i + 1 < decoding.audio.size(); i += 2) {
            const auto low = static_cast<std::uint8_t>(decoding.audio[i]);
            samples.push_back((static_cast<signed char>(decoding.audio[i + 1]) * 256 + low) / 32768.0);
        }
        return samples;
    }

    CodecModules wave{u"Wave", u"Wave"};
};

TEST_P(OggTools, Decode_our_files_to_the_same_sound) {
    for (const std::uint32_t channels : {1u, 2u})
        for (const std::uint32_t frames : {1u, 575u, 4097u, 100003u}) {
            const std::vector<float> ours = Floats(ogg.Decode(ogg.Encode(frames, 1, channels)).audio);
            DecodeWithTool();
            const std::vector<double> theirs = ToolSamples();
            ASSERT_EQ(ours.size(), theirs.size()) << frames;
            for (std::size_t i = 0; i < ours.size(); ++i)
                ASSERT_NEAR(ours[i], theirs[i], IsVorbis() ? 1.0 / 32768 : 1e-6) << frames << " at " << i;
        }
}

TEST_P(OggTools, Encode_what_we_read_to_the_frame) {
    for (const std::uint32_t frames : {1u, 2u, 100u, 575u, 577u, 959u, 961u, 2047u, 2049u, 44099u, 100001u}) {
        const QvFormatExtensible format = FloatFormat(48000, 2);
        ASSERT_TRUE(wave.Encode(ogg.folder / u"b.wav", format, BytesOf(MakeSound(frames, 2))));
        Run(Encoder());
        const Decoding decoding = ogg.modules.Decode(ogg.folder / u"c");
        EXPECT_EQ(decoding.errors, u"") << frames;
        EXPECT_EQ(decoding.audio.size(), frames * 8u);
    }
}

TEST_P(OggTools, Take_our_loudspeakers_for_what_they_are) {
    for (const std::uint32_t channels : {3u, 4u, 5u, 6u, 7u, 8u}) {
        const std::string file = ogg.Encode(20000, 1, channels, ogg.codec.fine);
        const std::vector<float> ours = Floats(ogg.Decode(file).audio);
        Run("ffmpeg -v error -y -i '" + std::string(IsVorbis() ? "a.ogg" : "a.opus") + "' -f f32le b");
        const std::vector<float> theirs = Floats(ogg.folder.Read(u"b"));
        ASSERT_GT(theirs.size(), 10000u * channels);
        double difference = 0, whole = 0;
        for (std::size_t i = 0; i < std::min(ours.size(), theirs.size()); ++i) {
            difference += (double{ours[i]} - theirs[i]) * (double{ours[i]} - theirs[i]);
            whole += double{ours[i]} * ours[i];
        }
        EXPECT_LT(difference / whole, 1e-6) << channels;
    }
}

OGG_TESTS(OggTools);

}  // namespace
