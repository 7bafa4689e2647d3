#include "settings/toolkit/draw_elements.h"

#include <algorithm>

#include "settings/toolkit/drawing_scope.h"
#include "settings/toolkit/fill.h"
#include "settings/toolkit/gradient.h"

namespace {

constexpr std::int32_t kFrameGap = 1;    // between two rows' frames, above and below each
constexpr std::int32_t kFrameLines = 2;  // the outline, and the line of the fill colour inside it
constexpr std::int32_t kTextEndGap = kFrameGap + kFrameLines;

constexpr std::uint32_t kTextLayout = platform::kTextLeft | platform::kTextMiddle |
                                      platform::kTextSingleLine | platform::kTextNoPrefix |
                                      platform::kTextEllipsis;

platform::Rect Inset(const platform::Rect& rect, std::int32_t by) {
    return {rect.left + by, rect.top + by, rect.right - by, rect.bottom - by};
}

}  // namespace

void XDrawBackground::Draw(DrawPlace& place) const {
    FillWith(place.dc, place.row, mColour);
}

// The gradient lies inside the rounded line of the fill colour, so that its corners stay soft.
void XDrawFrame::Draw(DrawPlace& place) const {
    const platform::Rect outside = Inset(place.row, kFrameGap), inside = Inset(outside, kFrameLines);
    {
        const DrawingTool pen(place.dc, platform::CreateSolidPen(mFrame.outline));
        const DrawingTool brush(place.dc, platform::CreateSolidBrush(mFrame.fill));
        platform::RoundRect(place.dc, &outside, 2 * mFrame.radius, 2 * mFrame.radius);
    }
    const ClipScope clip(place.dc);
    const std::int32_t corner = 2 * std::max(mFrame.radius - kFrameLines, 0);
    platform::ClipToRoundRect(place.dc, &inside, corner, corner);
    DrawGradient(place.dc, inside, mFrame.topLeft, mFrame.topRight, mFrame.bottomLeft, mFrame.bottomRight);
}

// A row that is too low for the icon, as a combo box's field may be, gets it smaller.
void XDrawIcon::Draw(DrawPlace& place) const {
    const std::int32_t height = place.row.bottom - place.row.top, size = std::min(mSize, height);
    platform::DrawIconEx(place.dc, place.x + mMargin, place.row.top + (height - size) / 2, mIcon.Handle(),
                         size, size);
    place.x += mMargin + mSize;
}

XDrawText::XDrawText(const XString& text, std::int32_t indent, const XDrawFont& font)
    : mText(text),
      mIndent(indent),
      mFont(font),
      mColour(platform::GetSysColor(platform::kSystemColourWindowText)) {}

void XDrawText::Draw(DrawPlace& place) const {
    const platform::Rect room = {place.x + mIndent, place.row.top, place.row.right - kTextEndGap,
                                 place.row.bottom};
    place.x = room.right;
    if (room.left >= room.right) return;
    const DrawingTool font(place.dc, mFont.Create());
    const ClipScope colours(place.dc);
    platform::SetTextColor(place.dc, mColour);
    platform::SetTransparentText(place.dc);
    platform::DrawTextW(place.dc, mText.Text(), mText.Length(), &room, kTextLayout);
}
