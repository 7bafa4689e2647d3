#include "platform/module.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/program.h"
#include "support/temp_folder.h"

using namespace platform;

namespace {

std::u16string ProgramPath() {
    char16_t path[4096];
    EXPECT_GT(GetModuleFileNameW(nullptr, path, 4096), 0u);
    return path;
}

// A module built for these tests: its folder below "modules" beside the program, and its name.
std::u16string ModulePath(const char16_t* folder, const char16_t* name) {
    const std::u16string program = ProgramPath(), separator(1, kPathSeparator);
    return program.substr(0, program.rfind(kPathSeparator) + 1) + u"modules" + separator + folder +
           separator + name + kModuleExtension;
}

int Answer(ModuleHandle module) {
    const auto answer = reinterpret_cast<int (*)()>(GetProcAddress(module, "Answer"));
    return answer ? answer() : -1;
}

class CurrentFolder {
  public:
    explicit CurrentFolder(const std::filesystem::path& folder) { std::filesystem::current_path(folder); }
    ~CurrentFolder() { std::filesystem::current_path(mFormer); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;

  private:
    std::filesystem::path mFormer = std::filesystem::current_path();
};

}  // namespace

TEST(Modules, each_keeps_its_own_names) {
    const ModuleHandle one = LoadLibraryW(ModulePath(u"plain", u"one").c_str());
    const ModuleHandle two = LoadLibraryW(ModulePath(u"plain", u"two").c_str());
    ASSERT_TRUE(one && two);
    EXPECT_EQ(Answer(one), 1);
    EXPECT_EQ(Answer(two), 2);
    EXPECT_TRUE(FreeLibrary(two));
    EXPECT_TRUE(FreeLibrary(one));
}

TEST(Modules, GetProcAddress_gives_null_for_a_name_that_is_not_there) {
    const ModuleHandle module = LoadLibraryW(ModulePath(u"plain", u"one").c_str());
    ASSERT_TRUE(module);
    EXPECT_TRUE(GetProcAddress(module, "Own"));
    EXPECT_FALSE(GetProcAddress(module, "own"));
    EXPECT_FALSE(GetProcAddress(module, "Nothing"));
    EXPECT_EQ(GetLastError(), kErrorProcNotFound);
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(Modules, one_loaded_twice_is_one_and_lives_until_both_are_freed) {
    const auto path = ModulePath(u"plain", u"one");
    const ModuleHandle first = LoadLibraryW(path.c_str()), second = LoadLibraryW(path.c_str());
    ASSERT_TRUE(first);
    EXPECT_EQ(first, second);
    EXPECT_TRUE(FreeLibrary(first));
    EXPECT_EQ(Answer(second), 1);
    EXPECT_TRUE(FreeLibrary(second));
}

TEST(Modules, what_is_no_module_is_refused) {
    const TempFolder folder;
    const std::u16string extension = kModuleExtension;
    folder.MakeFolder(u"folder" + extension);
    const std::u16string paths[] = {
        folder / u"none" + extension,
        folder.Write(u"empty" + extension),
        folder.Write(u"text" + extension, "This is a text and no module at all, whatever its name says.\n"),
        folder / u"folder" + extension,
    };
    for (const auto& path : paths) {
        SetLastError(kErrorSuccess);
        EXPECT_EQ(LoadLibraryW(path.c_str()), nullptr);
        EXPECT_NE(GetLastError(), kErrorSuccess);
    }
    EXPECT_EQ(LoadLibraryW(paths[0].c_str()), nullptr);
    EXPECT_EQ(GetLastError(), kErrorModuleNotFound);
}

TEST(Modules, nothing_is_freed_where_nothing_is_loaded) {
    EXPECT_FALSE(FreeLibrary(nullptr));
}

TEST(Modules, one_finds_what_it_needs_beside_itself_and_not_in_the_current_folder) {
    const auto path = ModulePath(u"needy", u"needy");
    const CurrentFolder decoy(std::filesystem::path(ModulePath(u"decoy", u"needed")).parent_path());
    const ModuleHandle module = LoadLibraryW(path.c_str());
    ASSERT_TRUE(module);
    EXPECT_EQ(Answer(module), 3);
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(Modules, the_names_of_what_one_needs_are_not_its_own) {
    const ModuleHandle module = LoadLibraryW(ModulePath(u"needy", u"needy").c_str());
    ASSERT_TRUE(module);
    EXPECT_FALSE(GetProcAddress(module, "Needed"));
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(Modules, one_without_what_it_needs_is_refused_though_the_current_folder_has_it) {
    const TempFolder folder;
    const auto alone = folder / (std::u16string(u"needy") + kModuleExtension);
    std::filesystem::copy_file(ModulePath(u"needy", u"needy"), alone);
    const CurrentFolder decoy(std::filesystem::path(ModulePath(u"decoy", u"needed")).parent_path());
    EXPECT_EQ(LoadLibraryW(alone.c_str()), nullptr);
}

TEST(Modules, GetModuleFileNameW_gives_the_files_path) {
    const auto path = ModulePath(u"plain", u"one");
    const ModuleHandle module = LoadLibraryW(path.c_str());
    ASSERT_TRUE(module);
    char16_t found[4096];
    const std::uint32_t length = GetModuleFileNameW(module, found, 4096);
    EXPECT_EQ(std::u16string(found).size(), length);
    EXPECT_TRUE(IsSameFile(found, path.c_str()));
    EXPECT_TRUE(FreeLibrary(module));
}

TEST(Modules, GetModuleFileNameW_cuts_a_path_that_does_not_fit) {
    const std::u16string path = ProgramPath();
    const auto length = static_cast<std::uint32_t>(path.size());
    char16_t found[4096];
    EXPECT_EQ(GetModuleFileNameW(nullptr, found, length + 1), length);
    EXPECT_EQ(std::u16string(found), path);
    std::fill(std::begin(found), std::end(found), u'x');
    EXPECT_EQ(GetModuleFileNameW(nullptr, found, 5), 5u);
    EXPECT_EQ(std::u16string(found, 4), path.substr(0, 4));
    EXPECT_EQ(found[5], u'x');
}

TEST(LoadEntry, tells_a_library_its_own_handle_and_its_end) {
    const ModuleHandle module = LoadLibraryW(ModulePath(u"plain", u"notified").c_str());
    ASSERT_TRUE(module);
    const auto self = reinterpret_cast<ModuleHandle (*)()>(GetProcAddress(module, "Self"));
    const auto tellDetached = reinterpret_cast<void (*)(bool*)>(GetProcAddress(module, "TellDetached"));
    ASSERT_TRUE(self && tellDetached);
    EXPECT_EQ(self(), module);
    bool detached = false;
    tellDetached(&detached);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_TRUE(detached);
}
