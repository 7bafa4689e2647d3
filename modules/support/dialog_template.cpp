// The extended form of the record (DLGTEMPLATEEX): units of 16 bits, each item at a multiple of 32.
#include "modules/support/dialog_template.h"

namespace {

constexpr std::uint16_t kVersion = 1, kExtended = 0xFFFF, kNumberFollows = 0xFFFF;
constexpr std::size_t kItemCountAt = 8;

}  // namespace

clDialogTemplate::clDialogTemplate(std::uint32_t style, std::uint32_t extendedStyle, std::int32_t width,
                                   std::int32_t height, const platform::FontFace& font, std::int32_t points) {
    mUnits = {kVersion, kExtended};
    Put32(0);  // no help
    Put32(extendedStyle);
    Put32(style);
    mUnits.push_back(0);  // items so far
    PutPlace({0, 0, width, height});
    mUnits.insert(mUnits.end(), 3, std::uint16_t{0});  // no menu, the usual class, no title
    mUnits.push_back(static_cast<std::uint16_t>(points));
    mUnits.push_back(static_cast<std::uint16_t>(font.weight));
    mUnits.push_back(static_cast<std::uint16_t>((font.isItalic ? 1 : 0) | font.characterSet << 8));
    PutText(font.name);
}

void clDialogTemplate::Add(Class kind, std::uint32_t id, std::uint32_t style, const clDialogPlace& place,
                           std::u16string_view text) {
    BeginItem(id, style, place);
    mUnits.insert(mUnits.end(), {kNumberFollows, kind});
    PutText(text);
    mUnits.push_back(0);
}

void clDialogTemplate::Add(std::u16string_view className, std::uint32_t id, std::uint32_t style,
                           const clDialogPlace& place) {
    BeginItem(id, style, place);
    PutText(className);
    PutText({});
    mUnits.push_back(0);
}

void clDialogTemplate::BeginItem(std::uint32_t id, std::uint32_t style, const clDialogPlace& place) {
    ++mUnits[kItemCountAt];
    if (mUnits.size() % 2 != 0) mUnits.push_back(0);
    Put32(0);  // no help
    Put32(0);  // nothing extended
    Put32(style | platform::kStyleChild | platform::kStyleVisible);
    PutPlace(place);
    Put32(id);
}

void clDialogTemplate::Put32(std::uint32_t number) {
    mUnits.push_back(static_cast<std::uint16_t>(number));
    mUnits.push_back(static_cast<std::uint16_t>(number >> 16));
}

void clDialogTemplate::PutPlace(const clDialogPlace& place) {
    for (const std::int32_t number : {place.x, place.y, place.width, place.height})
        mUnits.push_back(static_cast<std::uint16_t>(number));
}

void clDialogTemplate::PutText(std::u16string_view text) {
    mUnits.insert(mUnits.end(), text.begin(), text.end());
    mUnits.push_back(0);
}
