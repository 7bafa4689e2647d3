// The store lies where the environment says.
#include "support/own_settings.h"

#include <stdlib.h>

#include <filesystem>

#include "support/temp_folder.h"

struct OwnSettings::Store {
    TempFolder folder;
};

OwnSettings::OwnSettings() : mStore(std::make_unique<Store>()) {
    setenv("XDG_CONFIG_HOME", std::filesystem::path(mStore->folder.Path()).c_str(), 1);
}

OwnSettings::~OwnSettings() = default;
