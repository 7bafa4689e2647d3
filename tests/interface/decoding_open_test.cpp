// Opening and closing a file for direct decoding.
#include <cstring>
#include <memory>
#include <optional>

#include "interface/decoding.h"
#include "platform/file.h"

namespace {

constexpr const char* kOneType = "decodes|.abc|An ABC file\nlength|83000\nsize|99\ncloses\n";

std::string InJournal(const std::u16string& path) {
    return std::string(path.begin(), path.end());
}

class OpeningABC : public DecodingHost {
  public:
    std::string Opened() const {
        return "Create\nGet Decodes 0\nCreate\nOpen 1 " + InJournal(file) + "\nDestroy\n";
    }

    const PlacedModule module = home.Place(u"decoder/abc", "scripted_decoder", kOneType);
};

using Opening = DoubleDecoding;

// Of the record: its fields and what lies behind a shorter one.
bool Same(const QvFormatExtensible& one, const QvFormatExtensible& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

}  // namespace

TEST_F(OpeningABC, The_file_is_opened_by_an_instance_of_its_own) {
    EXPECT_EQ(Open(), QV_DONE);
    EXPECT_EQ(lengthMs, 83000u);
    EXPECT_EQ(format.Format.nSamplesPerSec, 44100u);
    EXPECT_EQ(module.TakeJournal(), Opened());
    EXPECT_EQ(Errors(), u"");
    EXPECT_EQ(Info(), u"Finished opening file " + Quoted(file));
}

TEST_F(Opening, A_request_of_zeros_gives_the_files_own_format_its_mask_untouched) {
    for (const QvFormatExtensible& own :
         {PlainRecord(1, 2, 44100, 16), ExtensibleRecord(1, 2, 48000, 24, 0x30), PlainRecord(3, 1, 96000, 32),
          ExtensibleRecord(3, 6, 44100, 64, 0x3F), PlainRecord(6, 1, 8000, 8)}) {
        decoder.format = own;
        ASSERT_EQ(Open(), QV_DONE);
        EXPECT_TRUE(Same(format, own)) << own.Format.nSamplesPerSec;
    }
}

TEST_F(Opening, What_lies_behind_a_shorter_record_is_zero) {
    QvFormatExtensible request;
    std::memset(&request, 0xAB, sizeof request);
    request.Format.nChannels = request.Format.wBitsPerSample = 0;
    request.Format.nSamplesPerSec = 0;
    ASSERT_EQ(Open(request), QV_DONE);
    EXPECT_TRUE(Same(format, PlainRecord(1, 2, 44100, 16)));
}

TEST_F(Opening, Each_field_of_a_request_is_taken_by_itself) {
    const QvFormatExtensible own = PlainRecord(1, 2, 44100, 16);
    const struct {
        QvFormatExtensible request, delivered;
    } rows[] = {
        {Request(6, 0, 0), PlainRecord(1, 6, 44100, 16)},
        {Request(0, 24, 0), PlainRecord(1, 2, 44100, 24)},
        {Request(0, 0, 96000), PlainRecord(1, 2, 96000, 16)},
        {Request(1, 8, 8000), PlainRecord(1, 1, 8000, 8)},
        {Request(2, 16, 44100), own},
        {Request(0, 0, 0x7FFFFFFF), PlainRecord(1, 2, 0x7FFFFFFF, 16)},
        {Request(0, 0, 0x80000000), own},  // negative as a signed number
        {Request(0, 0, 0xFFFFFFFF), own},
    };
    decoder.format = own;
    for (const auto& row : rows) {
        ASSERT_EQ(Open(row.request), QV_DONE);
        EXPECT_TRUE(Same(format, row.delivered)) << row.request.Format.nSamplesPerSec;
        EXPECT_EQ(host->sourceFormat.format->nChannels, 2) << "the source stays what it is";
    }
}

TEST_F(Opening, Other_channels_of_an_extensible_source_clear_its_mask) {
    decoder.format = ExtensibleRecord(1, 6, 48000, 16, 0x3F);
    ASSERT_EQ(Open(Request(2, 0, 0)), QV_DONE);
    EXPECT_TRUE(Same(format, ExtensibleRecord(1, 2, 48000, 16, 0)));
    ASSERT_EQ(Open(Request(6, 0, 0)), QV_DONE);
    EXPECT_TRUE(Same(format, ExtensibleRecord(1, 6, 48000, 16, 0x3F)));
}

TEST_F(Opening, Other_bits_of_an_extensible_source_change_its_valid_bits) {
    decoder.format = ExtensibleRecord(1, 2, 48000, 16, 3);
    ASSERT_EQ(Open(Request(0, 24, 0)), QV_DONE);
    EXPECT_TRUE(Same(format, ExtensibleRecord(1, 2, 48000, 24, 3)));
}

TEST_F(Opening, Of_the_request_no_more_than_three_fields_are_read) {
    // Exactly 40 bytes, and a size that claims many more.
    const auto request = std::make_unique<QvFormatExtensible>(PlainRecord(3, 0, 0, 0));
    request->Format.cbSize = 65535;
    ASSERT_EQ(QADOpenFile(host.handle, In(file.c_str()), request.get(), nullptr), QV_DONE);
    EXPECT_TRUE(Same(*request, PlainRecord(1, 2, 44100, 16)));
}

TEST_F(Opening, A_module_that_claims_more_than_its_40_bytes_is_read_no_further) {
    decoder.format = ExtensibleRecord(1, 2, 48000, 16, 3);
    decoder.format.Format.cbSize = 65535;
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_TRUE(Same(format, ExtensibleRecord(1, 2, 48000, 16, 3)));
}

TEST_F(Opening, What_a_module_says_of_its_block_alignment_and_byte_rate_is_computed_anew) {
    decoder.format.Format.nBlockAlign = 0;
    decoder.format.Format.nAvgBytesPerSec = 7;
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_TRUE(Same(format, PlainRecord(1, 2, 44100, 16)));
    decoder.format = PlainRecord(80, 2, 44100, 0);  // coded: both are 0
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(format.Format.nBlockAlign, 1);
    EXPECT_EQ(format.Format.nAvgBytesPerSec, 1u);
}

TEST_F(Opening, Both_outputs_may_be_null) {
    EXPECT_EQ(QADOpenFile(host.handle, In(file.c_str()), nullptr, nullptr), QV_DONE);
    decoder.stream = Counted(100);
    EXPECT_EQ(Decode(100).data, Counted(100));
}

TEST_F(OpeningABC, A_missing_file_fails_and_what_was_open_stays) {
    ASSERT_EQ(Open(), QV_DONE);
    host->deliveredBytes = 5;
    module.TakeJournal();
    Info();
    const std::u16string missing = home.Folder() / u"missing.abc";
    for (const char16_t* name : {missing.c_str(), u"", static_cast<const char16_t*>(nullptr)}) {
        QvFormatExtensible request = Request(1, 2, 3);
        lengthMs = 4711;
        Trace trace(host);
        EXPECT_EQ(QADOpenFile(host.handle, In(name), &request, &lengthMs), QV_FAILED);
        const std::u16string words =
            u"Error opening file (does not exist) " + Quoted(name ? std::u16string(name) : u"");
        EXPECT_EQ(trace.Text(), Enter("clConverter::DecoderOpenFile") + u"*** Error: " + words);
        EXPECT_EQ(Errors(), words);
        EXPECT_EQ(Info(), u"");
        EXPECT_TRUE(Same(request, Request(1, 2, 3)));
        EXPECT_EQ(lengthMs, 4711u);
    }
    EXPECT_EQ(module.TakeJournal(), "");
    EXPECT_NE(host->decoder.Instance(), 0u);
    EXPECT_EQ(host->deliveredBytes, 5u);
}

TEST_F(OpeningABC, A_file_that_no_module_decodes_fails_in_the_words_of_reading_tags) {
    ASSERT_EQ(Open(), QV_DONE);
    module.TakeJournal();
    Info();
    const std::u16string other = home.Folder().Write(u"take.xyz");
    Trace trace(host);
    EXPECT_EQ(QADOpenFile(host.handle, In(other.c_str()), &format, &lengthMs), QV_FAILED);
    const std::u16string words = u"Failed to find decoder to read ID tag in file " + Quoted(other);
    EXPECT_EQ(trace.Text(), Enter("clConverter::DecoderOpenFile") + u"*** Error: " + words);
    EXPECT_EQ(Errors(), words);
    EXPECT_EQ(Info(), u"");
    EXPECT_NE(host->decoder.Instance(), 0u);
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nGet Decodes 1\nDestroy\n") << "another instance";
}

TEST_F(OpeningABC, A_refusal_fails_and_keeps_the_instance_with_everything_at_zero) {
    module.SetScript(std::string(kOneType) + "open|1|0\n");
    host->moduleTimecode = host->deliveredBytes = 5;
    host->decoderFinished = 5;
    EXPECT_EQ(Open(Request(1, 2, 3)), QV_FAILED);
    EXPECT_EQ(Errors(), u"Failed to open file " + Quoted(file));
    EXPECT_EQ(Info(), u"Finished opening file " + Quoted(file));
    EXPECT_TRUE(Same(format, Request(1, 2, 3)));
    EXPECT_EQ(lengthMs, 4711u);
    EXPECT_NE(host->decoder.Instance(), 0u);
    EXPECT_EQ(host->moduleTimecode + host->deliveredBytes + host->decoderFinished, 0u);
    EXPECT_EQ(module.TakeJournal(), Opened());
    EXPECT_EQ(QADCloseFile(host.handle), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), "Close (null)\nDestroy\n");
}

TEST_F(OpeningABC, A_module_that_makes_no_second_instance_gives_nothing_and_nothing_is_said) {
    module.SetScript(std::string(kOneType) + "instances|1\n");
    host->deliveredBytes = 5;
    EXPECT_EQ(Open(Request(1, 2, 3)), QV_NOTHING);
    EXPECT_EQ(host->decoder.Instance(), 0u);
    EXPECT_EQ(host->deliveredBytes, 0u);
    EXPECT_TRUE(Same(format, Request(1, 2, 3)));
    EXPECT_EQ(Errors() + Info(), u"");
    EXPECT_TRUE(Decode(8).IsNothing(8));
    EXPECT_EQ(QADSetPosition(host.handle, 0), QV_NOTHING);
}

TEST_F(OpeningABC, A_module_that_loads_only_once_gives_nothing_and_nothing_is_said) {
    ASSERT_EQ(Open(), QV_DONE);
    Info();
    module.TakeJournal();
    Faulty<platform::LoadLibraryW> loads;
    int loadsOfModule = 0;
    loads.Replace([&](const char16_t* path) -> platform::ModuleHandle {
        if (path == module.Path() && ++loadsOfModule == 2) return nullptr;
        return loads.Native(path);
    });
    Trace trace(host);
    EXPECT_EQ(Open(), QV_NOTHING);
    EXPECT_TRUE(trace.Text().ends_with(Leave("clConverter::DecoderOpenFile")));
    EXPECT_EQ(Errors() + Info(), u"");
    EXPECT_EQ(host->decoder.Instance(), 0u) << "what was open is closed";
    EXPECT_FALSE(host->decoder.HasModule());
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nClose (null)\nDestroy\nDestroy\n");
}

TEST_F(OpeningABC, A_second_file_replaces_the_first_which_is_closed_with_the_record_of_the_encoding) {
    ASSERT_EQ(Open(), QV_DONE);
    module.TakeJournal();
    host->encoderRecord.file = In(u"record");
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), "Create\nGet Decodes 0\nClose record\nDestroy\nCreate\nOpen 1 " +
                                        InJournal(file) + "\nDestroy\n");
    ASSERT_EQ(QADCloseFile(host.handle), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), "Close record\nDestroy\n");
}

TEST_F(OpeningABC, The_trace_names_the_module_the_format_and_the_length) {
    Trace trace(host);
    ASSERT_EQ(Open(Request(1, 0, 0)), QV_DONE);
    std::u16string words;
    for (const std::u16string& line :
         {module.Path(), std::u16string(u".abc"),
          std::u16string(u"Format Tag: 1  Channels: 1  Bits per Sample: 16  Samples Per Second: 44100  Bytes "
                         u"Per Second: 88200  Block Align: 2  CB Size: 0"),
          std::u16string(u"FileLength in mS: 83000"), std::u16string(u"FileSize: 99")})
        words += line + u"\r\n";
    EXPECT_EQ(trace.OwnLines(), Enter("clConverter::DecoderOpenFile") + words +
                                    u"*** Information: Finished opening file " + Quoted(file) +
                                    Leave("clConverter::DecoderOpenFile"));
}

TEST_F(OpeningABC, A_refusal_has_both_marks_and_both_lines_in_the_trace) {
    module.SetScript(std::string(kOneType) + "open|1|0\n");
    Trace trace(host);
    EXPECT_EQ(Open(), QV_FAILED);
    EXPECT_EQ(trace.OwnLines(), Enter("clConverter::DecoderOpenFile") + module.Path() + u"\r\n.abc\r\n" +
                                    u"*** Error: Failed to open file " + Quoted(file) +
                                    u"*** Information: Finished opening file " + Quoted(file) +
                                    Leave("clConverter::DecoderOpenFile"));
}

TEST_F(OpeningABC, Closing_twice_is_done_both_times_and_keeps_the_module) {
    ASSERT_EQ(Open(), QV_DONE);
    module.TakeJournal();
    Trace trace(host);
    for (const char* expected : {"Close (null)\nDestroy\n", "", ""}) {
        EXPECT_EQ(QADCloseFile(host.handle), QV_DONE);
        EXPECT_EQ(module.TakeJournal(), expected);
        EXPECT_EQ(trace.Take(),
                  Enter("clConverter::DecoderCloseFile") + Leave("clConverter::DecoderCloseFile"));
        EXPECT_TRUE(host->decoder.HasModule());
    }
}

TEST_F(OpeningABC, Closing_a_new_handle_is_done) {
    EXPECT_EQ(QADCloseFile(host.handle), QV_DONE);
    EXPECT_TRUE(Decode(16).IsNothing(16));
}

// A module may write to the log up to its end, so that the handles it was given must still be its own then.
TEST_F(OpeningABC, A_handle_that_is_destroyed_ends_its_module_before_it_closes_the_channels) {
    ASSERT_EQ(Open(), QV_DONE);
    module.TakeJournal();
    std::optional<std::string> atFirstClosing;
    {
        const platform::Handle channel = host->log.mErrorOut;
        Faulty<platform::CloseHandle> closes;
        closes.Replace([&](platform::Handle handle) {
            if (handle == channel && !atFirstClosing) atFirstClosing = module.TakeJournal();
            return closes.Native(handle);
        });
        host.Destroy();
    }
    EXPECT_EQ(atFirstClosing, "Destroy\n") << "without Close";
}

TEST(DirectDecoding, A_null_handle_does_nothing) {
    QvFormatExtensible format = Request(1, 2, 3);
    std::uint64_t number = 7;
    std::uint32_t bytes = 8, finished = 9;
    std::uint8_t buffer[8] = {};
    EXPECT_EQ(QADOpenFile(nullptr, In(u"x"), &format, &number), QV_NOTHING);
    EXPECT_EQ(QADDecodeBlock(nullptr, buffer, &bytes, &finished, &number), QV_NOTHING);
    EXPECT_EQ(QADSetPosition(nullptr, 1), QV_NOTHING);
    EXPECT_EQ(QADCloseFile(nullptr), QV_NOTHING);
    EXPECT_TRUE(Same(format, Request(1, 2, 3)));
    EXPECT_EQ(number + bytes + finished, 24u);
}
