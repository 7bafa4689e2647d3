// Every read, write, seek and close fails once: what is wrong is said once, and the end is an end.
#include "flac/flac_file.h"
#include "modules/flac/flac_encoder.h"
#include "modules/flac/flac_stream.h"
#include "modules/support/stream_decoder.h"
#include "platform/file.h"
#include "support/allocation_faults.h"
#include "support/faults.h"

namespace {

constexpr std::uint32_t kError = platform::kErrorDiskFull;
constexpr clFileType kTypes[] = {{u".flac", u""}};
constexpr clStreamCodec kCodec = {kTypes, MakeStream<clFlacStream>, TagContainer::flac};

class FlacFaults : public Flac {
  protected:
    FlacFaults() { Encode(stereo, audio); }

    std::string DecodeAll() {
        const QvLog record = modules.Log().Record();
        clStreamDecoder decoder{clModuleLog(&record), kCodec};
        clAudioInformation information;
        std::string all;
        mOpened = decoder.OpenForDecoding(file.c_str(), information);
        for (bool finished = !mOpened; !finished;) {
            const clDecodedBlock block = decoder.DecodeBlock();
            all.append(reinterpret_cast<const char*>(block.data), block.bytes);
            finished = block.finished;
        }
        return all;
    }

    bool EncodeAll() {
        const QvLog record = modules.Log().Record();
        clFlacEncoder encoder{clModuleLog(&record)};
        bool good = encoder.Begin(file.c_str(), u"", stereo);
        for (std::size_t at = 0; at + 40000 <= audio.size(); at += 40000) {
            const bool encoded =
                encoder.Encode(reinterpret_cast<const std::uint8_t*>(audio.data() + at), 40000);
            EXPECT_TRUE(good || !encoded);  // what has failed stays failed
            good = good && encoded;
        }
        const bool ended = encoder.End();
        EXPECT_TRUE(good || !ended);
        return ended;
    }

    const std::u16string file = folder / u"a.flac";
    bool mOpened = false;
};

}  // namespace

TEST_F(FlacFaults, A_read_that_fails_refuses_the_file_or_ends_the_audio) {
    int reads = 0;
    {
        Faulty<platform::ReadFile> counted;
        EXPECT_TRUE(DecodeAll() == audio);
        reads = counted.Calls();
    }
    ASSERT_GT(reads, 2);
    for (int call = 1; call <= reads; ++call) {
        Faulty<platform::ReadFile> faulty;
        faulty.FailCall(call, false, kError);
        const std::string some = DecodeAll();
        EXPECT_TRUE(audio.starts_with(some));
        EXPECT_TRUE(modules.Log().TakeErrors().starts_with(file + u": can't be read (error 112)\r\n"))
            << call;
    }
}

TEST_F(FlacFaults, A_file_that_shrinks_while_it_is_read_ends_with_what_is_missing) {
    Faulty<platform::ReadFile> reads;
    reads.Replace([&](platform::Handle handle, void* to, std::uint32_t count, std::uint32_t* got) {
        if (reads.Calls() < 3) return reads.Native(handle, to, count, got);
        *got = 0;
        return true;
    });
    EXPECT_TRUE(audio.starts_with(DecodeAll()));
    EXPECT_NE(modules.Log().TakeErrors().find(u" of 50001 frames are missing\r\n"), std::u16string::npos);
}

TEST_F(FlacFaults, A_seek_that_fails_ends_the_audio) {
    const QvLog record = modules.Log().Record();
    clStreamDecoder decoder{clModuleLog(&record), kCodec};
    clAudioInformation information;
    ASSERT_TRUE(decoder.OpenForDecoding(file.c_str(), information));
    Faulty<platform::SetFilePointerEx> seeks;
    seeks.FailAlways(false, kError);
    decoder.SetPosition(40000);
    EXPECT_TRUE(decoder.DecodeBlock().finished);
    EXPECT_NE(modules.Log().TakeErrors(), u"");
}

TEST_F(FlacFaults, A_write_that_fails_or_falls_short_fails_the_encoding) {
    // Fails the n-th write into the file under test; those into the log pass.
    const auto encode = [&](int failing, bool isShort) {
        Faulty<platform::WriteFile> faulty;
        int calls = 0;
        faulty.Replace(
            [&](platform::Handle handle, const void* data, std::uint32_t count, std::uint32_t* written) {
                const XLog& log = modules.Log().Log();
                const bool isLog = handle == log.mErrorOut || handle == log.mInfoOut;
                if (isLog || ++calls != failing) return faulty.Native(handle, data, count, written);
                *written = isShort && count > 0 ? count - 1 : 0;
                if (!isShort) platform::SetLastError(kError);
                return isShort;
            });
        EXPECT_EQ(EncodeAll(), failing == 0) << failing;
        EXPECT_TRUE(failing == 0 || calls == failing);  // nothing is written after it
        return calls;
    };
    const int writes = encode(0, false);
    ASSERT_GT(writes, 14);  // the header's parts, twelve frames, the header's numbers
    for (int call = 1; call <= writes; ++call)
        for (const bool isShort : {false, true}) {
            encode(call, isShort);
            EXPECT_EQ(modules.Log().TakeErrors(), file + u": can't be written (error 112)\r\n") << call;
        }
}

TEST_F(FlacFaults, Creating_seeking_and_closing_that_fail_fail_the_encoding) {
    {
        Faulty<platform::CreateFileW> opens;
        opens.FailCall(1, platform::kInvalidHandle, kError);
        EXPECT_FALSE(EncodeAll());
        EXPECT_EQ(modules.Log().TakeErrors(), file + u": can't be created (error 112)\r\n");
    }
    {
        Faulty<platform::SetFilePointerEx> seeks;
        seeks.FailCall(1, false, kError);
        EXPECT_FALSE(EncodeAll());
        EXPECT_EQ(modules.Log().TakeErrors(), file + u": can't be written (error 112)\r\n");
    }
    Faulty<platform::CloseHandle> closes;
    closes.Replace([&](platform::Handle handle) {
        closes.Native(handle);
        platform::SetLastError(kError);
        return false;
    });
    EXPECT_FALSE(EncodeAll());
    EXPECT_EQ(modules.Log().TakeErrors(), file + u": can't be written (error 112)\r\n");
}

TEST_F(FlacFaults, Memory_that_runs_out_leaves_nothing_behind) {
    const QvLog off{};
    FailEachAllocation([&] {
        clStreamDecoder decoder{clModuleLog(&off), kCodec};
        clAudioInformation information;
        if (!decoder.OpenForDecoding(file.c_str(), information)) return;
        decoder.DecodeBlock();
        decoder.SetPosition(20000);
        decoder.DecodeBlock();
    });
    FailEachAllocation([&] {
        clFlacEncoder encoder{clModuleLog(&off)};
        encoder.Begin((folder / u"b.flac").c_str(), u"-verify=yes", PcmFormat(44100, 2, 16, 16, 0x30));
        encoder.Encode(reinterpret_cast<const std::uint8_t*>(audio.data()), 40000);
        encoder.End();
    });
}
