#include "plugins/module_folder.h"

#include "foundation/joined.h"
#include "foundation/paths.h"
#include "platform/names.h"

namespace {

XString InFolder(platform::ModuleHandle module, const char16_t* folder, const char16_t* name,
                 const char16_t* extension) {
    const XString home = paths::GetModuleFolder(module);
    if (home.IsEmpty()) return home;
    const char16_t separator[] = {platform::kPathSeparator, 0};
    return Joined({home.Text(), folder, separator, name, extension});
}

}  // namespace

XString ModulePath(platform::ModuleHandle module, const char16_t* folder, const XString& name) {
    return InFolder(module, folder, name.Text(), platform::kNamedModuleExtension);
}

ModuleWalk::ModuleWalk(platform::ModuleHandle module, const char16_t* folder)
    : mFiles(InFolder(module, folder, u"*", platform::kModuleExtension)) {}

bool ModuleWalk::Next() {
    while (mFiles.Next()) {
        if (!mFiles.IsFolder()) return true;
    }
    return false;
}
