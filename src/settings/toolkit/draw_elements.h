// What a drawing list is made of.
#pragma once

#include "settings/toolkit/draw_list.h"

// Where an element is drawn, and how far the row is taken by those before it.
struct DrawPlace {
    platform::DeviceContext dc;
    platform::Rect row;
    std::int32_t x;  // the first free pixel from the left
};

class XDrawElement {
  public:
    virtual ~XDrawElement() = default;
    virtual void Draw(DrawPlace& place) const = 0;
    virtual platform::Colour* TextColour() { return nullptr; }

    DrawWhen when;
};

class XDrawBackground : public XDrawElement {
  public:
    explicit XDrawBackground(platform::Colour colour) : mColour(colour) {}
    void Draw(DrawPlace& place) const override;

  private:
    platform::Colour mColour;
};

class XDrawFrame : public XDrawElement {
  public:
    explicit XDrawFrame(const DrawFrame& frame) : mFrame(frame) {}
    void Draw(DrawPlace& place) const override;

  private:
    DrawFrame mFrame;
};

class XDrawIcon : public XDrawElement {
  public:
    XDrawIcon(const XIcon& icon, std::int32_t margin, std::int32_t size)
        : mIcon(icon), mMargin(margin), mSize(size) {}
    void Draw(DrawPlace& place) const override;

  private:
    XIcon mIcon;
    std::int32_t mMargin, mSize;
};

class XDrawText : public XDrawElement {
  public:
    XDrawText(const XString& text, std::int32_t indent, const XDrawFont& font);
    void Draw(DrawPlace& place) const override;
    platform::Colour* TextColour() override { return &mColour; }

  private:
    XString mText;
    std::int32_t mIndent;
    XDrawFont mFont;
    platform::Colour mColour;
};
