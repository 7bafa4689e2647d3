// Every read, write, seek, close and allocation of a codec fails once: what is wrong is said, and the end is an
// end.
//
// One source for all codecs: a program for each links the module's own MakeDecoder and MakeEncoder, so that the
// platform's operations can be failed under them.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "modules/support/module_decoder.h"
#include "modules/support/module_encoder.h"
#include "platform/file.h"
#include "support/allocation_faults.h"
#include "support/codec/log_files.h"
#include "support/faults.h"

namespace {

constexpr std::uint32_t kError = platform::kErrorDiskFull;
constexpr std::uint32_t kFrames = 100000;

std::string TwoTones() {
    std::string audio;
    for (std::uint32_t i = 0; i < 2 * kFrames; ++i) {
        const auto sample =
            static_cast<std::int16_t>(std::lround(9000 * std::sin(0.07 * i) + 5000 * std::sin(0.3 * i)));
        audio.append(reinterpret_cast<const char*>(&sample), sizeof sample);
    }
    return audio;
}

// Fails the n-th write that does not go into the log, or has it fall short by a byte.
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

class CodecFaults : public testing::Test {
  protected:
    CodecFaults() {
        mFormat.Format = {QV_FORMAT_PCM, 2, 48000, 48000 * 4, 4, 16, 0};
        mPath = mFolder / (std::u16string(u"a") + MakeEncoder(clModuleLog(nullptr))->Extension());
        EXPECT_TRUE(Encode());
        EXPECT_EQ(mLog.TakeErrors(), u"");
    }

    bool Encode() {
        const QvLog record = mLog.Record();
        const auto encoder = MakeEncoder(clModuleLog(&record));
        return EncodeWith(*encoder, kFrames);
    }

    bool EncodeWith(clModuleEncoder& encoder, std::uint32_t frames) {
        bool good = encoder.Begin(mPath.c_str(), u"", mFormat);
        for (std::uint32_t at = 0; at < frames; at += 5000) {
            const bool encoded =
                encoder.Encode(reinterpret_cast<const std::uint8_t*>(mAudio.data()) + at * 4, 5000 * 4);
            EXPECT_TRUE(good || !encoded);  // what has failed stays failed
            good = good && encoded;
        }
        const bool ended = encoder.End();
        EXPECT_TRUE(good || !ended);
        return ended;
    }

    // Frames of audio up to the end.
    std::uint64_t Rest(clModuleDecoder& decoder, const QvFormatExtensible& format) {
        std::uint64_t bytes = 0;
        for (int blocks = 0; blocks < 10000; ++blocks) {
            const clDecodedBlock block = decoder.DecodeBlock();
            bytes += block.bytes;
            if (block.finished) return bytes / format.Format.nBlockAlign;
        }
        ADD_FAILURE() << "no end";
        return 0;
    }

    std::uint64_t Decode() {
        const QvLog record = mLog.Record();
        const auto decoder = MakeDecoder(clModuleLog(&record));
        clAudioInformation information;
        mOpened = decoder->OpenForDecoding(mPath.c_str(), information);
        return mOpened ? Rest(*decoder, information.format) : 0;
    }

    void ExpectOneError(const char16_t* words) {
        EXPECT_EQ(mLog.TakeErrors(), mPath + u": " + words + u" (error 112)\r\n");
    }

    const std::string mAudio = TwoTones();
    const TempFolder mFolder;
    LogFiles mLog;
    QvFormatExtensible mFormat{};
    std::u16string mPath;
    bool mOpened = false;
};

}  // namespace

TEST_F(CodecFaults, Opening_that_fails_is_told) {
    {
        Faulty<platform::CreateFileW> opens;
        opens.FailCall(1, platform::kInvalidHandle, kError);
        EXPECT_EQ(Decode(), 0u);
        EXPECT_FALSE(mOpened);
        ExpectOneError(u"can't be opened");
    }
    Faulty<platform::GetFileSizeEx> sizes;
    sizes.FailCall(1, false, kError);
    EXPECT_EQ(Decode(), 0u);
    EXPECT_FALSE(mOpened);
    ExpectOneError(u"can't be opened");
}

TEST_F(CodecFaults, A_read_that_fails_refuses_the_file_or_ends_the_audio_in_words) {
    int reads = 0;
    {
        Faulty<platform::ReadFile> counted;
        EXPECT_EQ(Decode(), kFrames);
        reads = counted.Calls();
    }
    ASSERT_GT(reads, 1);
    for (int call = 1; call <= reads; ++call) {
        Faulty<platform::ReadFile> faulty;
        faulty.FailCall(call, false, kError);
        EXPECT_LE(Decode(), kFrames);
        EXPECT_NE(mLog.TakeErrors().find(u"can't be read (error 112)\r\n"), std::u16string::npos)
            << call << " of " << reads;
    }
}

TEST_F(CodecFaults, A_file_that_shrinks_while_it_is_read_is_told) {
    int reads = 0;
    {
        Faulty<platform::ReadFile> counted;
        Decode();
        reads = counted.Calls();
    }
    Faulty<platform::ReadFile> faulty;
    faulty.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
        *got = 0;
        return faulty.Calls() > reads / 2 || faulty.Native(file, to, count, got);
    });
    EXPECT_LT(Decode(), kFrames);
    EXPECT_NE(mLog.TakeErrors(), u"");
}

TEST_F(CodecFaults, A_read_in_small_pieces_is_read_on) {
    Faulty<platform::ReadFile> reads;
    reads.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
        return reads.Native(file, to, std::min(count, 101u), got);
    });
    EXPECT_EQ(Decode(), kFrames);
    EXPECT_EQ(mLog.TakeErrors(), u"");
}

TEST_F(CodecFaults, A_seek_in_a_file_that_can_not_be_read_any_more_ends_the_audio_in_words) {
    const QvLog record = mLog.Record();
    const auto decoder = MakeDecoder(clModuleLog(&record));
    clAudioInformation information;
    ASSERT_TRUE(decoder->OpenForDecoding(mPath.c_str(), information));
    {
        Faulty<platform::ReadFile> reads;
        Faulty<platform::SetFilePointerEx> seeks;
        reads.FailAlways(false, kError);
        seeks.FailAlways(false, kError);
        decoder->SetPosition(70000);
        EXPECT_LE(Rest(*decoder, information.format), kFrames - 70000);
        EXPECT_NE(mLog.TakeErrors(), u"");
    }
    ASSERT_TRUE(decoder->OpenForDecoding(mPath.c_str(), information));  // which is another matter
    decoder->SetPosition(70000);
    EXPECT_EQ(Rest(*decoder, information.format), kFrames - 70000);
    EXPECT_EQ(mLog.TakeErrors(), u"");
}

TEST_F(CodecFaults, A_write_that_fails_or_falls_short_fails_the_encoding) {
    int writes = 0;
    {
        FailingWrites counted(mLog, 0, false);
        EXPECT_TRUE(Encode());
        writes = counted.Calls();
    }
    ASSERT_GT(writes, 2);
    for (int call = 1; call <= writes; ++call)
        for (const bool isShort : {false, true}) {
            FailingWrites faulty(mLog, call, isShort);
            EXPECT_FALSE(Encode()) << call << " of " << writes;
            EXPECT_EQ(faulty.Calls(), call);  // nothing is written after it
            ExpectOneError(u"can't be written");
        }
}

TEST_F(CodecFaults, Creating_and_closing_that_fail_fail_the_encoding) {
    {
        Faulty<platform::CreateFileW> opens;
        opens.FailCall(1, platform::kInvalidHandle, kError);
        EXPECT_FALSE(Encode());
        ExpectOneError(u"can't be created");
    }
    Faulty<platform::CloseHandle> closes;
    closes.Replace([&](platform::Handle handle) {
        closes.Native(handle);
        platform::SetLastError(kError);
        return false;
    });
    EXPECT_FALSE(Encode());
    ExpectOneError(u"can't be written");
}

TEST_F(CodecFaults, An_encoding_that_was_given_up_does_not_end_well) {
    const QvLog record = mLog.Record();
    const auto encoder = MakeEncoder(clModuleLog(&record));
    ASSERT_TRUE(encoder->Begin(mPath.c_str(), u"", mFormat));
    encoder->Abandon();
    EXPECT_FALSE(encoder->Encode(reinterpret_cast<const std::uint8_t*>(mAudio.data()), 4000));
    EXPECT_FALSE(encoder->End());
    EXPECT_TRUE(EncodeWith(*encoder, kFrames));  // the next one is its own
    EXPECT_EQ(Decode(), kFrames);
    EXPECT_EQ(mLog.TakeErrors(), u"");
}

TEST_F(CodecFaults, Memory_that_runs_out_leaves_nothing_behind) {
    const QvLog off{};
    FailEachAllocation([&] {
        const auto decoder = MakeDecoder(clModuleLog(&off));
        clAudioInformation information;
        if (!decoder->OpenForDecoding(mPath.c_str(), information)) return;
        decoder->DecodeBlock();
        decoder->SetPosition(20000);
        decoder->DecodeBlock();
    });
    FailEachAllocation([&] {
        const auto encoder = MakeEncoder(clModuleLog(&off));
        EncodeWith(*encoder, 10000);
    });
}
