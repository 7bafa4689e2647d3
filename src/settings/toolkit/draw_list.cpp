#include "settings/toolkit/draw_list.h"

#include <utility>

#include "settings/toolkit/draw_elements.h"
#include "settings/toolkit/drawing_scope.h"

XDrawList::XDrawList() = default;
XDrawList::~XDrawList() = default;

void XDrawList::AddBackground(platform::Colour colour, DrawWhen when) {
    Add(std::make_unique<XDrawBackground>(colour), when);
}

void XDrawList::AddFrame(const DrawFrame& frame, DrawWhen when) {
    Add(std::make_unique<XDrawFrame>(frame), when);
}

void XDrawList::AddIcon(const XIcon& icon, std::int32_t margin, std::int32_t size, DrawWhen when) {
    Add(std::make_unique<XDrawIcon>(icon, margin, size), when);
}

void XDrawList::AddText(const XString& text, std::int32_t indent, const XDrawFont& font, DrawWhen when) {
    Add(std::make_unique<XDrawText>(text, indent, font), when);
}

void XDrawList::Add(std::unique_ptr<XDrawElement> element, DrawWhen when) {
    element->when = when;
    mElements.push_back(std::move(element));
}

platform::Colour* XDrawList::TextColour() {
    for (const auto& element : mElements) {
        if (platform::Colour* colour = element->TextColour()) return colour;
    }
    return nullptr;
}

void XDrawList::Draw(platform::DeviceContext dc, const platform::Rect& rect) const {
    const ClipScope clip(dc);
    platform::IntersectClipRect(dc, &rect);
    DrawPlace place = {dc, rect, rect.left};
    for (const auto& element : mElements) {
        if ((mState & element->when.mask) == element->when.value) element->Draw(place);
    }
}
