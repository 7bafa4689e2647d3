// A file's tags, and what reading and writing them leaves of the host's own list.
#include <algorithm>
#include <optional>

#include "interface/file_calls.h"
#include "supervisor/owner.h"

namespace {

class Tags : public FileCalls {
  protected:
    // The row at `index` as a host without interest in art reads it; texts that are left alone read "#".
    Row Read(std::int32_t index, const std::u16string& path) {
        char16_t name[64] = u"#", value[64] = u"#";
        const std::int32_t result = QACReadIDTag(host.handle, In(path.c_str()), index, Out(name), Out(value),
                                                 art.data(), artSize ? &*artSize : nullptr);
        return {result, name, value};
    }
    Row Read(std::int32_t index) { return Read(index, file); }
    Row ReadList(std::int32_t index) {
        char16_t name[64] = u"#", value[64] = u"#";
        const std::int32_t result = QACReadIDTagList(host.handle, index, Out(name), Out(value));
        return {result, name, value};
    }
    // The row at index 0 with this capacity for its art.
    std::int32_t ReadArt(std::uint64_t capacity) {
        artSize = capacity;
        return Read(0).result;
    }
    std::int32_t Write(const char16_t* name, const char16_t* value, const std::string& bytes = {}) {
        const auto size = static_cast<std::uint32_t>(bytes.size());
        return QACWriteIDTag(host.handle, In(file.c_str()), In(name), In(value),
                             reinterpret_cast<const std::uint8_t*>(bytes.data()), &size);
    }
    std::int32_t Delete(const char16_t* name) {
        return QACDeleteIDTag(host.handle, In(file.c_str()), In(name));
    }
    std::size_t Delivered() const {
        return static_cast<std::size_t>(std::count(art.begin(), art.end(), std::uint8_t{0xA7}));
    }
    std::string AskedToSet(const std::string& row) const {
        return Asking("Set IDTags " + InJournal(file) + "\nSet row " + row + "\n");
    }
    // A row whose block has exactly so many bytes: 4 of its count, 4 of its size, 4 of its name, 2 of its value.
    void ScriptBlock(std::uint32_t bytes) { Script("tag|T||" + std::to_string(bytes - 14) + "\n"); }

    const Row kNoRow = {QV_NOTHING, u"", u""};
    const Row kUntouched = {QV_FAILED, u"#", u"#"};
    std::vector<std::uint8_t> art = std::vector<std::uint8_t>(1'000'001);
    std::optional<std::uint64_t> artSize;
};

}  // namespace

TEST_F(Tags, Two_texts_answer_2_and_behind_them_comes_nothing) {
    Script("tag|Title|One\ntag|Artist|Somebody\n");
    EXPECT_EQ(Read(0), (Row{QV_NO_ART, u"Title", u"One"}));
    EXPECT_EQ(host->tagList.Current(), &host->tagList.At(0));
    EXPECT_EQ(Read(1), (Row{QV_NO_ART, u"Artist", u"Somebody"}));
    EXPECT_EQ(host->tagList.Current(), &host->tagList.At(1));
    EXPECT_EQ(Read(2), kNoRow);
    EXPECT_EQ(Read(INT32_MAX), kNoRow);
    EXPECT_EQ(Read(-1), kNoRow);
    EXPECT_EQ(Read(INT32_MIN), kNoRow);
    EXPECT_EQ(Journal(), Asking("Open 8 " + InJournal(file) + "\n"))
        << "only index 0 asks, with a clean record";
}

TEST_F(Tags, Art_as_long_as_the_capacity_stays_behind_and_one_byte_more_brings_it) {
    Script("tag|Cover||100\n");
    const struct {
        std::uint64_t capacity;
        std::int32_t result;
        std::uint64_t delivered;
    } rows[] = {{0, QV_NO_ART, 0},   {99, QV_NO_ART, 0},  {100, QV_NO_ART, 0},
                {101, QV_DONE, 100}, {500, QV_DONE, 100}, {UINT64_MAX, QV_DONE, 100}};
    for (const auto& row : rows) {
        std::fill(art.begin(), art.end(), std::uint8_t{0});
        EXPECT_EQ(ReadArt(row.capacity), row.result) << row.capacity;
        EXPECT_EQ(*artSize, row.delivered) << row.capacity;
        EXPECT_EQ(Delivered(), row.delivered) << row.capacity;
    }
}

TEST_F(Tags, A_row_of_art_has_its_name_and_its_value_too) {
    Script("tag|Cover|front|3\n");
    artSize = 4;
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"Cover", u"front"}));
    EXPECT_EQ(ReadList(0), (Row{QV_DONE, u"Cover", u"front"}));
}

TEST_F(Tags, A_row_of_art_alone_is_read_from_the_file_but_not_from_the_list) {
    Script("tag|Cover||3\n");
    artSize = 4;
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"Cover", u""}));
    EXPECT_EQ(ReadList(0), (Row{QV_NOTHING, u"#", u"#"}));
}

TEST_F(Tags, Without_a_capacity_or_a_buffer_there_is_no_art) {
    Script("tag|Cover||3\n");
    EXPECT_EQ(Read(0), (Row{QV_NO_ART, u"Cover", u""}));
    std::uint64_t size = 100;
    EXPECT_EQ(QACReadIDTag(host.handle, In(file.c_str()), 0, nullptr, nullptr, nullptr, &size), QV_NO_ART);
    EXPECT_EQ(size, 0u);
}

TEST_F(Tags, The_size_of_the_art_is_0_wherever_none_came) {
    const struct {
        const char* script;
        std::int32_t index;
        const std::u16string& path;
        std::int32_t result;
    } rows[] = {{"tag|Title|One\n", 0, file, QV_NO_ART},
                {"tag|Title|One\n", 5, file, QV_NOTHING},
                {"open|8|0\n", 0, file, QV_FAILED},
                {"", 0, file, QV_DONE},
                {"", 0, unknown, QV_FAILED},
                {"", 0, missing, QV_FAILED}};
    for (const auto& row : rows) {
        Script(row.script);
        artSize = 77;
        EXPECT_EQ(Read(row.index, row.path).result, row.result);
        EXPECT_EQ(*artSize, 0u);
    }
}

TEST_F(Tags, A_null_handle_touches_nothing) {
    std::uint64_t size = 77;
    EXPECT_EQ(QACReadIDTag(nullptr, In(file.c_str()), 0, nullptr, nullptr, art.data(), &size), QV_NOTHING);
    EXPECT_EQ(size, 77u);
}

TEST_F(Tags, A_file_without_tags_is_done_and_both_texts_are_empty) {
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"", u""}));
    EXPECT_EQ(Read(1), kNoRow);
}

TEST_F(Tags, A_module_without_a_block_gives_nothing) {
    for (const char* script : {"nulls\ntag|Title|One\n", "cut|4\n", "silent\n"}) {
        Script(script);
        EXPECT_EQ(Read(0), kNoRow) << script;
        EXPECT_EQ(Info(), u"Reading ID tags in file '" + file + u"'\r\n") << "nothing is finished";
        EXPECT_EQ(Errors(), u"");
    }
}

TEST_F(Tags, A_block_of_999999_bytes_is_read_and_one_of_1000000_is_passed_over_in_silence) {
    ScriptBlock(999'999);
    EXPECT_EQ(ReadArt(art.size()), QV_DONE);
    EXPECT_EQ(*artSize, 999'985u);
    EXPECT_EQ(Delivered(), 999'985u);
    ScriptBlock(1'000'000);
    artSize = art.size();
    EXPECT_EQ(Read(0), kNoRow);
    EXPECT_EQ(*artSize, 0u);
    EXPECT_EQ(Errors(), u"");
    EXPECT_EQ(host->tagList.Count(), 0);
}

TEST_F(Tags, A_damaged_block_gives_the_rows_before_the_damage) {
    Script("tag|Title|One\ntag|Artist|Somebody\ncut|2\n");
    EXPECT_EQ(Read(0), (Row{QV_NO_ART, u"Title", u"One"}));
    EXPECT_EQ(Read(1), kNoRow);
    Script("tag|Title|One\ncut|2\n");
    EXPECT_EQ(Read(0), (Row{QV_DONE, u"", u""})) << "a block was read";
    EXPECT_EQ(Errors(), u"");
}

TEST_F(Tags, Reading_a_file_replaces_the_hosts_rows) {
    host.AddTag(u"Mine", u"kept until then");
    host.AddTag(u"Also mine", u"kept until then");
    EXPECT_EQ(Read(1), (Row{QV_NO_ART, u"Also mine", u"kept until then"})) << "only index 0 reads";
    Script("tag|Title|One\n");
    EXPECT_EQ(Read(0), (Row{QV_NO_ART, u"Title", u"One"}));
    EXPECT_EQ(Read(1), kNoRow);
    EXPECT_EQ(ReadList(0), (Row{QV_DONE, u"Title", u"One"}));
}

TEST_F(Tags, Reading_empties_the_list_once_a_decoder_was_found_whatever_comes_of_it) {
    const struct {
        const char* script;
        Row row;
        int refused;
    } rows[] = {{"open|8|0\n", {QV_FAILED, u"", u""}, 0},
                {"instances|1\n", {QV_NOTHING, u"", u""}, 1},
                {"nulls\n", {QV_NOTHING, u"", u""}, 0}};
    for (const auto& row : rows) {
        host.AddTag(u"Mine", u"gone");
        Script(row.script);
        EXPECT_EQ(Read(0), row.row) << row.script;
        EXPECT_EQ(host->tagList.Count(), 0) << row.script;
        refusedInstances += row.refused;
    }
}

TEST_F(Tags, A_file_without_a_decoder_leaves_the_list_and_the_buffers) {
    host.AddTag(u"Mine", u"kept");
    EXPECT_EQ(Read(0, unknown), kUntouched);
    EXPECT_EQ(Read(0, missing), kUntouched);
    EXPECT_EQ(ReadList(0), (Row{QV_DONE, u"Mine", u"kept"}));
}

TEST_F(Tags, A_file_that_goes_away_between_two_rows_fails_at_the_second) {
    Script("tag|Title|One\ntag|Artist|Somebody\n");
    EXPECT_EQ(Read(0).result, QV_NO_ART);
    Remove(file);
    for (const std::int32_t index : {1, 2, -1, 0}) {
        const Trace trace(host);
        EXPECT_EQ(Read(index), kUntouched) << index;
        const std::u16string error = u"Error reading ID tags, file does not exist '" + file + u"'\r\n";
        EXPECT_EQ(trace.Text(), Enter("clConverter::ReadIDTag") + u"*** Error: " + error);
        EXPECT_EQ(Errors(), error);
    }
    EXPECT_EQ(host->tagList.Count(), 2);
}

TEST_F(Tags, Null_buffers_receive_nothing) {
    Script("tag|Title|One\n");
    EXPECT_EQ(QACReadIDTag(host.handle, In(file.c_str()), 0, nullptr, nullptr, nullptr, nullptr), QV_NO_ART);
    EXPECT_EQ(QACReadIDTag(host.handle, In(file.c_str()), 1, nullptr, nullptr, nullptr, nullptr), QV_NOTHING);
}

TEST_F(Tags, A_text_is_written_as_one_row_of_a_clean_record) {
    EXPECT_EQ(Write(u"Title", u"One"), QV_DONE);
    EXPECT_EQ(Journal(), AskedToSet("Title|One|0"));
    EXPECT_EQ(host->tagList.Current(), &host->tagList.At(0));
}

TEST_F(Tags, Art_is_written_without_a_value) {
    EXPECT_EQ(Write(u"Cover", u"dropped", std::string("\x01\xFF\0\x80", 4)), QV_DONE);
    EXPECT_EQ(Journal(), AskedToSet("Cover||4\nSet art 01FF0080"));
    EXPECT_EQ(ReadList(0), (Row{QV_NOTHING, u"#", u"#"}));
}

TEST_F(Tags, The_size_of_art_to_write_is_read_and_not_written) {
    const std::uint8_t bytes[] = {1, 2, 3, 4};
    std::uint32_t size = 2;
    EXPECT_EQ(QACWriteIDTag(host.handle, In(file.c_str()), In(u"Cover"), nullptr, bytes, &size), QV_DONE);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(Journal(), AskedToSet("Cover||2\nSet art 0102"));
}

TEST_F(Tags, Null_for_the_art_or_its_size_writes_the_value) {
    const std::uint8_t bytes[] = {1, 2, 3, 4};
    const std::uint32_t size = sizeof bytes;
    QACWriteIDTag(host.handle, In(file.c_str()), In(u"Title"), In(u"One"), bytes, nullptr);
    EXPECT_EQ(Journal(), AskedToSet("Title|One|0"));
    QACWriteIDTag(host.handle, In(file.c_str()), In(u"Title"), In(u"One"), nullptr, &size);
    EXPECT_EQ(Journal(), AskedToSet("Title|One|0"));
}

TEST_F(Tags, Null_texts_are_written_as_empty_ones) {
    EXPECT_EQ(Write(nullptr, nullptr), QV_DONE);
    EXPECT_EQ(Journal(), AskedToSet("||0"));
}

TEST_F(Tags, Large_art_is_written_whole) {
    EXPECT_EQ(Write(u"Cover", u"", std::string(3'000'000, '\xA7')), QV_DONE);
    EXPECT_EQ(Journal(), AskedToSet("Cover||3000000\nSet art A7A7A7A7A7A7A7A7A7A7A7A7A7A7A7A7"));
}

TEST_F(Tags, Writing_replaces_the_list_the_module_willing_or_not) {
    for (const char* script : {"", "set|0\n"}) {
        host.AddTag(u"Mine", u"gone");
        Script(script);
        EXPECT_EQ(Write(u"Title", u"One"), *script ? QV_FAILED : QV_DONE);
        EXPECT_EQ(host->tagList.Count(), 1) << script;
        EXPECT_EQ(ReadList(0), (Row{QV_DONE, u"Title", u"One"})) << script;
    }
}

TEST_F(Tags, Writing_leaves_the_list_when_no_module_comes_to_it) {
    host.AddTag(u"Mine", u"kept");
    const auto write = [this](const std::u16string& path) {
        return QACWriteIDTag(host.handle, In(path.c_str()), In(u"Title"), In(u"One"), nullptr, nullptr);
    };
    EXPECT_EQ(write(missing), QV_FAILED);
    EXPECT_EQ(write(unknown), QV_FAILED);
    Script("instances|1\n");
    EXPECT_EQ(write(file), QV_NOTHING);
    ++refusedInstances;
    EXPECT_EQ(host->tagList.Count(), 1);
    EXPECT_EQ(ReadList(0), (Row{QV_DONE, u"Mine", u"kept"}));
}

TEST_F(Tags, What_was_written_travels_with_the_next_conversion_and_can_be_cleared_away) {
    host->cpu = 0;
    EXPECT_EQ(Write(u"Title", u"One"), QV_DONE);
    {
        const Launch launch;
        host.Convert();
        EXPECT_NE(launch.command.find(u" -tag=\"Title=One\""), std::u16string::npos);
    }
    QACClearIDTagList(host.handle);
    const Launch launch;
    host.Convert();
    EXPECT_EQ(launch.command.find(u" -tag"), std::u16string::npos);
}

TEST_F(Tags, Deleting_passes_the_name_as_it_is) {
    const std::string path = InJournal(file);
    EXPECT_EQ(Delete(u"Title"), QV_DONE);
    EXPECT_EQ(Journal(), Asking("DeleteATag " + path + " Title\n"));
    EXPECT_EQ(Delete(u""), QV_DONE);
    EXPECT_EQ(Journal(), Asking("DeleteATag " + path + " \n"));
    EXPECT_EQ(Delete(nullptr), QV_DONE);
    EXPECT_EQ(Journal(), Asking("DeleteATag " + path + " (null)\n"));
}

TEST_F(Tags, Deleting_says_whether_it_means_all_of_them) {
    for (const char16_t* name : {static_cast<const char16_t*>(nullptr), u"", u"Title"}) {
        EXPECT_EQ(Delete(name), QV_DONE);
        EXPECT_EQ(Info(),
                  (name && *name ? u"Deleting ID tag(s) from file '" : u"Deleting all ID tags from file '") +
                      file + u"'\r\nFinished deleting ID tag(s) from file '" + file + u"'\r\n");
    }
}

TEST_F(Tags, Deleting_leaves_the_list) {
    host.AddTag(u"Title", u"One");
    for (const char* script : {"", "delete|0\n"}) {
        Script(script);
        EXPECT_EQ(Delete(u"Title"), *script ? QV_FAILED : QV_DONE);
        EXPECT_EQ(ReadList(0), (Row{QV_DONE, u"Title", u"One"}));
    }
}
