// Whatever the platform refuses, and whenever: the old file stays, byte for byte, and nothing stands beside
// it.
#include <algorithm>
#include <filesystem>

#include "platform/error.h"
#include "support/allocation_faults.h"
#include "tags/tag_files.h"

namespace {

const Rows kRows = {{u"TITLE", u"A song", ""}, {u"PICTURE", u"", "\xFF\xD8\xFF" + std::string(200000, 'p')}};

class TagFaults : public TagTest {
  protected:
    // Fails the operation's first call, then its second, until a change gets by without meeting the failure. What
    // it meets, it must tell; the result is how many calls there are.
    template <auto& operation, class Result>
    int FailEach(const Sound& sound, Result result) {
        for (int call = 1;; ++call) {
            Put(sound);
            bool isWritten = false, isMet = false;
            {
                Faulty<operation> fault;
                fault.FailCall(call, result, platform::kErrorDiskFull);
                isWritten = Write(sound, kRows);
                isMet = fault.Calls() >= call;
            }
            const std::u16string errors = mLog.TakeErrors();
            EXPECT_EQ(NamesInFolder(), std::vector<std::u16string>{sound.name}) << call;
            EXPECT_EQ(isWritten, errors.empty()) << call;
            if (isWritten)
                EXPECT_EQ(Read(sound).size(), 2u) << call;
            else
                EXPECT_TRUE(Bytes(sound) == sound.bytes) << call;
            if (!isMet) {
                std::filesystem::remove(std::filesystem::path(mFolder / sound.name));
                return call - 1;
            }
            EXPECT_FALSE(isWritten) << call;
        }
    }
};

TEST_F(TagFaults, A_full_disk_at_any_write) {
    const NoFlush quick;
    for (const Sound& sound : Sounds()) EXPECT_GE((FailEach<platform::WriteFile>(sound, false)), 2);
}

TEST_F(TagFaults, A_short_write_that_calls_itself_a_success) {
    const Sound& flac = SoundOf(TagContainer::flac);
    Put(flac);
    Faulty<platform::WriteFile> writes;
    writes.Replace([](platform::Handle file, const void* data, std::uint32_t count, std::uint32_t* written) {
        return Faulty<platform::WriteFile>::Native(file, data, count > 100 ? 100 : count, written);
    });
    EXPECT_FALSE(Write(flac, kRows));
    EXPECT_TRUE(Bytes(flac) == flac.bytes);
    EXPECT_EQ(NamesInFolder(), std::vector<std::u16string>{flac.name});
}

TEST_F(TagFaults, A_read_that_fails_at_any_place) {
    const NoFlush quick;
    for (const Sound& sound : Sounds()) EXPECT_GE((FailEach<platform::ReadFile>(sound, false)), 4);
}

TEST_F(TagFaults, A_file_that_can_not_be_opened_made_copied_flushed_or_renamed) {
    for (const Sound& sound : Sounds()) {
        // The old file, the temporary one empty, again to be written, and read once more.
        EXPECT_EQ((FailEach<platform::CreateFileW>(sound, platform::kInvalidHandle)), 4);
        EXPECT_EQ((FailEach<platform::CopyFileW>(sound, false)), 1);
        EXPECT_EQ((FailEach<platform::FlushFileBuffers>(sound, false)), 1);
        EXPECT_EQ((FailEach<platform::MoveFileExW>(sound, false)), 1);
        EXPECT_GE((FailEach<platform::SetFilePointerEx>(sound, false)), 1);
        EXPECT_GE((FailEach<platform::GetFileSizeEx>(sound, false)), 2);
    }
}

TEST_F(TagFaults, Reading_rows_tells_what_it_can_not_read) {
    for (const Sound& sound : Sounds()) {
        const std::u16string path = Put(sound);
        ASSERT_TRUE(Write(sound, kRows));
        int call = 1;
        for (bool isMet = true; isMet; ++call) {
            clIDTagList list;
            Faulty<platform::ReadFile> reads;
            reads.FailCall(call, false, platform::kErrorDiskFull);
            const bool isRead = ReadFileTags(sound.container, path.c_str(), list, Log());
            isMet = reads.Calls() >= call;
            EXPECT_EQ(isRead, !isMet) << call;
            EXPECT_EQ(list.Count(), isRead ? 2 : 0) << call;
            EXPECT_EQ(mLog.TakeErrors(), isRead ? u"" : path + u": its tags can't be read (error 112)\r\n");
        }
        EXPECT_GE(call, 3);
        clIDTagList list;
        EXPECT_FALSE(ReadFileTags(sound.container, (path + u".not").c_str(), list, Log()));
        EXPECT_NE(mLog.TakeErrors().find(u"can't be opened (error 2)"), std::u16string::npos);
    }
}

}  // namespace
