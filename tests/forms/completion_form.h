// A form with a drop list that can be typed into, and a field to go on to. The library's own two have lists to pick from.
#pragma once

#include <string>
#include <vector>

#include "settings/toolkit/drop_list.h"
#include "settings/toolkit/window.h"

class CompletionForm final : public XWindow {
  public:
    explicit CompletionForm(const std::u16string& rows);  // parted by "|"; returns once it is closed

    const std::u16string& Typed() const { return mTyped; }

  protected:
    void OnInitDialog() override;
    void OnDestroy() override;
    std::intptr_t PreTranslate(platform::Window window, std::uint32_t message, platform::WordParameter word,
                               platform::LongParameter value, std::int32_t* handled) override;
    void OnOK() override;
    void OnCancel() override;

  private:
    std::vector<std::u16string> mRows;
    XDropList mList;
    std::u16string mTyped;
};
