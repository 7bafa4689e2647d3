// A folder that looks like that of an installed library: a module in the place of the library's own file, and
// beside it whatever modules a test places.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "modules/placed_module.h"
#include "platform/module.h"
#include "support/temp_folder.h"

class ModuleHome {
  public:
    ModuleHome();
    ~ModuleHome();
    ModuleHome(const ModuleHome&) = delete;
    ModuleHome& operator=(const ModuleHome&) = delete;

    platform::ModuleHandle Self() const { return mSelf; }
    const TempFolder& Folder() const { return mFolder; }
    PlacedModule Place(std::u16string_view place, std::string_view module,
                       std::string_view script = {}) const {
        return PlacedModule(mFolder, place, module, script);
    }
    // The module files of a folder in the order in which the system lists them, which is any.
    std::vector<std::u16string> Listed(std::u16string_view folder) const;

  private:
    TempFolder mFolder;
    PlacedModule mLibrary;
    platform::ModuleHandle mSelf;
};
