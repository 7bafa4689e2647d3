// Every panel of ours, with a way to ask the module itself whether it takes a text.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "modules/support/panel.h"

struct ModuleWithPanel {
    const char* name;
    std::function<std::unique_ptr<clPanelOwner>()> make;
    // Whether a conversion begins with these settings, for any of the kinds of audio there are.
    std::function<bool(const char16_t* settings)> takes;
};

// Those that this build has.
const std::vector<ModuleWithPanel>& AllPanels();

inline void PrintTo(const ModuleWithPanel& module, std::ostream* out) {
    *out << module.name;
}
