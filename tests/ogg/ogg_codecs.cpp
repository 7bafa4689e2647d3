#include "ogg/ogg_codecs.h"

#include <cmath>
#include <cstring>
#include <random>

#include "foundation/id_tag_list.h"
#include "modules/opus/opus_encoder.h"
#include "modules/opus/opus_stream.h"
#include "modules/support/stream_decoder.h"
#include "modules/vorbis/vorbis_encoder.h"
#include "modules/vorbis/vorbis_stream.h"

namespace {

template <class Encoder>
std::unique_ptr<clModuleEncoder> MakeEncoder(const clModuleLog& log) {
    return std::make_unique<Encoder>(log);
}

}  // namespace

const OggCodec kVorbis = {"Vorbis",
                          u"Ogg Vorbis",
                          u"Vorbis",
                          u"a.ogg",
                          44100,
                          MakeStream<clVorbisStream>,
                          MakeEncoder<clVorbisEncoder>,
                          u"-quality=10"};
const OggCodec kOpus = {
    "Opus",         u"Opus", u"Opus", u"a.opus", 48000, MakeStream<clOpusStream>, MakeEncoder<clOpusEncoder>,
    u"-bitrate=512"};

void PrintTo(const OggCodec& codec, std::ostream* out) {
    *out << codec.name;
}

std::string NameOf(const testing::TestParamInfo<const OggCodec*>& info) {
    return info.param->name;
}

std::vector<float> MakeSound(std::uint32_t frames, std::uint32_t channels, std::uint32_t seed) {
    std::mt19937 random(seed);
    std::vector<float> sound;
    for (std::uint32_t i = 0; i < frames; ++i)
        for (std::uint32_t channel = 0; channel < channels; ++channel) {
            const double noise = (static_cast<double>(random() % 2001) - 1000) / 20000;
            sound.push_back(
                static_cast<float>(0.2 * std::sin((0.02 + 0.011 * channel) * i + channel) + noise));
        }
    return sound;
}

QvFormatExtensible FloatFormat(std::uint32_t rate, std::uint32_t channels) {
    QvFormatExtensible format{};
    format.Format = {QV_FORMAT_FLOAT,
                     static_cast<std::uint16_t>(channels),
                     rate,
                     rate * channels * 4,
                     static_cast<std::uint16_t>(channels * 4),
                     32,
                     0};
    return format;
}

std::string_view BytesOf(const std::vector<float>& samples) {
    return {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(float)};
}

std::vector<float> Floats(std::string_view audio) {
    std::vector<float> samples(audio.size() / sizeof(float));
    if (!samples.empty()) std::memcpy(samples.data(), audio.data(), samples.size() * sizeof(float));
    return samples;
}

std::string OggModules::Encode(std::uint32_t frames, std::uint32_t seed, std::uint32_t channels,
                               const char16_t* settings) {
    return Encode(MakeSound(frames, channels, seed), FloatFormat(codec.rate, channels), settings);
}

std::string OggModules::Encode(const std::vector<float>& sound, const QvFormatExtensible& format,
                               const char16_t* settings) {
    modules.Decoder().Destroy();  // lets go of the file
    EXPECT_TRUE(modules.Encode(folder / codec.file, format, BytesOf(sound), {65536}, settings));
    EXPECT_EQ(modules.Log().TakeErrors(), u"");
    return folder.Read(codec.file);
}

std::u16string OggModules::Refusal(const QvFormatExtensible& format, const char16_t* settings) {
    EXPECT_FALSE(modules.Encode(folder / u"refused", format, "", {1}, settings));
    EXPECT_FALSE(folder.Has(u"refused"));
    const std::u16string name = folder / u"refused" + u": ";
    const std::u16string text = modules.Log().TakeErrors();
    return text.starts_with(name) && text.ends_with(u"\r\n")
               ? text.substr(name.size(), text.size() - name.size() - 2)
               : text;
}

Decoding OggModules::Decode(std::string_view bytes) {
    modules.Decoder().Destroy();
    Decoding decoding = modules.Decode(folder.Write(codec.file, bytes));
    EXPECT_EQ(decoding.finished, decoding.opened);
    return decoding;
}

bool OggModules::Open() {
    clOpenFileRec record;
    return modules.Open(folder / codec.file, QV_OPEN_DECODING, record);
}

std::vector<float> OggModules::DecodeFrom(std::uint64_t frame, std::size_t frames) {
    const std::size_t channels = 2;
    std::string audio;
    modules.Decoder().SetPosition(static_cast<std::int64_t>(frame));
    while (audio.size() < frames * channels * sizeof(float) && modules.DecodeBlock(audio)) {
    }
    return Floats(audio);
}

std::u16string OggModules::Row(std::string_view bytes, const char16_t* name) {
    clOpenFileRec record;
    if (!modules.Open(folder.Write(codec.file, bytes), QV_OPEN_PROPERTY_ROWS, record)) return u"not opened";
    clIDTagList rows;
    rows.Deserialise(record.propertyData, record.propertyDataSize);
    for (std::int32_t i = 0; i < rows.Count(); ++i)
        if (rows.At(i).name == name) return rows.At(i).value.Text();
    return u"";
}

std::u16string OggModules::Told(const std::u16string& text) const {
    const std::u16string name = folder / codec.file + u": ";
    std::u16string told;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find(u"\r\n", at);
        std::u16string line = text.substr(at, end - at);
        if (line.starts_with(name)) line.erase(0, name.size());
        told += (told.empty() ? u"" : u"; ") + line;
        at = end == std::u16string::npos ? text.size() : end + 2;
    }
    return told;
}
