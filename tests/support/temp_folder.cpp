#include "support/temp_folder.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

#include "platform/file.h"
#include "platform/names.h"

namespace fs = std::filesystem;

namespace {

// Removal walks by the platform's own operations (never a test's substitutes), in the long form of the path:
// the compilers' remove_all goes astray in folders deeper than a plain path can be. Links are removed, not
// followed.
void RemoveTree(const std::u16string& path, bool isFolder);

void RemoveEntries(const std::u16string& folder) {
    platform::FindData entry;
    const platform::Handle search = platform::FindFirstFileW.Native()((folder + u"*").c_str(), &entry);
    if (search == platform::kInvalidHandle) return;
    do {
        const std::u16string name = entry.name;
        if (name != u"." && name != u"..")
            RemoveTree(folder + name, (entry.attributes & platform::kAttributeDirectory) != 0);
    } while (platform::FindNextFileW.Native()(search, &entry));
    platform::FindClose.Native()(search);
}

void RemoveTree(const std::u16string& path, bool isFolder) {
    std::error_code ignored;
    if (fs::is_symlink(fs::path(path), ignored)) {
        fs::remove(fs::path(path), ignored);
        return;
    }
    platform::SetFileAttributesW.Native()(path.c_str(), platform::kAttributeNormal);
    if (!isFolder) {
        platform::DeleteFileW.Native()(path.c_str());
        return;
    }
    RemoveEntries(path + platform::kPathSeparator);
    platform::RemoveDirectoryW.Native()(path.c_str());
}

}  // namespace

TempFolder::TempFolder() {
    std::random_device random;
    do {
        mPath = fs::temp_directory_path() / ("quavermill-test-" + std::to_string(random()));
    } while (!fs::create_directory(mPath));
    mPath.make_preferred();
}

TempFolder::~TempFolder() {
    RemoveTree(platform::kLongPathPrefix + mPath.u16string(), true);
}

std::u16string TempFolder::operator/(std::u16string_view name) const {
    return (mPath / fs::path(name)).make_preferred().u16string();
}

std::u16string TempFolder::Write(std::u16string_view name, std::string_view bytes) const {
    std::ofstream file(mPath / fs::path(name), std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) throw std::runtime_error("a test's file can't be written");
    return *this / name;
}

std::u16string TempFolder::MakeFolder(std::u16string_view name) const {
    fs::create_directories(mPath / fs::path(name));
    return *this / name;
}

std::string TempFolder::Read(std::u16string_view name) const {
    std::ifstream file(mPath / fs::path(name), std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

bool TempFolder::Has(std::u16string_view name) const {
    return fs::exists(mPath / fs::path(name));
}

void TempFolder::SetReadOnly(std::u16string_view name) const {
    fs::permissions(mPath / fs::path(name),
                    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
}
