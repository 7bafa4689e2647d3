// Every read, write, seek and close fails once: what is wrong is said once, and the end is an end.
#include <gtest/gtest.h>

#include <algorithm>

#include "modules/wave/wave_decoder.h"
#include "modules/wave/wave_encoder.h"
#include "platform/file.h"
#include "support/allocation_faults.h"
#include "support/codec/log_files.h"
#include "support/faults.h"
#include "wave/wave_bytes.h"

using namespace wave_bytes;

namespace {

constexpr std::uint32_t kError = platform::kErrorDiskFull;

class WaveFaults : public testing::Test {
  protected:
    struct Result {
        bool opened = false;
        std::string audio;
        std::u16string errors;
    };

    Result Decode() {
        Result result;
        const QvLog record = mLog.Record();
        clWaveDecoder decoder{clModuleLog(&record)};
        clAudioInformation information;
        result.opened = decoder.OpenForDecoding(mPath.c_str(), information);
        bool finished = !result.opened;
        for (int i = 0; !finished && i < 100; ++i) {
            const clDecodedBlock block = decoder.DecodeBlock();
            if (block.bytes > 0) result.audio.append(reinterpret_cast<const char*>(block.data), block.bytes);
            finished = block.finished;
        }
        EXPECT_TRUE(finished);
        result.errors = mLog.TakeErrors();
        return result;
    }

    bool Encode() {
        const QvLog record = mLog.Record();
        clWaveEncoder encoder{clModuleLog(&record)};
        bool good = encoder.Begin(mPath.c_str(), u"", Plain(QV_FORMAT_PCM, 1, 8000, 8));
        for (int i = 0; i < 3; ++i) {
            const bool encoded = encoder.Encode(reinterpret_cast<const std::uint8_t*>("abcde"), 5);
            EXPECT_TRUE(good || !encoded);  // what has failed stays failed
            good = good && encoded;
        }
        const bool ended = encoder.End();
        EXPECT_TRUE(good || !ended);
        return ended;
    }

    void ExpectOneError(const std::u16string& errors, const char16_t* words) {
        EXPECT_EQ(errors, mPath + u": " + words + u" (error 112)\r\n");
    }

    TempFolder mFolder;
    LogFiles mLog;
    const std::u16string mPath = mFolder.Write(u"a.wav", Riff(StereoFormat() + Chunk("data", Noise(150000))));
};

// Fails the n-th write into the file under test; those into the log pass.
class FailingWrites {
  public:
    FailingWrites(const LogFiles& log, int call, bool isShort) {
        mWrites.Replace([this, &log, call, isShort](platform::Handle file, const void* data,
                                                    std::uint32_t count, std::uint32_t* written) {
            const bool isLog = file == log.Log().mErrorOut || file == log.Log().mInfoOut;
            if (isLog || ++mCalls != call) return mWrites.Native(file, data, count, written);
            *written = isShort && count > 0 ? count - 1 : 0;
            if (!isShort) platform::SetLastError(kError);
            return isShort;
        });
    }
    int Calls() const { return mCalls; }

  private:
    Faulty<platform::WriteFile> mWrites;
    int mCalls = 0;
};

}  // namespace

TEST_F(WaveFaults, Opening_that_fails_is_told) {
    {
        Faulty<platform::CreateFileW> opens;
        opens.FailCall(1, platform::kInvalidHandle, kError);
        ExpectOneError(Decode().errors, u"can't be opened");
    }
    Faulty<platform::GetFileSizeEx> sizes;
    sizes.FailCall(1, false, kError);
    ExpectOneError(Decode().errors, u"can't be opened");
}

TEST_F(WaveFaults, A_read_that_fails_refuses_the_file_or_ends_the_audio) {
    int reads = 0;
    {
        Faulty<platform::ReadFile> counted;
        EXPECT_EQ(Decode().audio.size(), 150000u);
        reads = counted.Calls();
    }
    ASSERT_EQ(reads, 4);  // headers, three blocks
    for (int call = 1; call <= reads; ++call) {
        Faulty<platform::ReadFile> faulty;
        faulty.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
            if (faulty.Calls() != call) return faulty.Native(file, to, count, got);
            *got = 0;
            platform::SetLastError(kError);
            return false;
        });
        const Result result = Decode();
        ExpectOneError(result.errors, u"can't be read");
        EXPECT_EQ(result.opened, call > 1);
        EXPECT_EQ(result.audio,
                  call > 1 ? Noise(150000).substr(0, static_cast<std::size_t>(call - 2) * 65536) : "");
    }
}

TEST_F(WaveFaults, A_seek_that_fails_ends_the_audio) {
    Faulty<platform::SetFilePointerEx> seeks;
    seeks.FailCall(1, false, kError);
    const Result result = Decode();
    EXPECT_TRUE(result.opened);
    EXPECT_EQ(result.audio, "");
    ExpectOneError(result.errors, u"can't be read");
}

TEST_F(WaveFaults, A_file_that_shrinks_while_it_is_read_ends_with_what_is_missing) {
    Faulty<platform::ReadFile> reads;
    reads.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
        if (reads.Calls() == 3) count = 1002;  // the second block
        if (reads.Calls() < 4) return reads.Native(file, to, count, got);
        *got = 0;
        return true;
    });
    const Result result = Decode();
    EXPECT_EQ(result.audio, Noise(150000).substr(0, 65536 + 1000));
    EXPECT_EQ(result.errors, mPath + u": 83462 of 150000 bytes of audio are missing\r\n");
}

TEST_F(WaveFaults, A_read_in_small_pieces_is_read_on) {
    Faulty<platform::ReadFile> reads;
    reads.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
        return reads.Native(file, to, std::min(count, 1001u), got);
    });
    const Result result = Decode();
    EXPECT_EQ(result.audio, Noise(150000));
    EXPECT_EQ(result.errors, u"");
}

TEST_F(WaveFaults, Contents_of_headers_that_can_not_be_read_are_told) {
    const QvLog record = mLog.Record();
    clWaveDecoder decoder{clModuleLog(&record)};
    clAudioInformation information;
    for (const char* id : {"fmt ", "fact"}) {
        // Its header ends with the first window, its content begins with the second.
        const std::string space = Chunk("JUNK", std::string(clFileReader::kWindowBytes - 28, '\0'));
        mFolder.Write(u"a.wav", Riff(space + Chunk(id, Noise(16)) + StereoFormat() + Chunk("data", "abcd")));
        Faulty<platform::ReadFile> reads;
        reads.FailCall(2, false, kError);
        EXPECT_FALSE(decoder.ReadInformation(mPath.c_str(), information)) << id;
        ExpectOneError(mLog.TakeErrors(), u"can't be read");
    }
}

TEST_F(WaveFaults, Tags_that_can_not_be_read_are_told) {
    const QvLog record = mLog.Record();
    clWaveDecoder decoder{clModuleLog(&record)};
    clIDTagList tags;
    const std::string list = Chunk("LIST", "INFO" + Chunk("INAM", Noise(10000)));
    mFolder.Write(u"a.wav", Riff(StereoFormat() + Chunk("data", Noise(150000)) + list));
    for (const int call : {2, 3}) {  // the list's header, all of it
        Faulty<platform::ReadFile> reads;
        reads.FailCall(call, false, kError);
        EXPECT_FALSE(decoder.ReadTags(mPath.c_str(), tags));
        EXPECT_EQ(tags.Count(), 0);
        EXPECT_EQ(mLog.TakeErrors(), mPath + u": its tags can't be read (error 112)\r\n");
    }
}

TEST_F(WaveFaults, A_write_that_fails_or_falls_short_fails_the_encoding) {
    int writes = 0;
    {
        FailingWrites counted(mLog, -1, false);
        EXPECT_TRUE(Encode());
        writes = counted.Calls();
    }
    ASSERT_EQ(writes, 6);  // header, three blocks, padding, header
    for (int call = 1; call <= writes; ++call)
        for (const bool isShort : {false, true}) {
            FailingWrites faulty(mLog, call, isShort);
            EXPECT_FALSE(Encode()) << call;
            EXPECT_EQ(faulty.Calls(), call);  // nothing is written after it
            ExpectOneError(mLog.TakeErrors(), u"can't be written");
        }
}

TEST_F(WaveFaults, Creating_seeking_and_closing_that_fail_fail_the_encoding) {
    {
        Faulty<platform::CreateFileW> opens;
        opens.FailCall(1, platform::kInvalidHandle, kError);
        EXPECT_FALSE(Encode());
        ExpectOneError(mLog.TakeErrors(), u"can't be created");
    }
    {
        Faulty<platform::SetFilePointerEx> seeks;
        seeks.FailCall(1, false, kError);
        EXPECT_FALSE(Encode());
        ExpectOneError(mLog.TakeErrors(), u"can't be written");
    }
    Faulty<platform::CloseHandle> closes;
    closes.Replace([&](platform::Handle handle) {
        closes.Native(handle);
        platform::SetLastError(kError);
        return false;
    });
    EXPECT_FALSE(Encode());
    ExpectOneError(mLog.TakeErrors(), u"can't be written");
}

TEST_F(WaveFaults, An_encoding_that_was_given_up_does_not_end_well) {
    const QvLog record = mLog.Record();
    clWaveEncoder encoder{clModuleLog(&record)};
    ASSERT_TRUE(encoder.Begin(mPath.c_str(), u"", Plain(QV_FORMAT_PCM, 1, 8000, 8)));
    encoder.Abandon();
    EXPECT_FALSE(encoder.Encode(reinterpret_cast<const std::uint8_t*>("abc"), 3));
    EXPECT_FALSE(encoder.End());
    ASSERT_TRUE(
        encoder.Begin(mPath.c_str(), u"", Plain(QV_FORMAT_PCM, 1, 8000, 8)));  // the next one is its own
    EXPECT_TRUE(encoder.End());
}

TEST_F(WaveFaults, Memory_that_runs_out_leaves_nothing_behind) {
    const QvLog off{};
    FailEachAllocation([&] {
        clWaveDecoder decoder{clModuleLog(&off)};
        clAudioInformation information;
        if (decoder.OpenForDecoding(mPath.c_str(), information)) decoder.DecodeBlock();
    });
    FailEachAllocation([&] {
        clWaveEncoder encoder{clModuleLog(&off)};
        encoder.Begin((mFolder.Path() + u"/b.wav").c_str(), u"", Plain(QV_FORMAT_PCM, 1, 8000, 8));
        encoder.End();
    });
}
