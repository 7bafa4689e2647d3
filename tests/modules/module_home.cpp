#include "modules/module_home.h"

#include "platform/file.h"
#include "platform/names.h"

ModuleHome::ModuleHome()
    : mLibrary(mFolder, u"library", "whole_decoder"),
      mSelf(platform::LoadLibraryW(mLibrary.Path().c_str())) {}

ModuleHome::~ModuleHome() {
    platform::FreeLibrary(mSelf);
}

std::vector<std::u16string> ModuleHome::Listed(std::u16string_view folder) const {
    std::vector<std::u16string> paths;
    const std::u16string start = (mFolder / folder) + platform::kPathSeparator;
    platform::FindData entry;
    const platform::Handle search =
        platform::FindFirstFileW.Native()((start + u"*" + platform::kModuleExtension).c_str(), &entry);
    if (search == platform::kInvalidHandle) return paths;
    do paths.push_back(start + entry.name);
    while (platform::FindNextFileW.Native()(search, &entry));
    platform::FindClose.Native()(search);
    return paths;
}
