// A host that encodes directly.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "interface/host.h"
#include "interface/module_doubles.h"
#include "modules/module_home.h"
#include "platform/names.h"

namespace {

const QvFormatExtensible kStereo = PlainRecord(1, 2, 44100, 16);

class EncodingHost : public testing::Test {
  public:
    EncodingHost() { host->moduleHandle = home.Self(); }

    std::int32_t Open(const QvFormatExtensible& format = kStereo) {
        return QAEOpenFile(host.handle, In(u"out.xyz"), In(u"xyz"), In(u"quality=5"), &format);
    }
    std::int32_t Encode(const Bytes& data, std::uint32_t finished = 0) {
        const auto bytes = static_cast<std::uint32_t>(data.size());
        return QAEEncodeBlock(host.handle, data.data(), &bytes, &finished);
    }
    std::u16string Errors() {
        timers.Tick();
        return host.Errors();
    }

    ManualTimers timers;
    const ModuleHome home;
    Host host;
};

// One with a module that keeps a journal.
class EncodingXYZ : public EncodingHost {
  public:
    const PlacedModule module = home.Place(u"encoder/xyz", "scripted_encoder");
    const std::string begun = "ENC_Create\nENC_BeginConversion out.xyz 'quality=5' format 1/2/44100/16\n";
};

class Encoding : public EncodingHost {
  public:
    const PlacedModule module = home.Place(u"encoder/xyz", "whole_encoder");
    EncoderDouble encoder;
};

QvFormatExtensible FormatOf(const std::uint8_t* record) {
    QvFormatExtensible format;
    std::memcpy(&format, record, sizeof format);
    return format;
}

bool Same(const QvFormatExtensible& one, const QvFormatExtensible& other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

bool AllZero(const std::uint8_t* bytes, std::size_t count) {
    return std::all_of(bytes, bytes + count, [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

TEST_F(EncodingXYZ, Goes_through_the_module_in_its_order) {
    EXPECT_EQ(Open(), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), begun);
    EXPECT_EQ(Encode({1, 2, 3, 4}), QV_DONE);
    EXPECT_EQ(Encode({}, 1), QV_DONE);
    EXPECT_EQ(module.TakeJournal(),
              "ENC_EncodeBlock 4 sum 10 finished 0 format 1/2/44100/16\n"
              "ENC_EncodeBlock 0 sum 0 finished 1 format 1/2/44100/16\n");
    EXPECT_EQ(QAECloseFile(host.handle), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), "ENC_EndConversion 0\n");
    EXPECT_EQ(QAECloseFile(host.handle), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), "ENC_EndConversion 0\n") << "the module is asked again";
    EXPECT_EQ(Encode({5}), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), "ENC_EncodeBlock 1 sum 5 finished 0 format 1/2/44100/16\n");
    host.Destroy();
    EXPECT_EQ(module.TakeJournal(), "ENC_Destroy\n");
}

TEST_F(EncodingXYZ, Before_a_file_is_opened_blocks_are_done_and_closing_is_not) {
    EXPECT_EQ(Encode({1, 2}), QV_DONE);
    EXPECT_EQ(QAECloseFile(host.handle), QV_NOTHING);
    EXPECT_EQ(Errors(), u"");
}

TEST_F(EncodingXYZ, A_second_file_takes_the_place_of_the_first_which_is_not_ended) {
    ASSERT_EQ(Open(), QV_DONE);
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(module.TakeJournal(), begun + "ENC_Destroy\n" + begun);
}

TEST_F(EncodingXYZ, An_encoder_that_can_not_be_had_is_told_with_its_place) {
    ASSERT_EQ(Open(), QV_DONE);
    module.TakeJournal();
    home.Place(u"encoder/lacking", "encoder_without_ENC_Get");
    home.Place(u"encoder/unwilling", "scripted_encoder", "create|0\n");
    for (const char16_t* name :
         {u"nobody", u"lacking", u"unwilling", u"", static_cast<const char16_t*>(nullptr)}) {
        EXPECT_EQ(QAEOpenFile(host.handle, In(u"out.xyz"), In(name), In(u""), &kStereo), QV_NOTHING);
        EXPECT_EQ(Errors(), u"Error loading encoder.  [clConverter::EncoderOpenFile]\r\n");
        EXPECT_EQ(host->directEncoder.Instance(), 0u);
        EXPECT_EQ(Encode({1}), QV_DONE);
        EXPECT_EQ(QAECloseFile(host.handle), QV_NOTHING);
    }
    EXPECT_EQ(module.TakeJournal(), "ENC_Destroy\n") << "what was open is gone with the first of them";
}

TEST_F(EncodingXYZ, A_refusal_is_said_by_the_module_alone_and_its_instance_stays) {
    module.SetScript("begin|0\n");
    EXPECT_EQ(Open(), QV_NOTHING);
    EXPECT_EQ(Errors(), u"");
    module.SetScript("begin|0\nsay|ENC_BeginConversion|error|disk is full\n");
    EXPECT_EQ(Open(), QV_NOTHING);
    EXPECT_EQ(Errors(), u"disk is full\r\n");
    module.TakeJournal();
    EXPECT_EQ(Encode({1}), QV_DONE);
    EXPECT_EQ(QAECloseFile(host.handle), QV_DONE) << "the module says so";
    EXPECT_EQ(module.TakeJournal(),
              "ENC_EncodeBlock 1 sum 1 finished 0 format 1/2/44100/16\nENC_EndConversion 0\n");
}

TEST_F(EncodingXYZ, What_a_block_comes_to_shows_only_at_the_end) {
    module.SetScript("block|0\nend|0\n");
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(Encode({1}), QV_DONE);
    EXPECT_EQ(QAECloseFile(host.handle), QV_NOTHING);
    EXPECT_EQ(Errors(), u"");
}

TEST_F(EncodingXYZ, The_trace_has_a_leave_mark_only_where_it_went_well) {
    const std::u16string enterOpen = Enter("clConverter::EncoderOpenFile"),
                         leaveOpen = Leave("clConverter::EncoderOpenFile"),
                         enterClose = Enter("clConverter::EncoderCloseFile"),
                         leaveClose = Leave("clConverter::EncoderCloseFile");
    const auto loading = [&](const char16_t* name) {
        return Enter("clQvCodecHandler::LoadEncoder") + u"Loading Encoder '" +
               (home.Folder() / (u"encoder/" + std::u16string(name) + platform::kNamedModuleExtension)) +
               u"'\r\n" + Leave("clQvCodecHandler::LoadEncoder");
    };
    Trace trace(host);
    auto lines = [&, taken = std::size_t{0}]() mutable {
        const std::u16string all = trace.OwnLines();
        const std::u16string fresh = all.substr(taken);
        taken = all.size();
        return fresh;
    };
    EXPECT_EQ(QAECloseFile(host.handle), QV_NOTHING);
    EXPECT_EQ(lines(), enterClose);
    EXPECT_EQ(QAEOpenFile(host.handle, In(u"f"), In(u"nobody"), In(u""), &kStereo), QV_NOTHING);
    EXPECT_EQ(lines(), enterOpen + loading(u"nobody") +
                           u"*** Error: Error loading encoder.  [clConverter::EncoderOpenFile]\r\n");
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_EQ(lines(), enterOpen + loading(u"xyz") + leaveOpen);
    Encode({1});
    EXPECT_EQ(lines(), u"");
    EXPECT_EQ(QAECloseFile(host.handle), QV_DONE);
    EXPECT_EQ(lines(), enterClose + leaveClose);
    module.SetScript("begin|0\nend|0\n");
    EXPECT_EQ(Open(), QV_NOTHING);
    EXPECT_EQ(lines(), enterOpen + loading(u"xyz"));
    EXPECT_EQ(QAECloseFile(host.handle), QV_NOTHING);
    EXPECT_EQ(lines(), enterClose);
}

TEST_F(Encoding, The_record_holds_the_hosts_own_texts_and_zeros_where_nothing_is_told) {
    const std::u16string file = u"out.xyz", settings = u"s";
    ASSERT_EQ(QAEOpenFile(host.handle, In(file.c_str()), In(u"xyz"), In(settings.c_str()), &kStereo),
              QV_DONE);
    EXPECT_EQ(encoder.session.file, In(file.c_str()));
    EXPECT_EQ(encoder.session.settings, In(settings.c_str()));
    EXPECT_EQ(encoder.sessionAddress, &host->encoderRecord);
    EXPECT_EQ(encoder.session.formatPointer, host->encoderRecord.format);
    EXPECT_TRUE(Same(FormatOf(encoder.session.format), kStereo));
    EXPECT_TRUE(AllZero(encoder.session.reserved1, 8));
    EXPECT_TRUE(AllZero(encoder.session.reserved2, 28));
    EXPECT_TRUE(AllZero(encoder.session.reserved3, 28));
    ASSERT_EQ(Open(), QV_DONE);
    EXPECT_TRUE(AllZero(encoder.session.reserved3, 28)) << "nothing of the encoding before";
}

TEST_F(Encoding, Null_texts_are_empty_and_a_null_format_is_one_of_zeros) {
    ASSERT_EQ(QAEOpenFile(host.handle, nullptr, In(u"xyz"), nullptr, nullptr), QV_DONE);
    EXPECT_EQ(encoder.session.file[0], 0);
    EXPECT_EQ(encoder.session.settings[0], 0);
    QvFormatExtensible zeros = {};
    zeros.Format.nBlockAlign = 1;
    zeros.Format.nAvgBytesPerSec = 1;
    EXPECT_TRUE(Same(FormatOf(encoder.session.format), zeros));
}

TEST_F(Encoding, Of_a_format_40_bytes_reach_the_module_whatever_it_claims) {
    QvFormatExtensible claims = ExtensibleRecord(1, 6, 48000, 24, 0x3F);
    claims.Format.cbSize = 65535;
    const auto format = std::make_unique<QvFormatExtensible>(claims);  // and there are no more than 40
    ASSERT_EQ(Open(*format), QV_DONE);
    EXPECT_TRUE(Same(FormatOf(encoder.session.format), ExtensibleRecord(1, 6, 48000, 24, 0x3F)));
}

TEST_F(Encoding, Of_a_plain_format_18_bytes_are_read_and_zeros_follow) {
    const auto plain = std::make_unique<QvFormat>(kStereo.Format);
    ASSERT_EQ(QAEOpenFile(host.handle, In(u"f"), In(u"xyz"), In(u""),
                          reinterpret_cast<const QvFormatExtensible*>(plain.get())),
              QV_DONE);
    EXPECT_TRUE(Same(FormatOf(encoder.session.format), kStereo));
}

TEST_F(Encoding, A_formats_block_alignment_and_byte_rate_are_computed_anew) {
    QvFormatExtensible format = kStereo;
    format.Format.nBlockAlign = 99;
    format.Format.nAvgBytesPerSec = 0;
    ASSERT_EQ(Open(format), QV_DONE);
    EXPECT_TRUE(Same(FormatOf(encoder.session.format), kStereo));
}

TEST_F(Encoding, Blocks_reach_the_module_as_they_are_with_the_end_of_the_record) {
    ASSERT_EQ(Open(), QV_DONE);
    const Bytes data = Counted(1001);  // no whole number of frames: nothing is checked
    Encode(data);
    Encode({}, 99);
    ASSERT_EQ(encoder.blocks.size(), 2u);
    EXPECT_EQ(encoder.written, data);
    for (const clBlockRec& block : encoder.blocks) {
        EXPECT_TRUE(Same(FormatOf(block.format), kStereo));
        EXPECT_EQ(block.format[40], 1) << "what the module keeps behind the format";
        EXPECT_EQ(block.format[67], 28);
        EXPECT_EQ(+block.timecode, 0u);
    }
    EXPECT_EQ(encoder.blocks[0].data, data.data());
    EXPECT_EQ(+encoder.blocks[0].finished, 0u);
    EXPECT_EQ(+encoder.blocks[1].finished, 99u);
}

TEST_F(Encoding, A_blocks_numbers_are_read_and_not_written) {
    ASSERT_EQ(Open(), QV_DONE);
    const std::uint8_t data[4] = {1, 2, 3, 4};
    std::uint32_t bytes = 4, finished = 2;
    EXPECT_EQ(QAEEncodeBlock(host.handle, data, &bytes, &finished), QV_DONE);
    EXPECT_EQ(bytes, 4u);
    EXPECT_EQ(finished, 2u);
}

TEST_F(Encoding, A_block_without_data_or_numbers_is_empty) {
    ASSERT_EQ(Open(), QV_DONE);
    const std::uint32_t bytes = 4, finished = 1;
    const std::uint8_t data[4] = {};
    EXPECT_EQ(QAEEncodeBlock(host.handle, nullptr, &bytes, &finished), QV_DONE);
    EXPECT_EQ(QAEEncodeBlock(host.handle, data, nullptr, nullptr), QV_DONE);
    ASSERT_EQ(encoder.blocks.size(), 2u);
    for (const clBlockRec& block : encoder.blocks) EXPECT_EQ(+block.bytes, 0u);
    EXPECT_EQ(+encoder.blocks[0].finished, 1u);
    EXPECT_EQ(+encoder.blocks[1].finished, 0u);
}

TEST_F(Encoding, Each_end_gets_a_zero_of_its_own) {
    ASSERT_EQ(Open(), QV_DONE);
    QAECloseFile(host.handle);
    QAECloseFile(host.handle);
    EXPECT_EQ(encoder.ends, (std::vector<std::uint32_t>{0, 0}));
}

TEST(DirectEncoding, A_null_handle_does_nothing) {
    const std::uint32_t bytes = 1, finished = 1;
    const std::uint8_t data[1] = {};
    EXPECT_EQ(QAEOpenFile(nullptr, In(u"f"), In(u"xyz"), In(u""), &kStereo), QV_NOTHING);
    EXPECT_EQ(QAEEncodeBlock(nullptr, data, &bytes, &finished), QV_NOTHING);
    EXPECT_EQ(QAECloseFile(nullptr), QV_NOTHING);
}
