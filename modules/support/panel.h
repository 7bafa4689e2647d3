// clPanel: a module's settings panel, standing on a window of the host's.
//
// The panel is one child window, which holds the system's own controls: a row of label, control and unit for each
// row of the module's table, in the parent's font. It is laid out in that font's dialog units: 300 wide and 15 for
// each row, six at most. Keys go through it as through a part of the host's dialog.
//
// Only a window can be seen; the text doesn't need one. Without one (there is none on this system, the host gave
// none or the system refuses) the text that comes back is what an untouched panel would give: what was understood
// of the settings, in the normal form of clPanelSheet.
//
// A panel belongs to the thread of its parent, and so does the module's instance while it stands.
#pragma once

#include <optional>
#include <string>

#include "modules/support/panel_sheet.h"
#include "platform/controls.h"

// The controls' numbers in the panel are these, plus the row's.
enum clPanelControlId : std::uint32_t {
    kPanelLabel = 1000,
    kPanelControl = 2000,
    kPanelArrows = 3000,
    kPanelUnit = 4000,
};
inline constexpr std::int32_t kPanelWidth = 300, kPanelRowHeight = 15, kPanelMostRows = 6;  // dialog units

class clPanel {
  public:
    // The rows are a constant table. None makes a panel that says so.
    explicit clPanel(std::span<const clPanelRow> rows) : mSheet(rows) {}
    clPanel(const clPanel&) = delete;
    clPanel& operator=(const clPanel&) = delete;
    ~clPanel() { Close(); }

    // Shows `text`, at x, y in pixels. A panel that stands already is replaced.
    void Show(platform::Window parent, std::int32_t x, std::int32_t y, const char16_t* text);
    // Takes the panel away, its host may have destroyed it before. The settings as they stood in it last, standing
    // until the next Show; null when none was shown since the last Remove.
    const char16_t* Remove();

    platform::Window Window() const { return mWindow; }

  private:
    static std::intptr_t Receive(platform::Window window, std::uint32_t message, platform::WordParameter word,
                                 platform::LongParameter value);
    bool React(std::uint32_t message, platform::WordParameter word, platform::LongParameter value);
    bool OnNotice(std::size_t row, std::uint32_t notice);
    bool OnStep(const platform::NoticeRecord& notice);
    void Fill();
    void ShowValue(std::size_t row);
    void ShowWhetherActive(std::size_t row);
    void ShowOthers(std::size_t changed);
    std::size_t Selected(std::size_t row) const;
    platform::Window Control(std::size_t row, clPanelControlId part = kPanelControl) const;
    void Close();

    clPanelSheet mSheet;
    std::u16string mText;
    platform::Window mWindow = nullptr;
    bool mIsShown = false;    // with a window or without
    bool mIsFilling = false;  // what controls say of themselves is our own doing
};

// The part of a module's instance that has the panel.
class clPanelOwner {
  public:
    clPanelOwner() = default;
    clPanelOwner(const clPanelOwner&) = delete;
    clPanelOwner& operator=(const clPanelOwner&) = delete;
    virtual ~clPanelOwner() = default;

    // A constant table, of kPanelMostRows at most.
    virtual std::span<const clPanelRow> PanelRows() const { return {}; }

    clPanel& Panel() { return mPanel ? *mPanel : mPanel.emplace(PanelRows()); }

  private:
    std::optional<clPanel> mPanel;
};
