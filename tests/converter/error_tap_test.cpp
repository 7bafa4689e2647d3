// Errors of modules: counted, passed on line by line, however they are cut.
#include "converter/error_tap.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/pipe.h"
#include "platform/file.h"
#include "platform/pipe.h"
#include "platform/program.h"
#include "support/faults.h"

namespace {

// What a tap passes on when `writes` come through its channel: the text of a standard error made of a pipe.
struct Heard {
    std::u16string text;
    int lines = 0;
};

Heard Listen(const std::vector<std::string>& writes) {
    static platform::Handle standardError = platform::kInvalidHandle;
    XPipe pipe;
    EXPECT_TRUE(pipe.Create());
    standardError = pipe.DetachWriteEnd();
    Faulty<platform::GetStdHandle> streams;
    streams.Replace([](std::uint32_t) { return standardError; });

    Heard heard;
    {
        Reporter reporter;
        ErrorTap tap(reporter);
        for (const std::string& bytes : writes) {
            std::uint32_t written = 0;
            platform::WriteFile(tap.Channel(), bytes.data(), static_cast<std::uint32_t>(bytes.size()),
                                &written);
        }
        heard.lines = tap.Close();
    }
    platform::CloseHandle(standardError);
    bool failed = false;
    const clByteStore& read = *pipe.ReadAvailable(&failed);
    heard.text.assign(reinterpret_cast<const char16_t*>(read.Data()), read.Cursor() / 2);
    return heard;
}

std::string Bytes(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

TEST(ErrorTap, Passes_lines_on_and_counts_them) {
    const Heard heard = Listen({Bytes(u"first\r\n"), Bytes(u"second\r\nthird\r\n")});
    EXPECT_EQ(heard.lines, 3);
    EXPECT_EQ(heard.text, u"first\r\nsecond\r\nthird\r\n");
}

TEST(ErrorTap, Nothing_written_is_no_error) {
    const Heard heard = Listen({});
    EXPECT_EQ(heard.lines, 0);
    EXPECT_EQ(heard.text, u"");
}

TEST(ErrorTap, A_text_without_line_end_counts_too) {
    EXPECT_EQ(Listen({Bytes(u"cut")}).text, u"cut\r\n");
}

TEST(ErrorTap, Empty_lines_are_dropped) {
    EXPECT_EQ(Listen({Bytes(u"\r\n\r\n")}).lines, 0);
}

TEST(ErrorTap, A_message_cut_at_any_byte_arrives_whole) {
    const std::string message = Bytes(u"some trouble\r\n");
    for (std::size_t cut = 0; cut <= message.size(); ++cut) {
        const Heard heard = Listen({message.substr(0, cut), message.substr(cut)});
        EXPECT_EQ(heard.lines, 1) << cut;
        EXPECT_EQ(heard.text, u"some trouble\r\n") << cut;
    }
}

TEST(ErrorTap, Is_silent_where_the_system_gives_no_pipe) {
    Faulty<platform::CreatePipe> pipes;
    pipes.FailAlways();
    Reporter reporter;
    ErrorTap tap(reporter);
    EXPECT_EQ(tap.Channel(), platform::kInvalidHandle);
    EXPECT_EQ(tap.Close(), 0);
}

}  // namespace
