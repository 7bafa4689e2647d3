// Whoever sits in front of a panel. Rows are those of its table.
#pragma once

#include <string>
#include <string_view>

#include "modules/support/panel.h"

class PanelUser {
  public:
    explicit PanelUser(clPanel& panel) : mPanel(panel) {}

    void Pick(std::size_t row, std::size_t choice);  // in a list
    void Tick(std::size_t row, bool isTicked);
    void Type(std::size_t row, const char16_t* text);      // over what stands in a number
    void TypeOver(std::size_t row, const char16_t* text);  // the same in one that offers choices
    void Leave(std::size_t row);                           // with the Tab key
    void LeaveOffers(std::size_t row);
    void PressArrow(std::size_t row, std::int32_t steps);

    std::u16string Shown(std::size_t row) const;
    bool IsTicked(std::size_t row) const;
    bool IsEnabled(std::size_t row) const;
    platform::Window Control(std::size_t row, clPanelControlId part = kPanelControl) const;

  private:
    void Command(std::size_t row, std::uint32_t notice);

    clPanel& mPanel;
};
