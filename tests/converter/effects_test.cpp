// The effects of a conversion: what reaches each of them, in which order, and what their failures come to. A block of
// the scripted decoder holds the bytes 0, 1, 2, 3 and so on.
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "converter/conversion_stage.h"
#include "platform/file.h"
#include "platform/synchronisation.h"

namespace {

constexpr const char* kTwoBlocks = "length|1\nblock|1|8|0|0\nblock|1|4|2|1\n";

// The lines of a journal that begin with the words.
std::vector<std::string> Lines(const std::string& journal, std::string_view words) {
    std::vector<std::string> lines;
    std::istringstream rest(journal);
    for (std::string line; std::getline(rest, line);)
        if (line.starts_with(words)) lines.push_back(line.substr(words.size()));
    return lines;
}

class Effects : public ConversionStage {
  protected:
    Effects() { command.effects = {{u"one", u"-a=1"}, {u"two", u""}}; }

    ExitCode RunWith(const std::string& first, const std::string& second, const std::string& decoding) {
        one.SetScript(first);
        two.SetScript(second);
        const ExitCode result = Run(decoding);
        oneJournal = one.TakeJournal();
        twoJournal = two.TakeJournal();
        encoderJournal = encoder.TakeJournal();
        return result;
    }
    // What the encoder got, a line for each block.
    std::vector<std::string> Encoded() const { return Lines(encoderJournal, "ENC_EncodeBlock "); }

    const PlacedModule one{folder, u"DSPs/one", "scripted_effect"};
    const PlacedModule two{folder, u"DSPs/two", "scripted_effect"};
    std::string oneJournal, twoJournal, encoderJournal;
};

using Rows = std::vector<std::string>;

// Does something when the converter looks for the host's wish to cancel for the n-th time.
class AtLook {
  public:
    AtLook(Lifeline& lifeline, int look, std::function<void()> action) {
        std::u16string missing;
        EXPECT_TRUE(lifeline.Start(u"qv-test-quit-look", u"qv-test-watch-look", &missing));
        mWaits.Replace([this, look, action](platform::Handle handle, std::uint32_t timeoutMs) {
            if (timeoutMs == 0 && ++mLooks == look) action();
            return Faulty<platform::WaitForSingleObject>::Native(handle, timeoutMs);
        });
    }
    ~AtLook() {
        platform::CloseHandle(mQuit);
        platform::CloseHandle(mWatch);
    }
    void Cancel() const { platform::SetEvent(mQuit); }

  private:
    const platform::Handle mQuit = platform::CreateEventW(u"qv-test-quit-look");
    const platform::Handle mWatch = platform::CreateEventW(u"qv-test-watch-look");
    Faulty<platform::WaitForSingleObject> mWaits;
    int mLooks = 0;
};

TEST_F(Effects, work_in_the_order_of_their_numbers) {
    EXPECT_EQ(RunWith("multiply|2\n", "add|1\n", kTwoBlocks), ExitCode::kDone);
    EXPECT_EQ(Encoded(),
              (Rows{"8 sum 64 finished 0 format 1/2/44100/16", "4 sum 80 finished 1 format 1/2/44100/16"}));
    EXPECT_EQ(errors, u"");
    std::swap(command.effects[0], command.effects[1]);
    EXPECT_EQ(RunWith("multiply|2\n", "add|1\n", "block|1|8|0|1\n"), ExitCode::kDone);
    EXPECT_EQ(Encoded(), (Rows{"8 sum 72 finished 1 format 1/2/44100/16"}));
}

TEST_F(Effects, are_called_as_the_contract_says) {
    EXPECT_EQ(RunWith("length|77\n", "", kTwoBlocks), ExitCode::kDone);
    const std::string calls =
        "DSP_PassAudioBlock 8 sum 28 finished 0 format 1/2/44100/16\n"
        "DSP_PassAudioBlock 4 sum 38 finished 1 format 1/2/44100/16\n"
        "DSP_EndConversion\nDSP_AfterConversion ";
    EXPECT_TRUE(oneJournal.starts_with(
        "DSP_Create\nDSP_BeginConversion '-a=1' format 1/2/44100/16 length 1 wants 0\n" + calls))
        << oneJournal;
    EXPECT_TRUE(twoJournal.starts_with(
        "DSP_Create\nDSP_BeginConversion '' format 1/2/44100/16 length 77 wants 0\n" + calls))
        << twoJournal;
    EXPECT_TRUE(twoJournal.ends_with(".wav\nDSP_Destroy\n"));
}

TEST_F(Effects, settle_their_formats_one_after_the_other) {
    EXPECT_EQ(RunWith("format|3|1|22050|32\n", "format|1|6|8000|24\n", "block|1|4|0|1\n"), ExitCode::kDone);
    EXPECT_NE(twoJournal.find("DSP_BeginConversion '' format 3/1/22050/32 "), std::string::npos);
    EXPECT_NE(twoJournal.find("DSP_PassAudioBlock 4 sum 6 finished 1 format 3/1/22050/32\n"),
              std::string::npos);
    EXPECT_NE(encoderJournal.find("'' format 1/6/8000/24\n"), std::string::npos) << encoderJournal;
}

// The one that holds all of it back gives nothing on until its last block.
TEST_F(Effects, may_hold_audio_back_and_add_a_tail) {
    EXPECT_EQ(RunWith("hold\n", "tail|3|5\n", kTwoBlocks), ExitCode::kDone);
    EXPECT_EQ(Lines(twoJournal, "DSP_PassAudioBlock "),
              (Rows{"12 sum 66 finished 1 format 1/2/44100/16", "0 sum 0 finished 1 format 1/2/44100/16",
                    "0 sum 0 finished 1 format 1/2/44100/16", "0 sum 0 finished 1 format 1/2/44100/16"}));
    EXPECT_EQ(Encoded(),
              (Rows{"12 sum 66 finished 0 format 1/2/44100/16", "5 sum 5 finished 0 format 1/2/44100/16",
                    "5 sum 5 finished 0 format 1/2/44100/16", "5 sum 5 finished 1 format 1/2/44100/16"}));
}

TEST_F(Effects, that_have_a_tail_pass_it_through_those_behind_them) {
    EXPECT_EQ(RunWith("tail|2|4\n", "multiply|3\nhold\n", "block|1|4|0|1\n"), ExitCode::kDone);
    EXPECT_EQ(Encoded(), (Rows{"12 sum 42 finished 1 format 1/2/44100/16"}));
}

TEST_F(Effects, do_not_end_the_audio_before_its_end) {
    EXPECT_EQ(RunWith("early\n", "", kTwoBlocks), ExitCode::kDone);
    EXPECT_EQ(Encoded().size(), 2u);
    EXPECT_TRUE(Encoded()[0].starts_with("8 sum 28 finished 0"));
}

TEST_F(Effects, see_all_of_the_audio_first_when_they_want_to) {
    EXPECT_EQ(RunWith("multiply|2\n", "wants\n", kTwoBlocks), ExitCode::kDone);
    const std::string run =
        "DSP_PassAudioBlock 8 sum 28 finished 0 format 1/2/44100/16\n"
        "DSP_PassAudioBlock 4 sum 38 finished 1 format 1/2/44100/16\nDSP_EndConversion\n";
    EXPECT_NE(
        oneJournal.find(run + "DSP_BeginConversion '-a=1' format 1/2/44100/16 length 1 wants 0\n" + run),
        std::string::npos)
        << oneJournal;
    EXPECT_NE(twoJournal.find("DSP_PassNonLive 8 sum 56 finished 0 format 1/2/44100/16\n"
                              "DSP_PassNonLive 4 sum 76 finished 1 format 1/2/44100/16\n"
                              "DSP_PassAudioBlock 8 sum 56 finished 0 format 1/2/44100/16\n"),
              std::string::npos)
        << twoJournal;
    EXPECT_EQ(Encoded().size(), 2u);
    EXPECT_EQ(Lines(decoder.TakeJournal(), "Open 1 ").size(), 2u);
}

// What the first has learnt it keeps: each look at all of the audio is one more pass over the source, not twice as many.
TEST_F(Effects, look_at_all_of_the_audio_once_however_many_want_to) {
    EXPECT_EQ(RunWith("wants\n", "wants\n", kTwoBlocks), ExitCode::kDone);
    EXPECT_EQ(Lines(oneJournal, "DSP_PassNonLive").size(), 2u);
    EXPECT_EQ(
        Lines(oneJournal, "DSP_BeginConversion "),
        (Rows{"'-a=1' format 1/2/44100/16 length 1 wants 0", "'-a=1' format 1/2/44100/16 length 1 wants 2"}));
    EXPECT_EQ(Lines(oneJournal, "DSP_PassAudioBlock").size(), 4u);
    EXPECT_EQ(Lines(twoJournal, "DSP_PassNonLive").size(), 2u);
    EXPECT_EQ(Lines(twoJournal, "DSP_BeginConversion ").size(), 1u);
    EXPECT_EQ(Lines(decoder.TakeJournal(), "Open 1 ").size(), 3u);
}

TEST_F(Effects, that_look_first_take_their_share_of_the_percentage) {
    // 1000 ms of audio in four blocks, passed over twice.
    const std::string block = "block|1|44100|0|0\n";
    ASSERT_EQ(RunWith("", "wants\n", "length|1000\n" + block + block + block + block), ExitCode::kDone);
    std::vector<std::u16string> sent;
    for (std::size_t at = 0; (at = output.find(u"PCDone: ", at)) != std::u16string::npos; at += 8)
        sent.push_back(output.substr(at + 8, output.find(u'\r', at) - at - 8));
    EXPECT_EQ(sent,
              (std::vector<std::u16string>{u"12", u"25", u"37", u"49", u"62", u"75", u"87", u"99", u"100"}));
}

TEST_F(Effects, get_the_complete_file_under_its_temporary_name) {
    EXPECT_EQ(RunWith("", "", "block|1|4|0|1\n"), ExitCode::kDone);
    const Rows files = Lines(oneJournal, "DSP_AfterConversion ");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_NE(files[0].find(".qvpart-"), std::string::npos);
    EXPECT_EQ(Lines(twoJournal, "DSP_AfterConversion "), files);
}

TEST_F(Effects, that_fail_make_the_conversion_fail_and_leave_what_stood_there) {
    const struct {
        const char* first;
        const char* second;
        const char16_t* words;
    } rows[] = {
        {"create|0\n", "", u"There is no effect 'one'\r\n"},
        {"begin|0\n", "", u"Can't begin the effect 'one'\r\n"},
        {"", "begin|0\n", u"Can't begin the effect 'two'\r\n"},
        {"look|0\nwants\n", "", u"Can't go on with the effect 'one'\r\n"},
        {"pass|0\n", "", u"Can't go on with the effect 'one'\r\n"},
        {"", "pass|0\n", u"Can't go on with the effect 'two'\r\n"},
        {"nulls\n", "", u"Can't go on with the effect 'one'\r\n"},
        {"endless\n", "", u"Can't go on with the effect 'one'\r\n"},
        {"pass|0\n", "wants\n", u"Can't go on with the effect 'one'\r\n"},
        {"again|0\n", "wants\n", u"Can't begin again the effect 'one'\r\n"},
        {"other|48000\n", "wants\n", u"Can't begin again the effect 'one'\r\n"},
        {"end|0\n", "wants\n", u"Can't begin again the effect 'one'\r\n"},
        {"end|0\n", "", u"Can't complete the audio of the effect 'one'\r\n"},
        {"", "after|0\n", u"Can't complete the file of the effect 'two'\r\n"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(RunWith(row.first, row.second, kTwoBlocks), ExitCode::kFailed) << row.first << row.second;
        EXPECT_EQ(errors, row.words) << row.first << row.second;
    }
}

TEST_F(Effects, that_complain_have_failed_wherever_they_do) {
    for (const char* entry : {"DSP_Create", "DSP_BeginConversion", "DSP_PassNonLive", "DSP_PassAudioBlock",
                              "DSP_EndConversion", "DSP_AfterConversion", "DSP_Destroy"}) {
        const std::string script = std::string("wants\nsay|") + entry + "|error|broken\n";
        EXPECT_EQ(RunWith("", script, kTwoBlocks), ExitCode::kFailed) << entry;
        EXPECT_TRUE(errors.starts_with(u"broken\r\n")) << entry;
    }
    EXPECT_EQ(RunWith("", "say|DSP_PassAudioBlock|info|fine\n", kTwoBlocks), ExitCode::kDone);
    EXPECT_TRUE(Has(output, u"fine"));
}

TEST_F(Effects, are_ended_once_whatever_fails) {
    EXPECT_EQ(RunWith("", "pass|0\n", kTwoBlocks), ExitCode::kFailed);
    EXPECT_TRUE(oneJournal.ends_with("DSP_EndConversion\nDSP_Destroy\n")) << oneJournal;
    EXPECT_TRUE(twoJournal.ends_with("DSP_EndConversion\nDSP_Destroy\n")) << twoJournal;
    EXPECT_EQ(RunWith("", "begin|0\n", kTwoBlocks), ExitCode::kFailed);
    EXPECT_EQ(Lines(oneJournal, "DSP_EndConversion").size(), 1u);
    EXPECT_EQ(Lines(twoJournal, "DSP_EndConversion").size(), 0u);
    EXPECT_EQ(RunWith("end|0\n", "", kTwoBlocks), ExitCode::kFailed);
    EXPECT_EQ(Lines(oneJournal, "DSP_EndConversion").size(), 1u);
    EXPECT_EQ(Lines(oneJournal, "DSP_AfterConversion").size(), 0u);
    EXPECT_EQ(Lines(twoJournal, "DSP_AfterConversion").size(), 0u);
}

TEST_F(Effects, are_found_by_name_beside_the_program_only) {
    const PlacedModule lacking(folder, u"DSPs/lacking", "effect_without_DSP_AfterConversion");
    for (const char16_t* name : {u"three", u"", u"../DSPs/one", u"lacking"}) {
        command.effects[1].name = name;
        EXPECT_EQ(RunWith("", "", kTwoBlocks), ExitCode::kFailed);
        EXPECT_EQ(errors, std::u16string(u"There is no effect '") + name + u"'\r\n");
    }
}

TEST_F(Effects, do_not_hide_what_is_wrong_with_the_source) {
    EXPECT_EQ(RunWith("", "wants\n", "block|1|4|0|1\nsay|DecodeBlock|error|damaged\n"),
              ExitCode::kSourceDamaged);
    EXPECT_TRUE(errors.starts_with(u"damaged\r\n"));
}

// The script takes effect with the decoder's next instance, which is the one of the second pass.
TEST_F(Effects, that_look_first_need_a_source_that_opens_again_as_it_was) {
    const char* const scripts[] = {"open|1|0\n", "format|1|2|22050|16\n", "create|0\n"};
    for (const char* script : scripts) {
        lifeline = std::make_unique<Lifeline>();
        const AtLook change(*lifeline, 1, [&] { decoder.SetScript(script); });
        EXPECT_EQ(RunWith("", "wants\n", kTwoBlocks), ExitCode::kSourceDamaged);
        EXPECT_EQ(errors, u"Can't open again '" + command.source + u"'\r\n") << script;
    }
}

TEST_F(Effects, with_a_long_tail_can_be_cancelled_in_it) {
    const AtLook cancel(*lifeline, 5, [&] { cancel.Cancel(); });
    EXPECT_EQ(RunWith("tail|1000000|4\n", "", "block|1|4|0|1\n"), ExitCode::kCancelled);
    EXPECT_EQ(Lines(oneJournal, "DSP_PassAudioBlock").size(), 4u);
    EXPECT_EQ(Lines(oneJournal, "DSP_EndConversion").size(), 1u);
}

TEST_F(Effects, that_look_first_can_be_cancelled_while_they_look) {
    const AtLook cancel(*lifeline, 2, [&] { cancel.Cancel(); });
    EXPECT_EQ(RunWith("", "wants\n", kTwoBlocks), ExitCode::kCancelled);
    EXPECT_EQ(Lines(twoJournal, "DSP_PassNonLive").size(), 1u);
    EXPECT_EQ(Lines(twoJournal, "DSP_PassAudioBlock").size(), 0u);
}

}  // namespace
