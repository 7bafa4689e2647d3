// A program that dies in the middle of a change leaves the old file or the new one, and what else it leaves is
// swept by the next change.
#include <cstdlib>
#include <filesystem>

#include "foundation/wide_string.h"
#include "platform/pipe.h"
#include "platform/process.h"
#include "platform/synchronisation.h"
#include "support/child.h"
#include "tags/tag_files.h"

namespace {

const std::string kArt = "\xFF\xD8\xFF" + std::string(3000000, 'p');

int gCallsLeft = 0;

// The program is gone before its n-th operation on a file, without a word to anybody.
template <auto& operation, class Signature>
struct Deadly;

template <auto& operation, class Result, class... Arguments>
struct Deadly<operation, Result(Arguments...)> {
    Deadly() {
        operation.Substitute([](Arguments... arguments) -> Result {
            if (--gCallsLeft == 0) std::_Exit(9);
            return operation.Native()(arguments...);
        });
    }
};

template <auto& operation>
using DeadlyCall =
    Deadly<operation, typename faults::Signature<std::remove_cvref_t<decltype(operation)>>::Type>;

}  // namespace

CHILD_PROGRAM(change_and_die) {
    if (argc < 3) return 1;
    gCallsLeft = std::atoi(argv[0]);
    const Sound& sound = Sounds().at(static_cast<std::size_t>(std::atoi(argv[1])));
    const DeadlyCall<platform::CreateFileW> creates;
    const DeadlyCall<platform::CopyFileW> copies;
    const DeadlyCall<platform::WriteFile> writes;
    const DeadlyCall<platform::FlushFileBuffers> flushes;
    const DeadlyCall<platform::MoveFileExW> moves;
    clIDTagList rows;
    rows.AddBinary(u"PICTURE", u"", kArt.data(), static_cast<std::uint32_t>(kArt.size()));
    return WriteFileTags(sound.container, XString(argv[2]).Text(), rows, clModuleLog(nullptr)) ? 0 : 2;
}

namespace {

class Killed : public TagTest {
  protected:
    // Starts a change that ends before its n-th operation; the result is the program's exit code.
    static std::uint32_t ChangeAndDie(int call, int sound, const std::u16string& path) {
        platform::Handle reader = platform::kNullHandle, writer = platform::kNullHandle;
        platform::ChildStreams streams;
        platform::ChildHandles child;
        EXPECT_TRUE(platform::CreatePipe(&reader, &writer));
        EXPECT_TRUE(platform::DuplicateHandle(writer, &streams.output));
        streams.error = streams.output;
        const std::string numbers = std::to_string(call) + " " + std::to_string(sound) + " ";
        std::u16string line = child::CommandLine(
            "change_and_die", std::u16string(numbers.begin(), numbers.end()) + u"\"" + path + u"\"");
        EXPECT_TRUE(platform::CreateProcessW(
            line.data(), platform::kCreateNoWindow | platform::kNormalPriorityClass, streams, &child));
        EXPECT_EQ(platform::WaitForSingleObject(child.process, platform::kInfinite), platform::kWaitObject);
        std::uint32_t code = 99;
        EXPECT_TRUE(platform::GetExitCodeProcess(child.process, &code));
        for (const platform::Handle handle : {reader, writer, streams.output, child.process, child.thread})
            platform::CloseHandle(handle);
        return code;
    }
};

TEST_F(Killed, A_change_leaves_the_old_file_or_the_new_one) {
    const NoFlush quick;
    for (int i = 0; i < static_cast<int>(Sounds().size()); ++i) {
        const Sound& sound = Sounds()[static_cast<std::size_t>(i)];
        int died = 0;
        for (std::uint32_t code = 9; code == 9; ++died) {
            const std::u16string path = Put(sound);
            code = ChangeAndDie(died + 1, i, path);
            ASSERT_TRUE(code == 9 || code == 0) << code;
            if (code == 9)
                EXPECT_TRUE(Bytes(sound) == sound.bytes);
            else
                EXPECT_EQ(Read(sound).at(0).art, kArt);
        }
        EXPECT_GE(died, 7);  // the last one lived
        ASSERT_TRUE(Write(sound, {{u"TITLE", u"afterwards", ""}}));
        EXPECT_EQ(NamesInFolder(), std::vector<std::u16string>{sound.name});
        EXPECT_TRUE(AudioOf(sound, Bytes(sound)) == AudioOf(sound, sound.bytes));
        std::filesystem::remove(std::filesystem::path(mFolder / sound.name));
    }
}

}  // namespace
