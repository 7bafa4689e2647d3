// One conversion with modules that do as they are told, well or badly.
#include <gtest/gtest.h>

#include "converter/conversion_stage.h"

namespace {

// More than the converter has the patience for.
std::string Often(std::string_view line) {
    std::string script;
    for (int i = 0; i < 1001; ++i) script += line;
    return script;
}

class Conversion : public ConversionStage {};

TEST_F(Conversion, Passes_every_block_on_and_ends_both_modules) {
    EXPECT_EQ(Run("block|1|8|0|0\nblock|0\nblock|1|0|0|0\nblock|1|4|2|1\n"), ExitCode::kDone);
    EXPECT_EQ(errors, u"");
    const std::string journal = encoder.TakeJournal();
    EXPECT_NE(journal.find("ENC_EncodeBlock 8 sum 28 finished 0 format 1/2/44100/16\n"
                           "ENC_EncodeBlock 4 sum 38 finished 1 format 1/2/44100/16\n"
                           "ENC_EndConversion 0\nENC_Destroy\n"),
              std::string::npos)
        << journal;
    EXPECT_TRUE(decoder.TakeJournal().ends_with("DecodeBlock\nClose\nDestroy\n"));
}

TEST_F(Conversion, Makes_the_format_whole_that_a_decoder_reports) {
    EXPECT_EQ(Run("norates\nlength|1000\nblock|1|8|0|0\nblock|1|4|0|1\n"), ExitCode::kDone);
    const std::string journal = encoder.TakeJournal();
    EXPECT_NE(journal.find("' format 1/2/44100/16\n"), std::string::npos) << journal;
    EXPECT_EQ(journal.find("without rates"), std::string::npos) << journal;
}

TEST_F(Conversion, A_decoder_that_gives_nothing_for_ever_is_given_up) {
    for (const char* nothing : {"block|0\n", "block|1|0|0|0\n"}) {
        EXPECT_EQ(Run(Often(nothing)), ExitCode::kSourceDamaged) << nothing;
        EXPECT_TRUE(Has(errors, u"The decoder gives no more audio of"));
    }
}

TEST_F(Conversion, A_block_without_its_bytes_is_no_audio) {
    EXPECT_EQ(Run("nulls\nblock|1|100|0|0\n"), ExitCode::kSourceDamaged);
    EXPECT_TRUE(Has(errors, u"The decoder gives no more audio of"));
}

TEST_F(Conversion, A_decoder_that_complains_and_ends_politely_has_failed) {
    EXPECT_EQ(Run("block|1|4|0|1\nsay|DecodeBlock|error|half of it is missing\n"), ExitCode::kSourceDamaged);
    EXPECT_EQ(errors, u"half of it is missing\r\n");
}

TEST_F(Conversion, A_source_that_is_refused_is_named) {
    EXPECT_EQ(Run("open|1|0\n"), ExitCode::kSourceDamaged);
    EXPECT_EQ(errors, u"Can't open '" + command.source + u"'\r\n");
}

TEST_F(Conversion, Trouble_with_tags_is_information_and_costs_no_audio) {
    command.carryTags = true;
    EXPECT_EQ(Run("open|8|0\nblock|1|4|0|1\n"), ExitCode::kDone);
    EXPECT_EQ(Run("say|Open|error|no luck\nblock|1|4|0|1\n"), ExitCode::kSourceDamaged);
    EXPECT_EQ(errors, u"no luck\r\n");  // once, of the decoding
    EXPECT_TRUE(Has(output, u"no luck"));
}

TEST_F(Conversion, An_encoder_that_refuses_or_fails_leaves_what_stood_there) {
    const struct {
        const char* script;
        ExitCode result;
        const char16_t* words;
    } rows[] = {
        {"begin|0\n", ExitCode::kEncoderRefused, u"The encoder refuses to write '"},
        {"end|0\n", ExitCode::kOutputFailed, u"Can't write '"},
        {"say|ENC_EncodeBlock|error|disk full\n", ExitCode::kOutputFailed, u"disk full\r\nCan't write '"},
        {"say|ENC_EndConversion|error|disk full\n", ExitCode::kOutputFailed, u"disk full\r\nCan't write '"},
        {"create|0\n", ExitCode::kEncoderRefused, u"There is no encoder 'enc'"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Run("block|1|4|0|1\n", row.script), row.result) << row.script;
        EXPECT_TRUE(Has(errors, row.words)) << row.script << testing::PrintToString(errors);
    }
}

TEST_F(Conversion, Names_of_files_pass_for_nothing_else) {
    command.destination = folder / u"Conversion complete";
    EXPECT_EQ(Run("open|1|0\n"), ExitCode::kSourceDamaged);
    EXPECT_TRUE(Has(output, u"ActionInput: Reading 'in.abc'\r\n"));
    EXPECT_TRUE(Has(output, u"ActionOutput: Writing 'Conversion complete'\r\n"));
}

}  // namespace
