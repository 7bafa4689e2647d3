// A platform to draw on that notes down what is drawn: the same on every system.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/drawing.h"
#include "support/faults.h"
#include "toolkit/window_stage.h"

class DrawingStage {
  public:
    static inline const platform::DeviceContext kScreen = Fake<platform::DeviceContext>(0x5C);
    static inline const platform::DeviceContext kDC = Fake<platform::DeviceContext>(0xDC);

    DrawingStage() {
        const auto make = [this](const char* kind) {
            const auto made = Fake<platform::DrawingObject*>(++mLast);
            live[made] = kind;
            return made;
        };
        mScreen.Replace([this](platform::Window) {
            ++screens;
            return kScreen;
        });
        mReleaseScreen.Replace([this](platform::Window, platform::DeviceContext dc) {
            EXPECT_EQ(dc, kScreen);
            --screens;
            return true;
        });
        mNewDC.Replace([this](platform::DeviceContext like) {
            const auto dc = Fake<platform::DeviceContext>(++mLast);
            contexts[dc] = nullptr;
            Note("context", {Number(dc), Number(like)});
            return dc;
        });
        mDeleteDC.Replace([this](platform::DeviceContext dc) {
            EXPECT_EQ(contexts.count(dc), 1U);
            EXPECT_EQ(contexts[dc], Stock()) << "deleted with something selected";
            contexts.erase(dc);
            return Note("delete context", {Number(dc)});
        });
        mNewBitmap.Replace([=, this](platform::DeviceContext like, std::int32_t width, std::int32_t height) {
            const auto bitmap = make("bitmap");
            sizes[bitmap] = {width, height};
            Note("bitmap", {Number(bitmap), Number(like), width, height});
            return bitmap;
        });
        mSize.Replace([this](platform::Bitmap bitmap, platform::Size* size) {
            EXPECT_EQ(live.count(bitmap), 1U);
            *size = sizes[bitmap];
            return true;
        });
        mSelect.Replace([this](platform::DeviceContext dc, platform::DrawingObject* object) {
            platform::DrawingObject*& now = contexts[dc];
            platform::DrawingObject* const before = now ? now : Stock();
            now = object;
            return before;
        });
        mDelete.Replace([this](platform::DrawingObject* object) {
            EXPECT_EQ(live.count(object), 1U) << "deleted twice";
            for (const auto& [dc, selected] : contexts)
                EXPECT_NE(selected, object) << "deleted while selected";
            live.erase(object);
            return true;
        });
        mBlit.Replace([this](platform::DeviceContext target, std::int32_t x, std::int32_t y,
                             std::int32_t width, std::int32_t height, platform::DeviceContext source,
                             std::int32_t sourceX, std::int32_t sourceY, std::uint32_t operation) {
            EXPECT_EQ(contexts.count(source), 1U);
            return Note("copy", {Number(target), x, y, width, height, sourceX, sourceY,
                                 static_cast<std::intptr_t>(operation)});
        });
        mBrush.Replace([=, this](platform::Colour colour) {
            const auto brush = make("brush");
            colours[brush] = colour;
            return brush;
        });
        mPen.Replace([=, this](platform::Colour colour) {
            const auto pen = make("pen");
            colours[pen] = colour;
            return pen;
        });
        mFont.Replace([=, this](const char16_t* face, std::int32_t pixels, bool bold) {
            faces.push_back(face);
            Note("font", {pixels, bold});
            return make("font");
        });
        mFill.Replace([this](platform::DeviceContext, const platform::Rect* rect, platform::Brush brush) {
            return Note("fill", {rect->left, rect->top, rect->right, rect->bottom,
                                 static_cast<std::intptr_t>(colours.at(brush))});
        });
        mRound.Replace([this](platform::DeviceContext, const platform::Rect* rect, std::int32_t width,
                              std::int32_t height) {
            return Note("round", {rect->left, rect->top, rect->right, rect->bottom, width, height});
        });
        mMove.Replace([this](platform::DeviceContext, std::int32_t x, std::int32_t y) {
            mPenAt = {x, y};
            return true;
        });
        mLine.Replace([this](platform::DeviceContext dc, std::int32_t x, std::int32_t y) {
            return Note("line", {mPenAt.width, mPenAt.height, x, y,
                                 static_cast<std::intptr_t>(colours.at(contexts.at(dc)))});
        });
        mGradient.Replace([this](platform::DeviceContext, const platform::GradientVertex(*corners)[2]) {
            for (const platform::GradientVertex& at : *corners)
                Note("vertex", {at.x, at.y, at.red, at.green, at.blue});
            return true;
        });
        mTextColour.Replace([this](platform::DeviceContext, platform::Colour colour) {
            return Note("text colour", {static_cast<std::intptr_t>(colour)});
        });
        mText.Replace([this](platform::DeviceContext, const char16_t* text, std::int32_t length,
                             const platform::Rect* rect, std::uint32_t) {
            texts.emplace_back(text, static_cast<std::size_t>(length));
            return Note("text", {rect->left, rect->top, rect->right, rect->bottom});
        });
        mIcon.Replace([this](platform::DeviceContext, std::int32_t x, std::int32_t y, platform::Icon icon,
                             std::int32_t width, std::int32_t height) {
            return Note("icon", {x, y, Number(icon), width, height});
        });
        mSystemColour.Replace(
            [](std::int32_t index) { return 0xC0000U + static_cast<std::uint32_t>(index); });
    }
    ~DrawingStage() {
        EXPECT_TRUE(live.empty()) << live.size() << " drawing objects are left";
        EXPECT_EQ(screens, 0);
    }

    std::vector<std::string> journal;
    std::vector<std::u16string> texts, faces;
    std::map<platform::DrawingObject*, std::string> live;
    std::map<platform::DrawingObject*, platform::Size> sizes;
    std::map<platform::DrawingObject*, platform::Colour> colours;
    std::map<platform::DeviceContext, platform::DrawingObject*> contexts;
    int screens = 0;

    // What a context holds at first.
    static platform::DrawingObject* Stock() { return Fake<platform::DrawingObject*>(0x570C); }
    std::vector<std::string> Taken() { return std::exchange(journal, {}); }

  private:
    template <class Pointer>
    static std::intptr_t Number(Pointer pointer) {
        return reinterpret_cast<std::intptr_t>(pointer);
    }
    bool Note(const char* what, std::initializer_list<std::intptr_t> numbers) {
        journal.push_back(Said(what, numbers));
        return true;
    }

    std::uintptr_t mLast = 0;
    platform::Size mPenAt;
    Faulty<platform::GetDC> mScreen;
    Faulty<platform::ReleaseDC> mReleaseScreen;
    Faulty<platform::CreateCompatibleDC> mNewDC;
    Faulty<platform::DeleteDC> mDeleteDC;
    Faulty<platform::CreateCompatibleBitmap> mNewBitmap;
    Faulty<platform::GetBitmapSize> mSize;
    Faulty<platform::SelectObject> mSelect;
    Faulty<platform::DeleteObject> mDelete;
    Faulty<platform::BitBlt> mBlit;
    Faulty<platform::CreateSolidBrush> mBrush;
    Faulty<platform::CreateSolidPen> mPen;
    Faulty<platform::CreateFontIndirectW> mFont;
    Faulty<platform::FillRect> mFill;
    Faulty<platform::RoundRect> mRound;
    Faulty<platform::MoveToEx> mMove;
    Faulty<platform::LineTo> mLine;
    Faulty<platform::GradientFill> mGradient;
    Faulty<platform::SetTextColor> mTextColour;
    Faulty<platform::DrawTextW> mText;
    Faulty<platform::DrawIconEx> mIcon;
    Faulty<platform::GetSysColor> mSystemColour;
};
