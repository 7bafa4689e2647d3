// Headers that lie. Whatever they say, a file opens and ends, or it is refused with one line that names it.
#include <gtest/gtest.h>

#include <algorithm>

#include "modules/support/chunk_walk.h"
#include "modules/wave/wave_decoder.h"
#include "platform/file.h"
#include "support/faults.h"
#include "support/wide_text.h"
#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

using namespace wave_bytes;

namespace {

class WaveHostileHeaders : public testing::Test {
  protected:
    Decoding Decode(const std::string& bytes) { return mModules.Decode(mFolder.Write(u"a.wav", bytes)); }

    void ExpectRefusal(const std::string& bytes, const std::u16string& message, const std::string& what) {
        const Decoding decoded = Decode(bytes);
        EXPECT_FALSE(decoded.opened) << what;
        EXPECT_EQ(decoded.errors, mFolder / u"a.wav" + u": " + message + u"\r\n") << what;
    }
    // Opened or refused in one line, and ended.
    void ExpectSoundEnd(const std::string& bytes, const std::string& what) {
        const Decoding decoded = Decode(bytes);
        EXPECT_EQ(decoded.finished, decoded.opened) << what;
        EXPECT_LE(decoded.audio.size(), bytes.size()) << what;
        const auto lines = std::ranges::count(decoded.errors, u'\n');
        EXPECT_TRUE(decoded.opened ? lines <= 1 : lines == 1) << what << ": " << lines << " lines";
        EXPECT_TRUE(lines == 0 || decoded.errors.starts_with(mFolder / u"a.wav" + u": ")) << what;
    }

    WaveModules mModules;
    TempFolder mFolder;
};

const std::string kData = Chunk("data", Noise(400));

}  // namespace

TEST_F(WaveHostileHeaders, Files_that_are_something_else_are_refused) {
    const std::string good = StereoFormat() + kData;
    const struct {
        const char* what;
        std::string bytes;
        const char16_t* message;
    } rows[] = {
        {"nothing", "", u"it is no WAVE file"},
        {"eleven bytes", "RIFF\1\2\3\4WAV", u"it is no WAVE file"},
        {"another file", "OggS" + Noise(100), u"it is no WAVE file"},
        {"another RIFF file", "RIFF" + U32(100) + "AVI " + good, u"it is no WAVE file"},
        {"big-endian", "RIFX" + U32(100) + "WAVE" + good,
         u"WAVE files of the big-endian kind (RIFX) are not read"},
        {"only the beginning", Riff(""), u"it has no fmt chunk"},
        {"no format", Riff(kData), u"it has no fmt chunk"},
        {"no audio", Riff(StereoFormat()), u"it has no data chunk"},
        {"tags alone", Riff(Chunk("id3 ", Noise(300))), u"it has no fmt chunk"},
        {"half a chunk header", Riff(StereoFormat() + "dat"), u"it has no data chunk"},
        {"a chunk that swallows the rest", Riff(StereoFormat() + Claiming("JUNK", 0xFFFFFFFE, kData)),
         u"it has no data chunk"},
    };
    for (const auto& row : rows) ExpectRefusal(row.bytes, row.message, row.what);
}

TEST_F(WaveHostileHeaders, A_format_chunk_of_the_wrong_size_is_refused) {
    const std::string head = Head(1, 2, 44100, 4, 16);
    for (const std::uint32_t size : {0u, 1u, 14u, 15u}) {
        const std::u16string message = std::u16string(u"its fmt chunk has ") +
                                       XString::FromUInt64(size).Text() + u" bytes instead of at least 16";
        ExpectRefusal(Riff(Chunk("fmt ", head.substr(0, size)) + kData), message, std::to_string(size));
    }
    ExpectRefusal(Riff(Chunk("fmt ", head + "\1") + kData), u"its fmt chunk of 17 bytes ends within a field",
                  "17");
    ExpectRefusal(Riff(Claiming("fmt ", 0xFFFFFFFF, head + U16(0) + kData)), u"it has no data chunk",
                  "2^32 - 1");
    ExpectRefusal(Riff(Claiming("fmt ", 16, head.substr(0, 9))),
                  u"its fmt chunk has 9 bytes instead of at least 16", "cut by the end of the file");
}

TEST_F(WaveHostileHeaders, An_extensible_header_that_is_cut_is_refused) {
    const QvFormatExtensible record = Extensible(1, 2, 44100, 16, 16, 3);
    const std::string bytes(reinterpret_cast<const char*>(&record), 40);
    for (std::size_t size = 16; size < 40; ++size) {
        if (size == 17) continue;
        ExpectRefusal(Riff(Chunk("fmt ", bytes.substr(0, size)) + kData),
                      u"its extensible header is cut short", std::to_string(size));
    }
    ExpectRefusal(Riff(Chunk("fmt ", bytes.substr(0, 16) + U16(21) + bytes.substr(18)) + kData),
                  u"its extensible header is cut short", "cbSize 21");
    EXPECT_TRUE(
        Decode(Riff(Chunk("fmt ", bytes.substr(0, 16) + U16(65535) + bytes.substr(18)) + kData)).opened);
}

TEST_F(WaveHostileHeaders, Records_that_contradict_themselves_are_refused_in_words) {
    const auto valid = [](std::uint16_t bits) {
        const QvFormatExtensible record = Extensible(1, 2, 44100, 16, bits, 3);
        return std::string(reinterpret_cast<const char*>(&record), 40);
    };
    const struct {
        std::string format;
        const char16_t* message;
    } rows[] = {
        {Head(1, 0, 44100, 4, 16), u"it claims 0 channels, where 1 to 64 are possible"},
        {Head(1, 65, 44100, 130, 16), u"it claims 65 channels, where 1 to 64 are possible"},
        {Head(0x55, 65, 44100, 1, 0), u"it claims 65 channels, where 1 to 64 are possible"},
        {Head(1, 2, 0, 4, 16), u"it claims a sample rate of 0"},
        {Head(1, 2, 44100, 0, 16), u"it claims blocks of 0 bytes"},
        {Head(0x55, 2, 44100, 0, 0), u"it claims blocks of 0 bytes"},
        {Head(1, 2, 44100, 4, 0), u"it claims PCM samples of 0 bits"},
        {Head(1, 2, 44100, 4, 7), u"it claims PCM samples of 7 bits"},
        {Head(1, 2, 44100, 4, 17), u"it claims PCM samples of 17 bits"},
        {Head(1, 2, 44100, 16, 64), u"it claims PCM samples of 64 bits"},
        {Head(3, 2, 44100, 4, 16), u"it claims IEEE float samples of 16 bits"},
        {Head(6, 2, 44100, 4, 16), u"it claims A-law samples of 16 bits"},
        {Head(7, 2, 44100, 2, 0), u"it claims mu-law samples of 0 bits"},
        {Head(1, 2, 44100, 3, 16), u"it claims frames of 3 bytes, where its channels and bits make 4"},
        {Head(1, 2, 44100, 8, 24), u"it claims frames of 8 bytes, where its channels and bits make 6"},
        {Head(1, 64, 0x7FFFFFFF, 256, 32), u"it claims more bytes per second than a header can hold"},
        {valid(17), u"it claims 17 valid bits in samples of 16"},
    };
    for (const auto& row : rows)
        ExpectRefusal(Riff(Chunk("fmt ", row.format) + kData), row.message, Narrow(row.message));
}

TEST_F(WaveHostileHeaders, A1_products_of_channels_width_and_rate_never_wrap) {
    for (const std::uint32_t channels : {0u, 1u, 2u, 64u, 255u, 32767u, 65535u})
        for (const std::uint32_t bits : {0u, 1u, 2u, 8u, 255u, 32767u, 65535u})
            for (const std::uint32_t rate : {0u, 1u, 0x7FFFFFFFu, 0xFFFFFFFFu})
                for (const std::uint32_t align : {0u, 1u, (channels * bits / 8) & 0xFFFFu, 65535u}) {
                    const std::string head =
                        Head(1, static_cast<std::uint16_t>(channels), rate, static_cast<std::uint16_t>(align),
                             static_cast<std::uint16_t>(bits));
                    const bool good = bits == 8 && align == channels &&
                                      (channels == 1 || channels == 2 || channels == 64) && rate > 0 &&
                                      std::uint64_t{align} * rate <= 0xFFFFFFFF;
                    const std::string what = testing::PrintToString(std::vector{channels, bits, rate, align});
                    const Decoding decoded = Decode(Riff(Chunk("fmt ", head) + kData));
                    EXPECT_EQ(decoded.opened, good) << what;
                    EXPECT_EQ(decoded.audio.size(), good ? 400 / align * align : 0) << what;
                    EXPECT_EQ(decoded.errors.empty(), good) << what;
                }
}

TEST_F(WaveHostileHeaders, A1_nor_do_those_of_records_with_every_field_at_its_end) {
    static constexpr std::uint16_t kTags[] = {1, 2, 3, 6, 7, 0x11, 0x31, 0x50, 0x55, 0xFFFE, 0xFFFF};
    static constexpr std::uint16_t kChannels[] = {1, 64, 65535}, kAligns[] = {1, 65535};
    QvFormatExtensible record = Extensible(0xFFFF, 65535, 0xFFFFFFFF, 65535, 65535, 0xFFFFFFFF);
    for (const std::uint16_t tag : kTags)
        for (const std::uint16_t channels : kChannels)
            for (const std::uint16_t align : kAligns) {
                record.Format.wFormatTag = tag;
                record.Format.nChannels = channels;
                record.Format.nBlockAlign = align;
                record.Format.nAvgBytesPerSec = align;
                const std::string format(reinterpret_cast<const char*>(&record), sizeof record);
                ExpectSoundEnd(Riff(Chunk("fmt ", format) + Chunk("fact", U32(0xFFFFFFFF)) + kData),
                               testing::PrintToString(std::vector{tag, channels, align}));
            }
}

TEST_F(WaveHostileHeaders, A2_chunks_of_tags_and_marks_may_be_cut_anywhere) {
    const std::string list = "INFO" + Chunk("INAM", "Title") + Chunk("IART", "Artist");
    for (const char* id : {"cue ", "smpl", "LIST", "acid", "ds64", "fact", "id3 ", "fmt ", "data"})
        for (std::size_t cut = 0; cut <= list.size(); ++cut) {
            const std::string chunk =
                Claiming(id, static_cast<std::uint32_t>(list.size()), list.substr(0, cut));
            const std::string what = id + std::to_string(cut);
            ExpectSoundEnd(Riff(StereoFormat() + kData + chunk), what);
            ExpectSoundEnd(Riff(chunk), what);
            ExpectSoundEnd(Riff(Chunk(id, list.substr(0, cut)) + StereoFormat() + kData), what);
            ExpectSoundEnd(Claiming("RF64", 0xFFFFFFFF, "WAVE" + chunk), what);
        }
}

TEST_F(WaveHostileHeaders, A2_sizes_of_64_bits_that_are_cut_or_wild) {
    const std::string rest = StereoFormat() + Claiming("data", 0xFFFFFFFF, Noise(400));
    for (std::uint32_t size = 0; size < 24; ++size) {
        const std::string sizes = Chunk("ds64", std::string(size, '\0'));
        ExpectRefusal(Claiming("RF64", 0xFFFFFFFF, "WAVE" + sizes + rest), u"its ds64 chunk is cut short",
                      std::to_string(size));
    }
    for (const std::uint64_t size :
         {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{1} << 63, ~std::uint64_t{0}}) {
        const std::string table = U32(0xFFFFFFFF) + "JUNK" + U64(size);
        const std::string sizes = Chunk("ds64", U64(size) + U64(size) + U64(size) + table);
        ExpectSoundEnd(Claiming("RF64", 0xFFFFFFFF, "WAVE" + sizes + rest), std::to_string(size));
        ExpectSoundEnd(Claiming("RF64", 0xFFFFFFFF, "WAVE" + sizes + Claiming("JUNK", 0xFFFFFFFF, rest)),
                       std::to_string(size));
    }
}

TEST_F(WaveHostileHeaders, A3_a_file_with_any_byte_of_its_header_changed_ends) {
    for (const std::string& whole :
         {Riff(StereoFormat() + kData),
          Riff64("RF64", 400, StereoFormat() + Claiming("data", 0xFFFFFFFF, Noise(400)))}) {
        const std::size_t header = whole.size() - 400;
        for (std::size_t at = 0; at < header; ++at)
            for (const char flip : {'\x01', '\x80', '\xFF'}) {
                std::string changed = whole;
                changed[at] = static_cast<char>(changed[at] ^ flip);
                ExpectSoundEnd(changed, std::to_string(at));
            }
        for (std::size_t cut = 0; cut < header; ++cut)
            ExpectSoundEnd(whole.substr(0, cut), std::to_string(cut));
    }
}

TEST_F(WaveHostileHeaders, A2_a_million_empty_chunks_are_refused_after_a_few_reads) {
    std::string chunks;
    for (int i = 0; i < 1000000; ++i) chunks += Claiming("none", 0, "");
    const std::u16string path = mFolder.Write(u"a.wav", Riff(chunks + StereoFormat() + kData));
    EXPECT_FALSE(mModules.Decode(path).opened);
    LogFiles log;
    const QvLog record = log.Record();
    clWaveDecoder decoder{clModuleLog(&record)};
    clAudioInformation information;
    Faulty<platform::ReadFile> reads;
    EXPECT_FALSE(decoder.OpenForDecoding(path.c_str(), information));
    EXPECT_EQ(log.TakeErrors(), path + u": it has too many chunks before its audio\r\n");
    EXPECT_LE(reads.Calls(), 3 + static_cast<int>(clChunkWalk::kMostChunks * 8 / clFileReader::kWindowBytes));
}

TEST_F(WaveHostileHeaders, As_many_chunks_as_are_walked_are_no_hindrance) {
    std::string chunks;
    for (std::uint32_t i = 0; i < clChunkWalk::kMostChunks - 2; ++i) chunks += Claiming("none", 0, "");
    EXPECT_TRUE(Decode(Riff(chunks + StereoFormat() + kData)).opened);
    EXPECT_FALSE(Decode(Riff(chunks + Chunk("none", "") + StereoFormat() + kData)).opened);
}

TEST_F(WaveHostileHeaders, A_file_that_is_missing_or_a_folder_is_refused) {
    for (const std::u16string& path : {mFolder / u"missing.wav", mFolder.MakeFolder(u"folder.wav")}) {
        const Decoding decoded = mModules.Decode(path);
        EXPECT_FALSE(decoded.opened);
        EXPECT_TRUE(decoded.errors.starts_with(path + u": can't be opened (error "));
    }
}
