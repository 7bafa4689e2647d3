// What the calls that go to a file have in common: the file, the decoder, the words, the marks, and that
// nothing stays behind.
#include <new>

#include "interface/file_calls.h"
#include "support/allocation_faults.h"

namespace {

struct FileCall {
    const char* function;
    std::u16string noFile, noDecoder, failed, begun, finished;
    std::int32_t done;    // its result with a decoder that serves it
    std::string refusal;  // what makes the module refuse it
    std::string asked;    // in the module's journal, the file at %
    std::int32_t (*call)(QvConverter* converter, const char16_t* file);
};

std::int32_t ReadProperties(QvConverter* converter, const char16_t* file) {
    QvFormat format;
    std::uint64_t lengthMs = 0, size = 0;
    std::int64_t property = 0;
    return QACReadAudioProperties(converter, In(file), &format, &lengthMs, &size, &property);
}
std::int32_t ReadPropStrings(QvConverter* converter, const char16_t* file) {
    char16_t name[64], value[64];
    return QACReadAudioPropStrings(converter, In(file), 0, Out(name), Out(value));
}
std::int32_t ReadTag(QvConverter* converter, const char16_t* file) {
    char16_t name[64], value[64];
    std::uint8_t art[16];
    std::uint64_t artSize = sizeof art;
    return QACReadIDTag(converter, In(file), 0, Out(name), Out(value), art, &artSize);
}
std::int32_t WriteTag(QvConverter* converter, const char16_t* file) {
    const std::uint32_t artSize = 0;
    return QACWriteIDTag(converter, In(file), In(u"Title"), In(u"One"), nullptr, &artSize);
}
std::int32_t DeleteTag(QvConverter* converter, const char16_t* file) {
    return QACDeleteIDTag(converter, In(file), In(u"Title"));
}
std::int32_t DeleteAllTags(QvConverter* converter, const char16_t* file) {
    return QACDeleteIDTag(converter, In(file), nullptr);
}

const FileCall kCalls[] = {
    {"clConverter::ReadAudioProperties", u"Error reading audio info, file does not exist '",
     u"Failed to find decoder to read audio info from file '", u"Failed to read audio info from file '",
     u"Reading audio info from file '", u"Finished reading audio info from file '", QV_DONE, "open|4|0\n",
     "Open 4 %\n", ReadProperties},
    {"clConverter::ReadAudioPropStrings", u"Error reading audio properties, file does not exist '",
     u"Failed to find decoder to read audio properties from file '",
     u"Failed to read audio properties from file '", u"Reading audio properties from file '",
     u"Finished reading audio properties from file '", QV_DONE, "open|16|0\n", "Open 16 %\n",
     ReadPropStrings},
    {"clConverter::ReadIDTag", u"Error reading ID tags, file does not exist '",
     u"Failed to find decoder to read ID tag in file '", u"Failed to read ID tags from file '",
     u"Reading ID tags in file '", u"Finished reading ID tags in file '", QV_NO_ART, "open|8|0\n",
     "Open 8 %\n", ReadTag},
    {"clConverter::WriteIDTag", u"Error writing ID tags, file does not exist '",
     u"Failed to find decoder to write ID tag in file '", u"Failed to write ID tag to file '",
     u"Writing ID tag to file '", u"Finished writing ID tag to file '", QV_DONE, "set|0\n",
     "Set IDTags %\nSet row Title|One|0\n", WriteTag},
    {"clConverter::DeleteIDTag", u"Error deleting ID tag(s), file does not exist '",
     u"Failed to find decoder to delete ID tag(s) from file '", u"Failed to delete ID tag(s) from file '",
     u"Deleting ID tag(s) from file '", u"Finished deleting ID tag(s) from file '", QV_DONE, "delete|0\n",
     "DeleteATag % Title\n", DeleteTag},
    {"clConverter::DeleteIDTag", u"Error deleting ID tag(s), file does not exist '",
     u"Failed to find decoder to delete ID tag(s) from file '", u"Failed to delete ID tag(s) from file '",
     u"Deleting all ID tags from file '", u"Finished deleting ID tag(s) from file '", QV_DONE, "delete|0\n",
     "DeleteATag % (null)\n", DeleteAllTags},
};

std::u16string Line(const std::u16string& words, const std::u16string& file) {
    return words + file + u"'\r\n";
}
std::u16string InfoMark(const std::u16string& line) {
    return u"*** Information: " + line;
}
std::u16string ErrorMark(const std::u16string& line) {
    return u"*** Error: " + line;
}

class FileRequest : public FileCalls {
  protected:
    static constexpr const char* kRows = "tag|Title|One|0\nrow|Codec|Test\n";

    // What the module was asked, by its journal.
    std::string Asked(const FileCall& call) const {
        std::string asked = call.asked;
        return Asking(asked.replace(asked.find('%'), 1, InJournal(file)));
    }
};

}  // namespace

TEST_F(FileRequest, Asks_a_fresh_instance_and_lets_all_go) {
    Script(kRows);
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        const Trace trace(host);
        EXPECT_EQ(call.call(host.handle, file.c_str()), call.done);
        EXPECT_EQ(Journal(), Asked(call));
        const std::u16string begun = Line(call.begun, file), finished = Line(call.finished, file);
        EXPECT_EQ(trace.Text(),
                  Enter(call.function) + InfoMark(begun) + InfoMark(finished) + Leave(call.function));
        EXPECT_EQ(Info(), begun + finished);
        EXPECT_EQ(Errors(), u"");
        EXPECT_EQ(balance.Held(), 0);
    }
}

TEST_F(FileRequest, A_file_that_does_not_exist_fails_at_once_and_without_a_leave_mark) {
    for (const FileCall& call : kCalls) {
        for (const std::u16string& path : {missing, std::u16string()}) {
            SCOPED_TRACE(call.function);
            const Trace trace(host);
            EXPECT_EQ(call.call(host.handle, path.c_str()), QV_FAILED);
            const std::u16string error = Line(call.noFile, path);
            EXPECT_EQ(trace.Text(), Enter(call.function) + ErrorMark(error));
            EXPECT_EQ(Errors(), error);
            EXPECT_EQ(Info(), u"");
        }
    }
    EXPECT_EQ(balance.Loads(), 0);
}

TEST_F(FileRequest, No_file_at_all_is_one_that_does_not_exist) {
    for (const FileCall& call : kCalls) {
        EXPECT_EQ(call.call(host.handle, nullptr), QV_FAILED);
        EXPECT_EQ(Errors(), Line(call.noFile, u""));
    }
}

TEST_F(FileRequest, A_file_that_no_module_decodes_fails_without_a_leave_mark) {
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        const Trace trace(host);
        EXPECT_EQ(call.call(host.handle, unknown.c_str()), QV_FAILED);
        const std::u16string begun = Line(call.begun, unknown), error = Line(call.noDecoder, unknown);
        EXPECT_EQ(trace.Text(), Enter(call.function) + InfoMark(begun) + ErrorMark(error));
        EXPECT_EQ(Info(), begun);
        EXPECT_EQ(Errors(), error);
        EXPECT_EQ(Journal(), "Create\nGet Decodes 0\nGet Decodes 1\nDestroy\n");
    }
}

TEST_F(FileRequest, A_refusal_fails_and_is_finished_all_the_same) {
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        Script(call.refusal);
        const Trace trace(host);
        EXPECT_EQ(call.call(host.handle, file.c_str()), QV_FAILED);
        EXPECT_EQ(Journal(), Asked(call));
        const std::u16string begun = Line(call.begun, file), finished = Line(call.finished, file);
        const std::u16string error = Line(call.failed, file);
        EXPECT_EQ(trace.Text(), Enter(call.function) + InfoMark(begun) + ErrorMark(error) +
                                    InfoMark(finished) + Leave(call.function));
        EXPECT_EQ(Info(), begun + finished);
        EXPECT_EQ(Errors(), error);
    }
}

TEST_F(FileRequest, What_a_module_says_stands_among_the_librarys_words) {
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        const std::string entry = call.asked.substr(0, call.asked.find(' '));
        Script(call.refusal + "say|" + entry + "|error|It is broken\nsay|" + entry + "|info|Looking\n");
        EXPECT_EQ(call.call(host.handle, file.c_str()), QV_FAILED);
        EXPECT_EQ(Errors(), u"It is broken\r\n" + Line(call.failed, file));
        EXPECT_EQ(Info(), Line(call.begun, file) + u"Looking\r\n" + Line(call.finished, file));
    }
}

TEST_F(FileRequest, A_module_that_makes_no_second_instance_gives_nothing_and_goes_unsaid) {
    Script("instances|1\n");
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        const Trace trace(host);
        EXPECT_EQ(call.call(host.handle, file.c_str()), QV_NOTHING);
        EXPECT_EQ(Journal(), "Create\nGet Decodes 0\nCreate\nDestroy\n");
        ++refusedInstances;
        EXPECT_EQ(trace.Text(),
                  Enter(call.function) + InfoMark(Line(call.begun, file)) + Leave(call.function));
        EXPECT_EQ(Info(), Line(call.begun, file));
        EXPECT_EQ(Errors(), u"");
    }
}

TEST_F(FileRequest, A_module_that_can_not_be_loaded_again_gives_nothing_and_goes_unsaid) {
    balance.RefuseSecond();
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        EXPECT_EQ(call.call(host.handle, file.c_str()), QV_NOTHING);
        EXPECT_EQ(Journal(), "Create\nGet Decodes 0\nDestroy\n");
        EXPECT_EQ(Info(), Line(call.begun, file));
        EXPECT_EQ(Errors(), u"");
    }
}

TEST_F(FileRequest, A_module_that_makes_no_instance_at_all_is_no_decoder) {
    Script("create|0\n");
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        EXPECT_EQ(call.call(host.handle, file.c_str()), QV_FAILED);
        ++refusedInstances;
        EXPECT_EQ(Errors(), Line(call.noDecoder, file));
    }
}

TEST_F(FileRequest, A_null_handle_gives_nothing) {
    for (const FileCall& call : kCalls) EXPECT_EQ(call.call(nullptr, file.c_str()), QV_NOTHING);
    EXPECT_EQ(balance.Loads(), 0);
}

TEST_F(FileRequest, Direct_decoding_of_the_same_file_goes_on) {
    Script(std::string(kRows) + "block|1|4|0|0\nblock|1|4|0|1\n");
    QvFormatExtensible format = {};
    std::uint64_t lengthMs = 0, positionMs = 0;
    ASSERT_EQ(QADOpenFile(host.handle, In(file.c_str()), &format, &lengthMs), QV_DONE);
    std::uint8_t bytes[4] = {};
    std::uint32_t count = 4, finished = 0;
    QADDecodeBlock(host.handle, bytes, &count, &finished, &positionMs);
    for (const FileCall& call : kCalls) EXPECT_EQ(call.call(host.handle, file.c_str()), call.done);
    QADDecodeBlock(host.handle, bytes, &count, &finished, &positionMs);
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(std::string(bytes, bytes + 4), std::string({4, 5, 6, 7}));
    QADCloseFile(host.handle);
    host.Destroy();
}

TEST_F(FileRequest, A_hundred_calls_leave_nothing_loaded) {
    Script(kRows);
    for (int round = 0; round < 100; ++round) {
        const FileCall& call = kCalls[static_cast<std::size_t>(round) % std::size(kCalls)];
        ASSERT_EQ(call.call(host.handle, file.c_str()), call.done);
        ASSERT_EQ(balance.Held(), 0);
        timers.Tick();
    }
}

// By a module that takes no memory of its own, since it has the test's allocator on some systems.
TEST_F(FileRequest, An_exhausted_memory_leaves_nothing_loaded_and_a_handle_that_works) {
    home.Place(u"decoder/whole", "whole_decoder");
    const std::u16string whole = home.Folder().Write(u"song.whole");
    for (const FileCall& call : kCalls) {
        SCOPED_TRACE(call.function);
        int raised = 0;
        bool failed = true;
        for (int number = 1; failed; ++number) {
            {
                AllocationFaults memory;
                memory.FailCall(number);
                try {
                    call.call(host.handle, whole.c_str());
                } catch (const std::bad_alloc&) {
                    ++raised;
                }
                failed = memory.HasFailed();
            }
            ASSERT_EQ(balance.Held(), 0) << number;
            timers.Tick();
        }
        EXPECT_GT(raised, 0);
        Errors(), Info();
        Script(kRows);
        EXPECT_EQ(call.call(host.handle, file.c_str()), call.done);
    }
}
