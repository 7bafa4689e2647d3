// Every read, write and seek fails once: what is wrong is said, and the end is an end.
#include <algorithm>

#include "ogg/ogg_codecs.h"
#include "platform/error.h"
#include "platform/file.h"
#include "support/codec/log_files.h"
#include "support/faults.h"

namespace {

constexpr std::uint32_t kError = platform::kErrorDiskFull;
constexpr std::uint32_t kFrames = 150001;

class OggFaults : public OggTest {
  protected:
    struct Result {
        bool opened = false;
        std::uint64_t frames = 0;
        std::u16string errors;
    };

    // By its classes, whose platform operations a test can take over.
    Result Decode(std::uint64_t seek = 0) {
        Result result;
        const QvLog record = mLog.Record();
        const std::unique_ptr<clAudioStream> stream = ogg.codec.makeStream(clModuleLog(&record));
        result.opened = stream->Open(mPath.c_str());
        if (result.opened && (seek == 0 || stream->Seek(seek)))
            for (std::span<const std::uint8_t> block = stream->Read(); !block.empty(); block = stream->Read())
                result.frames += block.size() / 8;
        result.errors = mLog.TakeErrors();
        return result;
    }

    bool Encode() {
        const QvLog record = mLog.Record();
        const std::unique_ptr<clModuleEncoder> encoder = ogg.codec.makeEncoder(clModuleLog(&record));
        const std::vector<float> sound = MakeSound(kFrames, 2);
        bool good = encoder->Begin(mPath.c_str(), u"", FloatFormat(ogg.codec.rate, 2));
        for (std::string_view rest = BytesOf(sound); !rest.empty();
             rest.remove_prefix(std::min<std::size_t>(rest.size(), 50000))) {
            const std::string_view piece = rest.substr(0, 50000);
            const bool encoded = encoder->Encode(reinterpret_cast<const std::uint8_t*>(piece.data()),
                                                 static_cast<std::uint32_t>(piece.size()));
            EXPECT_TRUE(good || !encoded);  // what has failed stays failed
            good = good && encoded;
        }
        const bool ended = encoder->End();
        EXPECT_TRUE(good || !ended);
        return ended;
    }

    LogFiles mLog;
    const std::string mGood = ogg.Encode(kFrames);
    const std::u16string mPath = ogg.folder / ogg.codec.file;
};

TEST_P(OggFaults, A_read_that_fails_refuses_the_file_or_ends_the_audio) {
    int reads = 0;
    {
        Faulty<platform::ReadFile> counted;
        EXPECT_EQ(Decode().frames, kFrames);
        reads = counted.Calls();
    }
    for (int call = 1; call <= reads; ++call) {
        Faulty<platform::ReadFile> faulty;
        faulty.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
            if (faulty.Calls() != call) return faulty.Native(file, to, count, got);
            *got = 0;
            platform::SetLastError(kError);
            return false;
        });
        const Result result = Decode();
        EXPECT_EQ(result.errors, mPath + u": can't be read (error 112)\r\n") << call << " of " << reads;
        EXPECT_LE(result.frames, kFrames) << call;
    }
}

TEST_P(OggFaults, A_read_that_fails_during_a_seek_is_told) {
    int calls = 0, seeks = 0;
    {
        Faulty<platform::ReadFile> counted;
        Decode();
        calls = counted.Calls();
        Decode(kFrames / 2);
        seeks = counted.Calls() - calls;
    }
    for (int call = 1; call <= seeks; ++call) {
        Faulty<platform::ReadFile> faulty;
        faulty.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
            if (faulty.Calls() < call) return faulty.Native(file, to, count, got);
            *got = 0;
            platform::SetLastError(kError);
            return false;
        });
        EXPECT_NE(Decode(kFrames / 2).errors.find(u"can't be read (error 112)"), std::u16string::npos)
            << call;
    }
}

TEST_P(OggFaults, A_file_that_shrinks_while_it_is_read_ends) {
    for (const std::uint64_t left : {mGood.size() / 8, mGood.size() / 2, mGood.size() - 1}) {
        Faulty<platform::ReadFile> reads;
        std::int64_t position = 0;
        Faulty<platform::SetFilePointerEx> seeks;
        seeks.Replace([&](platform::Handle file, std::int64_t to) {
            position = to;
            return seeks.Native(file, to);
        });
        reads.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
            const std::int64_t rest = static_cast<std::int64_t>(left) - position;
            if (reads.Calls() > 4)
                count = static_cast<std::uint32_t>(std::clamp<std::int64_t>(rest, 0, count));
            const bool good = reads.Native(file, to, count, got);
            position += *got;
            return good;
        });
        EXPECT_NE(Decode().errors, u"") << left;
    }
}

TEST_P(OggFaults, A_read_in_small_pieces_is_read_on) {
    Faulty<platform::ReadFile> reads;
    reads.Replace([&](platform::Handle file, void* to, std::uint32_t count, std::uint32_t* got) {
        return reads.Native(file, to, std::min(count, 1001u), got);
    });
    const Result result = Decode();
    EXPECT_EQ(result.frames, kFrames);
    EXPECT_EQ(result.errors, u"");
}

TEST_P(OggFaults, A_write_that_fails_or_falls_short_fails_the_encoding) {
    const auto failing = [&](int call, bool isShort, int* calls) {
        Faulty<platform::WriteFile> writes;
        int seen = 0;
        writes.Replace(
            [&](platform::Handle file, const void* data, std::uint32_t count, std::uint32_t* written) {
                const bool isLog = file == mLog.Log().mErrorOut || file == mLog.Log().mInfoOut;
                if (isLog || ++seen != call) return writes.Native(file, data, count, written);
                *written = isShort && count > 0 ? count - 1 : 0;
                if (!isShort) platform::SetLastError(kError);
                return isShort;
            });
        const bool ended = Encode();
        *calls = seen;
        return ended;
    };
    int writes = 0, seen = 0;
    ASSERT_TRUE(failing(-1, false, &writes));
    ASSERT_GT(writes, 4);
    for (int call = 1; call <= writes; ++call)
        for (const bool isShort : {false, true}) {
            EXPECT_FALSE(failing(call, isShort, &seen)) << call;
            EXPECT_EQ(seen, call);  // nothing is written after it
            EXPECT_EQ(mLog.TakeErrors(), mPath + u": can't be written (error 112)\r\n") << call;
        }
}

TEST_P(OggFaults, Creating_and_closing_that_fail_fail_the_encoding) {
    {
        Faulty<platform::CreateFileW> opens;
        opens.FailCall(1, platform::kInvalidHandle, kError);
        EXPECT_FALSE(Encode());
        EXPECT_EQ(mLog.TakeErrors(), mPath + u": can't be created (error 112)\r\n");
    }
    Faulty<platform::CloseHandle> closes;
    closes.Replace([&](platform::Handle handle) {
        closes.Native(handle);
        platform::SetLastError(kError);
        return false;
    });
    EXPECT_FALSE(Encode());
    EXPECT_EQ(mLog.TakeErrors(), mPath + u": can't be written (error 112)\r\n");
}

TEST_P(OggFaults, An_encoding_that_was_given_up_does_not_end_well) {
    const QvLog record = mLog.Record();
    const std::unique_ptr<clModuleEncoder> encoder = ogg.codec.makeEncoder(clModuleLog(&record));
    ASSERT_TRUE(encoder->Begin(mPath.c_str(), u"", FloatFormat(ogg.codec.rate, 1)));
    encoder->Abandon();
    EXPECT_FALSE(encoder->Encode(reinterpret_cast<const std::uint8_t*>("abcd"), 4));
    EXPECT_FALSE(encoder->End());
    ASSERT_TRUE(
        encoder->Begin(mPath.c_str(), u"", FloatFormat(ogg.codec.rate, 1)));  // the next one is its own
    EXPECT_TRUE(encoder->End());
}

OGG_TESTS(OggFaults);

}  // namespace
