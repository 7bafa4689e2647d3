// clDialogTemplate: a dialog described in memory, as the system's dialog code takes it.
//
// Places and sizes are in dialog units, which grow with the dialog's font. An item's class is the system's number
// for one of its own controls, or a class's name.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/controls.h"

struct clDialogPlace {
    std::int32_t x, y, width, height;
};

class clDialogTemplate {
  public:
    enum Class : std::uint16_t { kButton = 0x80, kEdit = 0x81, kStatic = 0x82, kComboBox = 0x85 };

    clDialogTemplate(std::uint32_t style, std::uint32_t extendedStyle, std::int32_t width,
                     std::int32_t height, const platform::FontFace& font, std::int32_t points);

    void Add(Class kind, std::uint32_t id, std::uint32_t style, const clDialogPlace& place,
             std::u16string_view text = {});
    void Add(std::u16string_view className, std::uint32_t id, std::uint32_t style,
             const clDialogPlace& place);

    // Stands until the next Add.
    const void* Bytes() const { return mUnits.data(); }

  private:
    void Put32(std::uint32_t number);
    void PutPlace(const clDialogPlace& place);
    void PutText(std::u16string_view text);
    void BeginItem(std::uint32_t id, std::uint32_t style, const clDialogPlace& place);

    std::vector<std::uint16_t> mUnits;
};
