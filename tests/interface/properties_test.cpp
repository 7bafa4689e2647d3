// What a file is: the numbers, and the texts row by row.
#include <cstring>

#include "interface/file_calls.h"

namespace {

class Properties : public FileCalls {
  protected:
    // The row at `index`; texts that the call leaves alone read "#".
    Row Read(std::int32_t index, const std::u16string& path) {
        char16_t name[64] = u"#", value[64] = u"#";
        const std::int32_t result =
            QACReadAudioPropStrings(host.handle, In(path.c_str()), index, Out(name), Out(value));
        return {result, name, value};
    }
    Row Read(std::int32_t index) { return Read(index, file); }
    // A file of the same kind with two rows was read before.
    void ReadTwoRows() {
        Script("row|Codec|Test\nrow|Mode|Joint stereo\n");
        ASSERT_EQ(Read(0), (Row{QV_DONE, u"Codec", u"Test"}));
    }
    QvFormat Format(const std::string& format) {
        Script("format|" + format + "\n");
        QvFormat read = {};
        EXPECT_EQ(QACReadAudioProperties(host.handle, In(file.c_str()), &read, nullptr, nullptr, nullptr),
                  QV_DONE);
        return read;
    }

    const Row kUntouched = {QV_FAILED, u"#", u"#"};
    const Row kNoRow = {QV_NOTHING, u"", u""};
};

struct Numbers {
    std::uint64_t lengthMs = 11, size = 12;
    std::int64_t property = 13;
    bool operator==(const Numbers&) const = default;
};

}  // namespace

TEST_F(Properties, The_numbers_come_in_the_caller_s_width) {
    const struct {
        const char* script;
        Numbers numbers;
    } rows[] = {
        {"length|215000\nsize|34400044\nproperty|3\n", {215000, 34400044, 3}},
        {"length|8589934592\nsize|1099511627776\nproperty|-5\n", {8589934592, 1099511627776, -5}},
        {"property|-2147483648\n", {0, 0, INT32_MIN}},
        {"length|-1\nsize|-1\nproperty|2147483647\n", {UINT64_MAX, UINT64_MAX, INT32_MAX}},
        {"silent\n", {0, 0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.script);
        Script(row.script);
        Numbers read;
        EXPECT_EQ(QACReadAudioProperties(host.handle, In(file.c_str()), nullptr, &read.lengthMs, &read.size,
                                         &read.property),
                  QV_DONE);
        EXPECT_EQ(read, row.numbers);
    }
}

TEST_F(Properties, The_format_is_18_bytes_of_the_record) {
    Script("format|1|2|48000|24\n");
    std::uint8_t bytes[20];
    std::memset(bytes, 0xEE, sizeof bytes);
    ASSERT_EQ(QACReadAudioProperties(host.handle, In(file.c_str()), reinterpret_cast<QvFormat*>(bytes),
                                     nullptr, nullptr, nullptr),
              QV_DONE);
    const QvFormat expected = {QV_FORMAT_PCM, 2, 48000, 288000, 6, 24, 0};
    EXPECT_EQ(std::memcmp(bytes, &expected, sizeof expected), 0);
    EXPECT_EQ(bytes[18], 0xEE);
    EXPECT_EQ(bytes[19], 0xEE);
}

TEST_F(Properties, The_format_is_made_whole_on_its_way) {
    // What hosts divide by is never 0.
    const QvFormat empty = Format("1|0|0|0");
    EXPECT_EQ(+empty.nAvgBytesPerSec, 1u);
    EXPECT_EQ(+empty.nBlockAlign, 1u);
    // Of an extensible record the head; it tells of no more than the module could have given.
    const QvFormat extensible = Format("65534|2|44100|16|22");
    EXPECT_EQ(+extensible.wFormatTag, QV_FORMAT_EXTENSIBLE);
    EXPECT_EQ(+extensible.cbSize, 22u);
    EXPECT_EQ(+Format("65534|2|44100|16|60000").cbSize, 22u);
}

TEST_F(Properties, The_numbers_are_left_alone_without_an_answer) {
    const auto expect = [this](const std::u16string& path, std::int32_t result) {
        Numbers read;
        QvFormat format, before;
        std::memset(&format, 0xEE, sizeof format);
        before = format;
        EXPECT_EQ(QACReadAudioProperties(host.handle, In(path.c_str()), &format, &read.lengthMs, &read.size,
                                         &read.property),
                  result);
        EXPECT_EQ(read, Numbers());
        EXPECT_EQ(std::memcmp(&format, &before, sizeof format), 0);
    };
    Script("open|4|0\nlength|5\n");
    expect(missing, QV_FAILED);
    expect(unknown, QV_FAILED);
    expect(file, QV_FAILED);
    Script("instances|1\nlength|5\n");
    expect(file, QV_NOTHING);
    ++refusedInstances;
}

TEST_F(Properties, Null_for_every_number_is_an_ordinary_question) {
    EXPECT_EQ(QACReadAudioProperties(host.handle, In(file.c_str()), nullptr, nullptr, nullptr, nullptr),
              QV_DONE);
}

TEST_F(Properties, Rows_are_walked_from_index_0_to_the_first_that_is_not_there) {
    ReadTwoRows();
    EXPECT_EQ(host->propList.Current(), &host->propList.At(0));
    EXPECT_EQ(Read(1), (Row{QV_DONE, u"Mode", u"Joint stereo"}));
    EXPECT_EQ(host->propList.Current(), &host->propList.At(1));
    EXPECT_EQ(Read(2), kNoRow);
    EXPECT_EQ(Read(INT32_MAX), kNoRow);
    EXPECT_EQ(Read(-1), kNoRow);
    EXPECT_EQ(Read(INT32_MIN), kNoRow);
    EXPECT_EQ(Journal(), Asking("Open 16 " + InJournal(file) + "\n")) << "only index 0 asks";
}

TEST_F(Properties, Another_row_before_the_first_index_0_finds_nothing) {
    Script("row|Codec|Test\nrow|Mode|Stereo\n");
    EXPECT_EQ(Read(1), kNoRow);
    EXPECT_EQ(balance.Loads(), 0);
    EXPECT_EQ(Info(), u"");
    EXPECT_EQ(Errors(), u"");
}

TEST_F(Properties, Index_0_brings_the_rows_of_the_file_it_is_given) {
    ReadTwoRows();
    Script("row|Codec|Other\n");
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"Codec", u"Other"}));
    EXPECT_EQ(Read(1), kNoRow);
}

TEST_F(Properties, A_block_without_rows_is_done_and_replaces_the_rows_of_the_file_before) {
    ReadTwoRows();
    Script("");
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"", u""}));
    EXPECT_EQ(Read(1), kNoRow);
}

TEST_F(Properties, Without_a_block_there_is_nothing) {
    for (const char* script : {"nulls\nrow|Codec|Test\n", "cut|4\n", "silent\n"}) {
        Script(script);
        EXPECT_EQ(Read(0), kNoRow) << script;
        EXPECT_EQ(Info(), u"Reading audio properties from file '" + file + u"'\r\n") << "nothing is finished";
    }
}

TEST_F(Properties, Without_a_block_the_rows_of_the_file_before_are_served) {
    ReadTwoRows();
    for (const char* script : {"nulls\nrow|Codec|Other\n", "cut|4\n", "silent\n"}) {
        Script(script);
        EXPECT_EQ(Read(0), (Row{QV_DONE, u"Codec", u"Test"})) << script;
        EXPECT_EQ(Read(1), (Row{QV_DONE, u"Mode", u"Joint stereo"})) << script;
        EXPECT_EQ(Errors(), u"");
    }
}

TEST_F(Properties, A_module_that_is_not_started_leaves_the_rows_of_the_file_before) {
    ReadTwoRows();
    Script("instances|1\n");
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"Codec", u"Test"}));
    ++refusedInstances;
}

TEST_F(Properties, Rows_of_the_file_before_turn_a_refusal_into_a_success_and_the_error_still_stands) {
    ReadTwoRows();
    Info();
    Script("open|16|0\n");
    const Trace trace(host);
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"Codec", u"Test"}));
    EXPECT_TRUE(trace.Text().ends_with(Leave("clConverter::ReadAudioPropStrings")));
    EXPECT_EQ(Errors(), u"Failed to read audio properties from file '" + file + u"'\r\n");
    EXPECT_EQ(Info(), u"Reading audio properties from file '" + file + u"'\r\n" +
                          u"Finished reading audio properties from file '" + file + u"'\r\n");
}

TEST_F(Properties, A_refusal_without_rows_of_a_file_before_fails_and_empties_both_texts) {
    Script("open|16|0\n");
    EXPECT_EQ(Read(0), (Row{QV_FAILED, u"", u""}));
    EXPECT_EQ(Read(1), kNoRow);
}

TEST_F(Properties, A_file_without_a_decoder_fails_whatever_rows_there_are) {
    ReadTwoRows();
    EXPECT_EQ(Read(0, unknown), kUntouched);
    EXPECT_EQ(Read(1, unknown), (Row{QV_DONE, u"Mode", u"Joint stereo"})) << "only index 0 looks for one";
}

TEST_F(Properties, A_file_that_goes_away_between_two_rows_fails_at_the_second) {
    ReadTwoRows();
    Remove(file);
    for (const std::int32_t index : {1, 2, -1, 0}) {
        const Trace trace(host);
        EXPECT_EQ(Read(index), kUntouched) << index;
        const std::u16string error =
            u"Error reading audio properties, file does not exist '" + file + u"'\r\n";
        EXPECT_EQ(trace.Text(), Enter("clConverter::ReadAudioPropStrings") + u"*** Error: " + error);
        EXPECT_EQ(Errors(), error);
    }
    EXPECT_EQ(host->propList.Count(), 2);
}

TEST_F(Properties, A_damaged_block_gives_the_rows_before_the_damage) {
    Script("row|Codec|Test\nrow|Mode|Stereo\ncut|2\n");
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"Codec", u"Test"}));
    EXPECT_EQ(Read(1), kNoRow);
    Script("row|Codec|Test\ncut|2\n");
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"", u""})) << "a block was read";
}

TEST_F(Properties, A_block_has_no_upper_limit) {
    const std::string text(600'000, 'x');
    Script("row|Codec|" + text + "\n");
    std::vector<QvChar> name(text.size() + 1), value(text.size() + 1);
    EXPECT_EQ(QACReadAudioPropStrings(host.handle, In(file.c_str()), 0, name.data(), value.data()), QV_DONE);
    EXPECT_EQ(std::count(value.begin(), value.end(), QvChar('x')), 600'000);
    EXPECT_EQ(value.back(), 0);
}

TEST_F(Properties, Null_buffers_receive_nothing) {
    ReadTwoRows();
    EXPECT_EQ(QACReadAudioPropStrings(host.handle, In(file.c_str()), 1, nullptr, nullptr), QV_DONE);
    EXPECT_EQ(QACReadAudioPropStrings(host.handle, In(file.c_str()), 2, nullptr, nullptr), QV_NOTHING);
}

TEST_F(Properties, The_list_of_tags_is_another_one) {
    host.AddTag(u"Title", u"One");
    ReadTwoRows();
    EXPECT_EQ(host->tagList.Count(), 1);
    EXPECT_EQ(host->propList.Count(), 2);
}
