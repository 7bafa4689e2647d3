// What a form needs around it: a folder of modules, a dialog, and the texts of a caller.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "foundation/log.h"
#include "foundation/wide_string.h"
#include "modules/module_home.h"
#include "settings/scripted_dialog.h"
#include "settings/stored_settings.h"
#include "settings/toolkit/window.h"

using Names = std::vector<std::u16string>;

class FormStage : public testing::Test {
  protected:
    // Shows the form and says how it was left.
    template <class Form>
    void Show(const char16_t* startName, const char16_t* startText) {
        name = startName;
        settings = startText;
        result = 77;
        const Form form(name, settings, result, home.Self(), log);
    }

    void ExpectLeft(const std::u16string& leftName, const std::u16string& leftText,
                    std::uint32_t left) const {
        EXPECT_EQ(std::u16string(name.Text()), leftName);
        EXPECT_EQ(std::u16string(settings.Text()), leftText);
        EXPECT_EQ(result, left);
    }

    // The names of what stands in a folder of modules, in the system's order.
    Names Listed(std::u16string_view folder) const {
        Names names;
        for (const std::u16string& path : home.Listed(folder))
            names.push_back(std::filesystem::path(path).stem().u16string());
        return names;
    }

    std::int32_t RowOf(std::u16string_view row) const {
        const auto found = std::find(dialog.rows.begin(), dialog.rows.end(), row);
        return found == dialog.rows.end() ? -1 : static_cast<std::int32_t>(found - dialog.rows.begin());
    }
    void Pick(std::u16string_view row) {
        ASSERT_GE(RowOf(row), 0);
        dialog.Pick(RowOf(row));
    }

    // The journal's line of a panel that came up with this text.
    static std::string Shown(const std::string& kind, const std::string& text) {
        return kind + "_ShowConfigBit " + Window() + " at 34,90 '" + text + "'\n";
    }
    static std::string Removed(const std::string& kind) {
        return kind + "_RemoveConfigBit " + Window() + "\n";
    }
    static std::string Window() { return std::to_string(ScriptedDialog::kWindow); }

    const ModuleHome home;
    ScriptedDialog dialog;
    XLog log;
    XString name, settings;
    std::uint32_t result = 77;
};
