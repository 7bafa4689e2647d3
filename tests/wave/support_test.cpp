// What all modules share: arithmetic, the file reader and writer, and entries that let no exception out.
#define QV_DECODER_MODULE
#define QV_ENCODER_MODULE
#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <stdexcept>

#include "foundation/qv_text.h"
#include "modules/support/file_reader.h"
#include "modules/support/file_writer.h"
#include "modules/support/module_decoder.h"
#include "modules/support/module_encoder.h"
#include "modules/support/scale.h"
#include "platform/file.h"
#include "support/codec/log_files.h"
#include "support/faults.h"
#include "support/temp_folder.h"
#include "wave/wave_bytes.h"
#include "wave/wave_modules.h"

namespace {

enum class Trouble { none, memory, other, refusal };
Trouble gTrouble = Trouble::none;

bool Act() {
    if (gTrouble == Trouble::memory) throw std::bad_alloc();
    if (gTrouble == Trouble::other) throw std::runtime_error("anything");
    return gTrouble == Trouble::none;
}

class TroubledDecoder : public clModuleDecoder {
  public:
    using clModuleDecoder::clModuleDecoder;
    std::span<const clFileType> FileTypes() const override {
        static constexpr clFileType kTypes[] = {{u".x", u"X"}};
        return Act() ? std::span<const clFileType>(kTypes) : std::span<const clFileType>();
    }
    bool ReadInformation(const char16_t*, clAudioInformation&) override { return Act(); }
    bool ReadTags(const char16_t*, clIDTagList& tags) override {
        for (std::int32_t i = 0; i < mTagCount; ++i) tags.Add(u"name", std::u16string(100, u'v').c_str());
        for (const std::uint32_t size : mArt)
            tags.AddBinary(u"PICTURE", u"", std::string(size, 'a').data(), size);
        return Act();
    }
    bool ReadPropertyRows(const char16_t*, clIDTagList&) override { return Act(); }
    bool WriteTags(const char16_t*, const clIDTagList&) override { return Act(); }
    bool DeleteTags(const char16_t*, const char16_t*) override { return Act(); }
    bool OpenForDecoding(const char16_t*, clAudioInformation&) override { return Act(); }
    void Close() override { Act(); }
    clDecodedBlock DecodeBlock() override {
        return Act() ? clDecodedBlock{nullptr, 0, 7, false} : clDecodedBlock();
    }
    void SetPosition(std::int64_t) override { Act(); }

    static inline std::int32_t mTagCount = 0;
    static inline std::vector<std::uint32_t> mArt;
};

class TroubledEncoder : public clModuleEncoder {
  public:
    using clModuleEncoder::clModuleEncoder;
    const char16_t* Extension() const override { return Act() ? u".x" : nullptr; }
    bool Begin(const char16_t*, const char16_t*, const QvFormatExtensible&) override {
        return mGood = true, Act();
    }
    bool Encode(const std::uint8_t*, std::uint32_t) override { return Act(); }
    bool End() override { return mGood; }
    void Abandon() override { mGood = false; }

  private:
    bool mGood = false;
};

}  // namespace

std::unique_ptr<clModuleDecoder> MakeDecoder(const clModuleLog& log) {
    return Act() ? std::make_unique<TroubledDecoder>(log) : nullptr;
}
std::unique_ptr<clModuleEncoder> MakeEncoder(const clModuleLog& log) {
    return Act() ? std::make_unique<TroubledEncoder>(log) : nullptr;
}

namespace {

class Entries : public testing::Test {
  protected:
    ~Entries() override {
        gTrouble = Trouble::none, TroubledDecoder::mTagCount = 0, TroubledDecoder::mArt.clear();
    }

    // Runs `call` with each kind of exception, which must come out as `failed` and one line.
    template <class Call>
    void ExpectCaught(const char* what, int failed, Call call) {
        const std::pair<Trouble, std::u16string> rows[] = {
            {Trouble::memory, u"not enough memory\r\n"},
            {Trouble::other, u"an unexpected failure inside the module\r\n"}};
        for (const auto& [trouble, line] : rows) {
            gTrouble = trouble;
            EXPECT_EQ(call(), failed) << what;
            gTrouble = Trouble::none;
            EXPECT_EQ(mLog.TakeErrors(), line) << what;
        }
    }

    LogFiles mLog;
    const QvLog mRecord = mLog.Record();
};

}  // namespace

TEST_F(Entries, of_a_decoder_let_no_exception_out) {
    clCodecQueryRec query{};
    query.text = ToQvText(u"a");
    clOpenFileRec open{};
    open.file = ToQvText(u"a");
    ExpectCaught("Create", 0, [&] { return static_cast<int>(Create(&mRecord)); });
    const QvInstance instance = Create(&mRecord);
    ASSERT_NE(instance, 0u);
    ExpectCaught("Get", 0, [&] { return Get(instance, ToQvText(u"Decodes"), &query); });
    ExpectCaught("Set", 0, [&] { return Set(instance, ToQvText(u"IDTags"), &query); });
    for (const std::uint32_t request : {1u, 4u, 8u, 16u}) {
        open.request = request;
        ExpectCaught("Open", 0, [&] { return Open(instance, &open); });
        EXPECT_EQ(Open(instance, &open), 1);
    }
    ExpectCaught("Close", 0, [&] { return Close(instance, nullptr), 0; });
    ExpectCaught("SetPosition", 0, [&] { return SetPosition(instance, 1), 0; });
    ExpectCaught("DeleteATag", 0, [&] { return DeleteATag(instance, ToQvText(u"a"), nullptr); });
    ExpectCaught("DecodeBlock", 1, [&] {
        clBlockRec block;
        std::memset(&block, 0xEE, sizeof block);
        const int result = DecodeBlock(instance, &block);
        EXPECT_EQ(ValueOf(block.finished), 1u);
        EXPECT_EQ(ValueOf(block.bytes), 0u);
        return result;
    });
    Destroy(instance);
}

TEST_F(Entries, of_an_encoder_let_no_exception_out_and_fail_the_encoding) {
    clCodecQueryRec query{};
    clEncoderSessionRec session{};
    clBlockRec block{};
    std::uint32_t reserved = 0;
    session.file = ToQvText(u"a");
    ExpectCaught("Create", 0, [&] { return static_cast<int>(ENC_Create(&mRecord)); });
    const QvInstance instance = ENC_Create(&mRecord);
    ExpectCaught("Get", 0, [&] { return ENC_Get(instance, ToQvText(u"Extension"), &query); });
    ExpectCaught("Begin", 0, [&] { return ENC_BeginConversion(instance, &session); });
    EXPECT_EQ(ENC_EndConversion(instance, &session, &reserved), 0);
    EXPECT_EQ(ENC_BeginConversion(instance, &session), 1);
    ExpectCaught("Encode", 0, [&] { return ENC_EncodeBlock(instance, &block); });
    EXPECT_EQ(ENC_EncodeBlock(instance, &block), 1);
    EXPECT_EQ(ENC_EndConversion(instance, &session, &reserved), 0);
    ENC_Destroy(instance);
}

TEST_F(Entries, without_an_instance_or_a_record_do_nothing) {
    clBlockRec block{};
    EXPECT_EQ(Get(0, ToQvText(u"Decodes"), nullptr), 0);
    EXPECT_EQ(Open(0, nullptr), 0);
    EXPECT_EQ(DecodeBlock(0, &block), 1);
    EXPECT_EQ(ValueOf(block.finished), 1u);
    EXPECT_EQ(DecodeBlock(0, nullptr), 0);
    Close(0, nullptr);
    SetPosition(0, 0);
    Destroy(0);
    EXPECT_EQ(ENC_EncodeBlock(0, &block), 0);
    ENC_Destroy(0);

    const QvInstance decoder = Create(nullptr), encoder = ENC_Create(nullptr);
    clCodecQueryRec query{};
    clOpenFileRec open{};
    EXPECT_EQ(Get(decoder, nullptr, &query) + Get(decoder, ToQvText(u"Decodes"), nullptr), 0);
    EXPECT_EQ(Set(decoder, ToQvText(u"IDTags"), &query) + Set(decoder, nullptr, nullptr), 0);
    EXPECT_EQ(Open(decoder, nullptr) + Open(decoder, &open), 0);
    EXPECT_EQ(DeleteATag(decoder, nullptr, nullptr), 0);
    EXPECT_EQ(ENC_BeginConversion(encoder, nullptr) + ENC_EncodeBlock(encoder, nullptr), 0);
    EXPECT_EQ(ENC_Get(encoder, nullptr, &query) + ENC_Get(encoder, ToQvText(u"Extension"), nullptr), 0);
    Destroy(decoder);
    ENC_Destroy(encoder);
}

TEST_F(Entries, hand_out_no_tags_that_the_library_would_not_take) {
    const QvInstance instance = Create(&mRecord);
    clOpenFileRec open{};
    open.file = ToQvText(u"a.x");
    open.request = QV_OPEN_TAGS;
    for (const auto& [count, fits] :
         {std::pair{4629, true}, {4630, false}}) {  // 216 bytes a row, 4 before them
        TroubledDecoder::mTagCount = count;
        EXPECT_EQ(Open(instance, &open), fits ? 1 : 0);
        EXPECT_EQ(ValueOf(open.tagDataSize), fits ? 4u + 216u * 4629u : 0u);
        EXPECT_EQ(ValueOf(open.tagData) != nullptr, fits);
        EXPECT_EQ(mLog.TakeErrors(), fits ? u"" : u"a.x: its tags are larger than can be handed on\r\n");
    }
    Destroy(instance);
}

TEST_F(Entries, leave_out_the_largest_art_first_and_say_so) {
    struct {
        std::vector<std::uint32_t> art;
        std::int32_t texts;
        std::int32_t rows;
        std::u16string leftOut;  // sizes
    } const rows[] = {{{999950}, 0, 1, u""},
                      {{1000000}, 1, 1, u"1000000"},
                      {{600000, 700000, 300000}, 2, 4, u"700000"},
                      {{10, 2000000, 999999, 5}, 3, 5, u"2000000 999999"},
                      {{1000000}, 0, 0, u"1000000"}};
    const QvInstance instance = Create(&mRecord);
    clOpenFileRec open{};
    open.file = ToQvText(u"a.x");
    for (const auto& row : rows) {
        TroubledDecoder::mTagCount = row.texts;
        TroubledDecoder::mArt = row.art;
        for (const bool all : {false, true}) {
            open.request = all ? QV_OPEN_ALL_TAGS : QV_OPEN_TAGS;
            ASSERT_EQ(Open(instance, &open), 1);
            clIDTagList list;
            if (ValueOf(open.tagData)) list.Deserialise(open.tagData, open.tagDataSize);
            const auto whole = row.texts + static_cast<std::int32_t>(row.art.size());
            EXPECT_EQ(list.Count(), all ? whole : row.rows);
            const std::u16string said = mLog.TakeInformation();
            EXPECT_EQ(said.empty(), all || row.leftOut.empty());
            for (std::size_t at = 0; !all && at < row.leftOut.size();) {
                const std::size_t end = std::min(row.leftOut.find(u' ', at), row.leftOut.size());
                EXPECT_NE(said.find(u"a.x: PICTURE of " + row.leftOut.substr(at, end - at) + u" bytes"),
                          std::u16string::npos);
                at = end + 1;
            }
            EXPECT_EQ(ValueOf(open.tagData) == nullptr, list.Count() == 0);
        }
    }
    Destroy(instance);
}

TEST(ModuleLog, speaks_to_open_handles_in_one_write) {
    LogFiles files;
    const QvLog both = files.Record();
    const QvLog off[] = {{0, 0, 0}, {-1, -1, -1}};
    Faulty<platform::WriteFile> writes;
    for (const QvLog& record : off) clModuleLog(&record).Error(u"file", u"message");
    clModuleLog(nullptr).Information(u"file", u"message");
    EXPECT_EQ(writes.Calls(), 0);
    clModuleLog(&both).Error(u"file", u"message");
    clModuleLog(&both).Information(nullptr, u"message");
    EXPECT_EQ(writes.Calls(), 2);
    EXPECT_EQ(files.TakeErrors(), u"file: message\r\n");
    EXPECT_EQ(files.TakeInformation(), u"message\r\n");
}

TEST(Scale, truncates_and_never_wraps) {
    constexpr std::uint64_t kLargest = ~std::uint64_t{0};
    EXPECT_EQ(Scale(7, 1000, 3), 2333u);
    EXPECT_EQ(Scale(kLargest, 1, 1), kLargest);
    EXPECT_EQ(Scale(kLargest, 0xFFFFFFFF, 0xFFFFFFFF), kLargest);
    EXPECT_EQ(Scale(kLargest, 1000, 44100), 418293516410647428u);
    EXPECT_EQ(Scale(kLargest, 1000, 999), kLargest);
    EXPECT_EQ(Scale(kLargest / 1000, 1000, 1), kLargest / 1000 * 1000);
    EXPECT_EQ(Scale(kLargest / 1000 + 1, 1000, 1), kLargest);
    EXPECT_EQ(Scale(5, 0, 3), 0u);
    EXPECT_EQ(Scale(5, 3, 0), 0u);
}

TEST(FileReader, fetches_from_anywhere_with_a_read_per_window) {
    const TempFolder folder;
    const std::string bytes = wave_bytes::Noise(20000);
    clFileReader reader;
    ASSERT_TRUE(reader.Open(folder.Write(u"a", bytes).c_str()));
    EXPECT_EQ(reader.Size(), 20000u);
    Faulty<platform::ReadFile> reads;
    char piece[100];
    for (std::uint64_t at = 0; at + 8 <= 20000; at += 8) {
        ASSERT_TRUE(reader.Fetch(at, piece, 8));
        ASSERT_EQ(std::string(piece, 8), bytes.substr(at, 8));
    }
    EXPECT_EQ(reads.Calls(), 20000 / 4096 + 2);  // the last window is read up to the end of the file
    for (const std::uint64_t at : {9999u, 0u, 19900u, 4000u, 4095u}) {
        ASSERT_TRUE(reader.Fetch(at, piece, 100));
        EXPECT_EQ(std::string(piece, 100), bytes.substr(at, 100));
    }
    for (const std::uint64_t at :
         {std::uint64_t{19901}, std::uint64_t{20000}, std::uint64_t{1} << 62, ~std::uint64_t{0}})
        EXPECT_FALSE(reader.Fetch(at, piece, 100));
    EXPECT_EQ(reader.Error(), 0u);  // the end of a file is no failure
}

TEST(FileReader, goes_on_after_a_failure_as_if_nothing_was_known) {
    const TempFolder folder;
    clFileReader reader;
    ASSERT_TRUE(reader.Open(folder.Write(u"a", "0123456789").c_str()));
    char piece[4];
    std::uint32_t got = 0;
    ASSERT_TRUE(reader.Read(0, piece, 4, &got));
    {
        Faulty<platform::ReadFile> reads;
        reads.FailCall(1, false, platform::kErrorAccessDenied);
        EXPECT_FALSE(reader.Read(4, piece, 4, &got));
        EXPECT_EQ(reader.Error(), platform::kErrorAccessDenied);
    }
    ASSERT_TRUE(reader.Read(4, piece, 4, &got));
    EXPECT_EQ(std::string(piece, got), "4567");
    ASSERT_TRUE(reader.Read(8, piece, 4, &got));
    EXPECT_EQ(std::string(piece, got), "89");
    reader.Close();
    EXPECT_FALSE(reader.IsOpen());
    EXPECT_EQ(reader.Size(), 0u);
}

TEST(FileWriter, remembers_its_first_failure) {
    const TempFolder folder;
    clFileWriter writer;
    EXPECT_FALSE(writer.Append("a", 1));
    EXPECT_FALSE(writer.Rewrite(0, "a", 1));
    EXPECT_FALSE(writer.Close());
    ASSERT_TRUE(writer.Create((folder / u"a").c_str()));
    EXPECT_TRUE(writer.Append("abc", 3));
    EXPECT_TRUE(writer.Rewrite(1, "X", 1));
    EXPECT_FALSE(writer.Rewrite(2, "YY", 2));
    EXPECT_FALSE(writer.Rewrite(4, "Y", 1));
    EXPECT_TRUE(writer.Append("d", 1));
    EXPECT_EQ(writer.Size(), 4u);
    EXPECT_TRUE(writer.Close());
    EXPECT_EQ(folder.Read(u"a"), "aXcd");

    ASSERT_TRUE(writer.Create((folder / u"a").c_str()));
    {
        Faulty<platform::WriteFile> writes;
        writes.FailCall(1, false, platform::kErrorDiskFull);
        EXPECT_FALSE(writer.Append("abc", 3));
    }
    EXPECT_FALSE(writer.Append("abc", 3));
    EXPECT_FALSE(writer.Close());
    EXPECT_EQ(writer.Error(), platform::kErrorDiskFull);
    EXPECT_EQ(folder.Read(u"a"), "");
}
