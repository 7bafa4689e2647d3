// Whatever is written comes back: every kind of format, few and many channels, lengths that fit no block.
#include <gtest/gtest.h>

#include <cstring>

#include "foundation/qv_text.h"
#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

using namespace wave_bytes;

namespace {

constexpr std::uint16_t kChannels[] = {1, 2, 6, 8, 64};

std::string Bytes(const QvFormatExtensible& record) {
    return std::string(reinterpret_cast<const char*>(&record), sizeof record);
}

std::vector<QvFormatExtensible> PlainFormats(std::uint16_t channels) {
    return {Plain(QV_FORMAT_PCM, channels, 44100, 8),
            Plain(QV_FORMAT_PCM, channels, 44100, 16),
            Plain(QV_FORMAT_PCM, channels, 96000, 24),
            Plain(QV_FORMAT_PCM, channels, 192000, 32),
            Plain(QV_FORMAT_FLOAT, channels, 48000, 32),
            Plain(QV_FORMAT_FLOAT, channels, 11025, 64),
            Plain(QV_FORMAT_ALAW, channels, 8000, 8),
            Plain(QV_FORMAT_MULAW, channels, 8000, 8),
            Extensible(QV_FORMAT_PCM, channels, 44100, 8, 8, 0),
            Extensible(QV_FORMAT_PCM, channels, 44100, 16, 16, 0x3),
            Extensible(QV_FORMAT_PCM, channels, 48000, 24, 20, 0x3F),
            Extensible(QV_FORMAT_PCM, channels, 48000, 32, 24, 0x63F),
            Extensible(QV_FORMAT_FLOAT, channels, 48000, 32, 32, 0),
            Extensible(QV_FORMAT_FLOAT, channels, 48000, 64, 64, 0x80000000),
            Extensible(QV_FORMAT_ALAW, channels, 8000, 8, 8, 0),
            Extensible(QV_FORMAT_MULAW, channels, 8000, 8, 8, 0)};
}

std::vector<QvFormatExtensible> CodedFormats(std::uint16_t channels) {
    const auto align = static_cast<std::uint16_t>(256 * channels);
    const std::string pairs = U16(500) + U16(7) + U16(256) + U16(0) + U16(512) + U16(0xFF00) + U16(0) +
                              U16(0) + U16(192) + U16(64) + U16(240);
    return {Coded(QV_FORMAT_ADPCM, channels, 22050, 11155, align, 4, pairs),
            Coded(0x11, channels, 22050, 11155, align, 4, U16(505)),
            Coded(0x31, channels, 8000, 1625, 65, 0, U16(320)),
            Coded(0x55, channels, 44100, 16000, 1, 0, U16(1) + U32(2) + U16(417) + U16(1) + U16(1393)),
            Coded(0x1234, channels, 44100, 16000, 17, 0, "")};
}

void RoundTrip(WaveModules& modules, const TempFolder& folder, const QvFormatExtensible& format,
               std::size_t bytes) {
    SCOPED_TRACE(testing::Message() << "tag " << format.Format.wFormatTag << " channels "
                                    << format.Format.nChannels << " bits " << format.Format.wBitsPerSample
                                    << " bytes " << bytes);
    const std::string audio = Noise(bytes);
    ASSERT_TRUE(modules.Encode(folder / u"a.wav", format, audio, {1, 3, 4096, 0x10001}));
    const Decoding decoded = modules.Decode(folder / u"a.wav");
    ASSERT_TRUE(decoded.opened);
    EXPECT_TRUE(decoded.finished);
    EXPECT_EQ(Bytes(decoded.Format()), Bytes(format));
    EXPECT_TRUE(decoded.audio == audio);
    for (const std::uint32_t& block : decoded.blocks) {
        EXPECT_LE(block, kLargestBlock);
        const bool isLast = &block == &decoded.blocks.back();
        EXPECT_TRUE(isLast || block % format.Format.nBlockAlign == 0) << block;
    }
    EXPECT_EQ(decoded.errors, u"");
    EXPECT_EQ(decoded.information, u"");
    EXPECT_EQ(ValueOf(decoded.record.fileSize) % 2, 0u);
}

}  // namespace

TEST(WaveRoundTrip, every_plain_format_comes_back_at_every_length) {
    WaveModules modules;
    const TempFolder folder;
    for (const std::uint16_t channels : kChannels)
        for (const QvFormatExtensible& format : PlainFormats(channels))
            for (const std::size_t frames : {0u, 1u, 3u, 1021u, 70001u / channels})
                RoundTrip(modules, folder, format, frames * format.Format.nBlockAlign);
}

TEST(WaveRoundTrip, coded_data_are_handed_on_as_they_stand) {
    WaveModules modules;
    const TempFolder folder;
    for (const std::uint16_t channels : kChannels)
        for (const QvFormatExtensible& format : CodedFormats(channels))
            for (const std::size_t bytes : {0u, 1u, 16384u, 70001u})  // a last block may be short
                RoundTrip(modules, folder, format, bytes);
}

TEST(WaveRoundTrip, an_unknown_SubFormat_survives) {
    WaveModules modules;
    const TempFolder folder;
    QvFormatExtensible format = Extensible(QV_FORMAT_PCM, 4, 48000, 16, 16, 0);
    std::memcpy(format.SubFormat + 4, "\x21\x07\xD3\x11\x86\x44\xC8\xC1\xCA\0\0\0", 12);
    RoundTrip(modules, folder, format, 4000 * 8);
    const Decoding decoded = modules.Decode(folder / u"a.wav");
    EXPECT_EQ(ValueOf(decoded.record.lengthMs), 4000u * 1000 / 48000);
}

TEST(WaveRoundTrip, a_decoder_and_its_file_serve_again_after_close) {
    WaveModules modules;
    const TempFolder folder;
    const auto format = Plain(QV_FORMAT_PCM, 2, 44100, 16);
    ASSERT_TRUE(modules.Encode(folder / u"a.wav", format, Noise(100000)));
    ASSERT_TRUE(modules.Encode(folder / u"b.wav", format, Noise(40)));  // the encoder's next file
    ASSERT_TRUE(modules.Decoder().Create(modules.Log().Log()));
    for (const auto& [name, bytes] : {std::pair{u"a.wav", 100000u}, {u"b.wav", 40u}, {u"a.wav", 100000u}}) {
        const std::u16string path = folder / name;
        clOpenFileRec record{};
        record.file = ToQvText(path.c_str());
        record.request = QV_OPEN_DECODING;
        ASSERT_TRUE(modules.Decoder().Open(&record));  // with no Close before the next
        std::string audio;
        while (modules.DecodeBlock(audio)) {
        }
        EXPECT_EQ(audio, Noise(bytes));
    }
}
