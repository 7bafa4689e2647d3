// One conversion with modules that do as they are told, well or badly. The encoder writes no file of its own,
// so what stands at the destination after a success is the temporary as it was created.
#include "converter/conversion.h"

#include <gtest/gtest.h>

#include "converter/streams.h"
#include "modules/placed_module.h"
#include "platform/module.h"
#include "support/temp_folder.h"

namespace {

// More than the converter has the patience for.
std::string Often(std::string_view line) {
    std::string script;
    for (int i = 0; i < 1001; ++i) script += line;
    return script;
}

bool Has(const std::u16string& text, std::u16string_view words) {
    return text.find(words) != std::u16string::npos;
}

class Conversion : public testing::Test {
  protected:
    // The program stands in the folder, and its modules with it.
    Conversion() {
        mNames.Replace([this](platform::ModuleHandle, char16_t* path, std::uint32_t) {
            const std::u16string self = folder / u"Quavercore";
            self.copy(path, self.size());
            path[self.size()] = 0;
            return static_cast<std::uint32_t>(self.size());
        });
        command.source = folder / u"in.abc";
        command.destination = folder / u"out.wav";
        command.encoder = u"enc";
        command.carryTags = false;
    }

    ExitCode Run(const std::string& decoding, const std::string& encoding = {}) {
        decoder.SetScript("decodes|.abc|A test\n" + decoding);
        encoder.SetScript(encoding);
        folder.Write(u"out.wav", "old");
        StandardStreams streams;
        Reporter reporter;
        Lifeline lifeline;
        const ExitCode result = Convert(command, lifeline, reporter);
        output = streams.Output();
        errors = streams.Errors();
        const bool done = result == ExitCode::kDone;
        EXPECT_EQ(Has(output, u"Conversion complete\r\n"), done);
        EXPECT_EQ(folder.Read(u"out.wav"), done ? "" : "old");
        return result;
    }

    const TempFolder folder;
    const PlacedModule decoder{folder, u"decoder/dec", "scripted_decoder"};
    const PlacedModule encoder{folder, u"encoder/enc", "scripted_encoder"};
    Command command;
    std::u16string output, errors;

  private:
    Faulty<platform::GetModuleFileNameW> mNames;
};

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
