#include "foundation/file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/native_text.h"
#include "platform/file.h"
#include "platform/message_box.h"
#include "support/faults.h"
#include "support/temp_folder.h"

namespace {

constexpr std::uint32_t kRetryCancelBox = 69;

// A user who answers the prompts, by a list of buttons.
class User {
  public:
    struct Prompt {
        std::u16string text, title;
        std::uint32_t flags;
        bool operator==(const Prompt&) const = default;
    };

    explicit User(std::vector<std::int32_t> answers = {}) : mAnswers(std::move(answers)) {
        mBox.Replace([this](const char16_t* text, const char16_t* title, std::uint32_t flags) {
            mPrompts.push_back({text, title, flags});
            return mPrompts.size() <= mAnswers.size() ? mAnswers[mPrompts.size() - 1]
                                                      : platform::kBoxResultCancel;
        });
    }
    const std::vector<Prompt>& Prompts() const { return mPrompts; }

  private:
    std::vector<std::int32_t> mAnswers;
    std::vector<Prompt> mPrompts;
    Faulty<platform::MessageBoxW> mBox;
};

void OpenForReading(XFile& file, const std::u16string& path) {
    file.mPath = path.c_str();
    file.mHandle = platform::CreateFileW(path.c_str(), platform::kGenericRead, platform::kShareRead,
                                         platform::kOpenExisting, platform::kAttributeNormal);
    file.mOwnsHandle = true;
    ASSERT_TRUE(file.IsOpen());
}

TEST(File, A_new_one_is_closed) {
    const XFile file;
    EXPECT_EQ(file.mHandle, platform::kInvalidHandle);
    EXPECT_FALSE(file.mShowErrors);
    EXPECT_FALSE(file.mOwnsHandle);
    EXPECT_TRUE(file.mPath.IsEmpty());
}

TEST(File, Create_empties_what_exists_and_Write_fills_it) {
    const TempFolder temp;
    const std::u16string path = temp.Write(u"file", "what stood here before");
    XFile file(path.c_str());
    ASSERT_TRUE(file.Create());
    EXPECT_TRUE(file.mOwnsHandle);
    EXPECT_TRUE(file.Write("one", 3));
    EXPECT_TRUE(file.Write("two", 3));
    EXPECT_TRUE(file.Write("", 0));
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(temp.Read(u"file"), "onetwo");
}

TEST(File, Create_asks_the_platform_for_what_it_promises) {
    Faulty<platform::CreateFileW> opens;
    std::u16string seen;
    opens.Replace([&](const char16_t* path, std::uint32_t access, std::uint32_t share,
                      std::uint32_t disposition, std::uint32_t attributes) {
        seen = path;
        EXPECT_EQ(access, 0x40000000u);
        EXPECT_EQ(share, 3u);
        EXPECT_EQ(disposition, 2u);
        EXPECT_EQ(attributes, 128u);
        return platform::kInvalidHandle;
    });
    XFile plain(PathOfLength(259).c_str()), longer(PathOfLength(260).c_str());
    EXPECT_FALSE(plain.Create());
    EXPECT_EQ(seen, PathOfLength(259));
    EXPECT_FALSE(longer.Create());
    EXPECT_EQ(seen, LongForm(PathOfLength(260)));
}

TEST(File, Create_fails_without_a_call_on_an_empty_path) {
    Faulty<platform::CreateFileW> opens;
    XFile file;
    EXPECT_FALSE(file.Create());
    EXPECT_EQ(opens.Calls(), 0);
}

TEST(File, Create_clears_the_wish_for_prompts_before_it_could_matter) {
    const TempFolder temp;
    const User user;
    XFile file((temp / u"no/such/folder").c_str());
    file.mShowErrors = true;
    EXPECT_FALSE(file.Create());
    EXPECT_FALSE(file.mShowErrors);
    EXPECT_TRUE(user.Prompts().empty());
}

TEST(File, Create_would_prompt_until_it_opens_or_the_user_has_enough) {
    for (const std::vector<std::int32_t>& answers :
         {std::vector<std::int32_t>{4, 4, 2}, {4, 4, 0}, {4, 4, 4, 4, 4}}) {
        const TempFolder temp;
        const std::u16string path = temp / u"file";
        XFile file(path.c_str());
        const User user(answers);
        Faulty<platform::CreateFileW> opens;
        opens.Replace([&](auto... arguments) {
            file.mShowErrors = true;
            return opens.Calls() < 4 ? platform::kInvalidHandle : opens.Native(arguments...);
        });
        EXPECT_EQ(file.Create(), answers.size() == 5);
        const User::Prompt prompt{u"Unable to open '" + path + u"'", u"File Write Error", kRetryCancelBox};
        EXPECT_EQ(user.Prompts(), std::vector(3, prompt));
    }
}

TEST(File, Create_closes_what_was_open) {
    const TempFolder temp;
    Faulty<platform::CloseHandle> closes;
    {
        XFile file((temp / u"file").c_str());
        EXPECT_TRUE(file.Create());
        EXPECT_TRUE(file.Create());
        EXPECT_EQ(closes.Calls(), 1);
    }
    EXPECT_EQ(closes.Calls(), 2);
}

TEST(File, Close_closes_only_what_it_owns) {
    const TempFolder temp;
    XFile owner((temp / u"file").c_str());
    ASSERT_TRUE(owner.Create());
    {
        XFile view;
        view.mHandle = owner.mHandle;
    }
    EXPECT_TRUE(owner.Write("x", 1));
    owner.Close();
    owner.Close();
    EXPECT_EQ(temp.Read(u"file"), "x");
}

TEST(File, Read_cut_short_by_the_end_is_no_failure) {
    const TempFolder temp;
    XFile file;
    OpenForReading(file, temp.Write(u"file", std::string(160, 'a') + std::string(40, 'b')));
    ASSERT_TRUE(platform::SetFilePointerEx(file.mHandle, 160));
    char bytes[100] = {};
    bool failed = true;
    platform::SetLastError(platform::kErrorAccessDenied);
    EXPECT_EQ(file.Read(bytes, 100, &failed), 40u);
    EXPECT_FALSE(failed);
    EXPECT_EQ(std::string(bytes, 40), std::string(40, 'b'));
    EXPECT_EQ(file.Read(bytes, 100, &failed), 0u);
    EXPECT_FALSE(failed);
}

TEST(File, Read_asks_the_last_error_whether_it_failed) {
    struct {
        std::uint32_t error;
        bool failed;
    } const rows[] = {{platform::kErrorSuccess, false},
                      {platform::kErrorHandleEof, false},
                      {platform::kErrorAccessDenied, true},
                      {platform::kErrorBrokenPipe, true}};
    const User user;
    XFile file;
    file.mHandle = 77;
    for (const auto& row : rows) {
        for (const bool succeeds : {false, true}) {
            Faulty<platform::ReadFile> reads;
            reads.Replace([&](platform::Handle handle, void*, std::uint32_t, std::uint32_t* read) {
                EXPECT_EQ(handle, 77);
                *read = 3;
                platform::SetLastError(row.error);
                return succeeds;
            });
            char bytes[10];
            bool failed = !row.failed;
            EXPECT_EQ(file.Read(bytes, 10, &failed), 3u);
            EXPECT_EQ(failed, row.failed) << row.error;
            EXPECT_EQ(file.Read(bytes, 10, nullptr), 3u);
        }
    }
    EXPECT_TRUE(user.Prompts().empty());
}

TEST(File, Read_of_all_the_bytes_asks_nothing) {
    Faulty<platform::ReadFile> reads;
    reads.Replace([](platform::Handle, void*, std::uint32_t count, std::uint32_t* read) {
        *read = count;
        platform::SetLastError(platform::kErrorAccessDenied);
        return true;
    });
    XFile file;
    file.mHandle = 77;
    char bytes[4];
    bool failed = true;
    EXPECT_EQ(file.Read(bytes, 4, &failed), 4u);
    EXPECT_FALSE(failed);
}

TEST(File, Read_of_a_closed_one_fails_without_a_call) {
    Faulty<platform::ReadFile> reads;
    XFile file;
    char byte;
    bool failed = false;
    EXPECT_EQ(file.Read(&byte, 1, &failed), 0u);
    EXPECT_TRUE(failed);
    EXPECT_EQ(reads.Calls(), 0);
}

TEST(File, Read_prompts_a_caller_who_asked_for_it) {
    const User::Prompt prompt{u"Unable to read from 'track'", u"File Read Error", kRetryCancelBox};
    XFile file(u"track");
    file.mHandle = 77;
    file.mShowErrors = true;
    char bytes[8];
    bool failed = false;
    {
        const User user({4, 2});
        Faulty<platform::ReadFile> reads;
        reads.FailAlways(false, platform::kErrorAccessDenied);
        file.Read(bytes, 8, &failed);
        EXPECT_TRUE(failed);
        EXPECT_EQ(reads.Calls(), 2);
        EXPECT_EQ(user.Prompts(), std::vector(2, prompt));
    }
    const User user({4});
    Faulty<platform::ReadFile> reads;
    reads.Replace([](platform::Handle, void*, std::uint32_t count, std::uint32_t* read) {
        *read = count;
        return true;
    });
    reads.FailCall(1, false, platform::kErrorAccessDenied);
    EXPECT_EQ(file.Read(bytes, 8, &failed), 8u);
    EXPECT_FALSE(failed);
    EXPECT_EQ(user.Prompts(), std::vector(1, prompt));
}

TEST(File, Write_of_nothing_succeeds_without_a_call) {
    Faulty<platform::WriteFile> writes;
    XFile file;
    EXPECT_TRUE(file.Write(nullptr, 0));
    EXPECT_EQ(writes.Calls(), 0);
}

TEST(File, Write_of_no_buffer_fails_and_may_say_so) {
    const User user;
    Faulty<platform::WriteFile> writes;
    XFile file;
    file.mHandle = 77;
    EXPECT_FALSE(file.Write(nullptr, 1));
    EXPECT_TRUE(user.Prompts().empty());
    file.mShowErrors = true;
    EXPECT_FALSE(file.Write(nullptr, 1));
    const User::Prompt prompt{u"Error writing a NULL buffer to file", u"File Write Error", 64};
    EXPECT_EQ(user.Prompts(), std::vector(1, prompt));
    EXPECT_EQ(writes.Calls(), 0);
}

TEST(File, Write_fails_unless_all_bytes_went) {
    const User user;
    XFile file;
    EXPECT_FALSE(file.Write("abc", 3)) << "closed";
    file.mHandle = 77;
    Faulty<platform::WriteFile> writes;
    writes.Replace([](platform::Handle, const void*, std::uint32_t count, std::uint32_t* written) {
        *written = count - 1;
        return true;
    });
    EXPECT_FALSE(file.Write("abc", 3));
    writes.FailAlways(false, platform::kErrorDiskFull);
    EXPECT_FALSE(file.Write("abc", 3));
    EXPECT_EQ(writes.Calls(), 2);
    EXPECT_TRUE(user.Prompts().empty());
}

TEST(File, Write_prompts_a_caller_who_asked_for_it) {
    const User::Prompt prompt{u"Unable to write to 'track'", u"File Write Error", kRetryCancelBox};
    XFile file(u"track");
    file.mShowErrors = true;
    {
        const User user({4, 1});
        EXPECT_FALSE(file.Write("abc", 3));
        EXPECT_EQ(user.Prompts(), std::vector(2, prompt));
    }
    const User user({4});
    file.mHandle = 77;
    Faulty<platform::WriteFile> writes;
    writes.Replace([](platform::Handle, const void*, std::uint32_t count, std::uint32_t* written) {
        *written = count;
        return true;
    });
    writes.FailCall(1);
    EXPECT_TRUE(file.Write("abc", 3));
    EXPECT_EQ(user.Prompts(), std::vector(1, prompt));
}

}  // namespace
