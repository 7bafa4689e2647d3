#include "modules/placed_module.h"

#include "platform/module.h"
#include "platform/names.h"

namespace fs = std::filesystem;

std::u16string BuiltModule(std::string_view name) {
    char16_t self[4096];
    platform::GetModuleFileNameW(nullptr, self, 4096);
    // Test programs stand in a folder of their room each, beside that of the modules.
    const fs::path modules = fs::path(self).parent_path().parent_path() / "modules";
    return (modules / fs::path(name)).make_preferred().u16string() + platform::kModuleExtension;
}

PlacedModule::PlacedModule(const TempFolder& folder, std::u16string_view place, std::string_view module,
                           std::string_view script)
    : mFolder(folder), mPlace(place), mPath(folder / (mPlace + platform::kModuleExtension)) {
    fs::create_directories(fs::path(mPath).parent_path());
    fs::copy_file(fs::path(BuiltModule(module)), fs::path(mPath), fs::copy_options::overwrite_existing);
    SetScript(script);
}

void PlacedModule::SetScript(std::string_view script) const {
    mFolder.Write(mPlace + u".script", script);
}

std::string PlacedModule::TakeJournal() const {
    const std::string journal = mFolder.Read(mPlace + u".journal");
    mFolder.Write(mPlace + u".journal");
    return journal;
}
