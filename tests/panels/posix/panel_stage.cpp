// The scripted window side: reads the template as the system does, and keeps for each control what its messages say.
#include "panels/panel_stage.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "support/faults.h"

using namespace platform;

namespace {

constexpr std::uint16_t kEditClass = 0x81;

struct ScriptedControl {
    std::uint16_t kind = 0;  // 0 for one with a name
    std::u16string text;
    std::vector<std::u16string> items;
    std::intptr_t selected = -1;
    bool isTicked = false;
    bool isEnabled = true;
    struct ScriptedPanel* panel = nullptr;
    std::uint32_t id = 0;
};

struct ScriptedPanel {
    WindowProcedure procedure = nullptr;
    std::intptr_t userData = 0;
    std::map<std::uint32_t, ScriptedControl> controls;
};

Window AsWindow(void* object) {
    return static_cast<Window>(object);
}

// Walks through a template in its extended form.
class TemplateReader {
  public:
    explicit TemplateReader(const void* bytes) : mUnits(static_cast<const std::uint16_t*>(bytes)) {}

    std::uint16_t Take(std::size_t skipped = 0) { return mUnits[(mAt += skipped + 1) - 1]; }
    std::uint32_t Take32() {
        const std::uint32_t low = Take();
        return low | static_cast<std::uint32_t>(Take()) << 16;
    }
    std::u16string TakeText() {
        std::u16string text;
        while (const std::uint16_t unit = Take()) text += static_cast<char16_t>(unit);
        return text;
    }
    // 0 for a class that has a name.
    std::uint16_t TakeClass() {
        if (mUnits[mAt] == 0xFFFF) return Take(1);
        TakeText();
        return 0;
    }
    void AlignTo32() { mAt += mAt % 2; }

  private:
    const std::uint16_t* mUnits;
    std::size_t mAt = 0;
};

void ReadInto(ScriptedPanel& panel, const void* bytes) {
    TemplateReader reader(bytes);
    const std::uint16_t count = reader.Take(8);
    reader.Take(9);  // the place; no menu, class and title; points, weight, slant
    reader.TakeText();
    for (std::uint16_t i = 0; i < count; ++i) {
        reader.AlignTo32();
        reader.Take(9);  // help, styles, place
        const std::uint32_t id = reader.Take32();
        ScriptedControl& control = panel.controls[id];
        control.kind = reader.TakeClass();
        control.text = reader.TakeText();
        control.panel = &panel;
        control.id = id;
        reader.Take();
    }
}

}  // namespace

struct PanelStage::Side {
    Side();

    std::map<Window, std::unique_ptr<ScriptedPanel>> panels;

    ScriptedControl* ControlOf(Window window) {
        for (auto& [key, panel] : panels)
            for (auto& [id, control] : panel->controls)
                if (AsWindow(&control) == window) return &control;
        return nullptr;
    }
    std::intptr_t Send(Window window, std::uint32_t message, WordParameter word, LongParameter value);
    std::intptr_t SendToControl(ScriptedControl& control, std::uint32_t message, WordParameter word,
                                LongParameter value);

    Faulty<CreateDialogIndirectParamW> create;
    Faulty<DestroyWindow> destroy;
    Faulty<GetDlgItem> item;
    Faulty<SendMessageW> send;
    Faulty<SetWindowTextW> text;
    Faulty<EnableWindow> enable;
    Faulty<IsWindowEnabled> enabled;
    Faulty<GetWindowLongPtrW> getLong;
    Faulty<SetWindowLongPtrW> setLong;
};

std::intptr_t PanelStage::Side::Send(Window window, std::uint32_t message, WordParameter word,
                                     LongParameter value) {
    const auto panel = panels.find(window);
    if (panel != panels.end()) return panel->second->procedure(window, message, word, value);
    ScriptedControl* const control = ControlOf(window);
    return control ? SendToControl(*control, message, word, value) : 0;
}

std::intptr_t PanelStage::Side::SendToControl(ScriptedControl& control, std::uint32_t message,
                                              WordParameter word, LongParameter value) {
    switch (message) {
        case kMessageComboAdd:
            control.items.emplace_back(reinterpret_cast<const char16_t*>(value));
            return static_cast<std::intptr_t>(control.items.size()) - 1;
        case kMessageComboSetCurrent:
            control.selected = word < control.items.size() ? static_cast<std::intptr_t>(word) : -1;
            control.text = control.selected < 0 ? std::u16string() : control.items[word];
            return control.selected;
        case kMessageComboGetCurrent:
            return control.selected;
        case kMessageButtonSetCheck:
            control.isTicked = word != 0;
            return 0;
        case kMessageButtonGetCheck:
            return control.isTicked ? 1 : 0;
        case kMessageGetText: {
            auto* const buffer = reinterpret_cast<char16_t*>(value);
            buffer[control.text.copy(buffer, word - 1)] = 0;
            return static_cast<std::intptr_t>(std::min<std::size_t>(control.text.size(), word - 1));
        }
        default:
            return 0;
    }
}

PanelStage::Side::Side() {
    create.Replace(
        [this](ModuleHandle, const void* bytes, Window, WindowProcedure procedure, LongParameter created) {
            auto panel = std::make_unique<ScriptedPanel>();
            panel->procedure = procedure;
            ReadInto(*panel, bytes);
            const Window window = AsWindow(panel.get());
            panels[window] = std::move(panel);
            procedure(window, kMessageInitDialog, 0, created);
            return window;
        });
    destroy.Replace([this](Window window) {
        const auto panel = panels.find(window);
        if (panel == panels.end()) return false;
        panel->second->procedure(window, kMessageNonClientDestroy, 0, 0);
        panels.erase(window);
        return true;
    });
    item.Replace([this](Window window, std::int32_t id) -> Window {
        const auto panel = panels.find(window);
        if (panel == panels.end()) return nullptr;
        const auto control = panel->second->controls.find(static_cast<std::uint32_t>(id));
        return control == panel->second->controls.end() ? nullptr : AsWindow(&control->second);
    });
    send.Replace([this](Window window, std::uint32_t message, WordParameter word, LongParameter value) {
        return Send(window, message, word, value);
    });
    text.Replace([this](Window window, const char16_t* words) {
        ScriptedControl& control = *ControlOf(window);
        control.text = words;
        if (control.kind == kEditClass)
            control.panel->procedure(AsWindow(control.panel), kMessageCommand,
                                     control.id | std::uintptr_t{kNoticeEditChanged} << 16, 0);
        return true;
    });
    enable.Replace([this](Window window, bool isEnabled) {
        ControlOf(window)->isEnabled = isEnabled;
        return true;
    });
    enabled.Replace([this](Window window) { return ControlOf(window)->isEnabled; });
    getLong.Replace([this](Window window, std::int32_t) { return panels.at(window)->userData; });
    setLong.Replace([this](Window window, std::int32_t slot, std::intptr_t value) -> std::intptr_t {
        if (slot == kSlotUserData) panels.at(window)->userData = value;
        return 0;
    });
}

PanelStage::PanelStage(std::int32_t) : mSide(std::make_unique<Side>()), mParent(AsWindow(mSide.get())) {}

PanelStage::~PanelStage() = default;

// What stands on it goes with it.
void PanelStage::DestroyParent() {
    while (!mSide->panels.empty()) DestroyWindow(mSide->panels.begin()->first);
    mParent = nullptr;
}

std::uintptr_t PanelStage::FreshWindow() {
    return mSide->panels.size();
}

std::uintptr_t PanelStage::FreshDrawing() {
    return 0;  // nothing is drawn
}
