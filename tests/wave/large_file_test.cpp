// Beyond 4 GiB both ways. What is between the ends is never written: the file has a hole there.
#include <gtest/gtest.h>

#include <cstring>

#include "modules/wave/wave_encoder.h"
#include "platform/file.h"
#include "support/faults.h"
#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

using namespace wave_bytes;

namespace {

constexpr std::uint32_t kPiece = 0x40000000;  // a block that is passed over instead of written
constexpr std::uint64_t kAudioBytes = 4 + 5 * std::uint64_t{kPiece} + 4;
const QvFormatExtensible kStereo = Plain(QV_FORMAT_PCM, 2, 48000, 16);

// Writes begin, five gibibytes of nothing, end: through the encoder, with its long writes turned into seeks.
void WriteLarge(const std::u16string& path) {
    const QvLog off{};
    clWaveEncoder encoder{clModuleLog(&off)};
    std::int64_t position = 0;
    Faulty<platform::WriteFile> writes;
    writes.Replace([&](platform::Handle file, const void* data, std::uint32_t count, std::uint32_t* written) {
        position += count;
        if (count < kPiece) return writes.Native(file, data, count, written);
        *written = count;
        return platform::SetFilePointerEx(file, position);
    });
    const auto* begin = reinterpret_cast<const std::uint8_t*>("head");
    ASSERT_TRUE(encoder.Begin(path.c_str(), u"", kStereo));
    ASSERT_TRUE(encoder.Encode(begin, 4));
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(encoder.Encode(begin, kPiece));
    ASSERT_TRUE(encoder.Encode(reinterpret_cast<const std::uint8_t*>("tail"), 4));
    ASSERT_TRUE(encoder.End());
}

void Patch(const std::u16string& path, std::int64_t position, const std::string& bytes) {
    const platform::Handle file = platform::CreateFileW(path.c_str(), platform::kGenericWrite, 0,
                                                        platform::kOpenExisting, platform::kAttributeNormal);
    std::uint32_t written = 0;
    EXPECT_TRUE(platform::SetFilePointerEx(file, position));
    EXPECT_TRUE(platform::WriteFile(file, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &written));
    EXPECT_TRUE(platform::CloseHandle(file));
}

// The first block, and what follows a frame near the end.
void ExpectBothEnds(WaveModules& modules, const std::u16string& path) {
    clOpenFileRec record;
    ASSERT_TRUE(modules.Open(path, QV_OPEN_DECODING, record));
    EXPECT_EQ(ValueOf(record.lengthMs), kAudioBytes / 4 * 1000 / 48000);
    EXPECT_EQ(ValueOf(record.fileSize), kAudioBytes + 80);
    std::string audio;
    EXPECT_TRUE(modules.DecodeBlock(audio));
    EXPECT_EQ(audio, "head" + std::string(kLargestBlock - 4, '\0'));
    audio.clear();
    modules.Decoder().SetPosition(static_cast<std::int64_t>(kAudioBytes / 4 - 3));
    EXPECT_FALSE(modules.DecodeBlock(audio));
    EXPECT_EQ(audio, std::string(8, '\0') + "tail");
    modules.Decoder().Destroy();
}

}  // namespace

TEST(WaveLargeFile, Positions_beyond_4_GiB_are_written_and_read) {
    WaveModules modules;
    const TempFolder folder;
    const std::u16string path = folder / u"a.wav";
    ASSERT_NO_FATAL_FAILURE(WriteLarge(path));

    const std::string header =
        "WAVE" + Chunk("ds64", U64(kAudioBytes + 72) + U64(kAudioBytes) + U64(kAudioBytes / 4) + U32(0)) +
        Chunk("fmt ", Head(1, 2, 48000, 4, 16)) + Claiming("data", 0xFFFFFFFF, "head");
    const platform::Handle file =
        platform::CreateFileW(path.c_str(), platform::kGenericRead, platform::kShareRead,
                              platform::kOpenExisting, platform::kAttributeNormal);
    std::string begin(84, '\0');
    std::uint32_t got = 0;
    EXPECT_TRUE(platform::ReadFile(file, begin.data(), 84, &got));
    EXPECT_TRUE(platform::CloseHandle(file));
    EXPECT_EQ(begin, Claiming("RF64", 0xFFFFFFFF, header));

    ExpectBothEnds(modules, path);
    Patch(path, 0, "BW64");
    ExpectBothEnds(modules, path);
    EXPECT_EQ(modules.Log().TakeErrors() + modules.Log().TakeInformation(), u"");
    Patch(path, 0, "RIFF");  // as one that streamed it would have left it
    ExpectBothEnds(modules, path);
    EXPECT_EQ(modules.Log().TakeErrors(), u"");
}

TEST(WaveLargeFile, A_length_that_looks_left_open_is_taken_when_the_file_has_it) {
    WaveModules modules;
    const TempFolder folder;
    const std::string tail = Chunk("LIST", "INFOINAM");
    const std::u16string path = folder.Write(
        u"a.wav", Claiming("RIFF", 0x7FFFF024, "WAVE" + StereoFormat() + Claiming("data", 0x7FFFF000, "")));
    Patch(path, 44 + 0x7FFFF000, tail);
    clOpenFileRec record;
    ASSERT_TRUE(modules.Open(path, QV_OPEN_DECODING, record));
    EXPECT_EQ(ValueOf(record.lengthMs), 0x7FFFF000 / 4 * std::uint64_t{1000} / 44100);
    EXPECT_EQ(ValueOf(record.fileSize), 44u + 0x7FFFF000u + tail.size());
    modules.Decoder().Destroy();
    EXPECT_EQ(modules.Log().TakeErrors() + modules.Log().TakeInformation(), u"");
}
