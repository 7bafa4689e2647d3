// quaver settings: the settings text of an encoder or an effect, made on the
// library's form, or stored.
#pragma once

#include <optional>
#include <string>

#include "exit_codes.h"

struct SettingsOptions {
    std::u16string name;
    bool isEffect = false;
    std::u16string start;               // what the form begins with; empty for what is stored
    std::optional<std::u16string> set;  // stored without a form
    bool print = false;                 // what is stored, without a form
};

ExitCode RunSettings(const SettingsOptions& options);
