#include "settings/scripted_dialog.h"

#include <algorithm>

namespace {

const platform::Window kDialog = reinterpret_cast<platform::Window>(ScriptedDialog::kWindow);
const platform::Window kControl = reinterpret_cast<platform::Window>(ScriptedDialog::kWindow + 2);

constexpr std::uint32_t kMessageSetFont = 48;

}  // namespace

ScriptedDialog::ScriptedDialog() {
    mDialogs.Replace([this](platform::ModuleHandle from, std::uint16_t number, platform::Window,
                            platform::WindowProcedure procedure, platform::LongParameter created) {
        if (!exists) return std::intptr_t{-1};
        module = from;
        templateNumber = number;
        return Run(procedure, created);
    });
    mEnds.Replace([this](platform::Window, std::intptr_t result) {
        ended = result;
        return true;
    });
    mUnits.Replace([](platform::Window, platform::Rect* rect) {
        rect->left *= kPixelsX;
        rect->right *= kPixelsX;
        rect->top *= kPixelsY;
        rect->bottom *= kPixelsY;
        return true;
    });
    mControls.Replace([](platform::Window dialog, std::int32_t id) {
        return dialog == kDialog && id == kList ? kControl : nullptr;
    });
    mMessages.Replace([this](platform::Window window, std::uint32_t message, platform::WordParameter word,
                             platform::LongParameter value) {
        return window == kControl ? Answer(message, word, value) : 0;
    });
    mIcons.Replace([this](const char16_t* file, std::int32_t, std::int32_t) {
        icons.emplace_back(file);
        return platform::Icon();
    });
}

std::intptr_t ScriptedDialog::Run(platform::WindowProcedure procedure, platform::LongParameter created) {
    ++shown;
    ended.reset();
    rows.clear();
    icons.clear();
    selected = -1;
    mProcedure = procedure;
    earlyAnswer = Send(kMessageSetFont, 0);
    Send(platform::kMessageInitDialog, 0, created);
    if (!ended && user) user();
    if (!ended) Close();
    Send(platform::kMessageDestroy, 0);
    return ended.value_or(-2);
}

std::intptr_t ScriptedDialog::Answer(std::uint32_t message, platform::WordParameter word,
                                     platform::LongParameter value) {
    switch (message) {
        case platform::kMessageComboInsert:
            rows.emplace_back(reinterpret_cast<const char16_t*>(value));
            return static_cast<std::intptr_t>(rows.size()) - 1;
        case platform::kMessageComboSetCurrent:
            return selected = static_cast<std::int32_t>(word);
        case platform::kMessageComboGetCurrent:
            return selected;
        case platform::kMessageComboGetTextLength:
            return word < rows.size() ? static_cast<std::intptr_t>(rows[word].size()) : -1;
        case platform::kMessageComboGetText:
            if (word >= rows.size()) return -1;
            *std::copy(rows[word].begin(), rows[word].end(), reinterpret_cast<char16_t*>(value)) = 0;
            return static_cast<std::intptr_t>(rows[word].size());
        default:
            return 0;
    }
}

void ScriptedDialog::Pick(std::int32_t row) {
    selected = row;
    Notify(kSelectionChanged);
}

std::intptr_t ScriptedDialog::Send(std::uint32_t message, std::uintptr_t word, std::intptr_t value) {
    return mProcedure(kDialog, message, word, value);
}
