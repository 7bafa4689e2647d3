#include "endtoend/stage.h"

#include <filesystem>

#include "endtoend/environment.h"
#include "platform/clock.h"

namespace fs = std::filesystem;

namespace {

// One or the other is asked for, depending on the system.
void SetTemporaries(const fs::path& folder) {
    for (const char* name : {"TMPDIR", "TMP", "TEMP"}) SetVariable(name, folder.string());
}

}  // namespace

OwnTemporaries::OwnTemporaries() {
    SetTemporaries(fs::path(mFolder.Path()));
}
OwnTemporaries::~OwnTemporaries() {
    SetTemporaries(fs::path(mFolder.Path()).parent_path());
}

std::set<std::u16string> NamesIn(const std::u16string& folder) {
    std::set<std::u16string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(folder)))
        names.insert(entry.path().filename().u16string());
    return names;
}

bool Eventually(const std::function<bool()>& condition) {
    const std::uint32_t start = platform::GetTickCount();
    while (!condition()) {
        if (platform::GetTickCount() - start > 60000) return false;
        platform::Sleep(1);
    }
    return true;
}
