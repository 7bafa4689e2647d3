// XDrawList: what one row of an owner-drawn list is painted from.
//
// Elements are drawn in the order of their addition. Each has a mask and a value, and is drawn only when the
// row's state word, masked, equals the value. Icons and fonts are the list's own.
//
// Elements lie beside one another from left to right and in the row's middle: an icon takes its place, and a
// text begins its indent behind what stands before it. A text that is too wide ends in "...".
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/drawing.h"
#include "settings/toolkit/draw_font.h"
#include "settings/toolkit/icon.h"

// The row's state, one bit of each pair.
enum DrawState : std::uint32_t {
    kDrawSelected = 4,
    kDrawUnselected = 8,
    kDrawFocused = 64,
    kDrawUnfocused = 128,
    kDrawInList = 256,  // not in a combo box's own field
};

// When an element is drawn. The default is always.
struct DrawWhen {
    std::uint32_t mask = 0;
    std::uint32_t value = 0;
};

// A rounded rectangle with an outline, a line of the fill colour inside it, and a gradient in the middle.
struct DrawFrame {
    platform::Colour fill, outline;
    std::int32_t radius;
    platform::Colour topLeft, topRight, bottomLeft, bottomRight;
};

class XDrawElement;

class XDrawList {
  public:
    XDrawList();
    XDrawList(const XDrawList&) = delete;
    XDrawList& operator=(const XDrawList&) = delete;
    ~XDrawList();

    void AddBackground(platform::Colour colour, DrawWhen when = {});
    void AddFrame(const DrawFrame& frame, DrawWhen when = {});
    // Keeps a duplicate of the icon and draws it `size` pixels wide and high, behind a margin.
    void AddIcon(const XIcon& icon, std::int32_t margin, std::int32_t size, DrawWhen when = {});
    // In the platform's colour for text.
    void AddText(const XString& text, std::int32_t indent, const XDrawFont& font, DrawWhen when = {});

    std::int32_t Count() const { return static_cast<std::int32_t>(mElements.size()); }
    // The colour of the first text, to be changed at will; null without a text.
    platform::Colour* TextColour();

    void SetState(std::uint32_t state) { mState = state; }
    std::uint32_t State() const { return mState; }
    // Paints the row into a rectangle of the context, and nothing outside of it.
    void Draw(platform::DeviceContext dc, const platform::Rect& rect) const;

  private:
    void Add(std::unique_ptr<XDrawElement> element, DrawWhen when);

    std::vector<std::unique_ptr<XDrawElement>> mElements;
    std::uint32_t mState = 0;
};
