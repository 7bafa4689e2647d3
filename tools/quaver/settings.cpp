// The form is the library's, and so is what comes of it: what the user has
// accepted is stored already. The library lets an encoder's name stand where no
// form can come up, and what is stored is then the answer.
#include "settings.h"

#include <algorithm>

#include "host.h"
#include "stored_settings.h"
#include "terminal.h"

namespace {

char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool IsSame(const std::u16string& one, const std::u16string& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char16_t first, char16_t second) { return Lower(first) == Lower(second); });
}

// The module as its file is spelled; empty for none.
std::u16string ListedName(const std::vector<ModuleRow>& rows, const std::u16string& name) {
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&](const ModuleRow& each) { return IsSame(each.name, name); });
    return row == rows.end() ? std::u16string() : row->name;
}

ExitCode Answer(const std::u16string& text) {
    return Concluded(ExitCode::kDone, Say(text + u"\n"));
}

ExitCode Store(const std::u16string& name, const std::u16string& text) {
    if (StoreSettings(name, text)) return Answer(text);
    Tell(u"The settings of '" + name + u"' can't be stored.");
    return ExitCode::kFailed;
}

ExitCode ShowForm(Host& host, const std::u16string& name, const SettingsOptions& options) {
    const FormAnswer answer = host.ShowSettings(options.isEffect, name, options.start);
    TellErrors(host.TakeAllErrors());
    if (answer.name.empty()) {
        Tell(answer.cameUp ? u"Cancelled." : u"'" + name + u"' can't be loaded.");
        return answer.cameUp ? ExitCode::kCancelled : ExitCode::kFailed;
    }
    if (!answer.cameUp && options.isEffect) {
        Tell(
            u"There are no forms here, and the settings of effects are not "
            u"stored.");
        return ExitCode::kFailed;
    }
    if (answer.name != name) Tell(u"Settings of '" + answer.name + u"':");
    return Answer(answer.text);
}

}  // namespace

ExitCode RunSettings(const SettingsOptions& options) {
    Host host;
    const std::u16string name = ListedName(options.isEffect ? host.Effects() : host.Encoders(), options.name);
    if (name.empty()) {
        Tell((options.isEffect ? u"There is no effect '" : u"There is no encoder '") + options.name + u"'.");
        return ExitCode::kFailed;
    }
    if (options.set) return Store(name, *options.set);
    return options.print ? Answer(StoredSettings(name)) : ShowForm(host, name, options);
}
